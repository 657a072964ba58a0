      subroutine fir (x, y, n, ibt)
      double precision  coef, x, x1, y, ak, a, trun
      dimension coef(  2),  x1(  3)
      double precision c1, c2, c3, c4, c5, c6, c7, c8, c9
      dimension c1(60), c2(60), c3(60), c4(60), c5(60), c6(60), &
       c7(60), c8(60), c9(32)
      equivalence (c1(1), coef(  1))
      data c1 / 1.5625000000000000D-02, -3.1250000000000000D-02,  &
       58*0.d0/
      data isym /0/
      save x1
      ak = 1.do
      if ( isym == 1 ) ak = -1.d0
      if (n <= 1) then
         do i = 1,   3
            x1(i) = 0.d0
         end do
      end if
      do i = 1,   3
         j =   4 -i
         x1(j + 1) = x1(j)
      end do
      x1(1) = x
      y = 0.d0
      do i = 1,   2
         j =   4 -i
         a = coef(i)*(x1(i) + ak*x1(j))
         if (i ==   2) a = coef(i)*x1(i)
         y = y + trun(a,ibt)
      end do
      return
      end
      function trun ( x, i)
      double precision trun, x, a, b, d
      if (iabs(i) >= 40) then
         trun = x
      else
         a = dabs (x)
         d = 0.5d0
         if ( i < 0 ) d = 0.d0
         b = 2.d0**iabs (i)
         n = a*b + d
         trun = dble (n)/b
         if ( x < 0.d0 ) trun = -trun
      endif
      return
      end
