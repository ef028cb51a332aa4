// Text files of poles and zeros.
#ifndef KROSAC_DSP_POLEZEROFILE_H
#define KROSAC_DSP_POLEZEROFILE_H

#include "krosac/platform/Export.h"

KROSAC_C_BEGIN

// Reads a response from a text file with the keyword lines "POLES n", "ZEROS n" and "CONSTANT C",
// ignoring case. The lines "real imaginary" (rad/s) after POLES or ZEROS fill that array. Both
// arrays hold 64 floats (32 pairs); further pairs are ignored. The counts are those of the keyword
// lines, limited to 0..32; counted pairs that are not listed are at the origin. Without a keyword
// line the count is 0 and the constant 1; a repeated keyword line starts its section again. Other
// lines, and the part of a line after its first 256 bytes, are ignored.
//
// Returns 0. Returns -1, prints a message to standard error and writes nothing if the file cannot
// be opened or read or is not a regular file (a pipe or a device may have no end); lastReason()
// then returns the system's text.
KROSAC_API int ParsePoleZeroFile(const char* path, float poles[], float zeros[], float* C,
                                 int* nPoles, int* nZeros);

KROSAC_C_END

#endif
