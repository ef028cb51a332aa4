// Tables of the Flinn-Engdahl regions. tools/make_flinn_engdahl_tables generates
// FlinnEngdahlTables.cc.
#ifndef KROSAC_TIMEGEO_INTERNAL_FLINNENGDAHLTABLES_H
#define KROSAC_TIMEGEO_INTERNAL_FLINNENGDAHLTABLES_H

#include <cstdint>

namespace krosac::flinn_engdahl {

inline constexpr std::int32_t kGeographicRegions = 757;
inline constexpr std::int32_t kSeismicRegions = 50;
inline constexpr std::int32_t kLastLatitude = 90;

// The geographic region from this absolute longitude up to that of the next record with the same
// absolute latitude.
struct BoundaryRecord {
  std::int16_t latitude, longitude, region;
};

// Quadrants 1 to 4 are north-east, north-west, south-west and south-east. Quadrant q has the num[q]
// records from lln[ind[q]] on, ordered by latitude, then longitude. Records between the quadrants
// are zero.
extern const std::int32_t ind[5];
extern const std::int32_t num[5];
extern const BoundaryRecord lln[6051];

// firstOfLatitude[q][a] is the first record of quadrant q with a latitude of at least a, or the end
// of the quadrant for a = 91.
extern const std::int16_t firstOfLatitude[5][kLastLatitude + 2];

// Seismic region of each geographic region; 0 at index 0 and beyond the last region.
extern const std::int16_t nsreg[760];

// Names by number; name 0 is blank.
extern const char* const greg[kGeographicRegions + 1];
extern const char* const sreg[kSeismicRegions + 1];

}  // namespace krosac::flinn_engdahl

#endif
