#include <algorithm>
#include <bit>
#include <cstdlib>
#include <cstring>
#include <new>
#include <type_traits>
#include <utility>

#include "krosac/platform/Log.h"
#include "krosac/platform/internal/Reason.h"
#include "krosac/platform/internal/Text.h"
#include "krosac/sacio/ByteOrder.h"
#include "krosac/seismogram/internal/SacObjectAccess.h"
#include "krosac/timegeo/Calendar.h"

namespace krosac {
namespace {

std::int64_t imageBytes(std::int32_t npts) {
  return static_cast<std::int64_t>(kSacHeaderBytes) + 4 * std::int64_t{npts};
}

bool hasPlausibleCounts(const SacHeader& h) {
  return h.NPTS >= 0 && h.DELTA >= 0.0f;
}

// The header with NPTS and DELTA swapped.
SacHeader swapped(SacHeader h) {
  const auto swap = [](auto& field) {
    field = std::bit_cast<std::remove_reference_t<decltype(field)>>(
        __builtin_bswap32(std::bit_cast<std::uint32_t>(field)));
  };
  swap(h.NPTS);
  swap(h.DELTA);
  return h;
}

// Sets the reason why bytes are not a valid image. The header is that of the byte order whose NPTS
// fits the length better; `limit` says what the length is.
void setInvalidReason(const std::string& path, const ByteBuffer& image,
                      const char* limit = "found") {
  const char* const name = path.c_str();
  const auto length = static_cast<long long>(image.length());
  if (image.length() < kSacHeaderBytes)
    return setReason("%s: needs %zu bytes for the header, %s %lld", name, kSacHeaderBytes, limit,
                     length);
  const unsigned char* const bytes = image.bytes();
  const auto isText = [](unsigned char c) {
    return (c >= ' ' && c <= '~') || (c >= '\t' && c <= '\r');
  };
  if (std::all_of(bytes, bytes + kSacHeaderBytes, isText))
    return setReason("%s: is text, not a SAC image", name);
  const auto& raw = *reinterpret_cast<const SacHeader*>(bytes);
  const SacHeader other = swapped(raw);
  const auto misfit = [&](const SacHeader& h) { return std::llabs(imageBytes(h.NPTS) - length); };
  const SacHeader& h = misfit(other) < misfit(raw) ? other : raw;
  if (h.NPTS < 0) return setReason("%s: NPTS is %d, below 0", name, h.NPTS);
  if (!hasPlausibleCounts(h))
    return setReason("%s: DELTA is %g, below 0 or NaN", name, static_cast<double>(h.DELTA));
  if (misfit(h) == 0) return setReason("%s: is in the other byte order", name);
  setReason("%s: needs 632 + 4 x NPTS = %lld bytes, %s %lld", name,
            static_cast<long long>(imageBytes(h.NPTS)), limit, length);
}

// True when the swapped header fits a file of this size better than the raw one. A header that
// states the exact size fits best, then one that states a smaller size.
bool isForeign(const SacHeader& raw, std::int64_t fileBytes) {
  const auto fit = [&](const SacHeader& h) {
    const bool holds = hasPlausibleCounts(h) && imageBytes(h.NPTS) <= fileBytes;
    return !holds ? 0 : imageBytes(h.NPTS) < fileBytes ? 1 : 2;
  };
  return fit(swapped(raw)) > fit(raw);
}

// Reads a file into an existing image: the header and as many samples as it has room for. Words of
// a file of the opposite byte order are not swapped, but NPTS is set to the number of samples read.
// Returns false when the file cannot be read. The file is read only once, so that byte order and
// samples belong together even where another process replaces the file meanwhile.
bool readIntoImage(const std::string& path, ByteBuffer& image, bool& foreign) {
  const auto file = ByteBuffer::fromFile(path);
  if (!file) return false;
  if (file->length() < kSacHeaderBytes) {
    setInvalidReason(path, *file);
    return false;
  }
  const auto& raw = *reinterpret_cast<const SacHeader*>(file->bytes());
  foreign = isForeign(raw, static_cast<std::int64_t>(file->length()));
  const auto most = static_cast<std::int32_t>(countIn(image, INT32_MAX));
  const std::int32_t count = std::min((foreign ? swapped(raw) : raw).NPTS, most);
  if (count < 1 || static_cast<std::int64_t>(file->length()) < imageBytes(count)) {
    setInvalidReason(path, *file);
    if (count == 0) setReason("%s: has no samples, or the buffer has no room", path.c_str());
    return false;
  }
  std::memcpy(image.mutableBytes(), file->bytes(), static_cast<std::size_t>(imageBytes(count)));
  const auto word = static_cast<std::uint32_t>(count);
  reinterpret_cast<SacHeader*>(image.mutableBytes())->NPTS =
      static_cast<std::int32_t>(foreign ? __builtin_bswap32(word) : word);
  return true;
}

bool hasValidImage(const SacObject& s) {
  const SacHeader* h = s.GetSacHeader();
  return h && hasPlausibleCounts(*h) &&
         static_cast<std::int64_t>(viewedImage(s)->length()) == imageBytes(h->NPTS);
}

// What a file loader logs while it determines the byte order.
struct LoadMessages {
  bool logsImages;
  const char* fullStop;         // at the end of the message for an invalid file
  const char* limit = "found";  // precedes the length of the image in the reason
};
constexpr LoadMessages kVerbose = {true, "."}, kQuiet = {false, ""},
                       kIntoBuffer = {true, ".", "the buffer has"};

void logImage(const SacObject& s, const std::string& path) {
  log("%s npts:%d delta:%f Size0:%lld Size1:%lld", path.c_str(), s.npts(),
      static_cast<double>(s.delta()), static_cast<long long>(s.myData()->length()),
      static_cast<long long>(imageBytes(s.npts())));
}

// Makes the image native, swapping it where it is known to be foreign or not valid as it is.
bool settleByteOrder(SacObject& s, const std::string& path, const LoadMessages& messages,
                     bool isKnownForeign) {
  if (!isKnownForeign && hasValidImage(s)) return true;
  if (messages.logsImages) logImage(s, path);
  swapSACBytes(*s.myData());
  if (messages.logsImages) logImage(s, path);
  if (hasValidImage(s)) {
    s.setSwappedBytes(true);
    return true;
  }
  setInvalidReason(path, *s.myData(), messages.limit);
  log("Tried swapping bytes for %s", path.c_str());
  log("%s is not a valid SAC file%s", path.c_str(), messages.fullStop);
  return false;
}

// What loading allocates beside the image. It is made first, so that nothing fails half way.
struct LoadedParts {
  explicit LoadedParts(const OptionalText& file)
      : path(file),
        name(file ? OptionalText(lastPathComponent(*file)) : std::nullopt),
        time(make<SeisTimeObject>()) {
    if (!time) throw std::bad_alloc();
  }
  OptionalText path, name;
  Ref<SeisTimeObject> time;
};

// The part that all loaders share, from a valid native image.
void finishLoading(SacObject& s, LoadedParts& parts) {
  s.setMyPath(std::move(parts.path));
  s.setMyFileName(std::move(parts.name));
  const SacHeader& h = *s.GetSacHeader();
  std::int32_t month = 1, day = h.NZJDAY;
  monthdate(h.NZYEAR, h.NZJDAY, &month, &day);
  s.setMyReferenceDate(Date::fromComponents({h.NZYEAR, month, day, h.NZHOUR, h.NZMIN, h.NZSEC}));
  parts.time->initWithValues_month_date_hour_minute_second_millisecond(
      h.NZYEAR, month, day, h.NZHOUR, h.NZMIN, h.NZSEC, h.NZMSEC);
  s.setMySeisReferenceTime(std::move(parts.time));
  s.setFlinnEngdahlRegion();
  s.computeDistAzBAz();
  s.setMSeisHasChanged(false);
  s.setMSeisIsLocked(false);
}

void logReferenceTime(const SacObject& s) {
  if (s.verbose() <= 0) return;
  log("Seismogram Date: %s", s.myReferenceDate()->description().c_str());
  log("Seismogram Reference Time: %s", s.mySeisReferenceTime()->DOYcString());
  log("Seismogram Reference Time: %s", s.mySeisReferenceTime()->YMDcString());
}

// What the loaders of files do with an image that has been read.
bool loadImage(SacObject& s, LoadedParts& parts, const LoadMessages& messages,
               bool isKnownForeign = false) {
  if (!settleByteOrder(s, *parts.path, messages, isKnownForeign)) return false;
  s.fixEndTime();
  s.ComputeExtrema();
  finishLoading(s, parts);
  logReferenceTime(s);
  return true;
}

bool loadFile(SacObject& s, const std::string& path, const LoadMessages& messages) try {
  clearReason();
  s.setVerbose(0);
  LoadedParts parts(path);
  if (installImage(s, ByteBuffer::fromFile(path))) return loadImage(s, parts, messages);
  log("Problem reading bytes in %s", path.c_str());
  return false;
} catch (const std::bad_alloc&) {
  setMemoryReason();
  return false;
}

// What the loaders of buffers do. An image that is not valid stays installed where it is kept.
bool loadBuffer(SacObject& s, const Ref<ByteBuffer>& image, const std::string& path,
                bool keepsInvalid) try {
  clearReason();
  LoadedParts parts(path);
  s.setSwappedBytes(false);
  s.setVerbose(0);
  s.setMyData(image);
  s.setupPointers();
  if (hasValidImage(s)) {
    finishLoading(s, parts);
    logReferenceTime(s);
    return true;
  }
  if (image)
    setInvalidReason(path, *image);
  else
    setReason("%s: no bytes given", path.c_str());
  log("%s is not a valid SAC file.", path.c_str());
  if (!keepsInvalid) {
    s.setMyData(nullptr);
    s.setupPointers();
  }
  return false;
} catch (const std::bad_alloc&) {
  setMemoryReason();
  return false;
}

}  // namespace

Ref<SacObject> SacObject::initWithCapacity(std::int32_t n) try {
  clearReason();
  if (n < 0) setReason("a seismogram cannot have %d samples", n);
  if (!init() || n < 0) return nullptr;
  OptionalText path = "./", name = "UntitledSeismogram";
  if (!installImage(*this, ByteBuffer::zeroed(static_cast<std::size_t>(imageBytes(n)))))
    return nullptr;
  swappedBytes_ = false;
  verbose_ = 0;
  *h_ = kSacHeaderTemplate;
  h_->NPTS = n;
  h_->B = 0.0f;
  h_->DELTA = 1.0f;
  h_->E = static_cast<float>(std::int64_t{n} - 1);
  myPath_ = std::move(path);
  myFileName_ = std::move(name);
  mSeisHasChanged_ = mSeisIsLocked_ = false;
  mySeisReferenceTime_ = nullptr;
  return Ref<SacObject>(this);
} catch (const std::bad_alloc&) {
  setMemoryReason();
  return nullptr;
}

bool SacObject::InitWithNSData_withPath(const Ref<ByteBuffer>& image, const std::string& path) {
  const bool isLoaded = loadBuffer(*this, image, path, true);
  autoreleaseReceiver();
  return isLoaded;
}

bool SacObject::initWithNSData_withPath(const Ref<ByteBuffer>& image, const std::string& path) {
  return loadBuffer(*this, image, path, false);
}

bool SacObject::InitWithPath(const std::string& path) {
  swappedBytes_ = false;
  if (!loadFile(*this, path, kVerbose)) return false;
  autoreleaseReceiver();
  return true;
}

bool SacObject::initWithPath(const std::string& path) {
  swappedBytes_ = false;
  // Logs no images, and its message lacks the full stop of the others; both are intended.
  return loadFile(*this, path, kQuiet);
}

bool SacObject::loadFromPath(const std::string& path) {
  // Keeps swappedBytes where the file is native; this is intended.
  return loadFile(*this, path, kVerbose);
}

bool SacObject::replaceSacObjectDataWithPath(const std::string& path) try {
  swappedBytes_ = false;
  verbose_ = 0;
  bool isForeign = false;
  clearReason();
  LoadedParts parts(path);
  setupPointers();
  if (h_ && readIntoImage(path, *myData_, isForeign))
    return loadImage(*this, parts, kIntoBuffer, isForeign);
  if (!h_) setReason("%s: the seismogram has no image to read it into", path.c_str());
  log("Problem reading bytes in %s", path.c_str());
  return false;
} catch (const std::bad_alloc&) {
  setMemoryReason();
  return false;
}

bool SacObject::isSacFile() const {
  return hasValidImage(*this) && h_->DELTA < 10000.0f;
}

Ref<SacObject> SacObject::InitWithSeisObject(const SacObject& other) {
  Ref<SacObject> self = initWithSeisObject(other);
  if (self) autoreleaseReceiver();
  return self;
}

Ref<SacObject> SacObject::initWithSeisObject(const SacObject& other) try {
  clearReason();
  if (!headerInData(other)) {
    setReason("the other seismogram has no image");
    return nullptr;
  }
  LoadedParts parts(other.myPath_);
  // A fresh receiver has no label and stays without one; this is intended.
  OptionalText label = labelString_ ? other.labelString_ : std::nullopt;
  const ByteBuffer& image = *other.myData();
  if (!installImage(*this, ByteBuffer::copyOf(image.bytes(), image.length()))) return nullptr;
  swappedBytes_ = other.swappedBytes_;
  fixEndTime();
  labelString_ = std::move(label);
  finishLoading(*this, parts);
  return Ref<SacObject>(this);
} catch (const std::bad_alloc&) {
  setMemoryReason();
  return nullptr;
}

}  // namespace krosac
