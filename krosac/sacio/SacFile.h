// Plain functions that test, read and write SAC files by path.
//
// Headers and samples lie in the caller's own buffers; nothing is allocated, kept or byte-swapped.
// Unless a function says otherwise its last word is `status`: 0 for success, -1 for any failure,
// also of closing the file. A null path, header or sample array, or a negative count, is a failure,
// and so is reading what is no regular file (a pipe would block, a device could have no end); a
// null status or output is passed over. A failed read may have filled part of its arrays, a
// failed write may leave part of a file. Bad arguments of the writers are refused before the file
// is touched.
#ifndef KROSAC_SACIO_SACFILE_H
#define KROSAC_SACIO_SACFILE_H

#include <stdint.h>

#include "krosac/platform/Export.h"
#include "krosac/sacio/SacHeader.h"

KROSAC_C_BEGIN

// 1 if the file looks like an evenly sampled SAC file in this machine's byte order, else -1: DELTA
// above 0 (not NaN), NPTS at least 1, NVHDR not negative, and a length from 632 to
// 632 + 4 * NPTS bytes. A truncated file passes and one with trailing bytes, such as an x-y file,
// fails; both are intended.
KROSAC_API int32_t IsSacFile(const char* path);

// Makes a new header: kSacHeaderTemplate with NVHDR = 6, NEVID = 0, LPSPOL = 0, LCALDA = 1 and
// UNUSED18 = 0. Does nothing for a null header.
KROSAC_API void NewSacHeader(SacHeader* header);

// Reads the first 632 bytes of a file, whatever they are. The words keep the file's byte order.
KROSAC_API void ReadSACHeader(const char* path, SacHeader* header, int32_t* status);

// Reads the header and the first data block, at most `max` samples. Where the file has more, NPTS
// in the caller's header becomes `max`, so that it says what was read. The samples are read as one
// item: fewer than NPTS in the file are a failure, and so are none (NPTS = 0), although the header
// then was read.
KROSAC_API void ReadSACfile(const char* path, float* samples, SacHeader* header, int32_t max,
                            int32_t* status);

// As ReadSACfile, with NPTS (at most `max`), DELTA and B in place of the header. On failure these
// three are left untouched.
KROSAC_API void ReadSAC1(const char* path, float* samples, int32_t* npts, float* delta, float* b,
                         int32_t max, int32_t* status);

// Reads an x-y file: `n` becomes the smaller of NPTS and `max`, then n values are read into
// `first` (y in the files that WriteSAC2 makes) and the next n of the file into `second` (x). With
// n below NPTS the second read goes on where the first ended, still in the first block; this is
// intended. Either read short is a failure; no values (n = 0) are none. IFTYPE and LEVEN are not
// checked.
KROSAC_API void ReadSAC2(const char* path, int32_t* n, float* second, float* first, int32_t max,
                         int32_t* status);

// Writes the header, with E = (NPTS - 1) * DELTA + B computed in single precision, and the NPTS
// samples. NPTS = 0 writes the header and is a failure.
KROSAC_API void WriteSACfile(const char* path, const float* samples, int32_t* status,
                             SacHeader header);

// Writes an evenly sampled file of n samples, `delta` seconds apart, the first at `b` seconds. The
// header is kSacHeaderTemplate with DELTA, B, E and NPTS from the arguments, NVHDR = 6, NORID =
// NEVID = 0, IZTYPE = 9, LPSPOL = 0 and UNUSED18 = 0; the reference time stays undefined. n = 0
// writes the header and is a failure.
KROSAC_API void WriteSAC1(const char* path, const float* samples, int32_t n, int32_t* status,
                          float delta, float b);

// Writes an x-y file of n points: the y values as the first block, the x values as the second. The
// header is kSacHeaderTemplate with NPTS = n, NVHDR = 6, NORID = NEVID = 0, IFTYPE = 4, LEVEN =
// LPSPOL = 0, LCALDA = 1 and UNUSED18 = 0. n = 0 writes the header alone. A failure before the
// file is closed is also told on standard output, a bad argument as a file that cannot be created.
KROSAC_API void WriteSAC2(const char* path, int32_t n, const float* x, const float* y,
                          int32_t* status);

KROSAC_C_END

#endif
