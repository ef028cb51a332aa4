// The origin of an earthquake: where and when.
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
  // Makes an unset location, no date and an epoch time of 0.
  Ref<Object> init() override;

  // Shared with the caller, not copied.
  KROSAC_FIELD(Ref<kroGeoLocation>, location, Location);
  // Does not change the epoch time.
  KROSAC_FIELD(std::optional<Date>, originDateTime, OriginDateTime);

  // Seconds since 1970-01-01 00:00:00 UTC. Setting them sets the date too.
  double epochtime() const { return epochtime_; }
  void setEpochtime(double seconds);

  // Keys: location, originDateTime, epochtime. A restored date is that of the restored epoch time.
  const char* archiveClassName() const override { return "kroSeismicOrigin"; }
  void encodeWithCoder(KeyedArchiver& coder) const override;
  Ref<kroSeismicOrigin> initWithCoder(KeyedUnarchiver& coder);

  // A deep copy through an archive; empty where there is no memory.
  Ref<kroSeismicOrigin> copyWithZone() const { return clone(); }

 protected:
  virtual Ref<kroSeismicOrigin> clone() const { return archivedCopy(*this); }

 private:
  double epochtime_ = 0.0;
};

}  // namespace krosac

#endif
