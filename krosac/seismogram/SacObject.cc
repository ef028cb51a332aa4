#include "krosac/seismogram/SacObject.h"

#include <cstring>
#include <new>

#include "krosac/platform/Log.h"
#include "krosac/platform/internal/Reason.h"
#include "krosac/platform/internal/Text.h"

namespace krosac {

SacObject::~SacObject() {
  if (verbose_ < 5) return;
  // Texts and dates are values here and count as 1 when present.
  const auto countOf = [](bool present) { return present ? 1 : 0; };
  log("Object: %s", printable(myFileName_));
  log("myData retainCount: %d", myData_ ? myData_->retainCount() : 0);
  log("myPath retainCount: %d", countOf(myPath_.has_value()));
  log("myFileName retainCount: %d", countOf(myFileName_.has_value()));
  log("myReferenceDate retainCount: %d", countOf(myReferenceDate_.has_value()));
  log("mySeisReferenceTime retainCount: %d",
      mySeisReferenceTime_ ? mySeisReferenceTime_->retainCount() : 0);
  log("myFERegionString retainCount: %d", countOf(mySeismicRegion_));
}

void SacObject::setMyData(Ref<ByteBuffer> image) {
  if (!replacedData_) replacedData_ = std::move(myData_);
  myData_ = std::move(image);
}

void SacObject::setupPointers() {
  const bool hasHeader = myData_ && myData_->length() >= kSacHeaderBytes;
  unsigned char* start = hasHeader ? myData_->mutableBytes() : nullptr;
  h_ = reinterpret_cast<SacHeader*>(start);
  seis_ = hasHeader ? reinterpret_cast<float*>(start + kSacHeaderBytes) : nullptr;
  replacedData_ = nullptr;
}

std::string SacObject::textOf(const char* field, std::size_t width) try {
  return trimmedField(field, width);
} catch (const std::bad_alloc&) {
  setMemoryReason();
  return {};
}

void SacObject::fillField(char* field, std::size_t width, const char* value) {
  const std::size_t length = strnlen(value, width);
  std::memcpy(field, value, length);
  std::memset(field + length, 0, width - length);
}

}  // namespace krosac
