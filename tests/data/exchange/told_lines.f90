! Lines of the classic transfer files by their Fortran formats. The numbers are those of the circuit of the test, read
! off its list of branches by hand.
!     gfortran told_lines.f90 -o told_lines && ./told_lines > told_lines.txt
program told_lines
  implicit none
  double precision, parameter :: u = 1.d-6, n = 1.d-9
  print '(a)', '# gfortran 12.2, told_lines.f90; compared to the byte: texts, and numbers that round alike everywhere'
  print '(a)', '=== Scompact'
  write (*, '(3a,19a4)') '*  ', 'Every branch kind', repeat(' ', 76 - 17)
  write (*, '("   slc   1   l= ",1p,e14.7,2x,"c= ",e14.7)') 1.7d0*u, 1.8d0*n
  write (*, '(3x,a4,"  1   ",a3,1p,e14.7)') 'cap ', 'c=', 1.0d0*n
  write (*, '(" z",i1,": 1por 1")') 1
  write (*, '(3x,a4,2i4,3x,a3,1p,e14.7,3x,a10)') 'ind ', 2, 3, 'l=', 1.4d0*u, '*  l01    '
  write (*, '(3x,"slc ",2(2x,i2),3x,"l=",1p,e15.7,2x,"c=",e15.7)') 5, 0, 1.1d0*u, 1.2d0*n
  write (*, '(3x,"plc ",2(2x,i2),3x,"l=",1p,e15.7,2x,"c=",e15.7)') 4, 5, 1.8d0*u, 1.0d0*n
  write (*, '(a3,a4,2i4,3x,a3,1p,e14.7)') '', 'ind ', 5, 6, 'l=', 1.3d0*u
  write (*, '(3x,a4,2(2x,i2),3x,a3,1p,e14.7)') 'cap ', 33, 0, 'c=', 1.6d0*n
  write (*, '(3x,"trf  ",i2,2x,i2,"   0  ",i2,"   n=1.0")') 21, 22, 23
  write (*, '(3x,"z",i1,3x,i2,2x,i2)') 2, 23, 24
  write (*, '(" a: 2por",2(1x,i3))') 1, 66
  write (*, '(5x,"step ",1p,3e16.7)') 0.d0, 2.d6, 1.d4
  write (*, '(4x,"pri a r1 = ",1p,e14.7," r2 = ",e14.7," s")') 110.d0, 140.d0
  print '(a)', '=== Scompact, half-lattices'
  write (*, '(3x,a4,2(2x,i2),"  0  0  n=-1.0")') 'trf ', 23, 24
  print '(a)', '=== Touchstone'
  write (*, '("   slc   1   2   l=",1p,e15.7,2x,"c=",e15.7)') 1.7d0*u, 1.8d0*n
  write (*, '(3x,a4,"  1   2   ",a3,1p,e14.7)') 'ind ', 'l=', 1.0d0*u
  write (*, '(" def2p   1   2   z",i1)') 4
  write (*, '(3x,"z",i1,"   3   2")') 4
  write (*, '(" def4p   1   2   3   4   sec",i1)') 2
  write (*, '(3x,"xfer",2(2x,i2),"   0  ",i2,"   n=1.0")') 31, 29, 30
  write (*, '(3x,"sec",i1,4(2x,i2))') 2, 27, 29, 28, 30
  write (*, '(" def2p ",2(1x,i3),3x,"a")') 1, 66
  write (*, '(5x,"sweep ",1p,3e16.7)') 0.d0, 2.d6, 1.d4
  print '(a)', '=== Touchstone, microwave'
  write (*, '(" el",a3,f8.2)') '=', 90.d0
  write (*, '(" f1",a3,1p,e14.7)') '=', 1.5d9
  print '(a)', '=== Touchstone, variables'
  write (*, '(3x,a4,2i4,3x,a3,1p,e14.7,2x,1x,a10)') 'ind ', 1, 2, 'l=', 1.d-5, '! l01     '
  print '(a)', '=== Spice'
  write (*, '(" vin  ",i3,"   0   ac   2.0")') 1
  write (*, '(" r01 ",2(1x,i3),2x,1p,e14.6)') 1, 2, 110.d0
  write (*, '(1x,a4,2i4,2x,1p,e14.6)') 'l04 ', 3, 4, 1.4d0*u
  write (*, '(" .ac lin ",i2,2x,2(2x,1p,e14.6))') 99, 0.d0, 2.d6
  write (*, '(" .print ac vdb(",i2,",",i2,") vp(",i2,",",i2,")")') 74, 0, 74, 0
  print '(a)', '=== Spice, driven by a voltage'
  write (*, '(" .print ac idb(",i2,",",i2,") ip(",i2,",",i2,")")') 3, 0, 3, 0
  print '(a)', '=== SStar'
  write (*, '(" ind ",2i4," l=",g12.6,14x," ''l",i2.2)') 2, 3, 1.4d0*u, 1
  write (*, '(" cap ",2i4," c=",g12.6,14x," ''c",i2.2)') 3, 4, 1.6d0*n, 1
  write (*, '(" slc ",2i4," l=",g12.6," c=",g11.6," ''lc",i2.2)') 5, 0, 1.1d0*u, 1.2d0*n, 2
  write (*, '(" plc ",2i4," l=",g12.6," c=",g11.6," ''lc",i2.2)') 4, 5, 1.8d0*u, 1.0d0*n, 1
  write (*, '(" sfc ",2i4," f=",g11.6," c=",g11.6," ''lc",i2.2)') &
      21, 22, 1/(8*atan(1.d0)*sqrt(1.7d0*u*1.8d0*n)), 1.8d0*n, 3
  write (*, '(" res ",2i4," r=",g11.6,14x," ''r",i2.2)') 1, 2, 120.d0, 1
  write (*, '(" mui ",4i4," l1=",g11.6," l2=",g11.6," k=",f5.4," ''tr",i2.2)') &
      55, 0, 57, 0, 0.8d0*u, 2.5d0*u, 1/sqrt(0.8d0*2.5d0), 3
  write (*, '(" trf ",4i4," o=im p=",f4.1," s=",f4.1," ''tr",i2.2)') 22, 23, 24, 0, 1.d0, 1.d0, 1
  write (*, '(" def2p",2i4," filter")') 1, 62
  write (*, '(" swp ",g12.6,2x,g12.6,2x,i3)') 0.d0, 2.d6, 201
  write (*, '(" filter(",g12.6,",",g12.6,")")') 0.d0, 2.d6
  print '(a)', '=== PCFilt'
  write (*, '(g15.9,1x,a1,i3)') 1.4d0*u, 'L', 17
  write (*, '(g15.9,1x,a1,i3)') -0.2d0*u, 'L', 8
  write (*, '(g15.9,1x,a1,i3)') 120.d0, 'R', 1
  write (*, '("  Branch",i3," not implemented")') 24
end program told_lines
