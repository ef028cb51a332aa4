// Keyed archives store objects in one byte buffer, each as values under keys.
//
// The format is versioned, little-endian and self-describing, and ends with a checksum. An object
// that is referred to twice is stored once and shared again after decoding, also in cycles.
// Decoding a damaged or hostile archive returns nothing, sets lastReason() and logs one line. It
// never recurses deeper than kDeepestNesting objects and never allocates more than a small multiple
// of the archive's size.
#ifndef KROSAC_PLATFORM_ARCHIVE_H
#define KROSAC_PLATFORM_ARCHIVE_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "krosac/platform/ByteBuffer.h"
#include "krosac/platform/Date.h"
#include "krosac/platform/Export.h"
#include "krosac/platform/Object.h"
#include "krosac/platform/Text.h"

namespace krosac {

class KeyedArchiver;
class KeyedUnarchiver;

// An object that can be archived. A class that can be decoded also has a method
// initWithCoder(KeyedUnarchiver&), whose result converts to true on success.
class KROSAC_API Archivable : public Object {
 public:
  // The name that an archive stores for the class. Decoding as another class returns none.
  virtual const char* archiveClassName() const = 0;
  // Writes the object's fields under their keys.
  virtual void encodeWithCoder(KeyedArchiver& coder) const = 0;
};

// The greatest depth of nested objects that can be decoded.
inline constexpr int kDeepestNesting = 64;

// Writes values under keys. An object's encodeWithCoder calls these methods for its fields. Only
// archive() makes a KeyedArchiver.
class KROSAC_API KeyedArchiver {
 public:
  // Write one value. The key is copied and must differ from the object's other keys.
  void encodeBool(const char* key, bool value);
  void encodeChar(const char* key, signed char value);
  void encodeInt32(const char* key, std::int32_t value);
  void encodeFloat(const char* key, float value);
  void encodeDouble(const char* key, double value);

  // Write a text, a list of texts, bytes, a date, an object or a list of objects. An absent value
  // is not written. An object that was written before is stored as a reference.
  void encodeText(const char* key, const OptionalText& text);
  void encodeTexts(const char* key, const std::vector<std::string>& texts);
  void encodeBytes(const char* key, const ByteBuffer* bytes);
  void encodeDate(const char* key, const std::optional<Date>& date);
  void encodeObject(const char* key, const Archivable* object);
  template <typename T>
  void encodeObjects(const char* key, const std::vector<Ref<T>>& objects) {
    beginObjects(key, objects.size());
    for (const auto& object : objects) putReference(object.get());
  }

 private:
  friend KROSAC_API Ref<ByteBuffer> archive(const Archivable& root);

  KeyedArchiver() = default;
  void putEntry(const char* key, unsigned char type);
  void putNumber(std::uint64_t value);
  void putText(std::string_view text);
  void putReference(const Archivable* object);
  void beginObjects(const char* key, std::size_t count);
  std::uint64_t nameIndex(std::string_view name);
  Ref<ByteBuffer> finish(const Archivable& root);

  std::string* out_ = nullptr;
  std::vector<std::string> names_;
  std::unordered_map<std::string, std::uint64_t> nameIndexes_;
  std::vector<Ref<const Archivable>> objects_;
  std::unordered_map<const Archivable*, std::uint64_t> objectIndexes_;
};

// Reads values by key. An absent key and one of another type decode as zero or none.
class KROSAC_API KeyedUnarchiver {
 public:
  // Checks the whole archive; isGood() returns false if it is damaged. The bytes must outlive this
  // object.
  explicit KeyedUnarchiver(const ByteBuffer& archive);
  bool isGood() const noexcept { return good_; }

  // The number under the key; zero if there is none.
  bool decodeBool(const char* key);
  signed char decodeChar(const char* key);
  std::int32_t decodeInt32(const char* key);
  float decodeFloat(const char* key);
  double decodeDouble(const char* key);

  // The text, list of texts, bytes or date under the key; none or an empty list if there is none.
  OptionalText decodeText(const char* key);
  std::vector<std::string> decodeTexts(const char* key);
  Ref<ByteBuffer> decodeBytes(const char* key);
  std::optional<Date> decodeDate(const char* key);

  // The object under the key; none if it is of another class.
  template <typename T>
  Ref<T> decodeObject(const char* key) {
    return objectAt<T>(objectIndex(key));
  }
  // The list under the key, without the objects of other classes.
  template <typename T>
  std::vector<Ref<T>> decodeObjects(const char* key) {
    const std::vector<std::size_t> indexes = objectIndexes(key);
    std::vector<Ref<T>> objects;
    objects.reserve(indexes.size());
    for (const std::size_t index : indexes) {
      if (auto object = objectAt<T>(index)) objects.push_back(object);
    }
    return objects;
  }
  // The object that the archive was made from; none, with a reason, if the archive is damaged or
  // the object is of another class.
  template <typename T>
  Ref<T> decodeRoot() {
    auto root = objectAt<T>(0);
    if (root) accept();
    return root;
  }

 private:
  struct Stored {
    std::size_t offset = 0;
    Ref<Object> object;
  };
  struct Frame {
    std::size_t entries = 0, next = 0, end = 0;
  };
  static constexpr std::size_t kNoObject = static_cast<std::size_t>(-1);

  template <typename T>
  Ref<T> objectAt(std::size_t index) {
    if (!good_ || index >= objects_.size()) return nullptr;
    if (objects_[index].object) return Ref<T>(dynamic_cast<T*>(objects_[index].object.get()));
    auto object = make<T>();
    if (!object || className(index) != object->archiveClassName()) {
      refuse(index, object ? object->archiveClassName() : nullptr);
      return nullptr;
    }
    // Stored before its fields are read, so that objects can refer back to it.
    objects_[index].object = object;
    const Frame outer = frame_;
    if (!enter(index)) return nullptr;
    good_ = static_cast<bool>(object->initWithCoder(*this)) && good_;
    leave(outer);
    if (good_) return object;
    refuse(index, nullptr);
    return nullptr;
  }

  std::string_view className(std::size_t index) const;
  bool enter(std::size_t index);
  void leave(const Frame& outer);
  // Set the reason that the object at this index was refused, null for another cause than its
  // class, and clear it after objects of other classes were skipped.
  void refuse(std::size_t index, const char* wanted) const;
  void accept() const;
  std::size_t objectIndex(const char* key);
  std::vector<std::size_t> objectIndexes(const char* key);
  // The offset of the value under the key; 0 if there is none of this type.
  std::size_t find(const char* key, unsigned char type);
  template <typename T>
  T plainValue(const char* key, unsigned char type);

  bool check();
  bool checkStructure(std::size_t& at);
  bool skipValue(std::size_t& at, unsigned char type) const;
  bool getNumber(std::size_t& at, std::uint64_t& value) const;
  bool getCount(std::size_t& at, std::uint64_t& count) const;
  bool getText(std::size_t& at, std::string_view& text) const;

  std::string_view bytes_;
  bool good_ = false;
  int depth_ = 0;
  std::vector<std::string_view> names_;
  std::vector<Stored> objects_;
  Frame frame_;
};

// The archive of an object and of all objects that it refers to; empty if memory runs out.
KROSAC_API Ref<ByteBuffer> archive(const Archivable& root);

// The object that an archive was made from; none, with a reason, if the archive is damaged or holds
// another class. Check a SacObject by isSacFile() afterwards, since its image is restored
// unchecked.
template <typename T>
Ref<T> unarchive(const ByteBuffer& bytes) {
  return KeyedUnarchiver(bytes).template decodeRoot<T>();
}

// A deep copy made by archiving and unarchiving; the record classes are copied this way.
template <typename T>
Ref<T> archivedCopy(const T& object) {
  const auto bytes = archive(object);
  return bytes ? unarchive<T>(*bytes) : nullptr;
}

}  // namespace krosac

#endif
