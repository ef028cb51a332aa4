// One observation of a seismic phase at one station.
#ifndef KROSAC_CATALOG_KROSEISMICPHASE_H
#define KROSAC_CATALOG_KROSEISMICPHASE_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "krosac/catalog/kroSeismicStation.h"
#include "krosac/platform/Archive.h"
#include "krosac/platform/Date.h"
#include "krosac/platform/Export.h"
#include "krosac/platform/Fields.h"
#include "krosac/platform/Text.h"

namespace krosac {

class FixedColumns;

// A primary or secondary arrival, or a surface-wave amplitude, as the Earthquake Data Report (EDR)
// of the USGS lists them.
//
//   auto phase = krosac::make<krosac::kroSeismicPhase>();
//   phase->init();
//   phase->setDateYr_Month_Date(hypocenter->yr(), hypocenter->month(), hypocenter->date());
//   phase->setEpochOriginTime(hypocenter->epochOTime());
//   phase->parseEDRPrimaryPhase(line);
//   hypocenter->addPhase(phase);
class KROSAC_API kroSeismicPhase : public Archivable {
 public:
  // No first arrival, an amplitude measurement; all else of a made object is zero or empty.
  Ref<Object> init() override;

  // ---- Fields ----

  // The codes of the phase, the station and the onset as reported.
  KROSAC_FIELD(OptionalText, phaseCode, PhaseCode);
  KROSAC_FIELD(OptionalText, stationCode, StationCode);
  KROSAC_FIELD(OptionalText, onsetCode, OnsetCode);
  // To the whole second; with its fraction where the arrival is moved to the next day.
  KROSAC_FIELD(std::optional<Date>, arrivalDate, ArrivalDate);
  // Seconds since 1970. The origin's is set by the caller and is not archived.
  KROSAC_FIELD(double, epochOriginTime, EpochOriginTime);
  KROSAC_FIELD(double, epochArrivalTime, EpochArrivalTime);
  // Seconds: arrival less origin, and observed less predicted.
  KROSAC_FIELD(float, travelTime, TravelTime);
  KROSAC_FIELD(float, residual, Residual);
  // Distance and azimuth, degrees.
  KROSAC_FIELD(float, gcarc, Gcarc);
  KROSAC_FIELD(float, azimuth, Azimuth);
  // Period (s), amplitude and station magnitude of the body-wave reading.
  KROSAC_FIELD(float, mbPeriod, MbPeriod);
  KROSAC_FIELD(float, mbAmp, MbAmp);
  KROSAC_FIELD(float, mb, Mb);
  // Milliseconds of the arrival beyond its whole second.
  KROSAC_FIELD(float, msec, Msec);
  // Seconds; set by the caller alone.
  KROSAC_FIELD(float, predictedTime, PredictedTime);
  // Of the ray at the source, degrees.
  KROSAC_FIELD(float, takeoffAngle, TakeoffAngle);
  // The ray parameter (s/km). Setting it sets takeoffAngle for a velocity of 6 km/s at the source:
  // NaN above 1/6 s/km.
  float slowness() const { return slowness_; }
  void setSlowness(float slowness);
  // The first motion: 1 compression, -1 dilatation, 0.5 and -0.5 where uncertain, 0 none.
  KROSAC_FIELD(float, polarity, Polarity);
  // 1 impulsive, -1 emergent, 0 not stated.
  KROSAC_FIELD(float, onset, Onset);
  // The flags of the magnitude and of the residual as reported.
  KROSAC_FIELD(signed char, mbUsageFlag, MbUsageFlag);
  KROSAC_FIELD(signed char, pResFlag, PResFlag);
  // The arrival in UTC. The parsers take the date as it was set and never fill doy.
  KROSAC_FIELD(std::int32_t, yr, Yr);
  KROSAC_FIELD(std::int32_t, month, Month);
  KROSAC_FIELD(std::int32_t, date, Date);
  KROSAC_FIELD(std::int32_t, doy, Doy);
  KROSAC_FIELD(std::int32_t, hr, Hr);
  KROSAC_FIELD(std::int32_t, min, Min);
  KROSAC_FIELD(std::int32_t, sec, Sec);
  // What kind of record this is.
  KROSAC_FIELD(bool, isFirstArrival, IsFirstArrival);
  KROSAC_FIELD(bool, isAmplitudeMeasurement, IsAmplitudeMeasurement);
  // "P", "Pn", "R1" or the code as reported.
  KROSAC_FIELD(OptionalText, phaseName, PhaseName);
  // Shared with the caller and with other phases.
  KROSAC_FIELD(Ref<kroSeismicStation>, station, Station);
  // Period (s), amplitude (microns), kind and station magnitude of the surface-wave reading, its
  // component ("Z", "N" or "E") and its usage flag.
  KROSAC_FIELD(float, Ms_Period, Ms_Period);
  KROSAC_FIELD(float, Ms_Amplitude, Ms_Amplitude);
  KROSAC_FIELD(OptionalText, Ms_Type, Ms_Type);
  KROSAC_FIELD(float, Ms_Estimate, Ms_Estimate);
  KROSAC_FIELD(signed char, Ms_Component, Ms_Component);
  KROSAC_FIELD(signed char, msUsage, MsUsage);

  // Stores the date to which the parsers add the time of day.
  void setDateYr_Month_Date(std::int32_t yr, std::int32_t month, std::int32_t date);

  // ---- Parsing (kroSeismicPhaseParsing.cc) ----
  //
  // Columns count from 1. A line ends at its first NUL or line end and is blank beyond; any line is
  // safe. A field that does not scan leaves its target. The caller sets the date before, and for a
  // primary phase epochOriginTime. All three are always true.

  // 3-7 station, 8-15 phase, 16-17, 18-19, 20-24 hour, minute, seconds, 26-30 residual, 31 its
  // flag, 33-38 distance, 40-44 azimuth, 45-48 period, 49-55 amplitude, 57-59 mb, 60 its flag. An
  // arrival before the origin is moved to the next day. The take-off angle becomes 0; a first
  // arrival.
  bool parseEDRPrimaryPhase(std::string_view line);

  // One group of a line of secondary arrivals, by columns from its own start: 1-8 phase, 9-10,
  // 11-12, 13-17 hour, minute, seconds. No first arrival; never moved to the next day.
  bool parseEDRSecondaryArrivalRecord(std::string_view group);

  // Up to three readings, Z, N and E in columns 8, 22 and 36, each with its period two columns on
  // (4 wide) and its amplitude six columns on (7 wide), of which the last one there wins; then
  // 50-52 kind, 54-56 magnitude, 57 usage flag. Numbers are scanned without a width from one text
  // that is not blanked between them, so that the end of a longer field goes on a shorter one:
  // intended. The take-off angle becomes 90; no first arrival.
  bool parseEDRSurfaceWaveRecord(std::string_view line);

  // Sets phaseName, polarity and onset for the codes of P and Pn ("iPc", "ePn-", "(P)"), white
  // space around them aside; any other code changes nothing.
  void parsePhaseCode(std::string_view code);

  // One line with its end: the attached station's code ("(null)" without one), phase, arrival,
  // distance, azimuth, residual with flag, and mb. A flag of zero prints as a blank.
  std::string description() const;

  // ---- Archiving ----

  // Keys: the names of the fields but for epochOriginTime. The restored takeoffAngle is that of the
  // slowness, which is restored behind it: intended.
  const char* archiveClassName() const override { return "kroSeismicPhase"; }
  void encodeWithCoder(KeyedArchiver& coder) const override;
  Ref<kroSeismicPhase> initWithCoder(KeyedUnarchiver& coder);

  // A deep copy through an archive, with a station of its own; empty where there is no memory.
  Ref<kroSeismicPhase> copyWithZone() const { return clone(); }

 protected:
  virtual Ref<kroSeismicPhase> clone() const { return archivedCopy(*this); }

 private:
  void scanPhaseName(FixedColumns& columns, std::size_t first);
  void scanArrivalTime(FixedColumns& columns, std::size_t first);

  float slowness_ = 0.0f;
};

}  // namespace krosac

#endif
