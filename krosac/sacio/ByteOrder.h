// The byte order of whole SAC file images.
#ifndef KROSAC_SACIO_BYTEORDER_H
#define KROSAC_SACIO_BYTEORDER_H

#include "krosac/platform/ByteBuffer.h"
#include "krosac/platform/Export.h"

namespace krosac {

// Brings an image that was read from a file of the other byte order to this machine's: reverses the
// bytes of each of the 110 numeric header words, then those of the NPTS samples of the first data
// block; NPTS is read after the header was reversed. Texts and a second x-y block stay as they are.
// Returns 1 on success. Returns 0 for fewer than 632 bytes, with nothing changed, and for an NPTS
// that is negative or more than the buffer holds, with the header already reversed.
KROSAC_API int swapSACBytes(ByteBuffer& data);

// Brings an image in this machine's byte order to the other one, before it is written: as
// swapSACBytes, but NPTS is read before the header is reversed. So the two undo each other.
// Returns 1 on success, also where the buffer ends before NPTS samples (the whole words in it are
// reversed). Returns 0 for fewer than 632 bytes, with nothing changed, and for a negative NPTS,
// with the header already reversed.
KROSAC_API int reverseSACBytes(ByteBuffer& data);

}  // namespace krosac

#endif
