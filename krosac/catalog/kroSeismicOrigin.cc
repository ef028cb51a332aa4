#include "krosac/catalog/kroSeismicOrigin.h"

#include "krosac/catalog/internal/CodedFields.h"

namespace krosac {
namespace {

using O = kroSeismicOrigin;

constexpr std::tuple kFields{
    codedField("location", &O::location, &O::setLocation),
    codedField("originDateTime", &O::originDateTime, &O::setOriginDateTime),
    codedField("epochtime", &O::epochtime, &O::setEpochtime),
};

}  // namespace

Ref<Object> kroSeismicOrigin::init() {
  originDateTime_ = std::nullopt;
  epochtime_ = 0.0;
  location_ = make<kroGeoLocation>();
  return location_ && location_->init() ? Archivable::init() : nullptr;
}

void kroSeismicOrigin::setEpochtime(double seconds) {
  epochtime_ = seconds;
  originDateTime_ = Date{seconds};
}

void kroSeismicOrigin::encodeWithCoder(KeyedArchiver& coder) const {
  encodeFields(kFields, *this, coder);
}

Ref<kroSeismicOrigin> kroSeismicOrigin::initWithCoder(KeyedUnarchiver& coder) {
  if (!Archivable::init()) return nullptr;
  decodeFields(kFields, *this, coder);
  return Ref<kroSeismicOrigin>(this);
}

}  // namespace krosac
