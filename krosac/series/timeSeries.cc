#include "krosac/series/timeSeries.h"

#include <new>
#include <utility>

#include "krosac/platform/internal/Reason.h"
#include "krosac/platform/internal/Text.h"

namespace krosac {

Ref<Object> timeSeries::init() try {
  clearReason();
  std::string type = "Basic Time Series";
  npts_ = 0;
  delegate_ = nullptr;
  typeString_ = std::move(type);
  return Object::init();
} catch (const std::bad_alloc&) {
  setMemoryReason();
  return nullptr;
}

Ref<timeSeries> timeSeries::copyWithZone() const try {
  clearReason();
  auto copy = clone();
  if (!copy) setMemoryReason();
  return copy;
} catch (const std::bad_alloc&) {
  setMemoryReason();
  return nullptr;
}

Ref<timeSeries> timeSeries::clone() const {
  auto copy = make<timeSeries>();
  if (copy) copySeriesFieldsTo(*copy);
  return copy;
}

void timeSeries::copySeriesFieldsTo(timeSeries& copy) const {
  copy.npts_ = npts_;
  copy.delegate_ = delegate_;
  copy.typeString_ = typeString_;
}

std::string timeSeries::description() const try {
  clearReason();
  return formatText("%s\nNPTS:%d", printable(typeString_), npts_);
} catch (const std::bad_alloc&) {
  setMemoryReason();
  return {};
}

}  // namespace krosac
