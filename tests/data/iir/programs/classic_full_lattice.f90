      subroutine tim(x, y, n, ibt)
      real(len=8) gmul, gtap, x, y, z, z1, sum, zero, one, trun
      dimension gmul(51), gtap(51), e(51), z(51), z1(51)
      save
      data gmul/ &
        51*0.d0/
      data gtap/ &
        51*0.d0/
      data jm, jt, zero, one/ 0, 0, 0.d0, 1.d0/
      if (n == 1) then
        do i = 1, 51
          if (i == 1) then
          z(i) = one
          else
          z(i) = gmul(i-1)
          endif
          z1(i) = zero
          e(i) = one
        end do
      else
        sum = zero
        do i = 1, jt
          sum = sum + trun(gtap(i)*z(i),ibt)
        end do
        y = trun(sum,ibt)
        do i = 1, jt
          z1(i) = z(i)
        end do
        e(1) = x
        do i = 2, jt
          e(i) = e(i-1) - trun(gmul(jt+1-i)*z1(jt+1-i),ibt)
        end do
        z(1) = e(jt)
        do i = 2, jt
          z(i) = z1(i-1) + trun(gmul(i-1)*e(jt+2-i),ibt)
        end do
      end if
      return
      end
      function trun(x,i)
      real(len=8) trun, x, a, b
      if (iabs(i) >= 40) then
        trun = x
      else
        a = dabs(x)
        d = 0.5
        if (i < 0) d = 0.0
        b = 2.0**iabs(i)
        n = a*b + d
        trun = float(n)/b
        if (x < 0.d0) trun = -trun
      endif
      return
      end
