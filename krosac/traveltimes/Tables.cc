#include <algorithm>
#include <cstdio>

#include "krosac/platform/internal/Text.h"
#include "krosac/traveltimes/internal/Tables.h"
#include "krosac/traveltimes/internal/TravelTimeScanner.h"

namespace krosac {
namespace {

constexpr std::size_t kMaxColumns = 18;

// Joins two texts in lower case. Returns false if they do not fit.
bool joinLowerCase(const char* first, const char* second, char (&joined)[1024]) {
  if (!first || !second || std::strlen(first) + std::strlen(second) >= sizeof joined) return false;
  char* end = joined;
  for (const char* text : {first, second}) {
    for (; *text; ++text) *end++ = lowerCase(*text);
  }
  *end = '\0';
  return true;
}

}  // namespace

void readPhaseTable(const char* prefix, const char* phase, const char* message,
                    std::int32_t columns, std::int32_t capacity, float* table, std::int32_t* rows) {
  TravelTimeScanner file;
  char name[1024];
  if (!joinLowerCase(prefix, phase, name) || !file.openResource(name)) {
    std::fputs(message, stderr);
    return;
  }
  float row[kMaxColumns], distance;
  std::int32_t complete = 0;
  for (; complete < capacity; ++complete) {
    bool converts = file.nextFloat(distance);
    for (std::int32_t c = 0; converts && c < columns; ++c) converts = file.nextFloat(row[c]);
    if (!converts) break;
    table = std::copy_n(row, columns, table);
  }
  *rows = complete;
}

}  // namespace krosac
