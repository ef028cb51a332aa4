// The base class of time series that do not come from a SAC file: a number of samples, a type, and
// an object of the caller. Out of memory, an operation on a series leaves it as it was and says so
// in lastReason(); init and copyWithZone then return an empty Ref, and description an empty text.
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
  // Sets no samples, no delegate and the type "Basic Time Series". Returns the object.
  Ref<Object> init() override;

  // The number of samples.
  KROSAC_FIELD(std::int32_t, npts, Npts);
  // An object of the caller. The series keeps a reference to it and never calls it.
  KROSAC_FIELD(Ref<Object>, delegate, Delegate);
  // The type of the series, for display.
  KROSAC_FIELD(OptionalText, typeString, TypeString);

  // Returns a copy that shares the delegate; empty without memory. A derived class without a copy
  // of its own is copied as a timeSeries.
  Ref<timeSeries> copyWithZone() const;

  // Returns the type followed by "\nNPTS:%d".
  std::string description() const;

 protected:
  ~timeSeries() override = default;

  virtual Ref<timeSeries> clone() const;
  // Copies the fields of this class; throws std::bad_alloc without memory.
  void copySeriesFieldsTo(timeSeries& copy) const;
};

}  // namespace krosac

#endif
