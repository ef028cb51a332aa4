// Byte order of SAC file images.
#ifndef KROSAC_SACIO_BYTEORDER_H
#define KROSAC_SACIO_BYTEORDER_H

#include "krosac/platform/ByteBuffer.h"
#include "krosac/platform/Export.h"

namespace krosac {

// Converts an image that was read from a file of the other byte order to this machine's order.
// Reverses the bytes of each of the 110 numeric header words, reads NPTS from the reversed header,
// then reverses the NPTS samples of the first data block. Texts and a second x-y block are left as
// they are. Returns 1 on success. Returns 0 for fewer than 632 bytes, with nothing changed, and for
// an NPTS that is negative or exceeds the buffer, with the header already reversed. lastReason()
// then says why.
KROSAC_API int swapSACBytes(ByteBuffer& data);

// Converts an image in this machine's byte order to the other order before it is written. Reads
// NPTS before it reverses the header and is otherwise the same as swapSACBytes, so each undoes the
// other. Returns 1 on success, also if the buffer holds fewer than NPTS samples, all of which are
// then reversed. Returns 0 for fewer than 632 bytes, with nothing changed, and for a negative NPTS,
// with the header already reversed. lastReason() then says why.
KROSAC_API int reverseSACBytes(ByteBuffer& data);

}  // namespace krosac

#endif
