#include "krosac/series/DispersionCurve.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <string_view>

#include "krosac/platform/Numbers.h"
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

  // Reads exactly `count` characters.
  FieldScanner& characters(std::ptrdiff_t count, OptionalText* text = nullptr) {
    isGood_ = isGood_ && end_ - at_ >= count;
    if (isGood_ && text) *text = std::string(at_, at_ + count);
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

Ref<ByteBuffer> zeroedFloats(std::int64_t count) {
  return ByteBuffer::zeroed(static_cast<std::size_t>(count) * sizeof(float));
}

float* floats(const Ref<ByteBuffer>& buffer) {
  return reinterpret_cast<float*>(buffer->mutableBytes());
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
  nPeriods_ = 0;
  for (auto* array : {&fltrPeriod_, &instPeriod_, &smthVelocity_, &velocity_, &uncertainty_})
    *array = nullptr;
  return Object::init();
}

std::span<const float> DispersionCurve::values(const Ref<ByteBuffer>& buffer) {
  if (!buffer) return {};
  return {floats(buffer), buffer->length() / sizeof(float)};
}

Ref<DispersionCurve> DispersionCurve::initWithKESTRAVFile(const std::string& path) {
  if (!init()) return nullptr;
  const std::string name = lastPathComponent(path);
  wType_ = name.ends_with("r.ga") ? 1 : name.ends_with("l.ga") ? 2 : 0;
  vType_ = 0;

  const auto file = ByteBuffer::fromFile(path);
  if (!file) return Ref<DispersionCurve>(this);
  const std::string_view text(reinterpret_cast<const char*>(file->bytes()), file->length());
  std::int64_t count = 0;
  for (Lines counted(text); counted.advance();) count += !counted.line().starts_with('#');

  const CLocaleScope cLocaleHere;
  Lines lines(text);
  if (!Lines(text).advance()) return Ref<DispersionCurve>(this);
  readHeader(lines);
  if (count >= 1 && count <= INT32_MAX) readPeriods(lines, count);
  return Ref<DispersionCurve>(this);
}

void DispersionCurve::readHeader(Lines& lines) {
  OptionalText word;
  FieldScanner(lines.next()).characters(21, &dataSource_);
  FieldScanner(lines.next())
      .characters(16)
      .word(stationID_)
      .number(slat_)
      .number(slon_)
      .word(channelID_);
  FieldScanner(lines.next()).characters(13).number(elat_).number(elon_).number(edepth_);
  // baz takes the azimuth at the event, az the azimuth at the station; this is intended.
  delta_az(&elat_, &elon_, &slat_, &slon_, &gcarc_, &baz_);
  delta_az(&slat_, &slon_, &elat_, &elon_, &gcarc_, &az_);
  distance_ = static_cast<float>(gcarc_ * kKilometresPerDegree);
  FieldScanner(lines.next()).characters(26).word(word);
  if (dataSource_ && word) *dataSource_ += " " + *word;
  for (int line = 5; line <= 7; ++line) lines.advance();
  FieldScanner(lines.next()).characters(51).number(modeIsolation_);
  for (int line = 9; line <= 12; ++line) lines.advance();
}

void DispersionCurve::readPeriods(Lines& lines, std::int64_t count) {
  for (auto* array : {&fltrPeriod_, &instPeriod_, &smthVelocity_, &velocity_, &uncertainty_}) {
    *array = zeroedFloats(count);
    if (!*array) {
      init();
      return;
    }
  }
  nPeriods_ = static_cast<std::int32_t>(count);
  minPeriod_ = 1.0e9f;
  maxPeriod_ = -1.0e9f;
  for (std::int64_t i = 0; i < count; ++i) {
    FieldScanner(lines.next())
        .number(floats(fltrPeriod_)[i])
        .number(floats(instPeriod_)[i])
        .number(floats(smthVelocity_)[i])
        .number(floats(velocity_)[i])
        .number(ldv_)
        .number(hdv_)
        .number(ramp_)
        .number(iamp_);
    floats(uncertainty_)[i] = static_cast<float>((std::fabs(hdv_) + std::fabs(ldv_)) * 0.5);
    const float period = floats(instPeriod_)[i];
    if (period > maxPeriod_) maxPeriod_ = period;
    if (period < minPeriod_) minPeriod_ = period;
  }
}

}  // namespace krosac
