#include "krosac/traveltimes/internal/Tables.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <new>

#include "krosac/platform/LastReason.h"
#include "krosac/platform/Resources.h"
#include "krosac/platform/internal/Reason.h"
#include "krosac/platform/internal/Text.h"

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

TableFiles::TableFiles() {
  clearReason();
}

TableFiles::~TableFiles() {
  if (!reason_[0] && !otherFolder_.empty())
    setReason("tables from different folders: %s and %s", folder_.c_str(), otherFolder_.c_str());
  else if (!reason_[0])
    clearReason();
  else if (std::strcmp(reason_, lastReason()) != 0)
    setReason("%s", reason_);
}

void TableFiles::keepReason() {
  std::snprintf(reason_, sizeof reason_, "%s", lastReason());
}

bool TableFiles::open(const char* path, TravelTimeScanner& file) noexcept {
  try {
    path_ = path;
    if (file.open(path)) return true;  // sets the reason where it cannot
  } catch (const std::bad_alloc&) {
    setMemoryReason();
  }
  keepReason();
  return false;
}

bool TableFiles::openResource(const char* name, const char* message,
                              TravelTimeScanner& file) noexcept {
  clearReason();
  try {
    const auto path = name ? pathForResource(name, "txt") : std::nullopt;
    if (path && open(path->c_str(), file)) {
      const std::string folder = path->substr(0, path->rfind('/'));
      if (folder_.empty()) folder_ = folder;
      if (folder != folder_) otherFolder_ = folder;
      return true;
    }
    if (!lastReason()[0]) setReason("%s.txt: data file not found", name ? name : "(null)");
  } catch (const std::bad_alloc&) {
    setMemoryReason();
  }
  keepReason();
  std::fputs(message, stderr);
  return false;
}

void TableFiles::reportDamage(const TravelTimeScanner& file, const char* kind, std::size_t needed,
                              std::size_t found) {
  setReason("%s, line %zu: %zu %s needed, %zu found", path_.c_str(), file.line(), needed, kind,
            found);
  keepReason();
}

void TableFiles::reportBadCount(const TravelTimeScanner& file, const char* kind,
                                std::size_t limit) {
  setReason("%s, line %zu: number of %s from 1 to %zu needed", path_.c_str(), file.line(), kind,
            limit);
  keepReason();
}

void readPhaseTable(TableFiles& files, const char* prefix, const char* phase, const char* message,
                    std::size_t columns, std::int32_t capacity, float* table, std::int32_t* rows) {
  TravelTimeScanner file;
  char name[1024] = "";
  const bool named = joinLowerCase(prefix, phase, name);
  if (!files.openResource(named ? name : nullptr, message, file)) return;
  float row[1 + kMaxColumns];  // the distance, then the times
  std::int32_t complete = 0;
  for (; complete < capacity; ++complete) {
    std::size_t found = 0;
    while (found <= columns && file.nextFloat(row[found])) ++found;
    if (found <= columns) {
      const bool endsAfterARow = found == 0 && complete > 0 && file.atEnd();
      if (!endsAfterARow) files.reportDamage(file, "numbers in a row", columns + 1, found);
      break;
    }
    if (table) table = std::copy_n(row + 1, columns, table);
  }
  if (rows) *rows = complete;
}

}  // namespace krosac
