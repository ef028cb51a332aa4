! Writes, reads and edits a file in the working directory by the usual calls, with its name padded by
! blanks as Fortran keeps it.
program routines
  implicit none
  integer, parameter :: most = 10
  real :: y(3) = [2, -4, 6], x(3) = [1, -5, 5], first(most), second(most), b, delta, e
  integer :: n, year, error, fslen
  character(len=80) :: path = 'routines.sac'
  character(len=8) :: station = 'OTHER'
  external :: rsac1, rsac2, wsac0, wsac1, wsac2, newhdr, inihdr, getfhv, setfhv, getnhv, setnhv
  external :: getkhv, setkhv, setihv, setlhv, fslen, fclearstring

  call inihdr
  call newhdr
  call setfhv('B', -1.0, error)
  call setfhv('delta', 0.25, error)
  call setnhv('NPTS', 3, error)
  call setnhv('nzyear', 2011, error)
  call setihv('IFTYPE', 'ITIME', error)
  call setlhv('LEVEN', .false., error)
  call setkhv('KSTNM', station, error)
  call wsac0(path, x, y, error)
  call rsac1(path, first, n, b, delta, most, error)
  if (error /= 0 .or. b /= -1 .or. delta /= 0.25 .or. any(first(1:n) /= y)) error stop 'wsac0'
  call getfhv('E', e, error)
  call getnhv('NZYEAR', year, error)
  call getkhv('KSTNM', station, error)
  if (e /= -0.5 .or. year /= 2011 .or. station /= '-12345') error stop 'fields'

  call wsac1(path, x, n, 2.0, 0.5, error)
  call rsac1(path, first, n, b, delta, most, error)
  if (b /= 2 .or. delta /= 0.5 .or. any(first(1:n) /= x)) error stop 'wsac1'
  call wsac2(path, y, n, x, error)
  call rsac2(path, first, n, second, most, error)
  if (any(first(1:n) /= y) .or. any(second(1:n) /= x)) error stop 'wsac2'
  call rsac1('missing.sac', first, n, b, delta, most, error)
  if (error /= -1 .or. fslen(path) /= 12) error stop 'failure'
  call fclearstring(station(1:7))
  if (station /= '       '//char(0)) error stop 'fclearstring'
end program
