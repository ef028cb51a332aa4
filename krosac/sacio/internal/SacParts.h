// What the files of this folder share: outputs, reasons and the writer of evenly sampled files.
#ifndef KROSAC_SACIO_INTERNAL_SACPARTS_H
#define KROSAC_SACIO_INTERNAL_SACPARTS_H

#include <cstddef>
#include <cstdint>

#include "krosac/platform/internal/Reason.h"
#include "krosac/sacio/SacHeader.h"

namespace krosac {

// Stores an output that the caller asked for; a null output is skipped.
template <typename T>
void setOutput(T* output, T value) {
  if (output) *output = value;
}

// Sets the reason that a file or image has `found` bytes, fewer than a header and `words` samples.
inline void setTooShortReason(const char* name, std::int64_t words, std::int64_t found) noexcept {
  constexpr auto kHeader = static_cast<long long>(kSacHeaderBytes);
  const long long samples = words, bytes = found;
  if (bytes < kHeader || samples <= 0) {
    setReason("%s: needs %lld bytes, found %lld", name, kHeader, bytes);
  } else {
    setReason("%s: needs %lld + 4 x %lld = %lld bytes, found %lld", name, kHeader, samples,
              kHeader + 4 * samples, bytes);
  }
}

// Writes the header, with E = (NPTS - 1) * DELTA + B in single precision, and the NPTS samples as
// one item. Returns false, with a reason, on failure, also when there are no samples to write; a
// negative NPTS writes the header alone.
bool writeEvenFile(const char* path, SacHeader header, const float* samples) noexcept;

}  // namespace krosac

#endif
