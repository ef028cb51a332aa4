#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "krosac/catalog/FixedColumnsInternal.h"
#include "krosac/platform/TruncIndexInternal.h"

namespace krosac {
namespace {

constexpr std::string_view kWhiteSpace = " \t\n\v\f\r";

std::string_view behindWhiteSpace(std::string_view text) {
  return text.substr(std::min(text.find_first_not_of(kWhiteSpace), text.size()));
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
  word = word.substr(0, word.find_first_of(kWhiteSpace));
  if (word.empty()) return false;
  target.emplace(word);
  return true;
}

FixedColumns::FixedColumns(std::string_view line) {
  const auto* end = std::find_if(line.data(), line.data() + line.size(),
                                 [](char c) { return c == '\0' || c == '\r' || c == '\n'; });
  line_ = line.substr(0, static_cast<std::size_t>(end - line.data()));
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
  sec = truncIndex(static_cast<double>(std::floor(seconds)));
  msec = (seconds - static_cast<float>(sec)) * 1000.0f;
}

}  // namespace krosac
