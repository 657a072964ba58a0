      subroutine tim(x, y, n, ibt)
      real(len=8) x, y, ta1, ta2, tb1, tb2, ys, zero, yy, trun
      dimension ys(3,28), ta1(13), ta2(13), tb1(13), tb2(13)
      save
      data  ta1/ &
        13*0.d0/
      data  ta2/ &
        13*0.d0/
      data  tb1/ &
         0.00000000000E+00, 0.00000000000E+00, 0.00000000000E+00, &
         0.00000000000E+00, 0.00000000000E+00, 0.00000000000E+00, &
         0.00000000000E+00, 0.00000000000E+00, 0.00000000000E+00, &
         0.00000000000E+00, 0.00000000000E+00, 0.00000000000E+00, &
         0.00000000000E+00, &
        /
      data  tb2/ &
         0.00000000000E+00, 0.00000000000E+00, 0.00000000000E+00, &
         0.00000000000E+00, 0.00000000000E+00, 0.00000000000E+00, &
         0.00000000000E+00, 0.00000000000E+00, 0.00000000000E+00, &
         0.00000000000E+00, 0.00000000000E+00, 0.00000000000E+00, &
         0.00000000000E+00, &
        /
      data nta, ntb, zero/ 0,13, 0.d0/
      n14 = 14
      if (n == 1) then
        do j = 1, 2
          do i = 1, 28
          ys(j,i) = zero
          end do
        end do
      else
        ys(3,1) = x
        ys(3,n14+1) = x
        do k = 1, nta
          if (ta2(k) == zero) then
          ys(3,k+1) = trun(ta1(k)*ys(3,k),ibt) + ys(2,k) - &
          trun(ta1(k)*ys(2,k+1),ibt)
          else
          ys(3,k+1) = trun(ta2(k)*ys(3,k),ibt) + trun(ta1(k)*ys(2,k),ibt) &
          + ys(1,k) - trun(ta1(k)*ys(2,k+1),ibt) - &
          trun(ta2(k)*ys(1,k+1),ibt)
          endif
        end do
        do k = 1, ntb
          k1 = k + n14
          if (tb2(k) == zero) then
          ys(3,k1+1) = trun(tb1(k)*ys(3,k1),ibt) + ys(2,k1) - &
          trun(tb1(k)*ys(2,k1+1),ibt)
          else
          ys(3,k1+1) = trun(tb2(k)*ys(3,k1),ibt) + trun(tb1(k)*ys(2,k1),ibt) &
          + ys(1,k1) - trun(tb1(k)*ys(2,k1+1),ibt) - &
          trun(tb2(k)*ys(1,k1+1),ibt)
          endif
        end do
        y = -0.5d0*(ys(3,nta+1) - ys(3,ntb+1+n14))
        y = trun(y,ibt)
        do i = 1, 28
          ys(1,i) = ys(2,i)
          ys(2,i) = ys(3,i)
        end do
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
