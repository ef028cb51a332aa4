! Prints or edits the header of a SAC file:
!
!   edit_header FILE                              prints every field that is defined
!   edit_header FILE OUTPUT FIELD VALUE ...       writes OUTPUT, the file with these fields changed
!
! The fields are the real and integer fields that the SAC routines know by name; NPTS cannot be
! changed. The file must be in the byte order of this machine.
program edit_header
  use, intrinsic :: iso_fortran_env, only: error_unit, int64
  implicit none
  character(len=6), parameter :: reals(40) = [character(len=6) :: 'B', 'E', 'DELTA', 'DEPMIN', &
      'DEPMEN', 'DEPMAX', 'EVLA', 'EVLO', 'EVDP', 'STLA', 'STLO', 'STEL', 'CMPAZ', 'CMPINC', &
      'DIST', 'GCARC', 'AZ', 'BAZ', 'O', 'A', 'T0', 'T1', 'T2', 'T3', 'T4', 'T5', 'T6', 'T7', &
      'T8', 'T9', 'USER0', 'USER1', 'USER2', 'USER3', 'USER4', 'USER5', 'USER6', 'USER7', &
      'USER8', 'USER9']
  character(len=6), parameter :: integers(8) = [character(len=6) :: 'NZYEAR', 'NZJDAY', &
      'NZHOUR', 'NZMIN', 'NZSEC', 'NZMSEC', 'NVHDR', 'NPTS']
  real, parameter :: undefined = -12345.0
  character(len=511) :: input, output, field, text
  real, allocatable, save :: samples(:)
  real :: b, delta, value
  integer :: n, i, number, error, status
  integer(int64) :: bytes
  external :: rsac1, wsac0, getfhv, setfhv, getnhv, setnhv, getkhv

  if (command_argument_count() == 0 .or. command_argument_count() == 2 .or. &
      (command_argument_count() > 2 .and. mod(command_argument_count(), 2) /= 0)) &
    call fail('edit_header FILE [OUTPUT FIELD VALUE ...]')
  call get_command_argument(1, input)

  ! The first call reads the header to get the number of samples, the second reads the samples.
  allocate (samples(1))
  call rsac1(input, samples, n, b, delta, 1, error)
  if (error /= 0) call fail(trim(input)//': cannot be read')
  call getnhv('NPTS', n, error)
  inquire (file=input, size=bytes)
  if (n < 1 .or. bytes /= 632 + 4_int64 * n) call fail(trim(input)//': not a SAC file in this byte order')
  deallocate (samples)
  allocate (samples(n), stat=status)
  if (status /= 0) call fail(trim(input)//': too large')
  call rsac1(input, samples, n, b, delta, n, error)
  if (error /= 0) call fail(trim(input)//': cannot be read')

  if (command_argument_count() == 1) then
    call show
    stop
  end if
  do i = 3, command_argument_count(), 2
    call get_command_argument(i, field)
    call get_command_argument(i + 1, text)
    if (any(reals == field)) then
      read (text, *, iostat=status) value
      if (status == 0) call setfhv(trim(field), value, error)
    else if (any(integers(:7) == field)) then
      read (text, *, iostat=status) number
      if (status == 0) call setnhv(trim(field), number, error)
    else
      call fail(trim(field)//': not a field that can be changed')
    end if
    if (status /= 0) call fail(trim(text)//': not a value for '//trim(field))
  end do
  call get_command_argument(2, output)
  call wsac0(output, samples, samples, error)
  if (error /= 0) call fail(trim(output)//': cannot be written')

contains

  subroutine show
    character(len=8) :: station, component
    call getkhv('KSTNM', station, error)
    call getkhv('KCMPNM', component, error)
    print '(a,1x,a)', shown(station), shown(component)
    do i = 1, size(integers)
      call getnhv(trim(integers(i)), number, error)
      if (number /= int(undefined)) print '(a,i14)', integers(i), number
    end do
    do i = 1, size(reals)
      call getfhv(trim(reals(i)), value, error)
      if (value /= undefined) print '(a,g14.6)', reals(i), value
    end do
  end subroutine

  ! A text field without padding blanks or NULs.
  function shown(text)
    character(len=*), intent(in) :: text
    character(len=:), allocatable :: shown
    shown = trim(text(:index(text//char(0), char(0)) - 1))
  end function

  subroutine fail(message)
    character(len=*), intent(in) :: message
    write (error_unit, '(a)') message
    stop 1, quiet=.true.
  end subroutine
end program
