// One earthquake of a catalogue.
#ifndef KROSAC_CATALOG_KROHYPOCENTER_H
#define KROSAC_CATALOG_KROHYPOCENTER_H

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "krosac/catalog/kroGeoLocation.h"
#include "krosac/catalog/kroSeismicPhase.h"
#include "krosac/platform/Archive.h"
#include "krosac/platform/Date.h"
#include "krosac/platform/Export.h"
#include "krosac/platform/Fields.h"
#include "krosac/platform/Text.h"

namespace krosac {

class FixedColumns;

// Origin time, location, uncertainties, magnitudes, region and phases of an earthquake, filled from
// lines of the Earthquake Data Report (EDR) of the USGS.
//
//   auto event = krosac::make<krosac::kroHypocenter>();
//   event->init();
//   event->parseEDRHypocenter(hypocenterLine);
//   event->parseEDRErrMagInfo(errorLine);
//   event->addPhase(phase);
//   std::puts(event->description().c_str());
//
// Out of memory, an operation leaves the record as it was and says so in lastReason(); a text is
// then returned empty.
class KROSAC_API kroHypocenter : public Archivable {
 public:
  // Sets an empty list of phases and an unset location. Every other field of a made object is zero
  // or empty; those of a used record keep their values, so make a new one.
  Ref<Object> init() override;

  // ---- Fields ----

  // The location. The setter stores a copy, unless the record already holds this very object.
  const Ref<kroGeoLocation>& location() const { return location_; }
  void setLocation(Ref<kroGeoLocation> location);
  // The name set by buildName, "E2011-03-11-05-46-23".
  KROSAC_FIELD(OptionalText, name, Name);
  // Milliseconds of the origin time beyond the whole second.
  KROSAC_FIELD(float, msec, Msec);
  // Standard error of the location.
  KROSAC_FIELD(float, stdev, Stdev);
  // The origin time in UTC. The parser never fills doy.
  KROSAC_FIELD(std::int32_t, yr, Yr);
  KROSAC_FIELD(std::int32_t, month, Month);
  KROSAC_FIELD(std::int32_t, date, Date);
  KROSAC_FIELD(std::int32_t, doy, Doy);
  KROSAC_FIELD(std::int32_t, hr, Hr);
  KROSAC_FIELD(std::int32_t, min, Min);
  KROSAC_FIELD(std::int32_t, sec, Sec);
  // Seconds since 1970, milliseconds included.
  KROSAC_FIELD(double, epochOTime, EpochOTime);
  // The reported quality flags of the location and of the depth.
  KROSAC_FIELD(signed char, locQualityFlag, LocQualityFlag);
  KROSAC_FIELD(signed char, depthQualityFlag, DepthQualityFlag);
  // The preliminary flag; 0 unless the location flag was "&".
  KROSAC_FIELD(signed char, prelimLocFlag, PrelimLocFlag);
  // The number of stations used for the location.
  KROSAC_FIELD(std::int32_t, nstations, Nstations);
  // The reported Flinn-Engdahl region, and the geographic and seismic regions of the location.
  KROSAC_FIELD(std::int32_t, flinn_engdahl, Flinn_engdahl);
  KROSAC_FIELD(std::int32_t, feGreg, FeGreg);
  KROSAC_FIELD(std::int32_t, feSreg, FeSreg);
  // The agency that contributed the hypocentre.
  KROSAC_FIELD(OptionalText, authority, Authority);
  // Uncertainty of the origin time, s.
  KROSAC_FIELD(float, oTimeErr, OTimeErr);
  // Uncertainties of latitude, longitude and depth, km.
  KROSAC_FIELD(float, latErr, LatErr);
  KROSAC_FIELD(float, lonErr, LonErr);
  KROSAC_FIELD(float, depthErr, DepthErr);
  // Body-wave and surface-wave magnitudes and their numbers of observations.
  KROSAC_FIELD(float, mb, Mb);
  KROSAC_FIELD(float, Ms, Ms);
  KROSAC_FIELD(std::int32_t, nmb, Nmb);
  KROSAC_FIELD(std::int32_t, nMs, NMs);
  // Moment magnitude and its source, set by the caller.
  KROSAC_FIELD(float, Mw, Mw);
  KROSAC_FIELD(OptionalText, mwSrc, MwSrc);
  // The text set by setFlinnEngdahlRegion.
  KROSAC_FIELD(OptionalText, myFERegionString, MyFERegionString);
  // The origin time to the whole second.
  KROSAC_FIELD(std::optional<Date>, oDate, ODate);
  // The phases. The setter stores a new list of the same phases without empty references.
  const std::vector<Ref<kroSeismicPhase>>& phases() const { return phases_; }
  void setPhases(std::vector<Ref<kroSeismicPhase>> phases);
  // The files of the event, set by the caller.
  KROSAC_FIELD(std::vector<std::string>, fileList, FileList);
  // The sum of the arguments of updateOriginTimeShift, s.
  KROSAC_FIELD(float, originTimeShift, OriginTimeShift);
  // The parsed location, which updates of `location` do not change.
  KROSAC_FIELD(float, originalLatitude, OriginalLatitude);
  KROSAC_FIELD(float, originalLongitude, OriginalLongitude);
  KROSAC_FIELD(float, originalDepth, OriginalDepth);

  // Latitude and longitude (degrees) and depth (km) of the location. Without a location they are 0
  // and the setters do nothing.
  float lat() const { return location_ ? location_->latitude() : 0.0f; }
  float lon() const { return location_ ? location_->longitude() : 0.0f; }
  float depth() const { return location_ ? location_->depth() : 0.0f; }
  void setLat(float latitude);
  void setLon(float longitude);
  void setDepth(float depth);

  // ---- Parsing (kroHypocenterParsing.cc) ----
  //
  // Columns count from 1. A line ends at its first NUL or line break; columns beyond count as
  // blanks, so any line is safe. A field that does not scan keeps its value. Both return true,
  // except that the first returns false without memory.

  // 3-6, 7-8, 9-10 year, month, date, 12-13, 14-15, 16-20 hour, minute, seconds (scanned in place,
  // so a number with a leading blank reads on into the next field, which is intended), 21 location
  // flag, 22-27 latitude, 28 "S" for south, 30-36 longitude, 37 "W" for west, 39-43 depth, 44 its
  // flag, 45-48 standard error, 49-51 stations, 53-55 region; if the location flag is "&", also
  // 56-59 authority and 60 preliminary flag. Before 1997-06-10 the standard error is in 46-49 and
  // the authority in 57-59.
  //
  // A blank latitude, longitude or depth repeats the number scanned before it among the three,
  // without its sign (intended); a blank first number keeps its value. Then sets the region and the
  // name. An authority of the later layout is logged with its columns.
  bool parseEDRHypocenter(std::string_view line);

  // 3-7 error of the origin time, 9-14, 16-21, 23-27 errors of latitude, longitude and depth, 29-31
  // mb, 33-35 its observations, 37-39 Ms, 40-42 its observations.
  bool parseEDRErrMagInfo(std::string_view line);

  // Sets the name, "E2011-03-11-05-46-23".
  void buildName();

  // Sets feGreg, feSreg and myFERegionString, "(FE Region:seismic number) [seismic / geographic
  // name]", from the location.
  void setFlinnEngdahlRegion();

  // ---- Changing ----

  // Appends a phase; ignores an empty reference.
  void addPhase(Ref<kroSeismicPhase> phase);
  // Passes the increments to the location; the original values do not change.
  void updateLat_Lon_Depth(float latitude, float longitude, float depth);
  // Adds the seconds to originTimeShift.
  void updateOriginTimeShift(float seconds) { originTimeShift_ += seconds; }

  // ---- Comparing ----

  // Return -1, 0 or 1 for the ascending order of mb, Ms, depth, latitude and longitude. NaN
  // compares equal to every value, so remove records with NaN before sorting.
  int compare_mb(const kroHypocenter& other) const;
  int compare_ms(const kroHypocenter& other) const;
  int compareDepths(const kroHypocenter& other) const;
  int compareLatitudes(const kroHypocenter& other) const;
  int compareLongitudes(const kroHypocenter& other) const;
  // The same for oDate; a record without a date comes last.
  int compareOriginTimes(const kroHypocenter& other) const;

  // ---- Texts (kroHypocenterTexts.cc) ----

  // Returns the next three texts with line breaks between them.
  std::string description() const;
  // Returns the summary: origin time, location, region, magnitudes and errors.
  std::string stringWithHypoStats() const;
  // Returns a header and the description of each first arrival; empty without phases.
  std::string stringWithPrimaryPhases() const;
  // Returns a header and one line with the stationCode for each phase named "R1"; "No Rayleigh
  // Observations" if no phase has that name, empty without phases.
  std::string stringWithRayleighMeasurements() const;
  // Returns a header and the description of each phase; empty without phases.
  std::string stringWithAllPhases() const;

  // ---- Archiving ----

  // Keys: the names of the fields except name, fileList, originTimeShift and the three original
  // values, which are zero or empty in a restored record. Phases that share a station still share
  // it.
  const char* archiveClassName() const override { return "kroHypocenter"; }
  void encodeWithCoder(KeyedArchiver& coder) const override;
  Ref<kroHypocenter> initWithCoder(KeyedUnarchiver& coder);

  // Returns a deep copy of all archived fields; empty without memory.
  Ref<kroHypocenter> copyWithZone() const { return clone(); }

 protected:
  virtual Ref<kroHypocenter> clone() const { return archivedCopy(*this); }

 private:
  void scanQuality(FixedColumns& columns);

  Ref<kroGeoLocation> location_;
  std::vector<Ref<kroSeismicPhase>> phases_;
};

}  // namespace krosac

#endif
