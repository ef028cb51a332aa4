#include <algorithm>
#include <cstring>

#include "krosac/platform/Log.h"
#include "krosac/platform/internal/Text.h"
#include "krosac/sacio/ByteOrder.h"
#include "krosac/seismogram/SacObject.h"
#include "krosac/timegeo/Calendar.h"

namespace krosac {
namespace {

std::int64_t imageBytes(std::int32_t npts) {
  return static_cast<std::int64_t>(kSacHeaderBytes) + 4 * std::int64_t{npts};
}

bool hasPlausibleCounts(const SacHeader& h) {
  return h.NPTS >= 0 && h.DELTA >= 0.0f;
}

SacHeader swapped(const SacHeader& h) {
  const auto image = ByteBuffer::copyOf(&h, sizeof h);
  if (!image) return h;
  swapSACBytes(*image);
  return *reinterpret_cast<const SacHeader*>(image->bytes());
}

// Whether the header of a file of this size fits it better when swapped: it gives the file's exact
// size, or at least one that the file holds, and the raw one does not.
bool isForeign(const SacHeader& raw, std::int64_t fileBytes) {
  const auto fit = [&](const SacHeader& h) {
    const bool holds = hasPlausibleCounts(h) && imageBytes(h.NPTS) <= fileBytes;
    return !holds ? 0 : imageBytes(h.NPTS) < fileBytes ? 1 : 2;
  };
  return fit(swapped(raw)) > fit(raw);
}

// Reads a file into an image that exists: its header and at most as many samples as there is room
// for. The words of a file in the opposite byte order stay as they are, but for an NPTS that says
// how many samples were read. False when the file cannot be read. The file is looked at once, so
// that the byte order found is that of the samples taken, also where others replace it meanwhile.
bool readIntoImage(const std::string& path, SacHeader& h, std::size_t capacity, bool& foreign) {
  const auto file = ByteBuffer::fromFile(path);
  if (!file || file->length() < kSacHeaderBytes) return false;
  const auto& raw = *reinterpret_cast<const SacHeader*>(file->bytes());
  foreign = isForeign(raw, static_cast<std::int64_t>(file->length()));
  const auto most = static_cast<std::int32_t>(std::min<std::size_t>(capacity, INT32_MAX));
  const std::int32_t count = std::min((foreign ? swapped(raw) : raw).NPTS, most);
  if (count < 1 || static_cast<std::int64_t>(file->length()) < imageBytes(count)) return false;
  std::memcpy(static_cast<void*>(&h), file->bytes(), static_cast<std::size_t>(imageBytes(count)));
  const auto word = static_cast<std::uint32_t>(count);
  h.NPTS = static_cast<std::int32_t>(foreign ? __builtin_bswap32(word) : word);
  return true;
}

}  // namespace

// What the file loaders say while they look for the byte order.
struct SacObject::LoadRules {
  bool logsImages;
  const char* fullStop;  // at the end of the message for an invalid file
};

Ref<SacObject> SacObject::initWithCapacity(std::int32_t n) {
  if (!init() || n < 0) return nullptr;
  swappedBytes_ = false;
  verbose_ = 0;
  if (!installImage(ByteBuffer::zeroed(static_cast<std::size_t>(imageBytes(n))))) return nullptr;
  *h_ = kSacHeaderTemplate;
  h_->NPTS = n;
  h_->B = 0.0f;
  h_->DELTA = 1.0f;
  h_->E = static_cast<float>(std::int64_t{n} - 1);
  myPath_ = "./";
  myFileName_ = "UntitledSeismogram";
  mSeisHasChanged_ = mSeisIsLocked_ = false;
  mySeisReferenceTime_ = nullptr;
  return Ref<SacObject>(this);
}

bool SacObject::InitWithNSData_withPath(const Ref<ByteBuffer>& image, const std::string& path) {
  swappedBytes_ = false;
  verbose_ = 0;
  setMyData(image);
  setupPointers();
  const bool valid = hasValidImage();
  if (valid) {
    finishLoading(path);
  } else {
    log("%s is not a valid SAC file.", path.c_str());
  }
  autoreleaseReceiver();
  return valid;
}

bool SacObject::initWithNSData_withPath(const Ref<ByteBuffer>& image, const std::string& path) {
  swappedBytes_ = false;
  verbose_ = 0;
  setMyData(image);
  setupPointers();
  if (hasValidImage()) {
    finishLoading(path);
    return true;
  }
  log("%s is not a valid SAC file.", path.c_str());
  setMyData(nullptr);
  setupPointers();
  return false;
}

bool SacObject::InitWithPath(const std::string& path) {
  swappedBytes_ = false;
  if (!loadFile(path, {true, "."})) return false;
  autoreleaseReceiver();
  return true;
}

bool SacObject::initWithPath(const std::string& path) {
  swappedBytes_ = false;
  // Quiet, and its message lacks the full stop of the others; both are intended.
  return loadFile(path, {false, ""});
}

bool SacObject::loadFromPath(const std::string& path) {
  // swappedBytes stays as it was where the file is native; this is intended.
  return loadFile(path, {true, "."});
}

bool SacObject::replaceSacObjectDataWithPath(const std::string& path) {
  swappedBytes_ = false;
  verbose_ = 0;
  bool foreign = false;
  setupPointers();
  if (!h_ || !readIntoImage(path, *h_, capacity_, foreign)) {
    log("Problem reading bytes in %s", path.c_str());
    return false;
  }
  if (!settleByteOrder(path, {true, "."}, foreign)) return false;
  fixEndTime();
  ComputeExtrema();
  finishLoading(path);
  return true;
}

bool SacObject::loadFile(const std::string& path, const LoadRules& rules) {
  verbose_ = 0;
  if (!installImage(ByteBuffer::fromFile(path))) {
    log("Problem reading bytes in %s", path.c_str());
    return false;
  }
  if (!settleByteOrder(path, rules, false)) return false;
  fixEndTime();
  ComputeExtrema();
  finishLoading(path);
  return true;
}

bool SacObject::hasValidImage() const {
  return h_ && hasPlausibleCounts(*h_) &&
         static_cast<std::int64_t>(viewedData()->length()) == imageBytes(h_->NPTS);
}

bool SacObject::isSacFile() const {
  return hasValidImage() && h_->DELTA < 10000.0f;
}

void SacObject::logImage(const std::string& path) const {
  log("%s npts:%d delta:%f Size0:%lld Size1:%lld", path.c_str(), npts(),
      static_cast<double>(delta()), static_cast<long long>(myData_->length()),
      static_cast<long long>(imageBytes(npts())));
}

// Makes the image native: as it is, or swapped. An image known to be foreign is not tried as it is.
bool SacObject::settleByteOrder(const std::string& path, const LoadRules& rules, bool foreign) {
  if (!foreign && hasValidImage()) return true;
  if (rules.logsImages) logImage(path);
  swapSACBytes(*myData_);
  if (rules.logsImages) logImage(path);
  if (hasValidImage()) {
    swappedBytes_ = true;
    return true;
  }
  log("Tried swapping bytes for %s", path.c_str());
  log("%s is not a valid SAC file%s", path.c_str(), rules.fullStop);
  return false;
}

void SacObject::finishLoading(const std::string& path) {
  myPath_ = path;
  myFileName_ = lastPathComponent(path);
  setUpReferenceTime();
  if (verbose_ > 0) {
    log("Seismogram Date: %s", myReferenceDate_->description().c_str());
    log("Seismogram Reference Time: %s", mySeisReferenceTime_->DOYcString());
    log("Seismogram Reference Time: %s", mySeisReferenceTime_->YMDcString());
  }
  setFlinnEngdahlRegion();
  computeDistAzBAz();
  mSeisHasChanged_ = mSeisIsLocked_ = false;
}

void SacObject::setUpReferenceTime() {
  std::int32_t month = 1, day = h_->NZJDAY;
  monthdate(h_->NZYEAR, h_->NZJDAY, &month, &day);
  myReferenceDate_ =
      Date::fromComponents({h_->NZYEAR, month, day, h_->NZHOUR, h_->NZMIN, h_->NZSEC});
  mySeisReferenceTime_ = make<SeisTimeObject>();
  mySeisReferenceTime_->initWithValues_month_date_hour_minute_second_millisecond(
      h_->NZYEAR, month, day, h_->NZHOUR, h_->NZMIN, h_->NZSEC, h_->NZMSEC);
}

Ref<SacObject> SacObject::InitWithSeisObject(const SacObject& other) {
  Ref<SacObject> self = initWithSeisObject(other);
  if (self) autoreleaseReceiver();
  return self;
}

Ref<SacObject> SacObject::initWithSeisObject(const SacObject& other) {
  if (!other.h_ || !installImage(ByteBuffer::copyOf(other.viewedData()->bytes(),
                                                    other.viewedData()->length()))) {
    return nullptr;
  }
  swappedBytes_ = other.swappedBytes_;
  fixEndTime();
  myPath_ = other.myPath_;
  myFileName_ = myPath_ ? OptionalText(lastPathComponent(*myPath_)) : std::nullopt;
  // A fresh receiver has no label and gets none; this is intended.
  if (labelString_) labelString_ = other.labelString_;
  setUpReferenceTime();
  setFlinnEngdahlRegion();
  computeDistAzBAz();
  mSeisHasChanged_ = mSeisIsLocked_ = false;
  return Ref<SacObject>(this);
}

}  // namespace krosac
