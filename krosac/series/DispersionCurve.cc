#include "krosac/series/DispersionCurve.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <new>
#include <string_view>

#include "krosac/platform/LastReason.h"
#include "krosac/platform/Numbers.h"
#include "krosac/platform/internal/Reason.h"
#include "krosac/platform/internal/Text.h"
#include "krosac/timegeo/GreatCircle.h"

namespace krosac {
namespace {

constexpr std::size_t kLongestLine = 4095;

// Scans the fields of a line from left to right as scanf does: after the first failure no further
// target changes.
class FieldScanner {
 public:
  explicit FieldScanner(const std::string& line) : at_(line.c_str()), end_(at_ + line.size()) {}

  // Skips exactly `count` characters.
  FieldScanner& characters(std::ptrdiff_t count) {
    isGood_ = isGood_ && end_ - at_ >= count;
    if (isGood_) at_ += count;
    return *this;
  }
  FieldScanner& word(OptionalText& text) {
    const char* start = std::find_if_not(at_, end_, isWhiteSpace);
    const char* behind = std::find_if(start, end_, isWhiteSpace);
    isGood_ = isGood_ && start != behind;
    if (isGood_) text = std::string(start, behind);
    if (isGood_) at_ = behind;
    return *this;
  }
  FieldScanner& number(float& value) {
    return convert(value, [](const char* at, char** behind) { return std::strtof(at, behind); });
  }
  FieldScanner& number(std::int32_t& value) {
    return convert(value, [](const char* at, char** behind) {
      const long long number = std::strtoll(at, behind, 10);
      return static_cast<std::int32_t>(std::clamp<long long>(number, INT32_MIN, INT32_MAX));
    });
  }

 private:
  template <typename T, typename Convert>
  FieldScanner& convert(T& value, Convert toNumber) {
    char* behind = nullptr;
    const T number = toNumber(at_, &behind);
    isGood_ = isGood_ && behind != at_;
    if (isGood_) value = number;
    if (isGood_) at_ = behind;
    return *this;
  }

  const char* at_;
  const char* end_;
  bool isGood_ = true;
};

float* floats(const Ref<ByteBuffer>& buffer) {
  return reinterpret_cast<float*>(buffer->mutableBytes());
}

// Replaces an array by a copy of the values; false without memory.
bool copyFloats(std::span<const float> values, Ref<ByteBuffer>& array) {
  clearReason();
  auto copy = ByteBuffer::copyOf(values.data(), values.size_bytes());
  if (!copy) {
    setReason("no memory for %zu values", values.size());
    return false;
  }
  array = std::move(copy);
  return true;
}

// 1 for Rayleigh, 2 for Love, 0 if the file's name does not say.
std::int32_t waveTypeOf(std::string_view path) {
  const std::string_view name = path.substr(0, path.find_last_not_of('/') + 1);
  return name.ends_with("r.ga") ? 1 : name.ends_with("l.ga") ? 2 : 0;
}

}  // namespace

// Splits a text into lines. All white space behind a line break is skipped, and a line is cut at
// kLongestLine.
class DispersionCurve::Lines {
 public:
  explicit Lines(std::string_view text) : rest_(text) {}

  // Returns the next line, or the last one again at the end of the text or at a line break where
  // the text begins.
  const std::string& next() {
    advance();
    return line_;
  }
  // Moves to the next line; false if there is none.
  bool advance() {
    const std::size_t length = std::min(rest_.find('\n'), rest_.size());
    if (length == 0) return false;
    line_ = rest_.substr(0, std::min(length, kLongestLine));
    const auto next = std::find_if_not(rest_.begin() + static_cast<std::ptrdiff_t>(length),
                                       rest_.end(), isWhiteSpace);
    rest_ = {next, rest_.end()};
    return true;
  }
  const std::string& line() const { return line_; }

 private:
  std::string_view rest_;
  std::string line_;
};

Ref<Object> DispersionCurve::init() {
  fields_ = {};
  return Object::init();
}

std::span<const float> DispersionCurve::values(const Ref<ByteBuffer>& buffer) {
  if (!buffer) return {};
  return {floats(buffer), buffer->length() / sizeof(float)};
}

bool DispersionCurve::setPredictedValue(std::span<const float> values) {
  return copyFloats(values, fields_.predictedValue);
}

bool DispersionCurve::setMisfit(std::span<const float> values) {
  return copyFloats(values, fields_.misfit);
}

Ref<DispersionCurve> DispersionCurve::initWithKESTRAVFile(const std::string& path) try {
  clearReason();
  if (!init()) return nullptr;
  const Ref<DispersionCurve> self(this);
  fields_.wType = waveTypeOf(path);
  const auto file = ByteBuffer::fromFile(path);
  if (!file) {
    if (!*lastReason()) setReason("%s: cannot be read", path.c_str());
    return self;
  }
  const std::string_view text(reinterpret_cast<const char*>(file->bytes()), file->length());
  if (!Lines(text).advance()) {
    setReason("%s: is empty or begins with a line break", path.c_str());
    return self;
  }
  std::int64_t count = 0;
  for (Lines counted(text); counted.advance();) count += !counted.line().starts_with('#');

  const CLocaleScope cLocaleHere;
  Lines lines(text);
  readHeader(lines);
  if (count < 1) {
    setReason("%s: every line begins with #, so there are no periods", path.c_str());
  } else if (count > INT32_MAX || !readPeriods(lines, count)) {
    fields_ = {};
    fields_.wType = waveTypeOf(path);
    setReason("%s: no memory for %lld periods", path.c_str(), static_cast<long long>(count));
  }
  return self;
} catch (const std::bad_alloc&) {
  fields_ = {};
  fields_.wType = waveTypeOf(path);
  setMemoryReason();
  return Ref<DispersionCurve>(this);
}

void DispersionCurve::readHeader(Lines& lines) {
  Fields& f = fields_;
  OptionalText word;
  f.dataSource = lines.next().substr(0, 21);
  FieldScanner(lines.next())
      .characters(16)
      .word(f.stationID)
      .number(f.slat)
      .number(f.slon)
      .word(f.channelID);
  FieldScanner(lines.next()).characters(13).number(f.elat).number(f.elon).number(f.edepth);
  // baz takes the azimuth at the event, az the azimuth at the station; this is intended.
  delta_az(&f.elat, &f.elon, &f.slat, &f.slon, &f.gcarc, &f.baz);
  delta_az(&f.slat, &f.slon, &f.elat, &f.elon, &f.gcarc, &f.az);
  f.distance = static_cast<float>(f.gcarc * kKilometresPerDegree);
  FieldScanner(lines.next()).characters(26).word(word);
  if (word) *f.dataSource += " " + *word;
  for (int line = 5; line <= 7; ++line) lines.advance();
  FieldScanner(lines.next()).characters(51).number(f.modeIsolation);
  for (int line = 9; line <= 12; ++line) lines.advance();
}

// False without memory.
bool DispersionCurve::readPeriods(Lines& lines, std::int64_t count) {
  Fields& f = fields_;
  for (auto* array : {&f.fltrPeriod, &f.instPeriod, &f.smthVelocity, &f.velocity, &f.uncertainty}) {
    *array = ByteBuffer::zeroed(static_cast<std::size_t>(count) * sizeof(float));
    if (!*array) return false;
  }
  f.nPeriods = static_cast<std::int32_t>(count);
  f.minPeriod = 1.0e9f;
  f.maxPeriod = -1.0e9f;
  for (std::int64_t i = 0; i < count; ++i) {
    FieldScanner(lines.next())
        .number(floats(f.fltrPeriod)[i])
        .number(floats(f.instPeriod)[i])
        .number(floats(f.smthVelocity)[i])
        .number(floats(f.velocity)[i])
        .number(f.ldv)
        .number(f.hdv)
        .number(f.ramp)
        .number(f.iamp);
    floats(f.uncertainty)[i] = static_cast<float>((std::fabs(f.hdv) + std::fabs(f.ldv)) * 0.5);
    const float period = floats(f.instPeriod)[i];
    if (period > f.maxPeriod) f.maxPeriod = period;
    if (period < f.minPeriod) f.minPeriod = period;
  }
  return true;
}

}  // namespace krosac
