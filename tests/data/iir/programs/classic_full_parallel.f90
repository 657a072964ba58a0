      subroutine tim(x, y, n, ibt)
      real(len=8) x, y, al, be, ga, de, ao, ys, zero, yy, trun
      dimension ys(3,26), al(25), be(25), ga(25), de(25)
      save
      data  al / &
        25*0.d0/
      data  be / &
        25*0.d0/
      data  ga / &
        25*0.d0/
      data  de / &
        25*0.d0/
      data ao, nsec, zero/ 0.00000000000E+00, 0, 0.d0/
      if (n == 1) then
        nsp1 = nsec + 1
        do j = 1, 2
          do i = 1, 26
          ys(j,i) = zero
          end do
        end do
      else
        ys(3,1) = x
        do k = 1, nsec
          ys(3,k+1) = trun(al(k)*ys(3,1),ibt) + trun(be(k)*ys(2,1),ibt) &
          - trun(ga(k)*ys(2,k+1),ibt) - trun(de(k)*ys(1,k+1),ibt)
        end do
        yy = trun(ao*ys(3,1),ibt)
        do i = 2, nsp1
          yy = yy + ys(3,i)
        end do
        y = yy
        do i = 1, nsp1
          ys(1,i) = ys(2,i)
          ys(2,i) = ys(3,i)
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
