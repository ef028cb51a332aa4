#include "krosac/catalog/kroGeoLocation.h"

#include "krosac/catalog/internal/CodedFields.h"
#include "krosac/timegeo/GreatCircle.h"

namespace krosac {
namespace {

using L = kroGeoLocation;

constexpr std::tuple kFields{
    codedField("latitude", &L::latitude, &L::setLatitude),
    codedField("longitude", &L::longitude, &L::setLongitude),
    codedField("elevation", &L::elevation, &L::setElevation),
    codedField("depth", &L::depth, &L::setDepth),
};

}  // namespace

Ref<Object> kroGeoLocation::init() {
  latitude_ = longitude_ = elevation_ = depth_ = kUnsetLocation;
  return Archivable::init();
}

void kroGeoLocation::updateLat_Lon_Depth(float latitude, float longitude, float depth) {
  latitude_ += latitude;
  longitude_ += longitude;
  depth_ += depth;
  // Not minus the new depth; this is intended.
  elevation_ = -depth;
}

float kroGeoLocation::gcarcToLat_Lon(float latitude, float longitude) const {
  float distance, azimuth;
  delta_az(&latitude_, &longitude_, &latitude, &longitude, &distance, &azimuth);
  return distance;
}

float kroGeoLocation::azToLat_Lon(float latitude, float longitude) const {
  float distance, azimuth;
  delta_az(&latitude_, &longitude_, &latitude, &longitude, &distance, &azimuth);
  return azimuth;
}

void kroGeoLocation::encodeWithCoder(KeyedArchiver& coder) const {
  encodeFields(kFields, *this, coder);
}

Ref<kroGeoLocation> kroGeoLocation::initWithCoder(KeyedUnarchiver& coder) {
  if (!init()) return nullptr;
  decodeFields(kFields, *this, coder);
  return Ref<kroGeoLocation>(this);
}

}  // namespace krosac
