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

// A primary arrival, a secondary arrival or a surface-wave amplitude of the Earthquake Data Report
// (EDR) of the USGS.
//
//   auto phase = krosac::make<krosac::kroSeismicPhase>();
//   phase->init();
//   phase->setDateYr_Month_Date(hypocenter->yr(), hypocenter->month(), hypocenter->date());
//   phase->setEpochOriginTime(hypocenter->epochOTime());
//   phase->parseEDRPrimaryPhase(line);
//   hypocenter->addPhase(phase);
//
// The parsers need no memory. A text for which there is none is returned empty; see lastReason().
class KROSAC_API kroSeismicPhase : public Archivable {
 public:
  // Sets isFirstArrival to false and isAmplitudeMeasurement to true. Every other field of a made
  // object is zero or empty; those of a used record keep their values, so make a new one.
  Ref<Object> init() override;

  // ---- Fields ----

  // The reported code of the station; the codes of the phase and the onset, set by the caller.
  KROSAC_FIELD(OptionalText, phaseCode, PhaseCode);
  KROSAC_FIELD(OptionalText, stationCode, StationCode);
  KROSAC_FIELD(OptionalText, onsetCode, OnsetCode);
  // The arrival to the whole second, or with its fraction if it was moved to the next day.
  KROSAC_FIELD(std::optional<Date>, arrivalDate, ArrivalDate);
  // Seconds since 1970. The caller sets epochOriginTime, which is not archived.
  KROSAC_FIELD(double, epochOriginTime, EpochOriginTime);
  KROSAC_FIELD(double, epochArrivalTime, EpochArrivalTime);
  // Travel time and residual (observed minus predicted), s. The caller sets travelTime; no parser
  // computes it.
  KROSAC_FIELD(float, travelTime, TravelTime);
  KROSAC_FIELD(float, residual, Residual);
  // Epicentral distance and azimuth, degrees.
  KROSAC_FIELD(float, gcarc, Gcarc);
  KROSAC_FIELD(float, azimuth, Azimuth);
  // Period (s), amplitude and station magnitude of the body-wave reading.
  KROSAC_FIELD(float, mbPeriod, MbPeriod);
  KROSAC_FIELD(float, mbAmp, MbAmp);
  KROSAC_FIELD(float, mb, Mb);
  // Milliseconds of the arrival beyond its whole second.
  KROSAC_FIELD(float, msec, Msec);
  // The predicted arrival, s, set by the caller.
  KROSAC_FIELD(float, predictedTime, PredictedTime);
  // The take-off angle at the source, degrees.
  KROSAC_FIELD(float, takeoffAngle, TakeoffAngle);
  // The ray parameter, s/km. Setting it also sets takeoffAngle for a source velocity of 6 km/s: NaN
  // above 1/6 s/km.
  float slowness() const { return slowness_; }
  void setSlowness(float slowness);
  // The first motion: 1 compression, -1 dilatation, 0.5 and -0.5 if uncertain, 0 none.
  KROSAC_FIELD(float, polarity, Polarity);
  // 1 impulsive, -1 emergent, 0 not stated.
  KROSAC_FIELD(float, onset, Onset);
  // The reported flags of the magnitude and of the residual.
  KROSAC_FIELD(signed char, mbUsageFlag, MbUsageFlag);
  KROSAC_FIELD(signed char, pResFlag, PResFlag);
  // The arrival in UTC. The parsers use the date that was set before and never fill doy.
  KROSAC_FIELD(std::int32_t, yr, Yr);
  KROSAC_FIELD(std::int32_t, month, Month);
  KROSAC_FIELD(std::int32_t, date, Date);
  KROSAC_FIELD(std::int32_t, doy, Doy);
  KROSAC_FIELD(std::int32_t, hr, Hr);
  KROSAC_FIELD(std::int32_t, min, Min);
  KROSAC_FIELD(std::int32_t, sec, Sec);
  // The kind of record.
  KROSAC_FIELD(bool, isFirstArrival, IsFirstArrival);
  KROSAC_FIELD(bool, isAmplitudeMeasurement, IsAmplitudeMeasurement);
  // "P", "Pn", "R1" or the reported code.
  KROSAC_FIELD(OptionalText, phaseName, PhaseName);
  // The station, which phases and the caller may share.
  KROSAC_FIELD(Ref<kroSeismicStation>, station, Station);
  // Period (s), amplitude (microns), magnitude type and station magnitude of the surface-wave
  // reading, its component ("Z", "N" or "E") and its usage flag.
  KROSAC_FIELD(float, Ms_Period, Ms_Period);
  KROSAC_FIELD(float, Ms_Amplitude, Ms_Amplitude);
  KROSAC_FIELD(OptionalText, Ms_Type, Ms_Type);
  KROSAC_FIELD(float, Ms_Estimate, Ms_Estimate);
  KROSAC_FIELD(signed char, Ms_Component, Ms_Component);
  KROSAC_FIELD(signed char, msUsage, MsUsage);

  // Sets the date to which the parsers add the time of day.
  void setDateYr_Month_Date(std::int32_t yr, std::int32_t month, std::int32_t date);

  // ---- Parsing (kroSeismicPhaseParsing.cc) ----
  //
  // Columns count from 1. A line ends at its first NUL or line break; columns beyond count as
  // blanks, so any line is safe. A field that does not scan keeps its value. The caller first sets
  // the date and, for a primary phase, epochOriginTime. All three always return true.

  // 3-7 station, 8-15 phase, 16-17, 18-19, 20-24 hour, minute, seconds, 26-30 residual, 31 its
  // flag, 33-38 distance, 40-44 azimuth, 45-48 period, 49-55 amplitude, 57-59 mb, 60 its flag. An
  // arrival before the origin is moved to the next day. Sets takeoffAngle to 0 and isFirstArrival
  // to true.
  bool parseEDRPrimaryPhase(std::string_view line);

  // One group of a line of secondary arrivals, with columns relative to the group: 1-8 phase, 9-10,
  // 11-12, 13-17 hour, minute, seconds. Sets isFirstArrival to false. The arrival is never moved to
  // the next day.
  bool parseEDRSecondaryArrivalRecord(std::string_view group);

  // Up to three readings, Z, N and E in columns 8, 22 and 36, each with its period two columns
  // later (4 wide) and its amplitude six columns later (7 wide); the last one present wins. Then
  // 50-52 magnitude type, 54-56 magnitude, 57 usage flag. Numbers are scanned without a width from
  // a buffer that is not blanked between fields, so the end of a longer field can extend a shorter
  // one, which is intended. Sets takeoffAngle to 90 and isFirstArrival to false.
  bool parseEDRSurfaceWaveRecord(std::string_view line);

  // Sets phaseName, polarity and onset for the codes of P and Pn ("iPc", "ePn-", "(P)"), ignoring
  // white space around them. Any other code changes nothing.
  void parsePhaseCode(std::string_view code);

  // Returns one line with its line break: the code of the attached station ("(null)" without one),
  // phase, arrival, distance, azimuth, residual with flag, and mb. A flag of 0 prints as a blank.
  std::string description() const;

  // ---- Archiving ----

  // Keys: the names of the fields except epochOriginTime. The restored takeoffAngle follows from
  // the slowness, which is restored after it; this is intended.
  const char* archiveClassName() const override { return "kroSeismicPhase"; }
  void encodeWithCoder(KeyedArchiver& coder) const override;
  Ref<kroSeismicPhase> initWithCoder(KeyedUnarchiver& coder);

  // Returns a deep copy made through an archive, with its own station; empty without memory.
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
