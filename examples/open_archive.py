"""Prints what a keyed archive holds, with no part of the library: open_archive.py FILE...

Needs cbor2 (python3-cbor2). The samples of a seismogram become an array by the standard library alone; with NumPy it is
numpy.frombuffer(image, "<f4", offset=632).
"""
import array
import sys
import zlib

import cbor2

HEADER_BYTES = 632


def samples_of(image):
    """The samples behind the header of a SAC image in this machine's byte order."""
    return array.array("f", image[HEADER_BYTES:])


def describe(value, indent, seen):
    """One line a field; an object that came before is named, not printed again."""
    if isinstance(value, bytes):
        if len(value) >= HEADER_BYTES:
            samples = samples_of(value)
            return f"{len(samples)} samples from {min(samples, default=0):g} to {max(samples, default=0):g}"
        return f"{len(value)} bytes"
    if isinstance(value, list):
        return "".join(f"\n{indent}- {describe(item, indent + '  ', seen)}" for item in value) or "none"
    if not isinstance(value, dict):
        return f"{value:.9g}" if isinstance(value, float) else str(value)
    if id(value) in seen:
        return f"{value['@class']} as above"
    seen.add(id(value))
    fields = (f"\n{indent}  {name}: {describe(item, indent + '  ', seen)}" for name, item in value.items() if name != "@class")
    return value["@class"] + "".join(fields)


for path in sys.argv[1:]:
    with open(path, "rb") as file:
        stored = file.read()
    name, version, root, checksum = cbor2.loads(stored)
    if (name, version) != ("krosac", 1) or checksum != zlib.crc32(stored[:-5]):
        sys.exit(f"{path}: no archive of this version, or a damaged one")
    print(f"{path}: {describe(root, '', set())}")
