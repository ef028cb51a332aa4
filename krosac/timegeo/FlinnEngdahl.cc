#include "krosac/timegeo/FlinnEngdahl.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstdint>
#include <iterator>
#include <limits>

#include "krosac/platform/internal/TruncIndex.h"
#include "krosac/timegeo/internal/FlinnEngdahlTables.h"

namespace krosac {
namespace {

using namespace flinn_engdahl;

// Beyond every boundary, so that a longer longitude falls behind the last one of its row.
constexpr float kLongestLongitude = 360.0f;

std::atomic<std::int32_t> nn{kGeographicRegions};

// Each point that is in no region gets the next number: intended. The last one is given again.
std::int32_t numberOfUnknownRegion() {
  std::int32_t last = nn.load(std::memory_order_relaxed), next;
  do {
    next = last == std::numeric_limits<std::int32_t>::max() ? last : last + 1;
  } while (!nn.compare_exchange_weak(last, next, std::memory_order_relaxed));
  return next;
}

// The geographic region of a point, or 0. A NaN becomes a negative number of degrees.
std::int32_t regionAt(float latitude, float longitude) {
  const std::int32_t a = truncInt32(std::fabs(latitude));
  const std::int32_t o = truncInt32(std::min(std::fabs(longitude), kLongestLongitude));
  if (a < 0 || a > kLastLatitude || o < 0) return 0;
  const bool south = !(latitude >= 0.0f), west = !(longitude >= 0.0f);
  const int quadrant = 1 + 2 * south + (south != west);

  // The last record of the row that begins at `o` or before it; where the row has none, the one
  // before the row. The range that holds it is halved without branches, which no processor could
  // predict.
  const std::int16_t* row = &firstOfLatitude[quadrant][a];
  std::int32_t record = row[0] - 1;
  for (std::int32_t length = row[1] - record; length > 1;) {
    const std::int32_t half = length / 2;
    record += lln[record + half].longitude <= o ? half : 0;
    length -= half;
  }
  return lln[record].region;
}

bool isGeographicRegion(std::int32_t number) {
  return number >= 1 && number <= kGeographicRegions;
}

}  // namespace

void fe_lookup(float latitude, float longitude, std::int32_t* geographic, std::int32_t* seismic) {
  std::int32_t region = regionAt(latitude, longitude);
  if (region <= 0) region = numberOfUnknownRegion();
  if (geographic) *geographic = region;
  if (seismic) *seismic = region < static_cast<std::int32_t>(std::size(nsreg)) ? nsreg[region] : 0;
}

void fe_region(const std::int32_t* geographic, const char** geographicName, std::int32_t* seismic,
               const char** seismicName) {
  const std::int32_t g = geographic && isGeographicRegion(*geographic) ? *geographic : 0;
  std::int32_t s = seismic ? *seismic : 0;
  if (s <= 0 && g > 0) s = nsreg[g];
  if (seismic) *seismic = s;
  if (geographicName) *geographicName = greg[g];
  if (seismicName) *seismicName = sreg[s >= 1 && s <= kSeismicRegions ? s : 0];
}

}  // namespace krosac
