! Generator of told_records.qfp and told_lines.trf, a circuit as another program would write it: unformatted sequential
! records and lines of fixed format. Made with gfortran 12.2:
!   gfortran told_records.f90 -o /tmp/told && /tmp/told
! Tolerance: the records are compared to the last bit, the lines to half a unit of the eighth digit (5e-8).
!
! R 75 in branch 1, C in shunt branch 3, L in series branch 4, a quadruplet of slot 2 in branch 6, R 50 in branch 9.
! Matrix entries of slot k are 100 k + 10 i + j (inverse inductances) and their thousandth (capacitances), couplings
! between neighbours being inductive.
program told_records
  implicit none
  double precision :: value(150) = 0, xk(4,4,8) = 0, xc(4,4,8) = 0, yk(4,8) = 0, yc(4,8) = 0, fres(2,8) = 0
  double precision :: band(13) = 0, modes(2,50) = 0
  integer :: indx1(100) = 0, m(4,4,8) = 0, counts(16) = 0
  integer :: i, j, k, slots = 2
  character(len=80) :: title = 'A circuit from elsewhere'

  value(1:4) = (/ 75d0, 1d0/3d0, 2d0/7d0, 50d0 /)
  indx1(1) = word(0, 1, 0, 0, 3)
  indx1(3) = word(2, 2, 0, 1, 4)
  indx1(4) = word(1, 3, 0, 3, 6)
  indx1(6) = word(25, 2, 0, 4, 9)
  indx1(9) = word(0, 4, 0, 6, 0)
  do k = 1, slots
    do j = 2, 4
      do i = 1, j - 1
        m(i, j, k) = merge(1, 0, j == i + 1)
        if (m(i, j, k) == 1) then
          xk(i, j, k) = 100*k + 10*i + j
        else
          xc(i, j, k) = (100*k + 10*i + j)/1000d0
        end if
      end do
    end do
    yk(2:3, k) = (/ 2d0, 3d0 /)*k
    yc(2:3, k) = (/ 2d0, 3d0 /)/k
    fres(:, k) = (/ 0.1d0, 0.2d0 /)*k
  end do

  open (10, file='told_records.qfp', form='unformatted', status='replace')
  write (10) value
  write (10) indx1
  write (10) xk, xc, yk, yc, fres
  write (10) m, slots
  write (10) 9
  write (10) 4
  write (10) 2
  write (10) 3d9
  close (10)

  counts(1:4) = (/ 9, 4, 2, 2 /)
  band(1:6) = (/ 75d0, 50d0, 1d8, 2d9, 2d9, 3d9 /)
  modes(:, 1) = (/ -0.5d0, 1d-120 /)
  modes(:, 2) = (/ -0.5d0, -1d-120 /)
  open (10, file='told_lines.trf', status='replace')
  write (10, '(20a4)') (title(i:i+3), i = 1, 77, 4)
  write (10, '(16i6)') counts
  write (10, '(43i6)') m, slots
  write (10, '(8d16.8)') xk, xc, yk, yc, fres
  write (10, '(10i10)') indx1
  write (10, '(10d16.8)') value
  write (10, '(13d16.8)') band
  write (10, '(5(d16.8,d16.8))') modes
  write (10, '(17a4)') (title(i:i+3), i = 1, 65, 4)
  close (10)

contains

  integer function word(id, i1, in, kp, kn)
    integer, intent(in) :: id, i1, in, kp, kn
    word = id + 51*(i1 + 151*(in + 11*(kp + 101*kn)))
  end function

end program
