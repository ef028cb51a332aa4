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

// Origin time, location, uncertainties, magnitudes and region of an earthquake with the phases that
// belong to it, filled from lines of the Earthquake Data Report (EDR) of the USGS.
//
//   auto event = krosac::make<krosac::kroHypocenter>();
//   event->init();
//   event->parseEDRHypocenter(hypocenterLine);
//   event->parseEDRErrMagInfo(errorLine);
//   event->addPhase(phase);
//   std::puts(event->description().c_str());
class KROSAC_API kroHypocenter : public Archivable {
 public:
  // An empty list of phases and an unset location; all else of a made object is zero or empty.
  Ref<Object> init() override;

  // ---- Fields ----

  // Stored as a copy. A location that is already the record's own is left alone.
  const Ref<kroGeoLocation>& location() const { return location_; }
  void setLocation(Ref<kroGeoLocation> location);
  // "E2011-03-11-05-46-23", as buildName sets it.
  KROSAC_FIELD(OptionalText, name, Name);
  // Milliseconds of the origin time beyond its whole second.
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
  // The flags of the location and of the depth as reported.
  KROSAC_FIELD(signed char, locQualityFlag, LocQualityFlag);
  KROSAC_FIELD(signed char, depthQualityFlag, DepthQualityFlag);
  // Zero unless the location flag was "&".
  KROSAC_FIELD(signed char, prelimLocFlag, PrelimLocFlag);
  // The number of stations behind the location.
  KROSAC_FIELD(std::int32_t, nstations, Nstations);
  // The Flinn-Engdahl region as reported, and the geographic and seismic ones of the location.
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
  // Body-wave and surface-wave magnitudes and the numbers of observations behind them.
  KROSAC_FIELD(float, mb, Mb);
  KROSAC_FIELD(float, Ms, Ms);
  KROSAC_FIELD(std::int32_t, nmb, Nmb);
  KROSAC_FIELD(std::int32_t, nMs, NMs);
  // Moment magnitude and its source, set by the caller.
  KROSAC_FIELD(float, Mw, Mw);
  KROSAC_FIELD(OptionalText, mwSrc, MwSrc);
  // As setFlinnEngdahlRegion sets it.
  KROSAC_FIELD(OptionalText, myFERegionString, MyFERegionString);
  // The origin time to the whole second.
  KROSAC_FIELD(std::optional<Date>, oDate, ODate);
  // Stored as a list of its own of the same phases, without absent ones.
  const std::vector<Ref<kroSeismicPhase>>& phases() const { return phases_; }
  void setPhases(std::vector<Ref<kroSeismicPhase>> phases);
  // The files of the event's seismograms, kept by the caller.
  KROSAC_FIELD(std::vector<std::string>, fileList, FileList);
  // The sum of all updateOriginTimeShift, s.
  KROSAC_FIELD(float, originTimeShift, OriginTimeShift);
  // The location as parsed, whatever became of `location` since.
  KROSAC_FIELD(float, originalLatitude, OriginalLatitude);
  KROSAC_FIELD(float, originalLongitude, OriginalLongitude);
  KROSAC_FIELD(float, originalDepth, OriginalDepth);

  // The values of the location (degrees, degrees, km); without one they are 0 and the setters do
  // nothing.
  float lat() const { return location_ ? location_->latitude() : 0.0f; }
  float lon() const { return location_ ? location_->longitude() : 0.0f; }
  float depth() const { return location_ ? location_->depth() : 0.0f; }
  void setLat(float latitude);
  void setLon(float longitude);
  void setDepth(float depth);

  // ---- Parsing (kroHypocenterParsing.cc) ----
  //
  // Columns count from 1. A line ends at its first NUL or line end and is blank beyond; any line is
  // safe. A field that does not scan leaves its target. Both are always true.

  // 3-6, 7-8, 9-10 year, month, date, 12-13, 14-15, 16-20 hour, minute, seconds (these are read in
  // place, so that a number led by a blank reads on into the next one: intended), 21 location flag,
  // 22-27 latitude, 28 "S" for south, 30-36 longitude, 37 "W" for west, 39-43 depth, 44 its flag,
  // 45-48 standard error, 49-51 stations, 53-55 region; where the location flag is "&", 56-59
  // authority and 60 preliminary flag. Before 1997-06-10 the standard error is in 46-49 and the
  // authority in 57-59.
  //
  // A blank latitude, longitude or depth repeats the number scanned before it among the three,
  // without its sign (intended); where there is none the value stays. Then computes the region and
  // the name. An authority of the later layout is logged with its columns.
  bool parseEDRHypocenter(std::string_view line);

  // 3-7 error of the origin time, 9-14, 16-21, 23-27 errors of latitude, longitude, depth, 29-31
  // mb, 33-35 its observations, 37-39 Ms, 40-42 its observations.
  bool parseEDRErrMagInfo(std::string_view line);

  // Sets the name, "E2011-03-11-05-46-23".
  void buildName();

  // Sets feGreg, feSreg and myFERegionString, "(FE Region:seismic number) [seismic / geographic
  // name]", from the location.
  void setFlinnEngdahlRegion();

  // ---- Changing ----

  // Adds a phase to the list; an absent one is not added.
  void addPhase(Ref<kroSeismicPhase> phase);
  // Passes the increments to the location; the original values stay.
  void updateLat_Lon_Depth(float latitude, float longitude, float depth);
  // Adds the seconds to originTimeShift.
  void updateOriginTimeShift(float seconds) { originTimeShift_ += seconds; }

  // ---- Comparing ----

  // -1, 0 or 1 for the ascending order of mb, Ms, depth, latitude and longitude. A NaN equals
  // everything: set such records apart before a sort.
  int compare_mb(const kroHypocenter& other) const;
  int compare_ms(const kroHypocenter& other) const;
  int compareDepths(const kroHypocenter& other) const;
  int compareLatitudes(const kroHypocenter& other) const;
  int compareLongitudes(const kroHypocenter& other) const;
  // The same for oDate; a record without one comes behind all others.
  int compareOriginTimes(const kroHypocenter& other) const;

  // ---- Texts (kroHypocenterTexts.cc) ----

  // The next three, with line ends between them.
  std::string description() const;
  // The summary: origin time, location, region, magnitudes and errors.
  std::string stringWithHypoStats() const;
  // A header and the description of each first arrival; empty without phases.
  std::string stringWithPrimaryPhases() const;
  // A header and a line of each phase named "R1", with its stationCode; "No Rayleigh Observations"
  // where there is none among the phases, empty without phases.
  std::string stringWithRayleighMeasurements() const;
  // A header and the description of each phase; empty without phases.
  std::string stringWithAllPhases() const;

  // ---- Archiving ----

  // Keys: the names of the fields but for name, fileList, originTimeShift and the three original
  // values, which a restored record has zero or empty. Phases that share a station share it again.
  const char* archiveClassName() const override { return "kroHypocenter"; }
  void encodeWithCoder(KeyedArchiver& coder) const override;
  Ref<kroHypocenter> initWithCoder(KeyedUnarchiver& coder);

  // A deep copy of all that is archived; empty where there is no memory.
  Ref<kroHypocenter> copyWithZone() const { return clone(); }

 protected:
  virtual Ref<kroHypocenter> clone() const { return archivedCopy(*this); }

 private:
  void scanOriginTime(FixedColumns& columns);
  void scanLocation(FixedColumns& columns);
  void scanQuality(FixedColumns& columns);

  Ref<kroGeoLocation> location_;
  std::vector<Ref<kroSeismicPhase>> phases_;
};

}  // namespace krosac

#endif
