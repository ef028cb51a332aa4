// What the look-ups in tables of distance rows and depth columns share.
#ifndef KROSAC_TRAVELTIMES_INTERNAL_PHASETABLE_H
#define KROSAC_TRAVELTIMES_INTERNAL_PHASETABLE_H

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "krosac/platform/Numbers.h"

namespace krosac {

// A phase file has at most this many rows that are read.
inline constexpr std::int32_t kMostRows = 360;

// A phase name of at most eight characters in lower case, compared as one number. Longer names
// equal no key.
class PhaseKey {
 public:
  constexpr PhaseKey(std::string_view name) {
    if (name.size() > 8) return;
    packed_ = 0;
    for (const char c : name) {
      const bool upper = c >= 'A' && c <= 'Z';
      packed_ = packed_ << 8 | static_cast<unsigned char>(upper ? c - 'A' + 'a' : c);
    }
    // No key has a NUL, which the packed number would not show in front.
    if (name.starts_with('\0')) packed_ = kNoKey;
  }
  consteval PhaseKey(const char* key) : PhaseKey(std::string_view(key)) {}
  constexpr bool operator==(const PhaseKey&) const = default;

 private:
  static constexpr std::uint64_t kNoKey = ~0ULL;
  std::uint64_t packed_ = kNoKey;
};

// Reads the rows of a resource whose name is that of prefix and phase, joined and in lower case: a
// distance, which is skipped, and `columns` numbers.
// Stops at the first number that does not convert or after `capacity` rows; complete rows are
// stored and counted. A file that cannot be opened prints `message` on standard error and changes
// nothing.
void readPhaseTable(const char* prefix, const char* phase, const char* message,
                    std::int32_t columns, std::int32_t capacity, float* table, std::int32_t* rows);

// The last column but one at most whose node is strictly less than the depth; 0 when none is.
template <std::size_t columns>
std::size_t columnAbove(const float (&nodes)[columns], float depth) {
  std::size_t column = 0;
  while (column + 2 < columns && nodes[column + 1] < depth) ++column;
  return column;
}

// The last of `rows` rows, one a degree, that lies strictly before the distance; 0 when none does.
inline std::int32_t rowBefore(float distance, std::int32_t rows) {
  if (rows <= 0 || !(distance > 1.0f)) return 0;
  if (distance >= static_cast<float>(rows)) return rows - 1;
  return static_cast<std::int32_t>(std::ceil(distance)) - 1;
}

// The four corners around a point, and the weights of its place between them.
struct Corners {
  float nearUpper, nearLower, farUpper, farLower;

  static Corners of(const float* table, std::size_t columns, std::size_t row, std::size_t column) {
    const float* const corner = table + row * columns + column;
    return {corner[0], corner[1], corner[columns], corner[columns + 1]};
  }
  float bilinear(float upperWeight, float lowerWeight, float farWeight) const {
    return nearUpper * upperWeight * (1.0f - farWeight) +
           nearLower * lowerWeight * (1.0f - farWeight) + farUpper * upperWeight * farWeight +
           farLower * lowerWeight * farWeight;
  }
};

}  // namespace krosac

#endif
