// The rate of seismic moment release over time.
#ifndef KROSAC_COLLECTIONS_MOMENTRATEFTN_H
#define KROSAC_COLLECTIONS_MOMENTRATEFTN_H

#include "krosac/collections/uniformSampleTimeSeries.h"
#include "krosac/platform/Export.h"

namespace krosac {

class KROSAC_API momentRateFtn : public uniformSampleTimeSeries {
 public:
  // As the parent's, with the kind "Moment Rate Function".
  Ref<Object> init() override;
  // A copy as of the parent, of this class.
  Ref<momentRateFtn> copyWithZone() const;

 protected:
  ~momentRateFtn() override = default;

  Ref<timeSeries> clone() const override;
};

}  // namespace krosac

#endif
