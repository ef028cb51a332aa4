// The rate of seismic moment release over time.
#ifndef KROSAC_SERIES_MOMENTRATEFTN_H
#define KROSAC_SERIES_MOMENTRATEFTN_H

#include "krosac/platform/Export.h"
#include "krosac/series/uniformSampleTimeSeries.h"

namespace krosac {

class KROSAC_API momentRateFtn : public uniformSampleTimeSeries {
 public:
  // The same as in the base class, with the type "Moment Rate Function".
  Ref<Object> init() override;
  // Returns a copy of this class; see the base class.
  Ref<momentRateFtn> copyWithZone() const;

 protected:
  ~momentRateFtn() override = default;

  Ref<timeSeries> clone() const override;
};

}  // namespace krosac

#endif
