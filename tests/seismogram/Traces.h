// Traces in memory and file images built byte by byte.
#ifndef KROSAC_TESTS_SEISMOGRAM_TRACES_H
#define KROSAC_TESTS_SEISMOGRAM_TRACES_H

#include <algorithm>
#include <bit>

#include "krosac/platform/internal/Text.h"
#include "krosac/seismogram/SacObject.h"
#include "sacio/SacImage.h"

namespace krosac {

using S = SacObject;
using Samples = std::vector<float>;
using Texts = std::vector<std::string>;

// A trace without a reference time whose flags are clear.
inline Ref<S> traceOf(const Samples& x, float delta = 1, float b = 0) {
  auto s = make<S>();
  s->initWithCapacity(static_cast<std::int32_t>(x.size()));
  std::ranges::copy(x, s->GetSacSeis());
  s->setDelta(delta);
  s->setBeginTime(b);
  s->fixEndTime();
  return s;
}

inline Samples samplesIn(const S& s) {
  return {s.GetSacSeis(), s.GetSacSeis() + s.npts()};
}

inline std::string imageOf(const S& s) {
  return {s.myData()->bytes(), s.myData()->bytes() + s.myData()->length()};
}

inline Ref<ByteBuffer> bufferOf(const std::string& bytes) {
  return ByteBuffer::copyOf(bytes.data(), bytes.size());
}

// All fields except image and path, in one line.
inline std::string stateOf(const S& s) {
  const auto& time = s.mySeisReferenceTime();
  return formatText("%s, %s, %s, %s, %s, swapped %d changed %d locked %d verbose %d tag %d",
                    printable(s.myFileName()), printable(s.labelString()),
                    s.myReferenceDate() ? s.myReferenceDate()->description().c_str() : "undated",
                    time ? time->DOYcString() : "untimed", printable(s.flinnEngdahlString()),
                    s.swappedBytes(), s.mSeisHasChanged(), s.mSeisIsLocked(), s.verbose(), s.tag());
}

inline std::uint32_t word(float value) {
  return std::bit_cast<std::uint32_t>(value);
}

// A native file of 2011 day 70 05:46:23.120: DELTA 0.5, B 10, a wrong E and no extrema.
// The station is on the equator, 90 degrees west of the event.
inline std::string sacImage(const Samples& x, const Words& words = {}) {
  const Words common = {
      {0, word(0.5f)},    {20, word(10)},      {24, word(77)},  {124, word(0)}, {128, word(52.4f)},
      {140, word(38.3f)}, {144, word(142.4f)}, {316, x.size()}, {280, 2011},    {284, 70},
      {288, 5},           {292, 46},           {296, 23},       {300, 120}};
  std::string image = headerImage(common, words);
  for (const float sample : x) image += bytesOf(sample);
  return image;
}

// The same file in the other byte order.
inline std::string foreign(std::string image) {
  for (std::size_t at = 0; at + 4 <= image.size(); at += at == 436 ? 196 : 4)
    std::reverse(image.begin() + at, image.begin() + at + 4);
  return image;
}

}  // namespace krosac

#endif
