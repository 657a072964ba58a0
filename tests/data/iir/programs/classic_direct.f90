      subroutine tim(x, y, n, ibt)
      real(len=8) znum, zden, xi, yi, x, y, zero, sum, trun
      dimension znum(51), zden(51), xi(52), yi(52)
      save
      data znum/ &
         1.00000000000E+00,-5.00000000000E-01, 2.50000000000E-01, &
        48*0.d0/
      data zden/ &
         1.00000000000E+00, 5.00000000000E-01, 2.50000000000E-01, &
         1.25000000000E-01, &
         1.00000000000-101, &
        46*0.d0/
      data jn, jd, zero/ 3, 5, 0.d0/
      if (n == 1) then
        do i = 1, 52
          xi(i) = zero
          yi(i) = zero
        end do
      else
        sum = zero
        if (n > 52) then
          do i = 1, 51
          yi(i) = yi(i+1)
          xi(i) = xi(i+1)
          end do
          nx = 52
        else
          nx = n
        endif
        xi(nx) = x
        j = min0(jn,nx)
        do i = 1, j
          sum = sum + trun(znum(i)*xi(nx+1-i),ibt)
        end do
        j = min0(jd-1, nx-1)
        if (j > 0) then
          do i = 1, j
          sum = sum - trun(zden(i+1)*yi(nx-i),ibt)
          end do
        endif
        y = trun(sum,ibt)
        yi(nx) = y
      endif
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
