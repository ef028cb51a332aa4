#include "krosac/platform/Archive.h"

#include <array>
#include <bit>
#include <cstring>
#include <utility>

#include "krosac/platform/LastReason.h"
#include "krosac/platform/Log.h"
#include "krosac/platform/internal/Crc32.h"
#include "krosac/platform/internal/Reason.h"

// The format. A number is a little-endian base-128 varint. A text is a number of bytes, then those
// bytes.
//
// clang-format off
//   8 bytes   "krosacKA"
//   1 byte    version, 1
//   names     their number, then each as a text: class names and keys
//   objects   their number, then for each: index of its class name, number of bytes of its entries,
//             its entries
//   4 bytes   CRC-32 of all bytes before, little-endian
// clang-format on
//
// An entry is the index of its key, a type byte and a value. The first object is the root.

namespace krosac {
namespace {

constexpr std::string_view kMagic = "krosacKA";
constexpr char kVersion = 1;
constexpr std::size_t kChecksumBytes = 4;

enum Type : unsigned char {
  kBool = 1,
  kChar,
  kInt32,
  kFloat,
  kDouble,
  kText,
  kTexts,
  kBytes,
  kDate,
  kObject,
  kObjects
};

// The size in bytes of a value of fixed width; 0 for the other types.
constexpr std::size_t fixedWidth(unsigned char type) {
  switch (type) {
    case kBool:
    case kChar:
      return 1;
    case kInt32:
    case kFloat:
      return 4;
    case kDouble:
    case kDate:
      return 8;
    default:
      return 0;
  }
}

template <typename T>
using BitsOf = std::conditional_t<sizeof(T) == 1, std::uint8_t,
                                  std::conditional_t<sizeof(T) == 4, std::uint32_t, std::uint64_t>>;

template <typename T>
void appendLittleEndian(std::string& out, T value) {
  const auto bits = std::bit_cast<BitsOf<T>>(value);
  for (std::size_t i = 0; i < sizeof value; ++i)
    out.push_back(static_cast<char>(bits >> 8 * i & 0xFF));
}

template <typename T>
T littleEndianAt(const char* at) {
  BitsOf<T> bits = 0;
  for (std::size_t i = 0; i < sizeof bits; ++i) {
    bits = static_cast<BitsOf<T>>(bits | BitsOf<T>{static_cast<unsigned char>(at[i])} << 8 * i);
  }
  return std::bit_cast<T>(bits);
}

}  // namespace

// ---- Writing ----

void KeyedArchiver::putNumber(std::uint64_t value) {
  for (; value >= 0x80; value >>= 7) out_->push_back(static_cast<char>(value | 0x80));
  out_->push_back(static_cast<char>(value));
}

void KeyedArchiver::putText(std::string_view text) {
  putNumber(text.size());
  out_->append(text);
}

std::uint64_t KeyedArchiver::nameIndex(std::string_view name) {
  const auto [place, isNew] = nameIndexes_.try_emplace(std::string(name), names_.size());
  if (isNew) names_.emplace_back(name);
  return place->second;
}

void KeyedArchiver::putEntry(const char* key, unsigned char type) {
  putNumber(nameIndex(key));
  out_->push_back(static_cast<char>(type));
}

// A reference is the index of the object plus one; 0 means none.
void KeyedArchiver::putReference(const Archivable* object) {
  if (!object) return putNumber(0);
  const auto [place, isNew] = objectIndexes_.try_emplace(object, objects_.size());
  if (isNew) objects_.emplace_back(object);
  putNumber(place->second + 1);
}

void KeyedArchiver::encodeBool(const char* key, bool value) {
  putEntry(key, kBool);
  out_->push_back(value ? 1 : 0);
}

void KeyedArchiver::encodeChar(const char* key, signed char value) {
  putEntry(key, kChar);
  appendLittleEndian(*out_, value);
}

void KeyedArchiver::encodeInt32(const char* key, std::int32_t value) {
  putEntry(key, kInt32);
  appendLittleEndian(*out_, value);
}

void KeyedArchiver::encodeFloat(const char* key, float value) {
  putEntry(key, kFloat);
  appendLittleEndian(*out_, value);
}

void KeyedArchiver::encodeDouble(const char* key, double value) {
  putEntry(key, kDouble);
  appendLittleEndian(*out_, value);
}

void KeyedArchiver::encodeText(const char* key, const OptionalText& text) {
  if (!text) return;
  putEntry(key, kText);
  putText(*text);
}

void KeyedArchiver::encodeTexts(const char* key, const std::vector<std::string>& texts) {
  putEntry(key, kTexts);
  putNumber(texts.size());
  for (const auto& text : texts) putText(text);
}

void KeyedArchiver::encodeBytes(const char* key, const ByteBuffer* bytes) {
  if (!bytes) return;
  putEntry(key, kBytes);
  putText({reinterpret_cast<const char*>(bytes->bytes()), bytes->length()});
}

void KeyedArchiver::encodeDate(const char* key, const std::optional<Date>& date) {
  if (!date) return;
  putEntry(key, kDate);
  appendLittleEndian(*out_, date->secondsSince1970);
}

void KeyedArchiver::encodeObject(const char* key, const Archivable* object) {
  if (!object) return;
  putEntry(key, kObject);
  putReference(object);
}

void KeyedArchiver::beginObjects(const char* key, std::size_t count) {
  putEntry(key, kObjects);
  putNumber(count);
}

Ref<ByteBuffer> KeyedArchiver::finish(const Archivable& root) {
  std::string body, entries;
  objects_.emplace_back(&root);
  objectIndexes_.emplace(&root, 0);
  // Encoding an object appends the objects it refers to, so nesting needs no recursion here.
  for (std::size_t i = 0; i < objects_.size(); ++i) {
    const Ref<const Archivable> object = objects_[i];
    entries.clear();
    out_ = &entries;
    object->encodeWithCoder(*this);
    out_ = &body;
    putNumber(nameIndex(object->archiveClassName()));
    putText(entries);
  }
  std::string all(kMagic);
  all.push_back(kVersion);
  out_ = &all;
  putNumber(names_.size());
  for (const auto& name : names_) putText(name);
  putNumber(objects_.size());
  all += body;
  appendLittleEndian(all, crc32(all));
  return ByteBuffer::copyOf(all.data(), all.size());
}

Ref<ByteBuffer> archive(const Archivable& root) {
  clearReason();
  return KeyedArchiver().finish(root);
}

// ---- Reading ----

KeyedUnarchiver::KeyedUnarchiver(const ByteBuffer& archive)
    : bytes_(reinterpret_cast<const char*>(archive.bytes()), archive.length()) {
  clearReason();
  good_ = check();
  if (!good_) log("A keyed archive is damaged or of an unknown version; nothing is taken from it.");
}

bool KeyedUnarchiver::getNumber(std::size_t& at, std::uint64_t& value) const {
  value = 0;
  for (int shift = 0; at < bytes_.size() && shift < 63; shift += 7) {
    const auto byte = static_cast<unsigned char>(bytes_[at++]);
    value |= std::uint64_t{byte & 0x7Fu} << shift;
    if (byte < 0x80) return true;
  }
  return false;
}

bool KeyedUnarchiver::getText(std::size_t& at, std::string_view& text) const {
  std::uint64_t length;
  if (!getNumber(at, length) || length > bytes_.size() - at) return false;
  text = bytes_.substr(at, length);
  at += length;
  return true;
}

// Skips a value. Returns false unless it is complete and refers only to existing objects.
bool KeyedUnarchiver::skipValue(std::size_t& at, unsigned char type) const {
  std::string_view text;
  std::uint64_t count = 1, reference;
  if (const std::size_t width = fixedWidth(type)) {
    if (bytes_.size() - at < width) return false;
    at += width;
    return true;
  }
  switch (type) {
    case kText:
    case kBytes:
      return getText(at, text);
    case kTexts:
      if (!getCount(at, count)) return false;
      for (; count > 0; --count) {
        if (!getText(at, text)) return false;
      }
      return true;
    case kObjects:
      if (!getCount(at, count)) return false;
      [[fallthrough]];
    case kObject:
      for (; count > 0; --count) {
        if (!getNumber(at, reference) || reference > objects_.size()) return false;
      }
      return true;
    default:
      return false;
  }
}

// Reads the number of the items that follow. Each takes at least one byte, so a number above that
// of the remaining bytes is damage.
bool KeyedUnarchiver::getCount(std::size_t& at, std::uint64_t& count) const {
  return getNumber(at, count) && count <= bytes_.size() - at;
}

// Checks the whole archive once, so that the decoders can rely on its structure.
bool KeyedUnarchiver::check() {
  std::size_t at = kMagic.size() + 1;
  if (bytes_.size() < at + kChecksumBytes || !bytes_.starts_with(kMagic)) {
    setReason("not a keyed archive: %zu bytes", bytes_.size());
    return false;
  }
  if (bytes_[kMagic.size()] != kVersion) {
    setReason("keyed archive of version %d, not %d", bytes_[kMagic.size()], kVersion);
    return false;
  }
  const std::string_view checked = bytes_.substr(0, bytes_.size() - kChecksumBytes);
  const auto stated = littleEndianAt<std::uint32_t>(checked.data() + checked.size());
  if (const std::uint32_t computed = crc32(checked); computed != stated) {
    setReason("damaged keyed archive: checksum %08x, computed %08x", stated, computed);
    return false;
  }
  bytes_ = checked;
  const bool isWhole = checkStructure(at);
  if (!isWhole) setReason("damaged keyed archive: wrong structure before byte %zu", at);
  return isWhole;
}

bool KeyedUnarchiver::checkStructure(std::size_t& at) {
  std::uint64_t count, index;
  std::string_view text;
  if (!getCount(at, count)) return false;
  names_.reserve(count);
  for (; count > 0; --count) {
    if (!getText(at, text)) return false;
    names_.push_back(text);
  }
  if (!getCount(at, count) || count == 0) return false;
  objects_.reserve(count);
  for (; count > 0; --count) {
    objects_.push_back({at, nullptr});
    if (!getNumber(at, index) || index >= names_.size() || !getText(at, text)) return false;
  }
  if (at != bytes_.size()) return false;
  for (std::size_t i = 0; i < objects_.size(); ++i) {
    at = objects_[i].offset;
    getNumber(at, index);
    getNumber(at, count);
    const std::size_t end = at + count;
    while (at < end) {
      if (!getNumber(at, index) || index >= names_.size() || at >= end) return false;
      const auto type = static_cast<unsigned char>(bytes_[at++]);
      if (!skipValue(at, type)) return false;
    }
    if (at != end) return false;
  }
  return true;
}

std::string_view KeyedUnarchiver::className(std::size_t index) const {
  std::size_t at = objects_[index].offset;
  std::uint64_t name = 0;
  getNumber(at, name);
  return names_[name];
}

bool KeyedUnarchiver::enter(std::size_t index) {
  if (depth_ >= kDeepestNesting) {
    if (good_) {
      setReason("keyed archive nests more than %d objects", kDeepestNesting);
      log("A keyed archive nests more than %d objects; nothing is taken from it.", kDeepestNesting);
    }
    good_ = false;
    return false;
  }
  ++depth_;
  std::size_t at = objects_[index].offset;
  std::uint64_t skipped, length = 0;
  getNumber(at, skipped);
  getNumber(at, length);
  frame_ = {at, at, at + length};
  return true;
}

void KeyedUnarchiver::leave(const Frame& outer) {
  --depth_;
  frame_ = outer;
}

void KeyedUnarchiver::refuse(std::size_t index, const char* wanted) const {
  const std::string held(className(index));
  if (wanted) {
    setReason("keyed archive holds a %s, not a %s", held.c_str(), wanted);
  } else if (*lastReason() == '\0') {
    setReason("a %s could not be decoded", held.c_str());
  }
}

void KeyedUnarchiver::accept() const {
  clearReason();
}

// Keys are mostly decoded in the order in which they were encoded, so the search starts behind the
// last key found.
std::size_t KeyedUnarchiver::find(const char* key, unsigned char type) {
  const auto search = [&](std::size_t at, std::size_t end) -> std::size_t {
    while (at < end) {
      std::uint64_t name = 0;
      getNumber(at, name);
      const auto entryType = static_cast<unsigned char>(bytes_[at++]);
      const std::size_t value = at;
      skipValue(at, entryType);
      if (names_[name] != key) continue;
      frame_.next = at;
      return entryType == type ? value : 0;
    }
    return 0;
  };
  const std::size_t start = frame_.next;
  const std::size_t found = search(start, frame_.end);
  return found ? found : search(frame_.entries, start);
}

template <typename T>
T KeyedUnarchiver::plainValue(const char* key, unsigned char type) {
  const std::size_t at = find(key, type);
  return at ? littleEndianAt<T>(bytes_.data() + at) : T{};
}

bool KeyedUnarchiver::decodeBool(const char* key) {
  return plainValue<std::uint8_t>(key, kBool) != 0;
}
signed char KeyedUnarchiver::decodeChar(const char* key) {
  return plainValue<signed char>(key, kChar);
}
std::int32_t KeyedUnarchiver::decodeInt32(const char* key) {
  return plainValue<std::int32_t>(key, kInt32);
}
float KeyedUnarchiver::decodeFloat(const char* key) {
  return plainValue<float>(key, kFloat);
}
double KeyedUnarchiver::decodeDouble(const char* key) {
  return plainValue<double>(key, kDouble);
}

std::optional<Date> KeyedUnarchiver::decodeDate(const char* key) {
  const std::size_t at = find(key, kDate);
  return at ? std::optional<Date>(Date{littleEndianAt<double>(bytes_.data() + at)}) : std::nullopt;
}

OptionalText KeyedUnarchiver::decodeText(const char* key) {
  std::size_t at = find(key, kText);
  std::string_view text;
  if (!at || !getText(at, text)) return std::nullopt;
  return std::string(text);
}

std::vector<std::string> KeyedUnarchiver::decodeTexts(const char* key) {
  std::vector<std::string> texts;
  std::size_t at = find(key, kTexts);
  std::uint64_t count = 0;
  std::string_view text;
  if (at && getCount(at, count)) texts.reserve(count);
  for (; count > 0 && getText(at, text); --count) texts.emplace_back(text);
  return texts;
}

Ref<ByteBuffer> KeyedUnarchiver::decodeBytes(const char* key) {
  std::size_t at = find(key, kBytes);
  std::string_view bytes;
  return at && getText(at, bytes) ? ByteBuffer::copyOf(bytes.data(), bytes.size()) : nullptr;
}

std::size_t KeyedUnarchiver::objectIndex(const char* key) {
  std::size_t at = find(key, kObject);
  std::uint64_t reference = 0;
  if (at) getNumber(at, reference);
  return reference ? reference - 1 : kNoObject;
}

std::vector<std::size_t> KeyedUnarchiver::objectIndexes(const char* key) {
  std::vector<std::size_t> indexes;
  std::size_t at = find(key, kObjects);
  std::uint64_t count = 0, reference = 0;
  if (at && getCount(at, count)) indexes.reserve(count);
  for (; count > 0 && getNumber(at, reference); --count)
    indexes.push_back(reference ? reference - 1 : kNoObject);
  return indexes;
}

}  // namespace krosac
