program consumer
  use, intrinsic :: iso_c_binding
  implicit none
  interface
    subroutine read_table(prefix, phase, table, rows) bind(c, name='ReadTTTablePhase')
      import
      character(kind=c_char), intent(in) :: prefix(*), phase(*)
      real(c_float), intent(inout) :: table(18, 360)
      integer(c_int32_t), intent(inout) :: rows
    end subroutine
    subroutine look_up(phase, table, rows, time, slowness, gcarc, depth) bind(c, name='GetTTTimeSlowness')
      import
      character(kind=c_char), intent(in) :: phase(*)
      real(c_float), intent(in) :: table(18, 360)
      integer(c_int32_t), value :: rows
      real(c_float), intent(out) :: time, slowness
      real(c_float), value :: gcarc, depth
    end subroutine
  end interface
  real :: y(100), begin, delta, table(18, 360) = 0, time, slowness
  integer :: n, error, i, rows = 0

  y = [(sin(0.1 * i), i = 1, 100)]
  call wsac1('fortran.sac', y, 100, -5.0, 0.5, error)
  y = 0
  call rsac1('fortran.sac', y, n, begin, delta, 100, error)
  call getfhv('E', time, error)
  print '(a,i4,a,f5.1,a,f5.1,a)', 'read', n, ' samples from', begin, ' to', time, ' s'
  if (n /= 100 .or. begin /= -5 .or. time /= 44.5 .or. y(100) /= sin(10.0)) error stop 'wrong samples'

  call read_table('iasp91_' // c_null_char, 'p' // c_null_char, table, rows)
  call look_up('p' // c_null_char, table, rows, time, slowness, 60.0, 0.0)
  print '(a,f6.1,a)', 'P after', time, ' s'
  if (time < 605 .or. time > 610) error stop 'wrong travel time'
end program
