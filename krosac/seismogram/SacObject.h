// One seismogram: a SAC header and its samples in one byte buffer laid out exactly as the file.
//
//   auto s = krosac::make<krosac::SacObject>();
//   if (!s->initWithPath("II.TLY.BHZ.SAC")) return 1;
//   s->RemoveMean();
//   s->HPBUfilter_NPasses_NPoles(0.02f, 2, 4);
//   s->setPath("filtered.SAC");
//   if (!s->save()) return 1;
//
// Times are seconds relative to the reference time of the header; angles are degrees. A header
// field without a value holds -12345.0, -12345 or "-12345". An object without a 632-byte image
// answers these values and takes no changes. Operations work on min(NPTS, samples in the buffer)
// samples. Processing methods refuse silently: where they cannot do their work they leave the trace
// as it was.
#ifndef KROSAC_SEISMOGRAM_SACOBJECT_H
#define KROSAC_SEISMOGRAM_SACOBJECT_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <utility>

#include "krosac/platform/Archive.h"
#include "krosac/platform/ByteBuffer.h"
#include "krosac/platform/Date.h"
#include "krosac/platform/Export.h"
#include "krosac/platform/Object.h"
#include "krosac/platform/Text.h"
#include "krosac/sacio/SacHeader.h"
#include "krosac/timegeo/SeisTimeObject.h"

namespace krosac {

class PackedSpectrum;

class KROSAC_API SacObject : public Archivable {
 public:
  // ---- Construction and loading (SacObjectLoading.cc) ----
  //
  // Methods that differ in the case of their first letter are two methods. Those that begin with a
  // capital autorelease the receiver: use them on alloc<SacObject>() inside an AutoreleasePool. The
  // others go with make<SacObject>(). Every loader derives the reference time, the region labels,
  // the distance and the azimuths from the header and clears the flags. An object whose loader gave
  // false must not be used further.

  // An evenly sampled trace of n zeros: the default header with NPTS = n, DELTA = 1, B = 0, E = n -
  // 1, and no reference time. Empty when n is negative or there is no memory.
  Ref<SacObject> initWithCapacity(std::int32_t n);

  // Takes the buffer as the image, shared and not copied: it must be a valid native one (see
  // isSacFile, without its bound on DELTA). Neither swaps bytes, nor sets E or the extrema. On
  // failure the log says so; the second then has no image.
  bool InitWithNSData_withPath(const Ref<ByteBuffer>& image, const std::string& path);
  bool initWithNSData_withPath(const Ref<ByteBuffer>& image, const std::string& path);

  // Reads a file of exactly 632 + 4 NPTS bytes with NPTS and DELTA not negative, in either byte
  // order; the image in memory is native and swappedBytes says which order the file has. E and the
  // extrema are computed. False, with a line in the log, when the file cannot be read or is no such
  // file. InitWithPath autoreleases on success only; loadFromPath loads into a live object and
  // leaves swappedBytes as it was where the file is native (intended). All reset verbose to 0.
  bool InitWithPath(const std::string& path);
  bool initWithPath(const std::string& path);
  bool loadFromPath(const std::string& path);

  // Reads a file into the existing buffer: the header and at most as many samples as the buffer
  // holds; a longer file is truncated and its NPTS lowered. False when the file cannot be read, is
  // invalid, or does not fill the buffer.
  bool replaceSacObjectDataWithPath(const std::string& path);

  // A seismogram with a copy of the other's image, path and byte order. The label is taken from the
  // other only where the receiver already has one (intended). E is computed, the extrema are not.
  // Empty when the image cannot be copied.
  Ref<SacObject> InitWithSeisObject(const SacObject& other);
  Ref<SacObject> initWithSeisObject(const SacObject& other);

  // Valid: the image is exactly 632 + 4 NPTS bytes, NPTS >= 0 and 0 <= DELTA < 10000.
  bool isSacFile() const;

  // ---- Saving, archiving and copying (SacObjectSaving.cc) ----
  //
  // A saver writes 632 + 4 NPTS bytes atomically, in the byte order in which the trace was loaded,
  // and says whether it did. None clears mSeisHasChanged. A trace with swappedBytes is always
  // written to its old path, whatever was asked; this is intended: give it a new place by setPath
  // and save.

  // Writes to the path; false when there is none.
  bool save() const;
  // Writes to a file of that name in the working directory, which on success becomes the path; the
  // file name stays.
  bool saveAs(const std::string& name);
  // Writes to the path given; the object's own path stays.
  bool saveToPath(const std::string& path) const;

  // Keys: myData, mSeisHasChanged, mSeisIsLocked, myPath, myFileName, labelString, myReferenceDate,
  // mySeisReferenceTime, tag, verbose, swappedBytes. The region labels are computed again on
  // decoding.
  const char* archiveClassName() const override { return "SacObject"; }
  void encodeWithCoder(KeyedArchiver& coder) const override;
  Ref<SacObject> initWithCoder(KeyedUnarchiver& coder);

  // An independent copy that shares no buffer; empty where there is no memory.
  Ref<SacObject> copyWithZone() const { return clone(); }

  // ---- The object's own fields (SacObject.cc) ----

  // The image, header and samples.
  const Ref<ByteBuffer>& myData() const { return myData_; }
  // Does not move the header and sample pointers: call setupPointers afterwards. Until then the old
  // buffer stays alive.
  void setMyData(Ref<ByteBuffer> image);
  // Points the header and the samples into myData.
  void setupPointers();
  // The header and the first sample inside the buffer; null without a 632-byte image.
  SacHeader* GetSacHeader() const { return h_; }
  float* GetSacSeis() const { return seis_; }

  // The path of the file, its last component as it was at loading, and a label of the caller's.
  const OptionalText& myPath() const { return myPath_; }
  const OptionalText& path() const { return myPath_; }
  void setMyPath(OptionalText path) { myPath_ = std::move(path); }
  void setPath(OptionalText path) { myPath_ = std::move(path); }
  const OptionalText& myFileName() const { return myFileName_; }
  void setMyFileName(OptionalText name) { myFileName_ = std::move(name); }
  const OptionalText& labelString() const { return labelString_; }
  void setLabelString(OptionalText label) { labelString_ = std::move(label); }
  // The reference time to whole seconds as it was at loading; the operations that move the
  // reference time leave it.
  const std::optional<Date>& myReferenceDate() const { return myReferenceDate_; }
  void setMyReferenceDate(std::optional<Date> date) { myReferenceDate_ = date; }
  // The reference time with its milliseconds; empty for a trace made by initWithCapacity.
  const Ref<SeisTimeObject>& mySeisReferenceTime() const { return mySeisReferenceTime_; }
  void setMySeisReferenceTime(Ref<SeisTimeObject> time) { mySeisReferenceTime_ = std::move(time); }
  // Set by the operations that change samples; the library never looks at either flag.
  bool mSeisHasChanged() const { return mSeisHasChanged_; }
  void setMSeisHasChanged(bool changed) { mSeisHasChanged_ = changed; }
  bool mSeisIsLocked() const { return mSeisIsLocked_; }
  void setMSeisIsLocked(bool locked) { mSeisIsLocked_ = locked; }
  // From 2 on the processing messages are logged, at 5 and above the retain counts at the end. The
  // loaders reset it to 0 before they would log the reference time.
  std::int32_t verbose() const { return verbose_; }
  void setVerbose(std::int32_t level) { verbose_ = level; }
  // A number of the caller's.
  std::int32_t tag() const { return tag_; }
  void setTag(std::int32_t tag) { tag_ = tag; }
  // The file on disk is in the byte order opposite to this machine's.
  bool swappedBytes() const { return swappedBytes_; }
  void setSwappedBytes(bool swapped) { swappedBytes_ = swapped; }

  // ---- Header fields ----
  //
  // Each getter gives the field, each setter stores it and does nothing else.

  // The number of samples, the data quality (IQUAL) and the sampling interval, s.
  std::int32_t npts() const { return field(&SacHeader::NPTS); }
  void setNpts(std::int32_t npts) { setField(&SacHeader::NPTS, npts); }
  std::int32_t iqual() const { return field(&SacHeader::IQUAL); }
  void setIQual(std::int32_t quality) { setField(&SacHeader::IQUAL, quality); }
  float delta() const { return field(&SacHeader::DELTA); }
  void setDelta(float delta) { setField(&SacHeader::DELTA, delta); }
  // Times in s: of the first and last sample, the event's origin, the first arrival, the event's
  // end, and the ten picks.
  float b() const { return field(&SacHeader::B); }
  void setBeginTime(float time) { setField(&SacHeader::B, time); }
  float e() const { return field(&SacHeader::E); }
  void setEndTime(float time) { setField(&SacHeader::E, time); }
  float o() const { return field(&SacHeader::O); }
  float originTimeOffset() const { return o(); }
  void setoriginTimeOffset(float time) { setField(&SacHeader::O, time); }
  float a() const { return field(&SacHeader::A); }
  float pTime() const { return a(); }
  void setPTime(float time) { setField(&SacHeader::A, time); }
  float f() const { return field(&SacHeader::F); }
  float fini() const { return f(); }
  float t0() const { return field(&SacHeader::T0); }
  float t1() const { return field(&SacHeader::T1); }
  float t2() const { return field(&SacHeader::T2); }
  float t3() const { return field(&SacHeader::T3); }
  float t4() const { return field(&SacHeader::T4); }
  float t5() const { return field(&SacHeader::T5); }
  float t6() const { return field(&SacHeader::T6); }
  float t7() const { return field(&SacHeader::T7); }
  float t8() const { return field(&SacHeader::T8); }
  float t9() const { return field(&SacHeader::T9); }
  // Least, greatest and mean sample, as ComputeExtrema left them.
  float smin() const { return field(&SacHeader::DEPMIN); }
  float smax() const { return field(&SacHeader::DEPMAX); }
  float smean() const { return field(&SacHeader::DEPMEN); }
  // DIST in km; the arc, the azimuths and those of the component in degrees.
  float distance() const { return field(&SacHeader::DIST); }
  void setDistance(float kilometres) { setField(&SacHeader::DIST, kilometres); }
  float gcarc() const { return field(&SacHeader::GCARC); }
  void setGcarc(float degrees) { setField(&SacHeader::GCARC, degrees); }
  float azimuth() const { return field(&SacHeader::AZ); }
  void setAzimuth(float degrees) { setField(&SacHeader::AZ, degrees); }
  float backazimuth() const { return field(&SacHeader::BAZ); }
  void setBackazimuth(float degrees) { setField(&SacHeader::BAZ, degrees); }
  float componentAzimuth() const { return field(&SacHeader::CMPAZ); }
  void setComponentAzimuth(float degrees) { setField(&SacHeader::CMPAZ, degrees); }
  void setComponentIncAngle(float degrees) { setField(&SacHeader::CMPINC, degrees); }
  // The event's and the station's location: degrees, the depth in km.
  float evla() const { return field(&SacHeader::EVLA); }
  float evlo() const { return field(&SacHeader::EVLO); }
  float evdp() const { return field(&SacHeader::EVDP); }
  float stla() const { return field(&SacHeader::STLA); }
  float stlo() const { return field(&SacHeader::STLO); }
  // MAG, and IEVTYP, the kind of source.
  void setMagnitude(float magnitude) { setField(&SacHeader::MAG, magnitude); }
  void setSrcType(std::int32_t type) { setField(&SacHeader::IEVTYP, type); }

  // Texts of 8 characters (KEVNM of 16), read without white space at both ends.
  std::string kstnm() const { return text(&SacHeader::KSTNM); }
  std::string kcmpnm() const { return text(&SacHeader::KCMPNM); }
  std::string knetwk() const { return text(&SacHeader::KNETWK); }
  std::string kevnm() const { return text(&SacHeader::KEVNM); }
  std::string khole() const { return text(&SacHeader::KHOLE); }
  std::string kuser0() const { return text(&SacHeader::KUSER0); }
  std::string kuser1() const { return text(&SacHeader::KUSER1); }
  std::string kuser2() const { return text(&SacHeader::KUSER2); }
  // A text is cut at the field's width; behind a shorter one the field is filled with NULs. Null
  // changes nothing.
  void setStationID(const char* name) { setText(&SacHeader::KSTNM, name); }
  void setComponentName(const char* name) { setText(&SacHeader::KCMPNM, name); }
  void setNetworkID(const char* name) { setText(&SacHeader::KNETWK, name); }
  void setEventName(const char* name) { setText(&SacHeader::KEVNM, name); }
  void setKHoleID(const char* name) { setText(&SacHeader::KHOLE, name); }

  // ---- Picks, user values and derived values (SacObjectHeader.cc) ----

  // Keys 0 to 9 are T0 to T9, 10 is A, 11 is F. Another key reads -12345.0 or an empty text and
  // writes nothing.
  float timePickKey(int key) const;
  void setTimePickKey_Value(int key, float time);
  // The first 7 characters of the label, trimmed (intended: an 8th is lost).
  std::string pickLabelWithKey(int key) const;
  // Writes at most 8 characters and fills up with NULs.
  void setPickLabelKey_Value(int key, const char* label);
  // Sets A, T0 to T9 and F to undefined; the labels stay.
  void clearTimePicks();

  // Keys 0 to 9 are USER0 to USER9. Another key reads -12345.0 and writes nothing.
  float userValue(int key) const;
  void setUserValueKey_Value(int key, float value);
  // Sets USER0 to USER9 to undefined; the labels stay.
  void clearUserValues();
  // Keys 0 to 2 are KUSER0 to KUSER2, read like a pick label; another key gives an empty text.
  std::string userValueLabelWithKey(int key) const;
  // Keys 0 to 2 as above, 3 is KSTNM, 4 KNETWK, 5 KCMPNM; another key writes nothing.
  void setUserValueLabelKey_Value(int key, const char* label);

  // The larger of |DEPMIN| and |DEPMAX|, as they stand in the header.
  float absMax() const;
  // E - B, in s.
  float signalDuration() const;
  // The smallest power of two greater than NPTS, 1 for a count below 1.
  std::int64_t nextPowerOfTwoPts() const;
  // USER2 cos(AZ - USER1), in single precision.
  float gamma() const;
  // Seconds since 1970-01-01 UTC of B and E: myReferenceDate + NZMSEC / 1000 + the time.
  double epochStartTime() const;
  double epochEndTime() const;
  // What KUSER0 begins with: "P", "SH", "R1", "G1".
  bool isP() const;
  bool isSH() const;
  bool isR1() const;
  bool isG1() const;
  // E = (NPTS - 1) DELTA + B.
  void fixEndTime();
  // DEPMIN, DEPMAX and DEPMEN from the samples, the sum of the mean in single precision and index
  // order; three zeros for an empty trace. Sets mSeisHasChanged.
  void ComputeExtrema();

  // -1, 0 or 1: ascending by the field; an undefined value sorts first.
  int compareGCarcs(const SacObject& other) const;
  int compareDistances(const SacObject& other) const;
  int compareBackAzimuths(const SacObject& other) const;
  int compareAzimuths(const SacObject& other) const;

  // ---- Geometry and regions (SacObjectGeometry.cc) ----

  // Sets BAZ, AZ, GCARC and DIST (111.19 km a degree) from the event's and the station's location;
  // false, and nothing changes, when one of these is undefined.
  bool computeDistAzBAz();
  // Stores EVLA, EVLO (degrees), EVDP (km), then computes the geometry and the region.
  void setEventLocationLat_Lon_Depth(float latitude, float longitude, float depth);
  // Stores STLA, STLO (degrees), STEL (m), then computes the geometry.
  void setStationLocationLat_Lon_Elevation(float latitude, float longitude, float elevation);
  // The event's Flinn-Engdahl region: "<seismic region> / <geographic region>", or "FE Region:
  // N/A\n" without a location.
  void setFlinnEngdahlRegion();
  // What setFlinnEngdahlRegion found last.
  OptionalText flinnEngdahlString() const { return myFERegionString_; }
  // Looks up the event's geographic region alone; empty without a location. Overwrites the region
  // numbers.
  std::string flinnEngdahlGeographicRegion();

  // ---- Reference time (SacObjectReferenceTime.cc) ----
  //
  // None of these changes myReferenceDate.

  // Set the reference time, with millisecond 0, and leave the relative times as they are.
  void setReferenceTimeWithNSCalendarDate(const Date& date);
  void setReferenceTimeWithNSDate(const Date& date);
  // Keeps the time object itself as the reference time; the relative times stay.
  void replaceReferenceTimeWith(const Ref<SeisTimeObject>& time);
  // Set the reference time and move the relative times so that they mean the same moments, as
  // setReferenceTime does.
  void adjustReferenceTimeToNSCalendarDate(const Date& date);
  void adjustReferenceTimeToNSDate(const Date& date);
  // Moves B and E, and O, A, F and T1 to T9 where defined. T0 is not moved and a year of difference
  // counts 365 days; both are intended. Sets mSeisHasChanged. On an object without a reference time
  // only NZYEAR to NZMSEC change: nothing says by how much the others would have to move.
  void setReferenceTime(const SeisTimeObject& time);
  // Sets O to the difference in seconds from the reference time; nothing without one.
  void setOriginTimeYear_Month_Day_Hour_Minutes_Seconds(std::int32_t year, std::int32_t month,
                                                        std::int32_t day, std::int32_t hour,
                                                        std::int32_t minutes, float seconds);

  // Moves the reference time later by t seconds and B, E, and O, A, T0 to T9 where defined,
  // earlier; F stays, as do the samples and mSeisHasChanged. Without a reference time the relative
  // times still move.
  void ZeroThisTime(float t);
  // The same, and F too.
  void shiftTimesBy(float t);
  // ZeroThisTime with B, O or A; nothing where the last two are undefined.
  void ZeroStartTime();
  void ZeroOriginTime();
  void ZeroPTime();
  // ZeroThisTime with DIST / v - O, O as 0 when undefined; the subtraction is intended. v in km/s.
  void ReduceByVelocity(float v);

  // ---- Descriptions (SacObjectDescriptions.cc) ----

  // Text blocks for display, each line beginning with its line break.
  std::string description() const;
  // The station's lines; the region is looked up at the event's position (intended) and overwrites
  // the region numbers.
  std::string stationDescription();
  // The path and the event's lines.
  std::string eventDescription() const;
  // The origin time as "2011/03/11 05:46:23.000"; none when O is undefined.
  OptionalText oTimeString() const;
  // The P pick's time and the event's latitude and longitude; "NoPick" when A is undefined. Logged
  // when verbose > 0.
  std::string hypoPickString() const;

  // ---- Amplitudes (SacObjectAmplitudes.cc) ----
  //
  // Unless said otherwise these end with ComputeExtrema and set mSeisHasChanged.

  // Least and greatest sample from t1 up to t2, whose indexes are truncated; (0, 0) for a window
  // off the trace.
  std::pair<double, double> ComputeMinMaxInRange(float t1, float t2) const;
  // DELTA / n times the sum of the n squared samples from t1 up to t2; 0 for a window off the
  // trace, NaN for an empty one.
  float ComputePowerFrom_To(float t1, float t2) const;
  // DEPMEN becomes 0 and the other extrema move with it; they are not searched again.
  void RemoveMean();
  // Removes the slope of the least-squares line. A constant offset of -slope n DELTA is left; this
  // is intended.
  void SubtractLinearTrend();
  // Multiply every sample by -1, or by a factor.
  void FlipPolarity();
  void ScaleAmplitudes(float factor);
  // Multiply sample i by t, t^2 or sqrt(t) with t = DELTA (i + 1): the time counts from one
  // interval before the first sample (intended).
  void ScaleByLinearTime();
  void ScaleBySquareTime();
  void ScaleBySquareRootTime();
  // Multiplies every sample by DIST, also by an undefined one.
  void ScaleByDistance();
  // Replace every sample by its square, its absolute value, or 0.
  void sqrAmplitudes();
  void absAmplitudes();
  void ZeroAmplitudes();
  // Each sample's sign: 1, -1 or 0.
  void binary();
  // Last sample first; sets mSeisHasChanged alone.
  void reverseTime();
  // Trapezoid rule, accumulated in double. The output is advanced by one sample, the last two are
  // equal, and the sum and the first step both start from sample 0 times DELTA / 2; all intended.
  // B, E and IDEP stay.
  void Integrate();
  // Forward difference over DELTA; the last value is given twice. A single sample stays.
  void Differentiate();
  // Weighs the first and last fraction p of the trace by 1 - cos and cos of a quarter wave (two
  // different shapes, intended); the first sample becomes 0, the others stay for p <= 0. Above 0.5
  // the falling edge wins where both would be; from 1 on it covers the whole trace, the first
  // sample too, and starts from cos of (p - 1) / p quarter waves. defaultTaper has p = 0.05.
  void Taper(float p);
  void defaultTaper() { Taper(0.05f); }
  // Zero the samples from time t on or up to time t, with a linear ramp over `length` samples
  // before or after it (none for a length below 1). The offset from B is first truncated to whole
  // seconds (intended).
  void ZeroAmplitudesAfterTime(float t);
  void ZeroAmplitudesAfterTime_TaperLength(float t, std::int32_t length);
  void ZeroAmplitudesBeforeTime_TaperLength(float t, std::int32_t length);

  // ---- Cutting, decimating and joining (SacObjectCutting.cc) ----
  //
  // These build a new buffer where the number of samples changes, end with ComputeExtrema and set
  // mSeisHasChanged.

  // Keeps the samples whose rounded indexes lie from t1 to t2. Logs the indexes. An end one past
  // the last sample is kept as a zero (intended).
  void ChopFromStart_END(float t1, float t2);
  // Cut by group velocity in km/s: from O to O + DIST / v, or from O + DIST / vmax to O + DIST /
  // vmin, made at least minimum seconds long. Nothing when O or DIST is undefined.
  void ChopFromOriginToGVel(float v);
  void ChopWithGVelMin_Max(float vmin, float vmax);
  void ChopWithGVelMin_Max_MinDuration(float vmin, float vmax, float minimum);
  // The group velocities, km/s, of the last and first sample; 1e10 for a trace that begins at or
  // before the origin, (0, 0) when O or DIST is undefined or O is not before the end.
  std::pair<double, double> getGroupVelocityRange() const;
  // Low-passes and keeps every f-th sample, f from 2 to 5; nothing for another factor.
  void Decimate(std::int32_t factor);
  // The same in the same buffer, which keeps its length; the scratch must hold NPTS / factor
  // floats, else nothing happens.
  void inPlaceDecimate_UsingTempData(std::int32_t factor, ByteBuffer& scratch);
  // Appends a trace that follows this one or overlaps its end, whose overlapping samples are
  // dropped. Refused, with a warning in the log, when the DELTAs differ or are not positive, or
  // there is a gap.
  void AppendSacObject(const SacObject& other);

  // ---- Filters (SacObjectFilters.cc, SacObjectAnalyticSignal.cc) ----
  //
  // The spectral ones transform the trace padded with zeros to the least power of two above NPTS,
  // shape the spectrum and transform back, all phases kept but where said otherwise. They end with
  // ComputeExtrema and set mSeisHasChanged, and do nothing to an empty trace.

  // Butterworth low-pass and high-pass: corner in Hz, passes (2 gives zero phase, any other number
  // one forward pass), poles (rounded down to an even number, at most 21). Nothing unless the
  // corner is above 0.
  void LPBUfilter_NPasses_NPoles(float corner, std::int32_t passes, std::int32_t poles);
  void HPBUfilter_NPasses_NPoles(float corner, std::int32_t passes, std::int32_t poles);
  // Gaussian low-pass exp(-w^2 / 4 a^2), a in rad/s.
  void RGaussianFilter(float a);
  // Replaces one such Gaussian by another; where the old one is below 1e-6 the new one alone is
  // applied.
  void RGaussianFilterSwapOld_New(float oldA, float newA);
  // Gaussian band-pass exp(-alpha^2 (w - w0)^2) around f0 Hz, alpha in s, times sqrt(alpha pi) /
  // w0. At the Nyquist frequency alpha stands to the first power (intended).
  void SGaussianFilter_Alpha(float f0, float alpha);
  // Band-pass from f1 to f4 Hz with edges up to f2 and from f3 on, 1 - cos and cos of a quarter
  // wave (two different shapes, intended).
  void CosineTaperFilter(float f1, float f2, float f3, float f4);
  // Attenuation with t* in s and its dispersion; the Nyquist value becomes 0.
  void TstarFilter(float tstar);
  // Convolutions with a one-cycle cosine pulse or a trapezoid of unit area, durations in s; the
  // result is advanced by one sample (intended). Nothing for a negative duration, or a cosine pulse
  // shorter than 1.5 samples, or any pulse of more than 2^24 samples. Zeros for a trapezoid without
  // area.
  void CosineTimeFunctionFilterDuration(float duration);
  void TrapezoidFilter(float rise, float top, float fall);
  // The modulus of the analytic signal, whose value at zero frequency is doubled too (intended).
  void Envelope();
  // The instantaneous frequency in Hz, despite the name, from the analytic signal and its
  // derivative, each smoothed in place by a five-point running mean mirrored about the end samples;
  // -0.01 where there is no power.
  void InstantaneousPeriod();
  // Weakens each frequency by its share, of the strongest, in the noise before time t. Without
  // noise before t the trace becomes not a number; nothing where t has no sample index.
  void NoiseFilterStartingAtTime(float t);
  // The packed spectrum (see realft) of the samples times DELTA, as floats; the trace stays. Empty
  // without memory.
  Ref<ByteBuffer> spectrum() const;
  // Multiplies the samples by 2 / (N DELTA), N the padded length, and nothing else (intended).
  void prewhiten();

  // ---- Deconvolution, correlation and instruments (SacObjectDeconvolution.cc,
  // SacObjectInstrument.cc) ----
  //
  // Spectral operations as above. The other trace is read for as many samples as this one has;
  // those that it lacks are zeros. Its DELTA is not looked at.

  // Spectral division by another trace, whose power is held above `level` times its greatest,
  // shifted by tshift s, so that zero lag lies tshift after the first sample; with a Gaussian
  // low-pass of width a (rad/s). At zero and Nyquist frequency the numerator is squared (intended).
  // Method: Clayton and Wiggins (1976). Not a number where the other trace is zero.
  void WaterLevelDeconWith_wlevel_tshift(const SacObject& other, float level, float tshift);
  void WaterLevelDeconWith_wlevel_tshift_gwidth(const SacObject& other, float level, float tshift,
                                                float a);
  // The same as the second; the count of iterations and the misfit are not used (intended).
  void iterDeconWith_wlevel_tshift_gwidth_nIter_minMF(const SacObject& other, float level,
                                                      float tshift, float a, int iterations,
                                                      float misfit);
  // The cross-correlation sum of a[l + n] b[l], not normalised, with zero lag at time 0: B and E
  // are set.
  void correlateWith(const SacObject& other);
  // The lag in s, up to half the padded length both ways, of the greatest absolute correlation, and
  // that correlation over the root of both energies. The trace stays; the energies are put into
  // USER9 of both traces. At zero and Nyquist frequency this trace is squared (intended). (0, NaN)
  // for an empty trace.
  std::pair<double, double> GetOptimalShift(SacObject& other);
  // Convolves with a built-in instrument (see GetInstrumentResponse).
  void ConvolveInstrument(int code);
  // Removes the response of a pole-zero file within a band with the edges f1 to f2 and f3 to f4 Hz,
  // applied where f2 > f1 and f4 > f3. A file that cannot be read leaves the trace as it is and the
  // log says so.
  void DeconvolveInstrument_TaperCorners(const std::string& path, const float corners[4]);
  // Removes the Gaussian exp(-k t^2), k in 1/s^2, whose amplitude fits the 5 s before time 0.
  // Nothing when B is above 0.
  void subtractZeroLagGaussian(float k);

  // ---- Travel-time marks and synthetics (SacObjectMarks.cc) ----
  //
  // The sample of a time is that of its truncated index; spikes off the trace are skipped. `block`
  // is the block of 13 floats of GetBWResponse, overwritten by its results; element 7 selects P, pP
  // and sP (0) or SH and sS.

  // Set A and T0, labelled P(JB) and S(JB), to the Jeffreys-Bullen times after O, and the second
  // USER2 and USER3 to the P and S slowness (s/km). EVDP is in km, above 1000 in m. Nothing when
  // DIST is more than 100 degrees (of 111.19 km), when DIST, EVDP or O is undefined, or where the
  // tables cannot be read.
  void markJBTimes();
  void markJBTimesAndSlowness();
  // Replaces the trace, but for its first sample (intended), by spikes of amplitude / (2 DELTA):
  // the direct wave at A or T0, at 5 s where that is undefined, the others behind it. Sets EVDP to
  // the source depth.
  void computeBWResponse(float* block);
  // Adds the spikes times the moment, `delay` s later. Without ComputeExtrema; mSeisHasChanged is
  // set only when the last spike is on the trace (intended).
  void addBWResponse_Delay_Moment(float* block, float delay, float moment);
  // The same with 125 reverberations of pP and sP in a water layer (1.5 km/s) of `waterDepth` km,
  // which start from A only when T0 is set (intended); sets mSeisHasChanged.
  void addBWResponseWater_Delay_Moment_WDepth(float* block, float delay, float moment,
                                              float waterDepth);
  // Adds moment / DELTA at time t (s); sets mSeisHasChanged when t is on the trace.
  void addSpikeDelay_Moment(float t, float moment);
  // Adds the other's samples one by one, whatever its B and DELTA; then as other amplitude
  // operations end.
  void addSeismogram(const SacObject& other);

  // ---- Measures (SacObjectMeasures.cc) ----
  //
  // Sums are single precision. -12345 for an empty trace.

  // sqrt(sum x^2 / NPTS), and DELTA sum x^2.
  float simpleRMS() const;
  float signalPower() const;
  // The amplitude-weighted mean time after the first sample; -12345 when the samples add up to 0.
  float centroid() const;
  // The RMS from A to F (to E where F is not within B and E) over that before A. -12345 when A is
  // not within B and E or no sample follows it; not finite when none precedes it.
  float simpleSNR() const;
  // Logs the value, index and time of the greatest sample.
  void FindMaximum() const;
  // Does nothing.
  void FindMinimum() const;

 protected:
  ~SacObject() override;

  virtual Ref<SacObject> clone() const;

 private:
  struct LoadRules;
  struct RegionNames {
    const char *geographic, *seismic;
  };

  template <typename T>
  T field(T SacHeader::*member) const {
    return h_ ? h_->*member : static_cast<T>(kSacUndefinedInt);
  }
  template <typename T>
  void setField(T SacHeader::*member, T value) {
    if (h_) h_->*member = value;
  }
  template <std::size_t kWidth>
  std::string text(char (SacHeader::*member)[kWidth]) const {
    return textOf(h_ ? h_->*member : kSacUndefinedText, h_ ? kWidth : 8);
  }
  template <std::size_t kWidth>
  void setText(char (SacHeader::*member)[kWidth], const char* value) {
    if (h_ && value) fillField(h_->*member, kWidth, value);
  }
  static std::string textOf(const char* field, std::size_t width);
  static void fillField(char* field, std::size_t width, const char* value);

  // The buffer that h_ and seis_ point into.
  const Ref<ByteBuffer>& viewedData() const { return replacedData_ ? replacedData_ : myData_; }
  // The samples that are both stated by NPTS and in the buffer.
  std::span<float> samples() const;
  friend std::span<float> samplesOf(const SacObject& s);
  bool hasValidImage() const;
  bool installImage(Ref<ByteBuffer> image);
  void samplesChanged();

  bool loadFile(const std::string& path, const LoadRules& rules);
  bool settleByteOrder(const std::string& path, const LoadRules& rules, bool foreign);
  void logImage(const std::string& path) const;
  void finishLoading(const std::string& path);
  void setUpReferenceTime();
  bool writeImage(const OptionalText& path) const;

  template <typename Weight>
  void scaleByTime(Weight weight);
  bool hasTravelDistance() const;
  void installDecimated(std::int32_t count, float interval);

  template <typename Shape>
  void shapeSpectrum(Shape shape, double scale = 1.0);
  void takeBack(PackedSpectrum& spectrum, double scale = 1.0);

  std::pair<PackedSpectrum, PackedSpectrum> spectraWith(const SacObject& other) const;
  template <typename Window>
  void divideSpectrum(const SacObject& other, float level, float tshift, Window window);

  void markFromTables(const char* method, bool withSlowness);
  template <typename Place>
  bool placeResponse(float* block, float delay, Place place);
  float* sampleAt(float t);
  bool addSpike(float t, float amplitude);

  void storeReferenceFields(const SeisTimeObject& time, std::int32_t dayOfYear);
  void moveReference(float t, bool movesFini);
  OptionalText timeText(float offset, const char* (SeisTimeObject::*form)()) const;

  bool kindIs(const char* kind) const;
  bool hasEventLocation() const;
  RegionNames lookUpRegions();
  void describeStation(std::string& out) const;
  void describeEvent(std::string& out) const;
  void describeGeometry(std::string& out) const;

  Ref<ByteBuffer> myData_;
  Ref<ByteBuffer> replacedData_;  // what h_ and seis_ still point into after setMyData
  SacHeader* h_ = nullptr;
  float* seis_ = nullptr;
  std::size_t capacity_ = 0;  // samples in the buffer behind the header
  bool mSeisHasChanged_ = false;
  bool mSeisIsLocked_ = false;
  OptionalText myPath_;
  OptionalText myFileName_;
  OptionalText labelString_;
  OptionalText myFERegionString_;
  std::optional<Date> myReferenceDate_;
  Ref<SeisTimeObject> mySeisReferenceTime_;
  std::int32_t tag_ = 0;
  std::int32_t verbose_ = 0;
  bool swappedBytes_ = false;
  std::int32_t mySreg_ = 0;
  std::int32_t myGreg_ = 0;
};

}  // namespace krosac

#endif
