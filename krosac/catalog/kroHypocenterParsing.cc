#include <new>
#include <optional>
#include <tuple>

#include "krosac/catalog/internal/FixedColumns.h"
#include "krosac/catalog/kroHypocenter.h"
#include "krosac/platform/Log.h"
#include "krosac/platform/internal/Reason.h"
#include "krosac/platform/internal/Text.h"
#include "krosac/timegeo/FlinnEngdahl.h"

namespace krosac {
namespace {

constexpr char kContributed = '&';

// The columns of the fields that moved between the two layouts of the report.
struct Layout {
  std::size_t stdev, authority, authorityWidth;
};

constexpr Layout kEarlierLayout{46, 57, 3};
constexpr Layout kLaterLayout{45, 56, 4};

// The report changed its layout on 1997-06-10.
bool hasLaterLayout(const Date& origin) {
  const Date change = Date::fromComponents({1997, 6, 10, 0, 0, 0});
  return origin.secondsSince1970 >= change.secondsSince1970;
}

// The time on a line. A component that does not scan keeps its value.
struct OriginTime {
  // Scanned in place: a number with a leading blank reads on into the next field.
  void scan(const FixedColumns& columns) {
    columns.scanInPlace(3, 4, whole.year);
    columns.scanInPlace(7, 2, whole.month);
    columns.scanInPlace(9, 2, whole.day);
    columns.scanInPlace(12, 2, whole.hour);
    columns.scanInPlace(14, 2, whole.minute);
    float seconds;
    if (columns.scanInPlace(16, 5, seconds)) splitSeconds(seconds, whole.second, msec);
  }
  Date::Components whole;
  float msec;
};

// The place on a line: nothing where no number is known.
struct Place {
  void scan(FixedColumns& columns) {
    // Shared by all three, so a blank field repeats the number before it; this is intended.
    float number = 0.0f;
    bool isKnown = false;
    const auto scanNumber = [&](std::size_t first, std::size_t width) {
      return isKnown |= columns.scanField(first, width, number);
    };
    if (scanNumber(22, 6)) latitude = columns.at(28) == 'S' ? -number : number;
    if (scanNumber(30, 7)) longitude = columns.at(37) == 'W' ? -number : number;
    if (scanNumber(39, 5)) depth = number;
  }
  std::optional<float> latitude, longitude, depth;
};

std::string nameAt(const Date::Components& t) {
  return formatText("E%04d-%02d-%02d-%02d-%02d-%02d", t.year, t.month, t.day, t.hour, t.minute,
                    t.second);
}

// The geographic and the seismic region of a point, and their text.
std::tuple<std::int32_t, std::int32_t, std::string> regionsAt(float latitude, float longitude) {
  std::int32_t geographic, seismic;
  const char *geographicName, *seismicName;
  fe_lookup(latitude, longitude, &geographic, &seismic);
  fe_region(&geographic, &geographicName, &seismic, &seismicName);
  return {geographic, seismic,
          formatText("(FE Region:%d) [%s / %s]", seismic, seismicName, geographicName)};
}

}  // namespace

void kroHypocenter::scanQuality(FixedColumns& columns) {
  const bool isLater = hasLaterLayout(*oDate_);
  const Layout& layout = isLater ? kLaterLayout : kEarlierLayout;
  locQualityFlag_ = static_cast<signed char>(columns.at(21));
  depthQualityFlag_ = static_cast<signed char>(columns.at(44));
  columns.scanField(layout.stdev, 4, stdev_);
  columns.scanField(49, 3, nstations_);
  columns.scanField(53, 3, flinn_engdahl_);
  if (locQualityFlag_ != kContributed) return;

  columns.scanField(layout.authority, layout.authorityWidth, authority_);
  prelimLocFlag_ = static_cast<signed char>(columns.at(60));
  if (!isLater) return;
  const std::string field(columns.from(layout.authority).substr(0, layout.authorityWidth));
  log("%s %4s", printable(authority_), field.c_str());
}

bool kroHypocenter::parseEDRHypocenter(std::string_view line) try {
  clearReason();
  FixedColumns columns(line);
  OriginTime time{{yr_, month_, date_, hr_, min_, sec_}, msec_};
  time.scan(columns);
  Place place;
  place.scan(columns);
  // The texts need memory, so they are made before the record changes.
  std::string name = nameAt(time.whole);
  auto regions = location_
                     ? regionsAt(place.latitude.value_or(lat()), place.longitude.value_or(lon()))
                     : regionsAt(0.0f, 0.0f);

  yr_ = time.whole.year;
  month_ = time.whole.month;
  date_ = time.whole.day;
  hr_ = time.whole.hour;
  min_ = time.whole.minute;
  sec_ = time.whole.second;
  msec_ = time.msec;
  oDate_ = Date::fromComponents(time.whole);
  epochOTime_ = epochTime(*oDate_, msec_);
  originTimeShift_ = 0.0f;
  if (place.latitude) setLat(originalLatitude_ = *place.latitude);
  if (place.longitude) setLon(originalLongitude_ = *place.longitude);
  if (place.depth) setDepth(originalDepth_ = *place.depth);
  scanQuality(columns);
  std::tie(feGreg_, feSreg_, myFERegionString_) = std::move(regions);
  name_ = std::move(name);
  return true;
} catch (const std::bad_alloc&) {
  setMemoryReason();
  return false;
}

bool kroHypocenter::parseEDRErrMagInfo(std::string_view line) {
  FixedColumns columns(line);
  columns.scanField(3, 5, oTimeErr_);
  columns.scanField(9, 6, latErr_);
  columns.scanField(16, 6, lonErr_);
  columns.scanField(23, 5, depthErr_);
  columns.scanField(29, 3, mb_);
  columns.scanField(33, 3, nmb_);
  columns.scanField(37, 3, Ms_);
  columns.scanField(40, 3, nMs_);
  return true;
}

void kroHypocenter::buildName() try {
  clearReason();
  name_ = nameAt({yr_, month_, date_, hr_, min_, sec_});
} catch (const std::bad_alloc&) {
  setMemoryReason();
}

void kroHypocenter::setFlinnEngdahlRegion() try {
  clearReason();
  std::tie(feGreg_, feSreg_, myFERegionString_) = regionsAt(lat(), lon());
} catch (const std::bad_alloc&) {
  setMemoryReason();
}

}  // namespace krosac
