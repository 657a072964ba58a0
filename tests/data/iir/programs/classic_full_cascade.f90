      subroutine tim(x, y, n, ibt)
      real(len=8) x, y, c1n, c2n, c1d, c2d, ck, sc, ys, zero, yy, trun
      dimension ys(3,26), c1n(25), c2n(25), c1d(25), c2d(25), sc(25)
      save
      data c1n / &
        25*0.d0/
      data c2n / &
        25*0.d0/
      data c1d / &
        25*0.d0/
      data c2d / &
        25*0.d0/
      data  sc / &
        25*0.d0/
      data ck, nsec, zero/ 1.00000000000E+00, 0, 0.d0/
      if(n == 1) then
        nsp1 = nsec + 1
        do j = 1, 2
          do i = 1, 26
          ys(j,i) = zero
          end do
        end do
      else
        ys(3,1) = trun(x*ck,ibt)
        do k = 1, nsec
          yy = (trun(sc(k)*ys(3,k), ibt) + trun(c1n(k)*ys(2,k),ibt), &
          + trun(c2n(k)*ys(1,k),ibt)) - trun(c1d(k)*ys(2,k+1),ibt) &
          - trun(c2d(k)*ys(1,k+1),ibt)
          ys(3,k+1) = trun(yy,ibt)
        end do
        y = ys(3,nsp1)
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
