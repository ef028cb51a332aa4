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

// A station with its codes, its location and the files recorded there. Out of memory, an operation
// leaves the record as it was and says so in lastReason(); a text is then returned empty.
class KROSAC_API kroSeismicStation : public Archivable {
 public:
  // Clears the four texts and the list of files and sets an unset location. nChannels and the dates
  // keep their values, so make a new record instead of reusing one.
  Ref<Object> init() override;

  // The codes of the station, the network and the sensor, and the name of the place.
  KROSAC_FIELD(OptionalText, stationCode, StationCode);
  KROSAC_FIELD(OptionalText, networkCode, NetworkCode);
  KROSAC_FIELD(OptionalText, sensorCode, SensorCode);
  KROSAC_FIELD(OptionalText, locationString, LocationString);
  // The location, shared with the caller and not copied.
  KROSAC_FIELD(Ref<kroGeoLocation>, location, Location);
  // The files recorded at this station.
  KROSAC_FIELD(std::vector<std::string>, fileNames, FileNames);
  // No operation uses these three; they are neither archived nor copied.
  KROSAC_FIELD(std::int32_t, nChannels, NChannels);
  KROSAC_FIELD(std::optional<Date>, startDate, StartDate);
  KROSAC_FIELD(std::optional<Date>, endDate, EndDate);

  // Latitude and longitude (degrees) and elevation (as listed) of the location. Without a location
  // they are 0 and the setters do nothing.
  float lat() const { return location_ ? location_->latitude() : 0.0f; }
  float lon() const { return location_ ? location_->longitude() : 0.0f; }
  float elevation() const { return location_ ? location_->elevation() : 0.0f; }
  void setLat(float latitude);
  void setLon(float longitude);
  void setElevation(float elevation);
  void setLocationLat_Lon_Elevation(float latitude, float longitude, float elevation);

  // Appends a name, even if the list already has it.
  void addFileName(const std::string& name);
  // Removes every equal entry.
  void removeFileName(const std::string& name) { std::erase(fileNames_, name); }
  // Return the length of the list; empty the list.
  std::size_t numberOfFilenames() const { return fileNames_.size(); }
  void clearFileList() { fileNames_.clear(); }

  // Fills the code, the location and its text from one line of a station list. Columns count from
  // 1:
  //
  //   1-5 code; 7-8, 9-10, 11-14 latitude in degrees, minutes, seconds; 15 "S" for south;
  //   16-18, 19-20, 21-24 longitude; 25 "W" for west; 26-31 elevation; 33 to the end text
  //
  // The line ends at its first NUL or line break; columns beyond count as blanks, so any line is
  // safe. A field that does not scan keeps its value, with three intended exceptions: a blank part
  // of the longitude repeats that of the latitude, only three characters of the elevation are read,
  // and a blank elevation becomes the longitude. Returns true; false without memory.
  bool parseUSGSStationInfo(std::string_view line);

  // Returns " %s %9.3f %9.3f" of the code, the latitude and the longitude.
  std::string description() const;

  // Keys: stationCode, networkCode, sensorCode, locationString, location, fileNames.
  const char* archiveClassName() const override { return "kroSeismicStation"; }
  void encodeWithCoder(KeyedArchiver& coder) const override;
  Ref<kroSeismicStation> initWithCoder(KeyedUnarchiver& coder);

  // Returns a new station with copies of all archived fields; empty without memory.
  Ref<kroSeismicStation> copyWithZone() const { return clone(); }

 protected:
  virtual Ref<kroSeismicStation> clone() const { return archivedCopy(*this); }
};

}  // namespace krosac

#endif
