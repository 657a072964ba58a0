! Writes the golden cases of shell/edit.h to standard output: each chosen value, and `random` drawn ones (the argument,
! else 24), through every descriptor below. A value is written as its bits, so that reading it cannot change it.
program edit_golden
    use, intrinsic :: iso_fortran_env, only: int64, real64, compiler_version
    implicit none

    type :: descriptor
        character(2) :: kind
        integer :: scale, w, d, e
    end type

    type(descriptor), parameter :: descriptors(*) = [ &
        descriptor('F ', 0, 12, 4, 0), descriptor('F ', 0, 4, 0, 0), descriptor('F ', 0, 5, 2, 0), &
        descriptor('F ', 0, 6, 3, 0), descriptor('F ', 0, 4, 3, 0), descriptor('F ', 0, 9, 0, 0), &
        descriptor('F ', 0, 1, 0, 0), descriptor('F ', 0, 2, 1, 0), descriptor('F ', 0, 30, 20, 0), &
        descriptor('F ', 0, 0, 3, 0), descriptor('F ', 0, 0, 0, 0), descriptor('F ', 1, 9, 3, 0), &
        descriptor('F ', -1, 9, 3, 0), descriptor('F ', 2, 7, 1, 0), &
        descriptor('E ', 0, 15, 7, 0), descriptor('E ', 0, 8, 1, 0), descriptor('E ', 0, 7, 2, 0), &
        descriptor('E ', 0, 3, 1, 0), descriptor('E ', 0, 14, 4, 3), descriptor('E ', 0, 10, 3, 1), &
        descriptor('E ', 0, 30, 22, 0), descriptor('E ', 1, 15, 7, 0), descriptor('E ', 1, 8, 1, 0), &
        descriptor('E ', 1, 7, 2, 0), descriptor('E ', 1, 7, 0, 0), descriptor('E ', 1, 13, 4, 3), &
        descriptor('E ', 2, 13, 4, 0), descriptor('E ', -1, 13, 4, 0), &
        descriptor('D ', 0, 16, 8, 0), descriptor('D ', 0, 8, 3, 0), descriptor('D ', 1, 12, 5, 0), &
        descriptor('D ', 1, 8, 3, 0), &
        descriptor('EN', 0, 15, 6, 0), descriptor('EN', 0, 12, 3, 0), descriptor('EN', 0, 10, 1, 0), &
        descriptor('EN', 0, 8, 0, 0), descriptor('EN', 0, 9, 3, 0), descriptor('EN', 0, 5, 2, 0), &
        descriptor('EN', 0, 26, 17, 0), &
        descriptor('G ', 0, 13, 5, 0), descriptor('G ', 0, 10, 2, 0), descriptor('G ', 0, 9, 4, 0), &
        descriptor('G ', 0, 8, 1, 0), descriptor('G ', 0, 24, 16, 0), descriptor('G ', 1, 13, 5, 0), &
        descriptor('G ', 1, 9, 3, 0), descriptor('G ', 0, 6, 2, 0), descriptor('G ', 0, 5, 1, 0), &
        descriptor('G ', 0, 4, 2, 0), descriptor('G ', 0, 3, 1, 0)]

    ! Magnitudes, taken with the signs + and - by turns: zero, ties, carries, decades, the ends of the range.
    real(real64), parameter :: magnitudes(*) = [ real(real64) :: &
        0d0, 0d0, 0.5d0, 1.5d0, 2.5d0, 3.5d0, 0.125d0, 0.375d0, 2.125d0, 0.0625d0, 0.25d0, 0.75d0, 0.05d0, &
        0.15d0, 0.95d0, 0.095d0, 0.0995d0, 0.099995d0, 0.0999996d0, 0.49999999999999994d0, 0.9996d0, 0.99996d0, &
        1d0, 9.5d0, 9.96d0, 9.9996d0, 9.99999996d0, 10d0, 12.5d0, 99.5d0, 99.96d0, 99.99999995d0, 100d0, &
        999.4d0, 999.5d0, 999.96d0, 999.9995d0, 999.9996d0, 999.9999d0, 999.9999996d0, 1000d0, 9999.5d0, &
        99999.5d0, 99999.4d0, 123456.789d0, 999999.9996d0, 1d9, 0.1d0, 0.01d0, 0.001d0, 0.0009999999996d0, &
        1d-9, 3.14159265358979d0, 1d23, 9.99999999999999d22, 9.9996d98, 9.9996d99, 1d99, 1d100, &
        9.99999996d-100, 1d-99, 1d-100, 2.5d-101, 1.7976931348623157d308, 2.2250738585072014d-308, &
        4.9406564584124654d-324, 1.2345678d-310 ]

    integer(int64), parameter :: integers(*) = [ 0_int64, 1_int64, -1_int64, 9_int64, 10_int64, -99_int64, 100_int64, &
        12345_int64, -12345_int64, 2147483647_int64, huge(0_int64), -huge(0_int64), -huge(0_int64) - 1_int64 ]
    integer, parameter :: integer_fields(2, 9) = &
        reshape([3, 1, 1, 1, 6, 1, 6, 4, 3, 0, 2, 2, 20, 1, 0, 1, 22, 21], [2, 9])
    character(12), parameter :: words(4) = [character(12) :: 'R', 'Kavrel', 'elements', 'capacitances']
    integer, parameter :: word_widths(4) = [1, 4, 8, 14]

    integer(int64) :: state
    integer :: i, j, drawn, random
    character(20) :: argument

    random = 24
    call get_command_argument(1, argument)
    if (len_trim(argument) > 0) read (argument, *) random

    write (*, '(A)') '# Generator: edit_golden.f90, ' // compiler_version() // '. Tolerance: none, the texts are equal.'
    write (*, '(A)') '# Columns: kind, scale factor, w, d (m of I), digits of the exponent (0: not said), value (bits'
    write (*, '(A)') '# of the double; the integer of I; the word of A), and the field between bars.'

    do i = 1, size(words)
        do j = 1, size(word_widths)
            call put_word(trim(words(i)), word_widths(j))
        end do
    end do
    do i = 1, size(integers)
        do j = 1, size(integer_fields, 2)
            call put_integer(integers(i), integer_fields(1, j), integer_fields(2, j))
        end do
    end do
    do i = 1, size(magnitudes)
        call put_real(transfer((-1)**i * magnitudes(i), 0_int64))
    end do
    call put_real(int(z'7FF8000000000000', int64))
    call put_real(ibset(int(z'7FF8000000000000', int64), 63))
    call put_real(int(z'7FF0000000000000', int64))
    call put_real(ibset(int(z'7FF0000000000000', int64), 63))

    state = 88172645463325252_int64
    do drawn = 1, random
        call put_real(draw(drawn))
    end do

contains

    ! By turns: any bits; a short binary fraction (often a tie); seven decimals somewhere in the thirty middle decades.
    integer(int64) function draw(turn) result(bits)
        integer, intent(in) :: turn
        real(real64) :: x
        bits = next()
        select case (mod(turn, 3))
        case (0)
            return
        case (1)
            x = real(shifta(bits, 46), real64) / 2d0**iand(int(shiftr(bits, 8), kind(0)), 15)
        case (2)
            x = real(shifta(bits, 40), real64) * 10d0**(mod(iand(int(bits, kind(0)), 1023), 31) - 22)
        end select
        bits = transfer(x, bits)
    end function

    ! Marsaglia's xorshift, 64 bits.
    integer(int64) function next()
        state = ieor(state, shiftl(state, 13))
        state = ieor(state, shiftr(state, 7))
        state = ieor(state, shiftl(state, 17))
        next = state
    end function

    subroutine put_real(bits)
        integer(int64), intent(in) :: bits
        type(descriptor) :: one
        character(40) :: form
        character(16) :: value
        character(700) :: text
        integer :: k
        write (value, '(Z16.16)') bits
        do k = 1, size(descriptors)
            one = descriptors(k)
            if (one%e > 0) then
                write (form, '("(",I0,"P,",A,I0,".",I0,"E",I0,",""|"")")') &
                    one%scale, trim(one%kind), one%w, one%d, one%e
            else
                write (form, '("(",I0,"P,",A,I0,".",I0,",""|"")")') one%scale, trim(one%kind), one%w, one%d
            end if
            write (text, form) transfer(bits, 0d0)
            call put(one, value, trim(text))
        end do
    end subroutine

    subroutine put_integer(n, w, m)
        integer(int64), intent(in) :: n
        integer, intent(in) :: w, m
        character(40) :: form, value, text
        write (value, '(I0)') n
        write (form, '("(I",I0,".",I0,",""|"")")') w, m
        write (text, form) n
        call put(descriptor('I', 0, w, m, 0), value, trim(text))
    end subroutine

    subroutine put_word(word, w)
        character(*), intent(in) :: word
        integer, intent(in) :: w
        character(40) :: form, text
        write (form, '("(A",I0,",""|"")")') w
        write (text, form) word
        call put(descriptor('A', 0, w, 0, 0), word, trim(text))
    end subroutine

    subroutine put(one, value, text)
        type(descriptor), intent(in) :: one
        character(*), intent(in) :: value, text
        write (*, '(A,4(1X,I0),1X,A," |",A)') trim(one%kind), one%scale, one%w, one%d, one%e, trim(value), text
    end subroutine

end program
