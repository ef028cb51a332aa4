// A point on the Earth.
#ifndef KROSAC_CATALOG_KROGEOLOCATION_H
#define KROSAC_CATALOG_KROGEOLOCATION_H

#include "krosac/platform/Archive.h"
#include "krosac/platform/Export.h"
#include "krosac/platform/Fields.h"
#include "krosac/platform/Point.h"

namespace krosac {

// The value of an unset coordinate.
inline constexpr float kUnsetLocation = -2048.0f;

// Geographic coordinates (degrees, north and east positive), an elevation in the unit of its source
// and a depth below the surface (km).
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
  // depth, not minus the depth, which is intended.
  void updateLat_Lon_Depth(float latitude, float longitude, float depth);

  // Return the distance (degrees of arc) and the azimuth (degrees clockwise from north, 0 to 360)
  // from this point to another point (degrees), computed by delta_az. NaN if a coordinate is not
  // finite.
  float gcarcToLat_Lon(float latitude, float longitude) const;
  float azToLat_Lon(float latitude, float longitude) const;

  // Returns the longitude as x and the latitude as y.
  Point LatLonAsPoint() const { return {longitude(), latitude()}; }

  // Keys: the names of the four fields.
  const char* archiveClassName() const override { return "kroGeoLocation"; }
  void encodeWithCoder(KeyedArchiver& coder) const override;
  Ref<kroGeoLocation> initWithCoder(KeyedUnarchiver& coder);

  // Returns a new location with the same four values; empty without memory.
  Ref<kroGeoLocation> copyWithZone() const { return clone(); }

 protected:
  virtual Ref<kroGeoLocation> clone() const { return archivedCopy(*this); }
};

}  // namespace krosac

#endif
