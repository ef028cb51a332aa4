// The origin of an earthquake: location and time.
#ifndef KROSAC_CATALOG_KROSEISMICORIGIN_H
#define KROSAC_CATALOG_KROSEISMICORIGIN_H

#include <optional>

#include "krosac/catalog/kroGeoLocation.h"
#include "krosac/platform/Archive.h"
#include "krosac/platform/Date.h"
#include "krosac/platform/Export.h"
#include "krosac/platform/Fields.h"

namespace krosac {

class KROSAC_API kroSeismicOrigin : public Archivable {
 public:
  // Sets an unset location, no date and an epoch time of 0. Without memory nothing changes; see
  // lastReason().
  Ref<Object> init() override;

  // The location, shared with the caller and not copied.
  KROSAC_FIELD(Ref<kroGeoLocation>, location, Location);
  // The origin time as a date. Setting it does not change the epoch time.
  KROSAC_FIELD(std::optional<Date>, originDateTime, OriginDateTime);

  // Seconds since 1970-01-01 00:00:00 UTC. Setting them also sets the date.
  double epochtime() const { return epochtime_; }
  void setEpochtime(double seconds);

  // Keys: location, originDateTime, epochtime. A restored date follows the restored epoch time.
  const char* archiveClassName() const override { return "kroSeismicOrigin"; }
  void encodeWithCoder(KeyedArchiver& coder) const override;
  Ref<kroSeismicOrigin> initWithCoder(KeyedUnarchiver& coder);

  // Returns a deep copy made through an archive; empty without memory.
  Ref<kroSeismicOrigin> copyWithZone() const { return clone(); }

 protected:
  virtual Ref<kroSeismicOrigin> clone() const { return archivedCopy(*this); }

 private:
  double epochtime_ = 0.0;
};

}  // namespace krosac

#endif
