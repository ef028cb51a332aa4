// The scanner of fixed-column lines that all records share.
#ifndef KROSAC_CATALOG_INTERNAL_FIXEDCOLUMNS_H
#define KROSAC_CATALOG_INTERNAL_FIXEDCOLUMNS_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "krosac/platform/Date.h"
#include "krosac/platform/internal/Text.h"

namespace krosac {

// Fields are copied into a scratch text of so many blanks and scanned from there.
inline constexpr std::size_t kScratchLength = 15;

// Scans as C's formatted input does in the C locale, from text that need not end in a NUL: white
// space is skipped and does not count, then at most `width` characters are looked at. Where they
// begin with no value the target stays and the result is false. A number is the longest beginning
// that is one ("1.5e" is 1.5); a word ends at white space.
bool scan(std::string_view text, std::size_t width, std::int32_t& target);
bool scan(std::string_view text, std::size_t width, float& target);
bool scan(std::string_view text, std::size_t width, OptionalText& target);

// A line by columns, which count from 1. It ends at its first NUL, carriage return or newline, and
// all columns beyond are blank. Lives in one scope: it holds the thread in the C locale.
class FixedColumns {
 public:
  explicit FixedColumns(std::string_view line);

  char at(std::size_t column) const { return column <= line_.size() ? line_[column - 1] : ' '; }
  // What the line holds from a column on; empty beyond its end.
  std::string_view from(std::size_t column) const {
    return column <= line_.size() ? line_.substr(column - 1) : std::string_view();
  }

  // Copies a field into the scratch text, over blanks or over what stands there.
  void copy(std::size_t first, std::size_t width);
  void copyOver(std::size_t first, std::size_t width);

  // Scans the scratch text from one of its characters, which count from 1, to its end at most.
  template <typename T>
  bool scanCopied(std::size_t character, std::size_t width, T& target) const {
    return scan(std::string_view(scratch_.data(), kScratchLength).substr(character - 1), width,
                target);
  }
  // Copies a field over blanks and scans it.
  template <typename T>
  bool scanField(std::size_t first, std::size_t width, T& target) {
    copy(first, width);
    return scanCopied(1, width, target);
  }
  // Scans the line itself, so that what follows blanks may come from later columns.
  template <typename T>
  bool scanInPlace(std::size_t first, std::size_t width, T& target) const {
    return scan(from(first), width, target);
  }

 private:
  CLocaleScope cLocale_;
  std::string_view line_;
  std::array<char, kScratchLength> scratch_;
};

// Scanned seconds as the whole second below them and the milliseconds beyond it. Seconds that are
// not finite or beyond 32 bits have the lowest 32-bit number as their whole second.
void splitSeconds(float seconds, std::int32_t& sec, float& msec);

// Seconds since 1970 of a whole second and the milliseconds beyond it.
inline double epochTime(Date wholeSecond, float msec) {
  return wholeSecond.secondsSince1970 + static_cast<double>(msec) * 0.001;
}

// A flag character as it prints: one that was never set is a blank.
inline char printableFlag(signed char flag) {
  return flag ? static_cast<char>(flag) : ' ';
}

}  // namespace krosac

#endif
