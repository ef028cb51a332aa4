#include "krosac/series/momentRateFtn.h"

#include <new>
#include <utility>

#include "krosac/platform/internal/Reason.h"

namespace krosac {

Ref<Object> momentRateFtn::init() try {
  std::string type = "Moment Rate Function";
  if (!uniformSampleTimeSeries::init()) return nullptr;
  setTypeString(std::move(type));
  return Ref<Object>(this);
} catch (const std::bad_alloc&) {
  setMemoryReason();
  return nullptr;
}

Ref<momentRateFtn> momentRateFtn::copyWithZone() const {
  const auto copy = timeSeries::copyWithZone();
  return Ref<momentRateFtn>(dynamic_cast<momentRateFtn*>(copy.get()));
}

Ref<timeSeries> momentRateFtn::clone() const {
  auto copy = make<momentRateFtn>();
  return copy && copyFieldsTo(*copy) ? Ref<timeSeries>(copy) : nullptr;
}

}  // namespace krosac
