#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "krosac/catalog/internal/FixedColumns.h"
#include "krosac/platform/internal/Text.h"
#include "krosac/platform/internal/TruncIndex.h"

namespace krosac {
namespace {

std::string_view behindWhiteSpace(std::string_view text) {
  return {std::find_if_not(text.begin(), text.end(), isWhiteSpace), text.end()};
}

// What is left of the text behind white space, at most `width` characters, as a text with an end.
struct Number {
  Number(std::string_view text, std::size_t width) {
    const std::string_view rest = behindWhiteSpace(text);
    characters[rest.copy(characters, std::min(width, kScratchLength))] = '\0';
  }
  char characters[kScratchLength + 1];
};

}  // namespace

bool scan(std::string_view text, std::size_t width, std::int32_t& target) {
  const Number number(text, width);
  char* end;
  const long value = std::strtol(number.characters, &end, 10);
  if (end == number.characters) return false;
  target = static_cast<std::int32_t>(value);
  return true;
}

bool scan(std::string_view text, std::size_t width, float& target) {
  const Number number(text, width);
  char* end;
  const float value = std::strtof(number.characters, &end);
  if (end == number.characters) return false;
  target = value;
  return true;
}

bool scan(std::string_view text, std::size_t width, OptionalText& target) {
  std::string_view word = behindWhiteSpace(text).substr(0, width);
  word = {word.begin(), std::find_if(word.begin(), word.end(), isWhiteSpace)};
  if (word.empty()) return false;
  target = word;
  return true;
}

FixedColumns::FixedColumns(std::string_view line) {
  const auto endsLine = [](char c) { return c == '\0' || c == '\r' || c == '\n'; };
  line_ = {line.begin(), std::find_if(line.begin(), line.end(), endsLine)};
  scratch_.fill(' ');
}

void FixedColumns::copy(std::size_t first, std::size_t width) {
  scratch_.fill(' ');
  from(first).copy(scratch_.data(), width);
}

void FixedColumns::copyOver(std::size_t first, std::size_t width) {
  for (std::size_t i = 0; i < width; ++i) scratch_[i] = at(first + i);
}

void splitSeconds(float seconds, std::int32_t& sec, float& msec) {
  sec = truncInt32(static_cast<double>(std::floor(seconds)));
  msec = (seconds - static_cast<float>(sec)) * 1000.0f;
}

}  // namespace krosac
