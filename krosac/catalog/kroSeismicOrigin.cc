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
  auto location = newLocation();
  if (!location) return nullptr;
  originDateTime_ = std::nullopt;
  epochtime_ = 0.0;
  location_ = std::move(location);
  return Archivable::init();
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
