// Text files of poles and zeros.
#ifndef KROSAC_DSP_POLEZEROFILE_H
#define KROSAC_DSP_POLEZEROFILE_H

#include "krosac/platform/Export.h"

KROSAC_C_BEGIN

// Reads a response from a text file with the keyword lines "POLES n", "ZEROS n" and "CONSTANT C"
// (case ignored); the lines "real imaginary" behind POLES or ZEROS fill that array in turn. Both
// arrays hold 64 floats (32 pairs); further pairs are skipped. The counts come from the keyword
// lines, limited to 0..32; counted pairs that are not listed are at the origin. Without their line
// counts are 0 and the constant is 1; a repeated line starts its section anew. Lines that are no
// pair are skipped, and of a line its first 256 bytes are read.
// Returns 0; -1 with a message on standard error, and nothing written, when the file cannot be
// opened or read, or is no regular file (a pipe or a device may have no end).
KROSAC_API int ParsePoleZeroFile(const char* path, float poles[], float zeros[], float* C,
                                 int* nPoles, int* nZeros);

KROSAC_C_END

#endif
