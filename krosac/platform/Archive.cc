#include "krosac/platform/Archive.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <limits>
#include <utility>

#include "krosac/platform/LastReason.h"
#include "krosac/platform/Log.h"
#include "krosac/platform/internal/Crc32.h"
#include "krosac/platform/internal/Reason.h"

// The layout, in the diagnostic notation of RFC 8949 (docs/archives.md has an example in bytes):
//
//   55799(["krosac", 1, 256(OBJECT), CRC-32 of all bytes before it, as five bytes])
//
//   OBJECT   28({_ "@class": "kroHypocenter", "mb": 6.1, ...}), or 29(n) for the n-th object again
//   key      text, written once; 25(n) is the n-th string of the archive again
//   value    true, integer, float, double, text, bytes, 1(double) for a date, OBJECT, or a list of
//            texts or of OBJECTs and nulls

namespace krosac {
namespace {

constexpr std::string_view kFront("\xd9\xd9\xf7\x84\x66krosac\x01\xd9\x01\x00", 15);
constexpr std::size_t kChecksumBytes = 5;
constexpr std::string_view kClassKey = "@class";

// The kinds of data items, which are the upper three bits of their first byte.
enum Major : unsigned { kUnsigned, kNegative, kBytes, kText, kArray, kMap, kTag, kSimple };

// Whole first bytes.
enum : unsigned char {
  kFalse = 0xf4,
  kTrue = 0xf5,
  kNull = 0xf6,
  kFloat = 0xfa,
  kDouble = 0xfb,
  kDateTag = 0xc1,
  kUnsigned32 = 0x1a,
  kOpenMap = 0xbf,  // without a count, up to a kBreak
  kBreak = 0xff
};

// Registered tags (kDateTag is tag 1).
constexpr std::uint64_t kStringReference = 25, kShareable = 28, kSharedReference = 29;

// What kind of argument follows a first byte, in its lower five bits: up to 23 is the argument.
constexpr unsigned kOneByte = 24, kFourBytes = 26, kEightBytes = 27, kOpen = 31;

// Strings shorter than this get no number, since a reference would not be shorter.
constexpr std::size_t shortestNumbered(std::uint64_t number) {
  if (number < 24) return 3;
  if (number < 256) return 4;
  if (number < 65536) return 5;
  return number < std::uint64_t{1} << 32 ? 7 : 11;
}

template <typename T>
using BitsOf = std::conditional_t<sizeof(T) == 2, std::uint16_t,
                                  std::conditional_t<sizeof(T) == 4, std::uint32_t, std::uint64_t>>;

template <typename T>
T bigEndianAt(const char* at) {
  BitsOf<T> bits = 0;
  for (std::size_t i = 0; i < sizeof bits; ++i)
    bits = static_cast<BitsOf<T>>(bits << 8 | static_cast<unsigned char>(at[i]));
  return std::bit_cast<T>(bits);
}

// True for well-formed UTF-8, which is all that a CBOR text may hold.
bool isUtf8(std::string_view text) {
  const auto* at = reinterpret_cast<const unsigned char*>(text.data());
  const auto* const end = at + text.size();
  while (at < end) {
    const unsigned first = *at++;
    if (first < 0x80) continue;
    const int more = first >= 0xf0 ? 3 : first >= 0xe0 ? 2 : 1;
    if (first < 0xc2 || first > 0xf4 || end - at < more) return false;
    unsigned code = first & (0x3fu >> more);
    for (int i = 0; i < more; ++i, ++at) {
      if ((*at & 0xc0) != 0x80) return false;
      code = code << 6 | (*at & 0x3fu);
    }
    constexpr unsigned kLeast[] = {0, 0x80, 0x800, 0x10000};
    if (code < kLeast[more] || code > 0x10ffff || (code >= 0xd800 && code < 0xe000)) return false;
  }
  return true;
}

// Seconds that tag 1 can express for readers with a calendar of the years 1 to 9999.
bool isCalendarTime(double seconds) {
  return seconds >= -62135596800.0 && seconds < 253402300800.0;
}

constexpr char kTooDeep[] = "A keyed archive nests more than %d objects; nothing is taken from it.";
constexpr char kDamaged[] =
    "A keyed archive is damaged or of an unknown version; nothing is taken from it.";

}  // namespace

// ---- Writing ----

// The buffer grows by a sixteenth, which bounds its memory by 2.07 times the archive even where the
// system has to move it.
void KeyedArchiver::put(const void* bytes, std::size_t length) {
  const std::size_t capacity = out_->length();
  if (length > capacity - length_ &&
      !out_->resize(std::max(length_ + length, capacity + capacity / 16)))
    throw std::bad_alloc();
  if (length) std::memcpy(out_->mutableBytes() + length_, bytes, length);
  length_ += length;
}

void KeyedArchiver::putHead(unsigned major, std::uint64_t argument) {
  unsigned char head[9] = {static_cast<unsigned char>(major << 5)};
  if (argument < kOneByte) {
    head[0] |= static_cast<unsigned char>(argument);
    return put(head, 1);
  }
  const unsigned power = argument <= 0xff ? 0 : argument <= 0xffff ? 1 : argument >> 32 ? 3 : 2;
  const unsigned width = 1u << power;
  head[0] |= static_cast<unsigned char>(kOneByte + power);
  for (unsigned i = width; i > 0; --i, argument >>= 8) head[i] = argument & 0xff;
  put(head, 1 + width);
}

template <typename T>
void KeyedArchiver::putFixed(unsigned char head, T value) {
  unsigned char bytes[1 + sizeof value] = {head};
  auto bits = std::bit_cast<BitsOf<T>>(value);
  for (std::size_t i = sizeof value; i > 0; --i, bits >>= 8) bytes[i] = bits & 0xff;
  put(bytes, sizeof bytes);
}

void KeyedArchiver::putInteger(std::int64_t value) {
  if (value < 0) return putHead(kNegative, static_cast<std::uint64_t>(-1 - value));
  putHead(kUnsigned, static_cast<std::uint64_t>(value));
}

void KeyedArchiver::putString(unsigned major, std::string_view bytes) {
  putHead(major, bytes.size());
  put(bytes.data(), bytes.size());
  if (bytes.size() >= shortestNumbered(strings_)) ++strings_;
}

void KeyedArchiver::putText(std::string_view text) {
  putString(isUtf8(text) ? kText : kBytes, text);
}

void KeyedArchiver::putName(std::string_view name) {
  if (const auto known = names_.find(name); known != names_.end()) {
    putHead(kTag, kStringReference);
    return putHead(kUnsigned, known->second);
  }
  const std::uint64_t number = strings_;
  putText(name);
  if (strings_ > number) names_.emplace(name, number);
}

void KeyedArchiver::putObject(const Archivable* object) {
  if (!object) return putByte(kNull);
  const auto [place, isNew] = objects_.try_emplace(object, objects_.size());
  if (!isNew) {
    putHead(kTag, kSharedReference);
    return putHead(kUnsigned, place->second);
  }
  isTooDeep_ = isTooDeep_ || depth_ == kDeepestNesting;
  if (isTooDeep_) return;
  ++depth_;
  putHead(kTag, kShareable);
  putByte(kOpenMap);
  putName(kClassKey);
  putName(object->archiveClassName());
  object->encodeWithCoder(*this);
  putByte(kBreak);
  --depth_;
}

void KeyedArchiver::encodeBool(const char* key, bool value) {
  putName(key);
  putByte(value ? kTrue : kFalse);
}

void KeyedArchiver::encodeChar(const char* key, signed char value) {
  encodeInt32(key, value);
}

void KeyedArchiver::encodeInt32(const char* key, std::int32_t value) {
  putName(key);
  putInteger(value);
}

void KeyedArchiver::encodeFloat(const char* key, float value) {
  putName(key);
  putFixed(kFloat, value);
}

void KeyedArchiver::encodeDouble(const char* key, double value) {
  putName(key);
  putFixed(kDouble, value);
}

void KeyedArchiver::encodeText(const char* key, const OptionalText& text) {
  if (!text) return;
  putName(key);
  putText(*text);
}

void KeyedArchiver::encodeTexts(const char* key, const std::vector<std::string>& texts) {
  beginList(key, texts.size());
  for (const auto& text : texts) putText(text);
}

void KeyedArchiver::encodeBytes(const char* key, const ByteBuffer* bytes) {
  if (!bytes) return;
  putName(key);
  putString(kBytes, {reinterpret_cast<const char*>(bytes->bytes()), bytes->length()});
}

void KeyedArchiver::encodeDate(const char* key, const std::optional<Date>& date) {
  if (!date) return;
  putName(key);
  if (isCalendarTime(date->secondsSince1970)) putByte(kDateTag);
  putFixed(kDouble, date->secondsSince1970);
}

void KeyedArchiver::encodeObject(const char* key, const Archivable* object) {
  if (!object) return;
  putName(key);
  putObject(object);
}

void KeyedArchiver::beginList(const char* key, std::size_t count) {
  putName(key);
  putHead(kArray, count);
}

Ref<ByteBuffer> KeyedArchiver::finish(const Archivable& root) {
  out_ = ByteBuffer::zeroed(1024);
  if (!out_) throw std::bad_alloc();
  put(kFront.data(), kFront.size());
  putObject(&root);
  if (isTooDeep_) {
    setReason("keyed archive nests more than %d objects", kDeepestNesting);
    log(kTooDeep, kDeepestNesting);
    return nullptr;
  }
  putFixed(kUnsigned32, crc32({reinterpret_cast<const char*>(out_->bytes()), length_}));
  if (!out_->resize(length_)) throw std::bad_alloc();
  return out_;
}

Ref<ByteBuffer> archive(const Archivable& root) try {
  clearReason();
  return KeyedArchiver().finish(root);
} catch (const std::bad_alloc&) {
  setReason("out of memory for the archive");
  return nullptr;
}

// ---- Reading ----

KeyedUnarchiver::KeyedUnarchiver(const ByteBuffer& archive)
    : bytes_(reinterpret_cast<const char*>(archive.bytes()), archive.length()) {
  clearReason();
  try {
    good_ = check();
    if (!good_) log(isTooDeep_ ? kTooDeep : kDamaged, kDeepestNesting);
  } catch (const std::bad_alloc&) {
    refuseForMemory();
  }
}

void KeyedUnarchiver::refuseForMemory() {
  setReason("out of memory for what a keyed archive holds");
  good_ = false;
}

void KeyedUnarchiver::noteOtherClass(std::size_t index, const char* wanted) const {
  const std::string_view held = className(index);
  setReason("keyed archive holds a %.*s, not a %s", static_cast<int>(held.size()), held.data(),
            wanted);
}

void KeyedUnarchiver::noteFailure(std::size_t index) const {
  const std::string_view held = className(index);
  if (!*lastReason())
    setReason("a %.*s could not be decoded", static_cast<int>(held.size()), held.data());
}

void KeyedUnarchiver::accept() const {
  clearReason();
}

[[gnu::always_inline]] inline bool KeyedUnarchiver::getHead(std::size_t& at, Head& head) const {
  if (at >= bytes_.size()) return false;
  const char* const first = bytes_.data() + at;
  const auto byte = static_cast<unsigned char>(*first);
  head.major = byte >> 5;
  head.info = byte & 31u;
  head.argument = head.info;
  std::size_t length = 1;
  if (head.info >= kOneByte) {
    if (head.info > kEightBytes) {
      head.argument = std::numeric_limits<std::uint64_t>::max();
      return ++at, head.info == kOpen;
    }
    length += std::size_t{1} << (head.info - kOneByte);
    if (bytes_.size() - at < length) return false;
    switch (length) {
      case 2:
        head.argument = static_cast<unsigned char>(first[1]);
        break;
      case 3:
        head.argument = bigEndianAt<std::uint16_t>(first + 1);
        break;
      case 5:
        head.argument = bigEndianAt<std::uint32_t>(first + 1);
        break;
      default:
        head.argument = bigEndianAt<std::uint64_t>(first + 1);
    }
  }
  at += length;
  return true;
}

bool KeyedUnarchiver::getString(std::size_t& at, std::string_view& string) const {
  Head head;
  if (!getHead(at, head)) return false;
  if (head.major == kTag && head.argument == kStringReference) {
    if (!getHead(at, head) || head.major != kUnsigned || head.argument >= strings_.size())
      return false;
    string = strings_[head.argument];
    return true;
  }
  if ((head.major != kText && head.major != kBytes) || head.argument > bytes_.size() - at)
    return false;
  string = bytes_.substr(at, head.argument);
  at += head.argument;
  return true;
}

// Reads a string and numbers it, unless it is a reference.
bool KeyedUnarchiver::checkString(std::size_t& at, std::string_view& string) {
  const std::size_t begin = at;
  if (!getString(at, string)) return false;
  const bool isReference = static_cast<unsigned char>(bytes_[begin]) >> 5 == kTag;
  if (!isReference && string.size() >= shortestNumbered(strings_.size()))
    strings_.push_back(string);
  return true;
}

bool KeyedUnarchiver::checkObject(std::size_t& at, int depth) {
  isTooDeep_ = isTooDeep_ || depth > kDeepestNesting;
  if (isTooDeep_ || at >= bytes_.size() || static_cast<unsigned char>(bytes_[at]) != kOpenMap)
    return false;
  const std::size_t index = objects_.size();
  objects_.push_back({at, 0, nullptr});
  std::string_view key, name;
  if (!checkString(++at, key) || key != kClassKey || !checkString(at, name)) return false;
  while (at < bytes_.size() && static_cast<unsigned char>(bytes_[at]) != kBreak) {
    if (!checkString(at, key) || !checkValue(at, depth, false)) return false;
  }
  objects_[index].end = at;
  return at++ < bytes_.size();
}

bool KeyedUnarchiver::checkValue(std::size_t& at, int depth, bool isInList) {
  const std::size_t begin = at;
  std::string_view string;
  Head head;
  if (!getHead(at, head)) return false;
  switch (head.major) {
    case kUnsigned:
    case kNegative:
      return !isInList && head.argument <= std::numeric_limits<std::int32_t>::max();
    case kBytes:
    case kText:
      return checkString(at = begin, string);
    case kArray:
      if (isInList || head.argument > bytes_.size() - at) return false;
      for (; head.argument > 0; --head.argument) {
        if (!checkValue(at, depth, true)) return false;
      }
      return true;
    case kTag:
      if (head.argument == kShareable) return checkObject(at, depth + 1);
      if (head.argument == kStringReference) return checkString(at = begin, string);
      if (head.argument == kSharedReference)
        return getHead(at, head) && head.major == kUnsigned && head.argument < objects_.size();
      return static_cast<unsigned char>(bytes_[begin]) == kDateTag && !isInList &&
             getHead(at, head) && head.major == kSimple && head.info == kEightBytes;
    case kSimple:
      if (isInList) return static_cast<unsigned char>(bytes_[begin]) == kNull;
      return head.info == (kFalse & 31) || head.info == (kTrue & 31) || head.info == kFourBytes ||
             head.info == kEightBytes;
    default:
      return false;
  }
}

// Looks at every byte once, so that what follows may trust the archive's structure.
bool KeyedUnarchiver::check() {
  const std::size_t versionAt = kFront.size() - 4;
  if (bytes_.size() < kFront.size() + kChecksumBytes ||
      !bytes_.starts_with(kFront.substr(0, versionAt))) {
    setReason("not a keyed archive: %zu bytes", bytes_.size());
    return false;
  }
  if (!bytes_.starts_with(kFront)) {
    setReason("keyed archive of version %d, not %d", bytes_[versionAt], kFront[versionAt]);
    return false;
  }
  const char* const end = bytes_.data() + bytes_.size();
  bytes_.remove_suffix(kChecksumBytes);
  const auto stated = bigEndianAt<std::uint32_t>(end - 4), computed = crc32(bytes_);
  if (static_cast<unsigned char>(end[-5]) != kUnsigned32 || stated != computed) {
    setReason("damaged keyed archive: checksum %08x, computed %08x", stated, computed);
    return false;
  }
  std::size_t at = kFront.size();
  Head head;
  if (getHead(at, head) && head.major == kTag && head.argument == kShareable &&
      checkObject(at, 1) && at == bytes_.size())
    return true;
  if (isTooDeep_)
    setReason("keyed archive nests more than %d objects", kDeepestNesting);
  else
    setReason("damaged keyed archive: wrong structure before byte %zu", at);
  return false;
}

// Steps over a value. An object's end is known from the check.
void KeyedUnarchiver::skip(std::size_t& at) {
  Head head;
  getHead(at, head);
  if (head.major == kText || head.major == kBytes) {
    at += head.argument;
  } else if (head.major == kArray) {
    for (; head.argument > 0; --head.argument) skip(at);
  } else if (head.major == kTag) {
    if (head.argument == kShareable)
      at = objects_[objectBeginningAt(at)].end + 1;
    else
      skip(at);
  }
}

// Objects are mostly read in the order in which they lie.
std::size_t KeyedUnarchiver::objectBeginningAt(std::size_t at) {
  if (++lastObject_ >= objects_.size() || objects_[lastObject_].begin != at) {
    const auto found = std::ranges::lower_bound(objects_, at, {}, &Stored::begin);
    lastObject_ = static_cast<std::size_t>(found - objects_.begin());
  }
  return lastObject_;
}

std::string_view KeyedUnarchiver::className(std::size_t index) const {
  std::size_t at = objects_[index].begin + 1;
  std::string_view key, name;
  getString(at, key);
  getString(at, name);
  return name;
}

KeyedUnarchiver::Frame KeyedUnarchiver::enter(std::size_t index) {
  std::size_t at = objects_[index].begin + 1;
  skip(at);
  skip(at);
  return std::exchange(frame_, Frame{at, at, objects_[index].end});
}

// Keys are mostly asked for in the order in which they were written, so the search continues from
// the last one found.
std::size_t KeyedUnarchiver::find(const char* key) {
  const auto search = [&](std::size_t at, std::size_t end) -> std::size_t {
    while (at < end) {
      std::string_view name;
      getString(at, name);
      const std::size_t value = at;
      skip(at);
      if (name != key) continue;
      frame_.next = at;
      return value;
    }
    return 0;
  };
  const std::size_t start = frame_.next;
  const std::size_t found = search(start, frame_.end);
  return found ? found : search(frame_.entries, start);
}

template <typename T>
T KeyedUnarchiver::fixedAt(std::size_t at, unsigned char head) const {
  return at && static_cast<unsigned char>(bytes_[at]) == head
             ? bigEndianAt<T>(bytes_.data() + at + 1)
             : T{};
}

bool KeyedUnarchiver::decodeBool(const char* key) {
  const std::size_t at = find(key);
  return at && static_cast<unsigned char>(bytes_[at]) == kTrue;
}

signed char KeyedUnarchiver::decodeChar(const char* key) {
  const std::int32_t value = decodeInt32(key);
  return value == static_cast<signed char>(value) ? static_cast<signed char>(value) : 0;
}

std::int32_t KeyedUnarchiver::decodeInt32(const char* key) {
  std::size_t at = find(key);
  Head head;
  if (!at || !getHead(at, head) || head.major > kNegative) return 0;
  const auto value = static_cast<std::int32_t>(head.argument);
  return head.major == kNegative ? -1 - value : value;
}

float KeyedUnarchiver::decodeFloat(const char* key) {
  return fixedAt<float>(find(key), kFloat);
}

double KeyedUnarchiver::decodeDouble(const char* key) {
  return fixedAt<double>(find(key), kDouble);
}

std::optional<Date> KeyedUnarchiver::decodeDate(const char* key) {
  std::size_t at = find(key);
  if (at && static_cast<unsigned char>(bytes_[at]) == kDateTag) ++at;
  if (!at || static_cast<unsigned char>(bytes_[at]) != kDouble) return std::nullopt;
  return Date{fixedAt<double>(at, kDouble)};
}

OptionalText KeyedUnarchiver::decodeText(const char* key) {
  std::size_t at = find(key);
  std::string_view text;
  if (!at || !getString(at, text)) return std::nullopt;
  return std::string(text);
}

std::vector<std::string> KeyedUnarchiver::decodeTexts(const char* key) {
  std::vector<std::string> texts;
  std::string_view text;
  auto [at, count] = findList(key);
  texts.reserve(count);
  for (; count > 0 && getString(at, text); --count) texts.emplace_back(text);
  return texts;
}

Ref<ByteBuffer> KeyedUnarchiver::decodeBytes(const char* key) {
  std::size_t at = find(key);
  std::string_view bytes;
  if (!at || static_cast<unsigned char>(bytes_[at]) >> 5 != kBytes || !getString(at, bytes))
    return nullptr;
  auto copy = ByteBuffer::copyOf(bytes.data(), bytes.size());
  if (!copy) refuseForMemory();
  return copy;
}

std::pair<std::size_t, std::uint64_t> KeyedUnarchiver::findList(const char* key) {
  std::size_t at = find(key);
  Head head;
  if (!at || !getHead(at, head) || head.major != kArray) return {0, 0};
  return {at, head.argument};
}

// Reads an object's place in the list of objects, and steps over whatever else is there.
std::size_t KeyedUnarchiver::getObject(std::size_t& at) {
  const std::size_t begin = at;
  Head head;
  getHead(at, head);
  if (head.major == kTag && head.argument == kSharedReference) {
    getHead(at, head);
    return head.argument;
  }
  const bool isObject = head.major == kTag && head.argument == kShareable;
  const std::size_t index = isObject ? objectBeginningAt(at) : kNoObject;
  skip(at = begin);
  return index;
}

std::size_t KeyedUnarchiver::objectIndex(const char* key) {
  std::size_t at = find(key);
  return at ? getObject(at) : kNoObject;
}

std::vector<std::size_t> KeyedUnarchiver::objectIndexes(const char* key) {
  std::vector<std::size_t> indexes;
  auto [at, count] = findList(key);
  indexes.reserve(count);
  for (; count > 0; --count) indexes.push_back(getObject(at));
  return indexes;
}

}  // namespace krosac
