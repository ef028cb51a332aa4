// Reads numbers and lines from the text files of tables, the same in every locale.
#ifndef KROSAC_TRAVELTIMES_INTERNAL_TRAVELTIMESCANNER_H
#define KROSAC_TRAVELTIMES_INTERNAL_TRAVELTIMESCANNER_H

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <new>
#include <string_view>

#include "krosac/platform/Resources.h"
#include "krosac/platform/internal/Files.h"
#include "krosac/platform/internal/Text.h"

namespace krosac {

// The number at the start of a NUL-terminated text, by the grammar and rounding of strtof in the C
// locale. Gives the end of the number; `text`, and no value, where there is none.
inline const char* scanFloat(const char* text, float& value) {
  static constexpr double kPowersOfTen[] = {1,    1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                            1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                            1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
  const char* at = text;
  while (isWhiteSpace(*at)) ++at;
  const bool negative = *at == '-';
  if (negative || *at == '+') ++at;
  const char* const first = at;
  std::uint64_t digits = 0;
  for (; isDigit(*at); ++at) digits = digits * 10 + static_cast<std::uint64_t>(*at - '0');
  std::ptrdiff_t count = at - first, decimals = 0;
  if (*at == '.') {
    const char* const point = at++;
    for (; isDigit(*at); ++at) digits = digits * 10 + static_cast<std::uint64_t>(*at - '0');
    decimals = at - point - 1;
    count += decimals;
  }
  const char next = lowerCase(*at);
  if (count > 0 && count <= 19 && digits <= (1ULL << 53) && next != 'e' && next != 'x') {
    // Digits and power are exact, so their quotient is the rounded double. It rounds to the right
    // float unless it is the midpoint of two.
    const double exact = static_cast<double>(digits) / kPowersOfTen[decimals];
    if ((std::bit_cast<std::uint64_t>(exact) & 0x1fffffff) != 0x10000000) {
      value = static_cast<float>(negative ? -exact : exact);
      return at;
    }
  }
  CLocaleScope cLocaleHere;
  char* end = nullptr;
  const float converted = std::strtof(text, &end);
  if (end != text) value = converted;
  return end;
}

// A text file, read once from front to back through a chunk that lies in the object itself: make it
// a local variable. A number of kLongestNumber characters or more does not convert.
class TravelTimeScanner {
 public:
  static constexpr std::size_t kLongestNumber = 8192;

  TravelTimeScanner() noexcept { chunk_[0] = '\0'; }
  TravelTimeScanner(const TravelTimeScanner&) = delete;
  TravelTimeScanner& operator=(const TravelTimeScanner&) = delete;

  // False when there is no regular file of this path that can be read.
  bool open(const char* path) noexcept {
    file_ = openRegularFile(path);
    return file_.isOpen();
  }

  // Opens the resource `name`.txt.
  bool openResource(const char* name) noexcept try {
    const auto path = pathForResource(name, "txt");
    return path && open(path->c_str());
  } catch (const std::bad_alloc&) {
    return false;
  }

  // The next number behind white space, line breaks among it; without one, false, and only the
  // white space is consumed.
  bool nextFloat(float& value) {
    skipWhiteSpace();
    have(kLongestNumber);
    const char* const end = scanFloat(at_, value);
    if (end == at_ || end - at_ >= static_cast<std::ptrdiff_t>(kLongestNumber)) return false;
    at_ = end;
    return true;
  }

  // Skips white space and one character behind it; false at the end of the file.
  bool skipCharacter() {
    skipWhiteSpace();
    if (at_ == end_) return false;
    ++at_;
    return true;
  }

  // The rest of the line with its line break, but at most `most` characters: what is longer counts
  // as further lines. Empty at the end of the file. Good until the next call.
  std::string_view nextLine(std::size_t most) {
    have(most);
    const std::size_t length = std::min(most, static_cast<std::size_t>(end_ - at_));
    const void* const lineBreak = length ? std::memchr(at_, '\n', length) : nullptr;
    const char* const end = lineBreak ? static_cast<const char*>(lineBreak) + 1 : at_ + length;
    const std::string_view line(at_, static_cast<std::size_t>(end - at_));
    at_ = end;
    return line;
  }

 private:
  void skipWhiteSpace() {
    do {
      while (isWhiteSpace(*at_)) ++at_;
    } while (at_ == end_ && have(1));
  }

  // Has at least `count` characters in the chunk, or all up to the end of the file; false when
  // none is left.
  bool have(std::size_t count) {
    if (static_cast<std::size_t>(end_ - at_) < count && !atEnd_) refill();
    return at_ != end_;
  }

  void refill() {
    const std::size_t kept = static_cast<std::size_t>(end_ - at_);
    std::memmove(chunk_, at_, kept);
    char* end = chunk_ + kept;
    char* const limit = chunk_ + kChunk;
    while (end < limit && !atEnd_) {
      const ssize_t got = file_.read(end, static_cast<std::size_t>(limit - end));
      atEnd_ = got <= 0;
      if (got > 0) end += got;
    }
    *end = '\0';
    at_ = chunk_;
    end_ = end;
  }

  static constexpr std::size_t kChunk = 32768;

  File file_;
  bool atEnd_ = false;
  const char* at_ = chunk_;
  const char* end_ = chunk_;
  char chunk_[kChunk + 1];
};

}  // namespace krosac

#endif
