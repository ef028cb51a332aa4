// A seismic station.
#ifndef KROSAC_CATALOG_KROSEISMICSTATION_H
#define KROSAC_CATALOG_KROSEISMICSTATION_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "krosac/catalog/kroGeoLocation.h"
#include "krosac/platform/Archive.h"
#include "krosac/platform/Date.h"
#include "krosac/platform/Export.h"
#include "krosac/platform/Fields.h"
#include "krosac/platform/Text.h"

namespace krosac {

// A station with its codes, its place and the files that were recorded there.
class KROSAC_API kroSeismicStation : public Archivable {
 public:
  // Clears the four texts and the list of files and makes an unset location.
  Ref<Object> init() override;

  // The codes of the station, its network and its sensor, and the name of the place.
  KROSAC_FIELD(OptionalText, stationCode, StationCode);
  KROSAC_FIELD(OptionalText, networkCode, NetworkCode);
  KROSAC_FIELD(OptionalText, sensorCode, SensorCode);
  KROSAC_FIELD(OptionalText, locationString, LocationString);
  // Shared with the caller, not copied.
  KROSAC_FIELD(Ref<kroGeoLocation>, location, Location);
  // The files that were recorded here.
  KROSAC_FIELD(std::vector<std::string>, fileNames, FileNames);
  // No operation uses these three; they are neither archived nor copied.
  KROSAC_FIELD(std::int32_t, nChannels, NChannels);
  KROSAC_FIELD(std::optional<Date>, startDate, StartDate);
  KROSAC_FIELD(std::optional<Date>, endDate, EndDate);

  // The values of the location (degrees, degrees, and the elevation as listed); without one they
  // are 0 and the setters do nothing.
  float lat() const { return location_ ? location_->latitude() : 0.0f; }
  float lon() const { return location_ ? location_->longitude() : 0.0f; }
  float elevation() const { return location_ ? location_->elevation() : 0.0f; }
  void setLat(float latitude);
  void setLon(float longitude);
  void setElevation(float elevation);
  void setLocationLat_Lon_Elevation(float latitude, float longitude, float elevation);

  // Appends a name, also one that is there already.
  void addFileName(const std::string& name) { fileNames_.push_back(name); }
  // Removes every equal entry.
  void removeFileName(const std::string& name) { std::erase(fileNames_, name); }
  // Count and empty the list.
  std::size_t numberOfFilenames() const { return fileNames_.size(); }
  void clearFileList() { fileNames_.clear(); }

  // Fills the code, the location and its text from one line of a station list, by columns from 1:
  //
  //   1-5 code; 7-8, 9-10, 11-14 latitude in degrees, minutes, seconds; 15 "S" for south;
  //   16-18, 19-20, 21-24 longitude; 25 "W" for west; 26-31 elevation; 33 to the end text
  //
  // The line ends at its first NUL or line end and is blank beyond; any line is safe. A field that
  // does not scan leaves what was there, but for these, which are intended: a blank part of the
  // longitude repeats that of the latitude, only three characters of the elevation are read, and a
  // blank elevation becomes the longitude. Always true.
  bool parseUSGSStationInfo(std::string_view line);

  // " %s %9.3f %9.3f" of the code, the latitude and the longitude.
  std::string description() const;

  // Keys: stationCode, networkCode, sensorCode, locationString, location, fileNames.
  const char* archiveClassName() const override { return "kroSeismicStation"; }
  void encodeWithCoder(KeyedArchiver& coder) const override;
  Ref<kroSeismicStation> initWithCoder(KeyedUnarchiver& coder);

  // A new station with copies of all that is archived; empty where there is no memory.
  Ref<kroSeismicStation> copyWithZone() const { return clone(); }

 protected:
  virtual Ref<kroSeismicStation> clone() const { return archivedCopy(*this); }
};

}  // namespace krosac

#endif
