// The root of the time series that do not come from a SAC file: a number of samples, a kind, and an
// object of the caller's.
#ifndef KROSAC_SERIES_TIMESERIES_H
#define KROSAC_SERIES_TIMESERIES_H

#include <cstdint>
#include <string>

#include "krosac/platform/Export.h"
#include "krosac/platform/Fields.h"
#include "krosac/platform/Object.h"
#include "krosac/platform/Text.h"

namespace krosac {

class KROSAC_API timeSeries : public Object {
 public:
  // No samples, no delegate, the kind "Basic Time Series". Gives the object.
  Ref<Object> init() override;

  // The number of samples.
  KROSAC_FIELD(std::int32_t, npts, Npts);
  // Kept alive and never called.
  KROSAC_FIELD(Ref<Object>, delegate, Delegate);
  // The kind of series, for display.
  KROSAC_FIELD(OptionalText, typeString, TypeString);

  // A new timeSeries of this class, also from a derived class that makes no copies of its own kind;
  // the delegate is shared. Empty where there is no memory.
  Ref<timeSeries> copyWithZone() const { return clone(); }

  // The kind and "\nNPTS:%d".
  std::string description() const;

 protected:
  ~timeSeries() override = default;

  virtual Ref<timeSeries> clone() const;
  void copySeriesFieldsTo(timeSeries& copy) const;
};

}  // namespace krosac

#endif
