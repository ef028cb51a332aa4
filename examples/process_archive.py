#!/usr/bin/env python3
"""Processes a folder of recordings from Python: process_archive.py FOLDER OUTPUT [PROCESSES]

Each file is band-passed, decimated by 2 and saved under its own name in the folder OUTPUT. One line
per file is printed, sorted by name: samples, maximum amplitude, its time and the region of the
event, or the error. Only Python itself is needed: ctypes calls the library's C functions, and each
worker is a separate process. `process(path, output)` also works with Dask or Spark.

The library is $KROSAC_LIBRARY, or that of a build beside this file, or the installed one.
"""
import ctypes as c
import functools
import multiprocessing
import os
import pathlib
import sys

LOW, HIGH, POLES, TWO_PASSES = 0.02, 1.0, 4, 2  # Hz, Hz


class Header(c.Structure):
    """The 632 bytes of a SAC header, with names for the fields used here."""

    _fields_ = [(name, c.c_float) for name in "DELTA DEPMIN DEPMAX SCALE ODELTA B".split()] + [
        ("floats6to34", c.c_float * 29), ("EVLA", c.c_float), ("EVLO", c.c_float),
        ("floats37to55", c.c_float * 19), ("DEPMEN", c.c_float), ("floats57to69", c.c_float * 13),
        ("integers0to8", c.c_int32 * 9), ("NPTS", c.c_int32), ("integers10to39", c.c_int32 * 30),
        ("texts", c.c_char * 192)]


@functools.cache
def library():
    """Loads the library once per process and declares the argument types."""
    built = pathlib.Path(__file__).resolve().parent.parent / "build/lib/libkrosac.so"
    found = os.environ.get("KROSAC_LIBRARY") or (built if built.exists() else "libkrosac.so.1")
    lib = c.CDLL(str(found))
    samples, status = c.POINTER(c.c_float), c.POINTER(c.c_int32)
    lib.ReadSACHeader.argtypes = [c.c_char_p, c.POINTER(Header), status]
    lib.ReadSACfile.argtypes = [c.c_char_p, samples, c.POINTER(Header), c.c_int32, status]
    lib.WriteSACfile.argtypes = [c.c_char_p, samples, status, Header]
    for name in ("GRLPBUfilter", "GRHPBUfilter"):
        getattr(lib, name).argtypes = [samples, c.c_int, c.c_int, c.c_int, c.c_float, c.c_float]
    lib.decimateSignal.argtypes = [c.c_int32, c.c_int32, samples, samples, status]
    lib.fe_lookup.argtypes = [c.c_float, c.c_float, status, status]
    lib.fe_region.argtypes = [status, c.POINTER(c.c_char_p), status, c.POINTER(c.c_char_p)]
    for name in ("ReadSACHeader", "ReadSACfile", "WriteSACfile", "GRLPBUfilter", "GRHPBUfilter"):
        getattr(lib, name).restype = None
    return lib


def read(path):
    """Returns the header and the samples of a file in the byte order of this machine."""
    header, status = Header(), c.c_int32()
    library().ReadSACHeader(os.fsencode(path), header, status)
    if status.value or header.NPTS < 2 or os.path.getsize(path) != 632 + 4 * header.NPTS:
        raise OSError(f"{path}: not a SAC file in this byte order")
    samples = (c.c_float * header.NPTS)()
    library().ReadSACfile(os.fsencode(path), samples, header, header.NPTS, status)
    if status.value:
        raise OSError(f"{path}: cannot be read")
    return header, samples


def write(path, header, samples):
    """Saves atomically: a reader sees either the old file or the complete new one."""
    status, unfinished = c.c_int32(), f"{path}.{os.getpid()}.unfinished"
    library().WriteSACfile(os.fsencode(unfinished), samples, status, header)
    if status.value:
        raise OSError(f"{path}: cannot be written")
    os.replace(unfinished, path)


def region(latitude, longitude):
    """Returns the Flinn-Engdahl geographic region."""
    number, seismic, name, ignored = c.c_int32(), c.c_int32(), c.c_char_p(), c.c_char_p()
    library().fe_lookup(latitude, longitude, number, seismic)
    library().fe_region(number, name, seismic, ignored)
    return name.value.decode()


def process(path, output):
    """Processes one file into the folder and returns its line, or the error as the line."""
    try:
        header, samples = read(path)
        delta, lib = header.DELTA, library()
        mean = sum(samples) / len(samples)
        samples[:] = [x - mean for x in samples]
        lib.GRHPBUfilter(samples, len(samples), TWO_PASSES, POLES, delta, LOW)
        lib.GRLPBUfilter(samples, len(samples), TWO_PASSES, POLES, delta, HIGH)
        fewer, count = (c.c_float * (len(samples) // 2))(), c.c_int32()
        lib.decimateSignal(2, len(samples), samples, fewer, count)
        header.NPTS, header.DELTA = count.value, 2 * delta
        header.DEPMIN, header.DEPMAX = min(fewer), max(fewer)
        header.DEPMEN = sum(fewer) / count.value
        write(os.path.join(output, os.path.basename(path)), header, fewer)
        strongest = max(range(count.value), key=lambda i: abs(fewer[i]))
        time = header.B + strongest * header.DELTA
        place = region(header.EVLA, header.EVLO)
        return f"{os.path.basename(path)} {count.value} {fewer[strongest]:.6g} {time:.2f} {place}"
    except OSError as error:
        return f"failed: {error}"


def main(folder, output, processes="0"):
    os.makedirs(output, exist_ok=True)
    paths = sorted(entry.path for entry in os.scandir(folder) if entry.is_file())
    work = functools.partial(process, output=output)
    with multiprocessing.get_context("spawn").Pool(int(processes) or None) as pool:
        lines = pool.map(work, paths)
    print("\n".join(lines))
    return 1 if any(line.startswith("failed") for line in lines) else 0


if __name__ == "__main__":
    if len(sys.argv) not in (3, 4) or os.path.realpath(sys.argv[1]) == os.path.realpath(sys.argv[2]):
        sys.exit("process_archive.py FOLDER OUTPUT [PROCESSES]")
    sys.exit(main(*sys.argv[1:]))
