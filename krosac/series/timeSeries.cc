#include "krosac/series/timeSeries.h"

#include "krosac/platform/internal/Text.h"

namespace krosac {

Ref<Object> timeSeries::init() {
  npts_ = 0;
  delegate_ = nullptr;
  typeString_ = "Basic Time Series";
  return Object::init();
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

std::string timeSeries::description() const {
  return formatText("%s\nNPTS:%d", printable(typeString_), npts_);
}

}  // namespace krosac
