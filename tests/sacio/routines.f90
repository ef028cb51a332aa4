! Reads, edits and writes files by the usual calls, with file names padded by blanks as Fortran
! keeps them: even.sac of the working directory becomes edited, begun, again and xy.sac.
program routines
  implicit none
  integer, parameter :: most = 10
  real :: y(most), x(most), other(most), b, delta, value
  integer :: n, year, error, fslen
  character(len=80) :: path
  character(len=8) :: station
  external :: rsac1, rsac2, wsac0, wsac1, wsac2, newhdr, inihdr, getfhv, setfhv, getnhv, setnhv
  external :: getkhv, setkhv, setihv, setlhv, fslen, fclearstring

  path = 'even.sac'
  call rsac1(path, y, n, b, delta, most, error)
  call require(error == 0, 'rsac1 reads')
  call getfhv('delta', value, error)
  call getnhv('NZYEAR', year, error)
  call getkhv('KSTNM', station, error)
  print '(a,i2,3f5.2,i5,1x,a,i2)', 'read', n, b, delta, value, year, trim(station), fslen(path)
  call getfhv('DELTA   ', value, error)
  call require(value == -12345.0, 'a padded name has no field')

  y(1:n) = 2 * y(1:n)
  x(1:n) = y(1:n) - 1
  call setfhv('USER3', 2.5, error)
  call setnhv('nzyear', year + 1, error)
  call setlhv('LEVEN', .false., error)
  call setkhv('KSTNM', 'OTHER', error)
  path = 'edited.sac'
  call wsac0(path, x, y, error)
  call require(error == 0, 'wsac0 writes what was read')

  call inihdr
  call newhdr
  call setnhv('NPTS', n, error)
  call setfhv('B', -1.0, error)
  call setfhv('DELTA', 0.25, error)
  call setihv('IFTYPE', 'ITIME', error)
  call wsac0('begun.sac', x, y, error)
  call wsac1('again.sac', y, n, b, delta, error)
  call wsac2('xy.sac', y, n, x, error)
  call rsac2('xy.sac', other, n, y, most, error)
  call require(error == 0 .and. all(y(1:n) == other(1:n) - 1), 'rsac2 reads what wsac2 wrote')
  call rsac1('missing.sac', y, n, b, delta, most, error)
  call require(error == -1 .and. n == 3, 'a missing file is an error')
  call fclearstring(station(1:7))
  call require(station == '       '//char(0), 'fclearstring clears')
contains
  subroutine require(good, what)
    logical, intent(in) :: good
    character(len=*), intent(in) :: what
    if (.not. good) error stop what
  end subroutine
end program
