// A point on the Earth.
#ifndef KROSAC_CATALOG_KROGEOLOCATION_H
#define KROSAC_CATALOG_KROGEOLOCATION_H

#include "krosac/platform/Archive.h"
#include "krosac/platform/Export.h"
#include "krosac/platform/Fields.h"
#include "krosac/platform/Point.h"

namespace krosac {

// What an unset value of a location holds.
inline constexpr float kUnsetLocation = -2048.0f;

// Geographic coordinates (degrees, north and east positive) with an elevation, in the unit of its
// source, and a depth below the surface (km).
class KROSAC_API kroGeoLocation : public Archivable {
 public:
  // Sets all four values to kUnsetLocation.
  Ref<Object> init() override;

  // Degrees, degrees, the unit of the source (m from station lists), km. Setters only store.
  KROSAC_FIELD(float, latitude, Latitude);
  KROSAC_FIELD(float, longitude, Longitude);
  KROSAC_FIELD(float, elevation, Elevation);
  KROSAC_FIELD(float, depth, Depth);

  // Adds the increments (degrees, degrees, km). The elevation becomes minus the increment of the
  // depth, not minus the depth: intended.
  void updateLat_Lon_Depth(float latitude, float longitude, float depth);

  // The distance (degrees of arc) and the azimuth (degrees clockwise from north, 0 to 360) from
  // this point to another one (degrees), as delta_az gives them. NaN for coordinates that are not
  // finite.
  float gcarcToLat_Lon(float latitude, float longitude) const;
  float azToLat_Lon(float latitude, float longitude) const;

  // x is the longitude, y the latitude.
  Point LatLonAsPoint() const { return {longitude(), latitude()}; }

  // Keys: the names of the four fields.
  const char* archiveClassName() const override { return "kroGeoLocation"; }
  void encodeWithCoder(KeyedArchiver& coder) const override;
  Ref<kroGeoLocation> initWithCoder(KeyedUnarchiver& coder);

  // A new location with the same four values; empty where there is no memory.
  Ref<kroGeoLocation> copyWithZone() const { return clone(); }

 protected:
  virtual Ref<kroGeoLocation> clone() const { return archivedCopy(*this); }
};

}  // namespace krosac

#endif
