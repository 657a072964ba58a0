! Generator of seven_records.qfd, an IIR filter as another program would write it: unformatted sequential records, none
! of a design. Made with gfortran 12.2:
!   gfortran seven_records.f90 -o /tmp/seven && /tmp/seven
! Tolerance: compared to the last bit.
!
! A high-pass of degree 3 at 48 kHz: numerators 1 - 2 z^-1 + z^-2, 1 - z^-1, denominators 1 - 1.5 z^-1 + 0.75 z^-2,
! 1 - z^-1/3, front-end multiplier 0.4; truncated to words of 2^-14, with parallel form, lattice and chains.
program seven_records
  implicit none
  double precision, dimension(51) :: zr = 0, zi = 0, qr = 0, pr = 0, znum = 0, zden = 0, gmmul = 0, gmtap = 0
  double precision, dimension(51) :: ur = 0, ui = 0
  double precision, dimension(25) :: c1n = 0, c2n = 0, c1d = 0, c2d = 0, sc = 1
  double precision, dimension(26) :: al = 0, be = 0, ga = 0, de = 0
  double precision, dimension(13) :: ta1 = 0, ta2 = 0, tb1 = 0, tb2 = 0
  double precision :: prototype(225), design(26)
  integer :: larr(50) = 0
  character(len=80) :: title = 'A filter from elsewhere'
  character(len=20) :: text = 'highpass'

  zr(1:3) = 1
  qr(1:3) = (/ 0.75d0, 0.75d0, 1d0/3d0 /)
  pr(1:2) = (/ sqrt(3d0/16d0), -sqrt(3d0/16d0) /)
  c1n(1:2) = (/ -2d0, -1d0 /)
  c2n(1) = 1
  c1d(1:2) = (/ -1.5d0, -1d0/3d0 /)
  c2d(1) = 0.75d0
  al(1:2) = (/ 0.25d0, 0.125d0 /)
  ga(1:2) = c1d(1:2)
  de(1) = 0.75d0
  gmmul(1:3) = (/ -0.5d0, 0.25d0, -0.25d0 /)
  gmtap(1:4) = (/ 0.1d0, 0.2d0, 0.3d0, -0.4d0 /)
  larr(1:3) = (/ 1, 1, 2 /)
  ta1(1) = -1.5d0
  ta2(1) = 0.75d0
  tb1(1) = -1d0/3d0
  prototype = -9d99  ! what they are is known to the other program alone
  design = 9d99

  open (10, file='seven_records.qfd', form='unformatted', status='replace')
  write (10) 1/48d3, title
  write (10) zr, zi, 0.4d0, qr, pr, 1d0, 3, 3
  write (10) sc, 5d3, 0d0, 2d0**(-14), 0
  write (10) c1d, c2d, c1n, c2n, 0.4d0, text, 4, 2, 0, 1, 2, 2
  write (10) prototype, design, znum, zden, gmmul, gmtap, ur, ui
  write (10) al, be, ga, de, -0.5d0, 0, 0, 3, 4, 0, 0, 2
  write (10) larr, 1, ta1, ta2, tb1, tb2, 1, 1, 7
end program seven_records
