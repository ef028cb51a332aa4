// Scanning of fixed-column lines, the values that the records derive from them, and a line that
// they print.
#ifndef KROSAC_CATALOG_INTERNAL_FIXEDCOLUMNS_H
#define KROSAC_CATALOG_INTERNAL_FIXEDCOLUMNS_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "krosac/platform/Date.h"
#include "krosac/platform/internal/Text.h"

namespace krosac {

class kroSeismicPhase;

// The length of the scratch buffer of blanks from which copied fields are scanned.
inline constexpr std::size_t kScratchLength = 15;

// Scan like formatted input of C in the C locale, from text that need not end in a NUL: leading
// white space is skipped and not counted, then at most `width` characters are used. If they do not
// begin with a value, the target does not change and the result is false. A number is the longest
// valid prefix ("1.5e" is 1.5), but "0x" without digits and "infinit" are none. A word ends at
// white space. No word of the scratch buffer is so long that its text needs memory.
bool scan(std::string_view text, std::size_t width, std::int32_t& target);
bool scan(std::string_view text, std::size_t width, float& target);
bool scan(std::string_view text, std::size_t width, OptionalText& target);

// A line by columns, which count from 1. It ends at its first NUL, carriage return or newline, and
// all columns beyond are blank. An instance keeps the thread in the C locale, so it lives in one
// scope only.
class FixedColumns {
 public:
  explicit FixedColumns(std::string_view line);

  char at(std::size_t column) const { return column <= line_.size() ? line_[column - 1] : ' '; }
  // The rest of the line from a column on; empty beyond its end.
  std::string_view from(std::size_t column) const {
    return column <= line_.size() ? line_.substr(column - 1) : std::string_view();
  }

  // Copy a field into the scratch buffer, with or without blanking the buffer first.
  void copy(std::size_t first, std::size_t width);
  void copyOver(std::size_t first, std::size_t width);

  // Scans the scratch buffer from a character, which counts from 1, at most to its end.
  template <typename T>
  bool scanCopied(std::size_t character, std::size_t width, T& target) const {
    return scan(std::string_view(scratch_.data(), kScratchLength).substr(character - 1), width,
                target);
  }
  // Blanks the scratch buffer, copies a field into it and scans it.
  template <typename T>
  bool scanField(std::size_t first, std::size_t width, T& target) {
    copy(first, width);
    return scanCopied(1, width, target);
  }
  // Scans the line itself, so a value behind blanks may come from later columns.
  template <typename T>
  bool scanInPlace(std::size_t first, std::size_t width, T& target) const {
    return scan(from(first), width, target);
  }

 private:
  CLocaleScope cLocale_;
  std::string_view line_;
  std::array<char, kScratchLength> scratch_;
};

// Splits seconds into the whole second below and the milliseconds beyond it. Seconds that are not
// finite or exceed 32 bits yield the lowest 32-bit integer.
void splitSeconds(float seconds, std::int32_t& sec, float& msec);

// Returns the seconds since 1970 of a whole second plus milliseconds.
inline double epochTime(Date wholeSecond, float msec) {
  return wholeSecond.secondsSince1970 + static_cast<double>(msec) * 0.001;
}

// Returns a flag character for printing: a blank for a flag that was never set.
inline char printableFlag(signed char flag) {
  return flag ? static_cast<char>(flag) : ' ';
}

// The text that the phase's description returns.
std::string lineOf(const kroSeismicPhase& phase);

}  // namespace krosac

#endif
