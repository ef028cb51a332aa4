#include "krosac/catalog/kroSeismicStation.h"

#include <new>

#include "krosac/catalog/internal/CodedFields.h"
#include "krosac/catalog/internal/FixedColumns.h"
#include "krosac/platform/internal/Text.h"

namespace krosac {
namespace {

using S = kroSeismicStation;

constexpr std::tuple kFields{
    codedField("stationCode", &S::stationCode, &S::setStationCode),
    codedField("networkCode", &S::networkCode, &S::setNetworkCode),
    codedField("sensorCode", &S::sensorCode, &S::setSensorCode),
    codedField("locationString", &S::locationString, &S::setLocationString),
    codedField("location", &S::location, &S::setLocation),
    codedField("fileNames", &S::fileNames, &S::setFileNames),
};

// Degrees, minutes and seconds of an angle. A part that does not scan keeps its value.
struct Angle {
  float degrees = 0.0f, minutes = 0.0f, seconds = 0.0f;
  bool isKnown = false;

  void scan(FixedColumns& columns, std::size_t first, std::size_t degreeWidth) {
    isKnown |= columns.scanField(first, degreeWidth, degrees);
    isKnown |= columns.scanField(first + degreeWidth, 2, minutes);
    isKnown |= columns.scanField(first + degreeWidth + 2, 4, seconds);
  }
  float value(bool isNegative) const {
    const double angle = double{seconds} / 3600.0 + (double{minutes} / 60.0 + double{degrees});
    return static_cast<float>(isNegative ? -angle : angle);
  }
};

}  // namespace

Ref<Object> kroSeismicStation::init() {
  auto location = newLocation();
  if (!location) return nullptr;
  stationCode_.reset();
  networkCode_.reset();
  sensorCode_.reset();
  locationString_.reset();
  fileNames_.clear();
  location_ = std::move(location);
  return Archivable::init();
}

void kroSeismicStation::setLat(float latitude) {
  if (location_) location_->setLatitude(latitude);
}

void kroSeismicStation::setLon(float longitude) {
  if (location_) location_->setLongitude(longitude);
}

void kroSeismicStation::setElevation(float elevation) {
  if (location_) location_->setElevation(elevation);
}

void kroSeismicStation::setLocationLat_Lon_Elevation(float latitude, float longitude,
                                                     float elevation) {
  setLat(latitude);
  setLon(longitude);
  setElevation(elevation);
}

void kroSeismicStation::addFileName(const std::string& name) try {
  clearReason();
  fileNames_.push_back(name);
} catch (const std::bad_alloc&) {
  setMemoryReason();
}

bool kroSeismicStation::parseUSGSStationInfo(std::string_view line) try {
  clearReason();
  FixedColumns columns(line);
  std::string place(columns.from(33));  // the only part that needs memory
  columns.scanField(1, 5, stationCode_);

  // One angle for both, so a blank part of the longitude repeats that of the latitude; intended.
  Angle angle;
  angle.scan(columns, 7, 2);
  if (angle.isKnown) setLat(angle.value(columns.at(15) == 'S'));
  angle.scan(columns, 16, 3);
  float value = angle.value(columns.at(25) == 'W');
  if (angle.isKnown) setLon(value);

  // A blank elevation repeats the longitude, and only three of six characters are scanned; both are
  // intended.
  columns.copy(26, 6);
  if (columns.scanCopied(1, 3, value) || angle.isKnown) setElevation(value);

  locationString_ = std::move(place);
  return true;
} catch (const std::bad_alloc&) {
  setMemoryReason();
  return false;
}

std::string kroSeismicStation::description() const try {
  clearReason();
  return formatText(" %s %9.3f %9.3f", printable(stationCode_), double{lat()}, double{lon()});
} catch (const std::bad_alloc&) {
  setMemoryReason();
  return {};
}

void kroSeismicStation::encodeWithCoder(KeyedArchiver& coder) const {
  encodeFields(kFields, *this, coder);
}

Ref<kroSeismicStation> kroSeismicStation::initWithCoder(KeyedUnarchiver& coder) {
  if (!Archivable::init()) return nullptr;
  decodeFields(kFields, *this, coder);
  return Ref<kroSeismicStation>(this);
}

}  // namespace krosac
