#include "krosac/series/momentRateFtn.h"

namespace krosac {

Ref<Object> momentRateFtn::init() {
  if (!uniformSampleTimeSeries::init()) return nullptr;
  setTypeString("Moment Rate Function");
  return Ref<Object>(this);
}

Ref<momentRateFtn> momentRateFtn::copyWithZone() const {
  return Ref<momentRateFtn>(dynamic_cast<momentRateFtn*>(clone().get()));
}

Ref<timeSeries> momentRateFtn::clone() const {
  auto copy = make<momentRateFtn>();
  return copy && copyFieldsTo(*copy) ? Ref<timeSeries>(copy) : nullptr;
}

}  // namespace krosac
