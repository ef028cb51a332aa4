// What a record archives.
#ifndef KROSAC_TESTS_CATALOG_ARCHIVEDKEYS_H
#define KROSAC_TESTS_CATALOG_ARCHIVEDKEYS_H

#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "krosac/platform/Archive.h"

namespace krosac {

// A record as its init leaves it.
template <typename T>
Ref<T> newRecord() {
  auto record = make<T>();
  record->init();
  return record;
}

inline std::string archivedBytes(const Archivable& record) {
  const auto bytes = archive(record);
  return {reinterpret_cast<const char*>(bytes->bytes()), bytes->length()};
}

// An archive lists its names as they first appear, each behind its length: the record's keys, then
// its class, then those of the objects that it refers to.
inline void expectKeys(const Archivable& record, const std::string& keys) {
  std::istringstream words(keys);
  std::string expected;
  for (std::string key; words >> key;) expected += static_cast<char>(key.size()) + key;
  EXPECT_EQ(archivedBytes(record).substr(10, expected.size()), expected);
}

// The copy, which must archive to the same bytes.
template <typename T>
Ref<T> expectCopied(const Ref<T>& record) {
  const auto copy = record->copyWithZone();
  EXPECT_FALSE(copy == record);
  EXPECT_EQ(archivedBytes(*copy), archivedBytes(*record));
  return copy;
}

}  // namespace krosac

#endif
