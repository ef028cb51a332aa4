import ctypes
import sys
from ctypes import byref, c_char_p, c_float, c_int, c_int32

krosac = ctypes.CDLL(sys.argv[1] if len(sys.argv) > 1 else "libkrosac.so.1")
krosac.krosacVersion.restype = c_char_p
krosac.fe_lookup.argtypes = [c_float, c_float, ctypes.POINTER(c_int32), ctypes.POINTER(c_int32)]
krosac.GetTTTimeSlowness.argtypes = [
    c_char_p, ctypes.POINTER(c_float), c_int32, ctypes.POINTER(c_float), ctypes.POINTER(c_float), c_float, c_float]

# A travel time from a table of the library.
table, rows, time, slowness = (c_float * (360 * 18))(), c_int32(), c_float(), c_float()
krosac.ReadTTTablePhase(b"iasp91_", b"p", table, byref(rows))
krosac.GetTTTimeSlowness(b"p", table, rows, byref(time), byref(slowness), 60.0, 0.0)

# The name of a region.
geographic, seismic, name, seismic_name = c_int32(), c_int32(0), c_char_p(), c_char_p()
krosac.fe_lookup(38.3, 142.4, byref(geographic), byref(seismic))
krosac.fe_region(byref(geographic), byref(name), byref(seismic), byref(seismic_name))
print(f"krosac {krosac.krosacVersion().decode()}: P after {time.value:.1f} s; {name.value.decode()}")
assert 605 < time.value < 610 and name.value == b"Near east coast of eastern Honshu"

# A file by the routines: every argument by address, the lengths of texts as integers behind all others.
samples, path = (c_float * 100)(*range(100)), b"python.sac"
n, begin, delta, error = c_int32(100), c_float(-5.0), c_float(0.5), c_int32()
krosac.wsac1_(path, samples, byref(n), byref(begin), byref(delta), byref(error), c_int(len(path)))
assert error.value == 0
copy, room = (c_float * 100)(), c_int32(100)
krosac.rsac1_(path, copy, byref(n), byref(begin), byref(delta), byref(room), byref(error), c_int(len(path)))
assert error.value == 0 and list(copy) == list(range(100)) and begin.value == -5.0
