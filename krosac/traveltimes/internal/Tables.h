// Reading and interpolating the travel-time tables: what the plain functions and the table objects
// share.
#ifndef KROSAC_TRAVELTIMES_INTERNAL_TABLES_H
#define KROSAC_TRAVELTIMES_INTERNAL_TABLES_H

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "krosac/platform/Numbers.h"
#include "krosac/traveltimes/internal/TravelTimeScanner.h"

namespace krosac {

// Sizes of the grids. The depths of the Jeffreys-Bullen tables are in JBTables.cc, those of the
// IASP91 tables in TTTables.cc.
inline constexpr std::size_t kJBPRows = 118, kJBSRows = 120;
inline constexpr std::size_t kTTColumns = 18;
inline constexpr std::int32_t kPsNMODepths = 15, kPsNMODistances = 14;
inline constexpr std::int32_t kPsNMOCurves = kPsNMODepths * kPsNMODistances;

// The plain functions read at most this many rows of a phase file.
inline constexpr std::int32_t kMaxRows = 360;

// Opens the table files of one operation and sets lastReason() for it: why the last refused file
// could not be opened or is damaged, else that the files come from different folders, else empty.
class TableFiles {
 public:
  TableFiles();
  ~TableFiles();
  TableFiles(const TableFiles&) = delete;
  TableFiles& operator=(const TableFiles&) = delete;

  // Opens the file of a path.
  bool open(const char* path, TravelTimeScanner& file) noexcept;

  // Opens the resource `name`.txt. On failure, prints `message` on standard error.
  bool openResource(const char* name, const char* message, TravelTimeScanner& file) noexcept;

  // Reports that the open file is damaged at its current line: of `needed` things of this kind it
  // has `found`.
  void reportDamage(const TravelTimeScanner& file, const char* kind, std::size_t needed,
                    std::size_t found);
  // Reports that the current line does not begin with a number of these things from 1 to `limit`.
  void reportBadCount(const TravelTimeScanner& file, const char* kind, std::size_t limit);

 private:
  void keepReason();

  char reason_[1024] = "";
  std::string path_, folder_, otherFolder_;
};

// The readers of the plain functions for arrays of `capacity` rows. A null array or count is
// skipped.
void readJBTables(TableFiles& files, float* tp, float* ts);
void readJBPhase(TableFiles& files, const char* phase, std::int32_t capacity, float* table,
                 std::int32_t* rows);
void readTTPhase(TableFiles& files, const char* prefix, const char* phase, std::int32_t capacity,
                 float* table, std::int32_t* rows);

// Reads the resource named by prefix and phase, joined and in lower case. A row of the file is a
// distance, which is ignored, and `columns` numbers. Stops at the first number that does not
// convert or after `capacity` rows; stores and counts complete rows only. If the file cannot be
// opened, prints `message` on standard error and changes nothing.
void readPhaseTable(TableFiles& files, const char* prefix, const char* phase, const char* message,
                    std::size_t columns, std::int32_t capacity, float* table, std::int32_t* rows);

// The value if it is finite, else `absent`.
inline float finiteOr(float value, float absent) {
  return std::isfinite(value) ? value : absent;
}

// A phase name of at most eight characters in lower case, packed into one integer for comparison.
// Longer names equal no key.
class PhaseKey {
 public:
  constexpr PhaseKey(std::string_view name) {
    if (name.size() > 8) return;
    packed_ = 0;
    for (const char c : name) {
      const bool upper = c >= 'A' && c <= 'Z';
      packed_ = packed_ << 8 | static_cast<unsigned char>(upper ? c - 'A' + 'a' : c);
    }
    // A leading NUL would not change the packed value; no key contains one.
    if (name.starts_with('\0')) packed_ = kNoKey;
  }
  consteval PhaseKey(const char* key) : PhaseKey(std::string_view(key)) {}
  constexpr bool operator==(const PhaseKey&) const = default;

 private:
  static constexpr std::uint64_t kNoKey = ~0ULL;
  std::uint64_t packed_ = kNoKey;
};

// The last column, the final one excluded, whose node is strictly less than the depth; 0 if there
// is none.
template <std::size_t columns>
std::size_t columnAbove(const float (&nodes)[columns], float depth) {
  std::size_t column = 0;
  while (column + 2 < columns && nodes[column + 1] < depth) ++column;
  return column;
}

// The last of `rows` rows, one per degree, strictly before the distance; 0 if there is none.
inline std::int32_t rowBefore(float distance, std::int32_t rows) {
  if (rows <= 0 || !(distance > 1.0f)) return 0;
  if (distance >= static_cast<float>(rows)) return rows - 1;
  return static_cast<std::int32_t>(std::ceil(distance)) - 1;
}

// The four nodes around a point: near and far in distance, upper and lower in depth.
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
