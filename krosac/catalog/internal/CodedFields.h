// What the records share: a new location, and archiving from one list of fields:
//
//   constexpr std::tuple kFields{codedField("mb", &Record::mb, &Record::setMb), ...};
//
// Fields are encoded and decoded in the order of the list, and decoded through their setters.
#ifndef KROSAC_CATALOG_INTERNAL_CODEDFIELDS_H
#define KROSAC_CATALOG_INTERNAL_CODEDFIELDS_H

#include <cstdint>
#include <optional>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "krosac/catalog/kroGeoLocation.h"
#include "krosac/platform/Archive.h"
#include "krosac/platform/internal/Reason.h"

namespace krosac {

template <typename Getter, typename Record, typename Value>
struct CodedField {
  const char* key;
  Getter get;
  void (Record::*set)(Value);
};

template <typename Getter, typename Record, typename Value>
constexpr CodedField<Getter, Record, Value> codedField(const char* key, Getter get,
                                                       void (Record::*set)(Value)) {
  return {key, get, set};
}

inline void encode(KeyedArchiver& coder, const char* key, bool value) {
  coder.encodeBool(key, value);
}
inline void encode(KeyedArchiver& coder, const char* key, signed char value) {
  coder.encodeChar(key, value);
}
inline void encode(KeyedArchiver& coder, const char* key, std::int32_t value) {
  coder.encodeInt32(key, value);
}
inline void encode(KeyedArchiver& coder, const char* key, float value) {
  coder.encodeFloat(key, value);
}
inline void encode(KeyedArchiver& coder, const char* key, double value) {
  coder.encodeDouble(key, value);
}
inline void encode(KeyedArchiver& coder, const char* key, const OptionalText& text) {
  coder.encodeText(key, text);
}
inline void encode(KeyedArchiver& coder, const char* key, const std::vector<std::string>& texts) {
  coder.encodeTexts(key, texts);
}
inline void encode(KeyedArchiver& coder, const char* key, const std::optional<Date>& date) {
  coder.encodeDate(key, date);
}
template <typename T>
void encode(KeyedArchiver& coder, const char* key, const Ref<T>& object) {
  coder.encodeObject(key, object.get());
}
template <typename T>
void encode(KeyedArchiver& coder, const char* key, const std::vector<Ref<T>>& objects) {
  coder.encodeObjects(key, objects);
}

inline void decode(KeyedUnarchiver& coder, const char* key, bool& value) {
  value = coder.decodeBool(key);
}
inline void decode(KeyedUnarchiver& coder, const char* key, signed char& value) {
  value = coder.decodeChar(key);
}
inline void decode(KeyedUnarchiver& coder, const char* key, std::int32_t& value) {
  value = coder.decodeInt32(key);
}
inline void decode(KeyedUnarchiver& coder, const char* key, float& value) {
  value = coder.decodeFloat(key);
}
inline void decode(KeyedUnarchiver& coder, const char* key, double& value) {
  value = coder.decodeDouble(key);
}
inline void decode(KeyedUnarchiver& coder, const char* key, OptionalText& text) {
  text = coder.decodeText(key);
}
inline void decode(KeyedUnarchiver& coder, const char* key, std::vector<std::string>& texts) {
  texts = coder.decodeTexts(key);
}
inline void decode(KeyedUnarchiver& coder, const char* key, std::optional<Date>& date) {
  date = coder.decodeDate(key);
}
template <typename T>
void decode(KeyedUnarchiver& coder, const char* key, Ref<T>& object) {
  object = coder.decodeObject<T>(key);
}
template <typename T>
void decode(KeyedUnarchiver& coder, const char* key, std::vector<Ref<T>>& objects) {
  objects = coder.decodeObjects<T>(key);
}

template <typename Record, typename... Fields>
void encodeFields(const std::tuple<Fields...>& fields, const Record& record, KeyedArchiver& coder) {
  const auto encodeField = [&](const auto& field) {
    encode(coder, field.key, (record.*field.get)());
  };
  std::apply([&](const auto&... field) { (encodeField(field), ...); }, fields);
}

template <typename Record, typename... Fields>
void decodeFields(const std::tuple<Fields...>& fields, Record& record, KeyedUnarchiver& coder) {
  const auto decodeField =
      [&]<typename Getter, typename Value>(const CodedField<Getter, Record, Value>& field) {
        Value value{};
        decode(coder, field.key, value);
        (record.*field.set)(std::move(value));
      };
  std::apply([&](const auto&... field) { (decodeField(field), ...); }, fields);
}

// Returns an unset location for a record; empty, with a reason, without memory.
inline Ref<kroGeoLocation> newLocation() {
  clearReason();
  auto location = make<kroGeoLocation>();
  if (location && location->init()) return location;
  setMemoryReason();
  return nullptr;
}

}  // namespace krosac

#endif
