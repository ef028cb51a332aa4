// Keyed archives store objects in one byte buffer, each as values under keys.
//
// An archive is CBOR (RFC 8949), which readers for most languages open; docs/archives.md describes
// the layout. An object that is referred to twice is stored once and shared again after decoding,
// also in cycles.
// Decoding a damaged or hostile archive returns nothing, sets lastReason() and logs one line. It
// never recurses deeper than kDeepestNesting objects and never allocates more than a small multiple
// of the archive's size.
#ifndef KROSAC_PLATFORM_ARCHIVE_H
#define KROSAC_PLATFORM_ARCHIVE_H

#include <cstddef>
#include <cstdint>
#include <functional>
#include <new>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
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

// The greatest depth of nested objects that can be archived and decoded.
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
    beginList(key, objects.size());
    for (const auto& object : objects) putObject(object.get());
  }

 private:
  friend KROSAC_API Ref<ByteBuffer> archive(const Archivable& root);

  // Finds a key by its characters alone, so that no key is copied to be looked up.
  struct TextHash : std::hash<std::string_view> {
    using is_transparent = void;
  };

  // Does not throw, so that the table stores no hashes.
  struct ObjectHash {
    std::size_t operator()(const Ref<const Archivable>& object) const noexcept {
      return std::hash<const void*>()(object.get());
    }
  };

  KeyedArchiver() = default;
  void put(const void* bytes, std::size_t length);
  void putByte(unsigned char byte) { put(&byte, 1); }
  void putHead(unsigned major, std::uint64_t argument);
  void putInteger(std::int64_t value);
  template <typename T>
  void putFixed(unsigned char head, T value);
  void putString(unsigned major, std::string_view bytes);
  void putText(std::string_view text);
  void putName(std::string_view name);
  void putObject(const Archivable* object);
  void beginList(const char* key, std::size_t count);
  Ref<ByteBuffer> finish(const Archivable& root);

  Ref<ByteBuffer> out_;
  std::size_t length_ = 0;
  std::uint64_t strings_ = 0;  // numbered so far
  std::unordered_map<std::string, std::uint64_t, TextHash, std::equal_to<>> names_;
  // The objects' numbers. They are kept, so that no later object gets an address again.
  std::unordered_map<Ref<const Archivable>, std::uint64_t, ObjectHash> objects_;
  int depth_ = 0;
  bool isTooDeep_ = false;
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
  // An object in the archive: its first entry, the end of its map, and what was decoded from it.
  struct Stored {
    std::size_t begin = 0, end = 0;
    Ref<Object> object;
  };
  // The object whose entries are being read, and where the search for the next key starts.
  struct Frame {
    std::size_t entries = 0, next = 0, end = 0;
  };
  struct Head {
    unsigned major = 0, info = 0;
    std::uint64_t argument = 0;
  };
  static constexpr std::size_t kNoObject = static_cast<std::size_t>(-1);

  template <typename T>
  Ref<T> objectAt(std::size_t index) try {
    if (!good_ || index >= objects_.size()) return nullptr;
    if (objects_[index].object) return Ref<T>(dynamic_cast<T*>(objects_[index].object.get()));
    auto object = make<T>();
    if (!object) throw std::bad_alloc();
    if (className(index) != object->archiveClassName()) {
      noteOtherClass(index, object->archiveClassName());
      return nullptr;
    }
    // Known before its fields are read, so that an object which refers back to it finds it.
    objects_[index].object = object;
    const Frame outer = enter(index);
    good_ = static_cast<bool>(object->initWithCoder(*this)) && good_;
    frame_ = outer;
    if (good_) return object;
    noteFailure(index);
    return nullptr;
  } catch (const std::bad_alloc&) {
    refuseForMemory();
    return nullptr;
  }

  void refuseForMemory();
  // Set the reason that the object at this index was refused: for its class, or for a cause that
  // its own fields have not named. accept() clears the reason after objects of other classes were
  // skipped.
  void noteOtherClass(std::size_t index, const char* wanted) const;
  void noteFailure(std::size_t index) const;
  void accept() const;
  std::string_view className(std::size_t index) const;
  Frame enter(std::size_t index);
  std::size_t objectIndex(const char* key);
  std::vector<std::size_t> objectIndexes(const char* key);
  // The place of the value under the key, or 0; the place of a list's first item and their number.
  std::size_t find(const char* key);
  std::pair<std::size_t, std::uint64_t> findList(const char* key);
  template <typename T>
  T fixedAt(std::size_t at, unsigned char head) const;

  bool check();
  bool checkString(std::size_t& at, std::string_view& string);
  bool checkObject(std::size_t& at, int depth);
  bool checkValue(std::size_t& at, int depth, bool isInList);
  bool getHead(std::size_t& at, Head& head) const;
  bool getString(std::size_t& at, std::string_view& string) const;
  std::size_t getObject(std::size_t& at);
  void skip(std::size_t& at);
  std::size_t objectBeginningAt(std::size_t at);

  std::string_view bytes_;
  bool good_ = false;
  bool isTooDeep_ = false;
  std::vector<std::string_view> strings_;  // by number
  std::vector<Stored> objects_;
  std::size_t lastObject_ = 0;  // the last one that objectBeginningAt found
  Frame frame_;
};

// The archive of an object and of all objects that it refers to; empty, with a reason, if
// memory runs out or the objects nest too deep.
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
