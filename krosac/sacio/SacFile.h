// Plain functions that test, read and write SAC files by path.
//
// The caller provides the header and sample buffers. Nothing is allocated, kept or byte-swapped.
// Readers and writers set `status` to 0 on success and -1 on any failure; lastReason() then says
// why. A null path, a null array to write and a negative count are failures; a null output is
// skipped, also a header or an array to read. Readers refuse everything but regular files, since
// pipes would block and devices may have no end. A failed read may have filled part of its arrays,
// and a failed write may leave part of a file. Writers check their arguments before they touch the
// file.
//
// Files of the other byte order are not recognised: see IsSacFile.
#ifndef KROSAC_SACIO_SACFILE_H
#define KROSAC_SACIO_SACFILE_H

#include <stdint.h>

#include "krosac/platform/Export.h"
#include "krosac/sacio/SacHeader.h"

KROSAC_C_BEGIN

// Returns 1 if the header of a file could be that of an evenly sampled SAC file, else -1 with a
// reason. Requires DELTA > 0, NPTS >= 1, NVHDR >= 0 and a length of 632 to 632 + 4 * NPTS bytes,
// and nothing else. A truncated file passes; a file with trailing bytes, such as an x-y file,
// fails. Both are intended. ASCII texts of 632 bytes and more pass too, and so do many files of the
// other byte order, whose fields happen to be positive in this one. To load files of either order,
// use SacObject or swapSACBytes.
KROSAC_API int32_t IsSacFile(const char* path);

// Fills a header with kSacHeaderTemplate, then sets NVHDR = 6, NEVID = 0, LPSPOL = 0, LCALDA = 1
// and UNUSED18 = 0. Ignores a null header.
KROSAC_API void NewSacHeader(SacHeader* header);

// Reads the first 632 bytes of a file without checking them. The words keep the file's byte order.
KROSAC_API void ReadSACHeader(const char* path, SacHeader* header, int32_t* status);

// Reads the header and at most `max` samples of the first data block. If NPTS exceeds `max`, it
// becomes `max` in the caller's header. The samples are one item: a file with fewer samples than
// that is a failure. NPTS = 0 also fails, although the header has been read. Many files of the
// other byte order are read up to `max` without a failure, with meaningless values.
KROSAC_API void ReadSACfile(const char* path, float* samples, SacHeader* header, int32_t max,
                            int32_t* status);

// Reads a file as ReadSACfile does and returns NPTS (at most `max`), DELTA and B instead of the
// header. On failure these three are unchanged.
KROSAC_API void ReadSAC1(const char* path, float* samples, int32_t* npts, float* delta, float* b,
                         int32_t max, int32_t* status);

// Reads an x-y file. Sets `n` to the smaller of NPTS and `max`, reads n values into `first` (y in
// files made by WriteSAC2), then the next n values of the file into `second` (x). If n < NPTS the
// second read starts within the first block; this is intended. A short read is a failure; n = 0 is
// not. IFTYPE and LEVEN are not checked. The second block comes before the first in the arguments:
//   ReadSAC2("xy.sac", &n, x, y, 1000, &status);
KROSAC_API void ReadSAC2(const char* path, int32_t* n, float* second, float* first, int32_t max,
                         int32_t* status);

// Writes the header, with E = (NPTS - 1) * DELTA + B computed in single precision, and NPTS
// samples. NPTS = 0 writes the header and is a failure.
KROSAC_API void WriteSACfile(const char* path, const float* samples, int32_t* status,
                             SacHeader header);

// Writes an evenly sampled file of n samples with interval `delta` and begin time `b` in seconds.
// The header is kSacHeaderTemplate with DELTA, B, E and NPTS from the arguments, NVHDR = 6, NORID =
// NEVID = 0, IZTYPE = 9, LPSPOL = 0 and UNUSED18 = 0; the reference time is undefined. n = 0 writes
// the header and is a failure.
KROSAC_API void WriteSAC1(const char* path, const float* samples, int32_t n, int32_t* status,
                          float delta, float b);

// Writes an x-y file of n points: the y values as the first block, the x values as the second. The
// header is kSacHeaderTemplate with NPTS = n, NVHDR = 6, NORID = NEVID = 0, IFTYPE = 4, LEVEN =
// LPSPOL = 0, LCALDA = 1 and UNUSED18 = 0. n = 0 writes the header alone. Failures, except that of
// closing the file, are printed on standard output; bad arguments print that the file could not be
// created.
KROSAC_API void WriteSAC2(const char* path, int32_t n, const float* x, const float* y,
                          int32_t* status);

KROSAC_C_END

#endif
