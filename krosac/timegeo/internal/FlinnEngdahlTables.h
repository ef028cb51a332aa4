// The tables of the Flinn-Engdahl regions. FlinnEngdahlTables.cc is made by
// tools/make_flinn_engdahl_tables.
#ifndef KROSAC_TIMEGEO_INTERNAL_FLINNENGDAHLTABLES_H
#define KROSAC_TIMEGEO_INTERNAL_FLINNENGDAHLTABLES_H

#include <cstdint>

namespace krosac::flinn_engdahl {

inline constexpr std::int32_t kGeographicRegions = 757;
inline constexpr std::int32_t kSeismicRegions = 50;
inline constexpr std::int32_t kLastLatitude = 90;

// From this absolute longitude up to that of the next record of the same absolute latitude, the
// geographic region is `region`.
struct BoundaryRecord {
  std::int16_t latitude, longitude, region;
};

// The quadrants, 1 to 4: north-east, north-west, south-west, south-east. The records of quadrant q
// are lln[ind[q]] and the num[q] - 1 behind it, ordered by latitude, then longitude; the records
// between the quadrants' ranges are zero.
extern const std::int32_t ind[5];
extern const std::int32_t num[5];
extern const BoundaryRecord lln[6051];

// The first record of quadrant q whose latitude is not less than a; for a = 91 the end of the
// quadrant.
extern const std::int16_t firstOfLatitude[5][kLastLatitude + 2];

// The seismic region of each geographic region; 0 at 0 and behind the last region.
extern const std::int16_t nsreg[760];

// Names by number; the name of 0 is blank.
extern const char* const greg[kGeographicRegions + 1];
extern const char* const sreg[kSeismicRegions + 1];

}  // namespace krosac::flinn_engdahl

#endif
