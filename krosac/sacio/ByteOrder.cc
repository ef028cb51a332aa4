#include "krosac/sacio/ByteOrder.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "krosac/sacio/SacHeader.h"
#include "krosac/sacio/internal/SacParts.h"

namespace krosac {
namespace {

constexpr std::size_t kNumericWords = offsetof(SacHeader, KSTNM) / 4;

// Reverses words as integers, since loading a signalling NaN as a float may change its bits.
[[gnu::always_inline]] inline void reverseEach(unsigned char* bytes, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) {
    std::uint32_t word;
    std::memcpy(&word, bytes + 4 * i, 4);
    word = __builtin_bswap32(word);
    std::memcpy(bytes + 4 * i, &word, 4);
  }
}

#ifdef __x86_64__  // AVX2 shuffles bytes in vectors
__attribute__((target("avx2"))) void reverseWordsAvx2(unsigned char* bytes, std::size_t count) {
  reverseEach(bytes, count);
}
#endif

void reverseWords(unsigned char* bytes, std::size_t count) {
#ifdef __x86_64__
  if (__builtin_cpu_supports("avx2")) return reverseWordsAvx2(bytes, count);
#endif
  reverseEach(bytes, count);
}

// False, with a reason, unless the image has a header.
bool hasHeader(const ByteBuffer& image) {
  clearReason();
  if (image.length() >= kSacHeaderBytes) return true;
  setTooShortReason("the image", 0, static_cast<std::int64_t>(image.length()));
  return false;
}

// Returns NPTS. A negative one sets a reason.
std::int32_t sampleCount(const ByteBuffer& image) {
  std::int32_t npts;
  std::memcpy(&npts, image.bytes() + offsetof(SacHeader, NPTS), sizeof npts);
  if (npts < 0) setReason("the image: NPTS is %d", npts);
  return npts;
}

std::size_t wholeWordsBehindHeader(const ByteBuffer& image) {
  return (image.length() - kSacHeaderBytes) / 4;
}

void reverseHeader(ByteBuffer& image) {
  reverseWords(image.mutableBytes(), kNumericWords);
}

void reverseSamples(ByteBuffer& image, std::size_t count) {
  reverseWords(image.mutableBytes() + kSacHeaderBytes, count);
}

}  // namespace

int swapSACBytes(ByteBuffer& data) {
  if (!hasHeader(data)) return 0;
  reverseHeader(data);
  const std::int32_t npts = sampleCount(data);
  if (npts < 0) return 0;
  if (static_cast<std::size_t>(npts) > wholeWordsBehindHeader(data)) {
    setTooShortReason("the image", npts, static_cast<std::int64_t>(data.length()));
    return 0;
  }
  reverseSamples(data, static_cast<std::size_t>(npts));
  return 1;
}

int reverseSACBytes(ByteBuffer& data) {
  if (!hasHeader(data)) return 0;
  const std::int32_t npts = sampleCount(data);
  reverseHeader(data);
  if (npts < 0) return 0;
  reverseSamples(data, std::min(static_cast<std::size_t>(npts), wholeWordsBehindHeader(data)));
  return 1;
}

}  // namespace krosac
