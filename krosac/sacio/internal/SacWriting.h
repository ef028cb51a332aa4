// What the plain functions and the routines for Fortran share in writing files and outputs.
#ifndef KROSAC_SACIO_INTERNAL_SACWRITING_H
#define KROSAC_SACIO_INTERNAL_SACWRITING_H

#include "krosac/sacio/SacHeader.h"

namespace krosac {

// Stores an output that the caller asked for; a null output is skipped.
template <typename T>
void setOutput(T* output, T value) {
  if (output) *output = value;
}

// Writes the header, with E = (NPTS - 1) * DELTA + B in single precision, and the NPTS samples as
// one item. Returns false on failure, also when there are no samples to write; a negative NPTS
// writes the header alone.
bool writeEvenFile(const char* path, SacHeader header, const float* samples) noexcept;

}  // namespace krosac

#endif
