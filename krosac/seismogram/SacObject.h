// One seismogram: a SAC header and its samples in one byte buffer with the layout of the file.
//
//   auto s = krosac::make<krosac::SacObject>();
//   if (!s->initWithPath("II.TLY.BHZ.SAC")) return 1;
//   s->RemoveMean();
//   s->HPBUfilter_NPasses_NPoles(0.02f, 2, 4);
//   s->setPath("filtered.SAC");
//   if (!s->save()) return 1;
//
// Times are seconds relative to the reference time of the header; angles are degrees. An undefined
// header field holds -12345.0, -12345 or "-12345". An object without a 632-byte image returns these
// values and ignores changes. Operations process min(NPTS, samples in the buffer) samples.
// Processing methods fail silently: where they cannot do their work they leave the trace unchanged.
// After loading, saving, joining, marking and instrument removal lastReason() says why. Out of
// memory, every operation leaves the object as it was, returns an empty text, none or its stated
// failure, and lastReason() says so.
#ifndef KROSAC_SEISMOGRAM_SACOBJECT_H
#define KROSAC_SEISMOGRAM_SACOBJECT_H

#include <cstddef>
#include <cstdint>
#include <optional>
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

class KROSAC_API SacObject : public Archivable {
 public:
  // ---- Construction and loading (SacObjectLoading.cc) ----
  //
  // Methods that differ only in the case of their first letter are distinct. Those that begin with
  // a capital autorelease the receiver: call them on alloc<SacObject>() inside an AutoreleasePool.
  // The others go with make<SacObject>(). Every loader derives the reference time, the region
  // names, DIST, AZ, BAZ and GCARC from the header and clears the flags; loaders of files also
  // compute E and the extrema. So a file that is loaded and saved may differ in these fields. Do
  // not use an object whose loader returned false.

  // An evenly sampled trace of n zeros: the default header with NPTS = n, DELTA = 1, B = 0 and
  // E = n - 1, and no reference time. NVHDR stays undefined: set it to 6 before saving, because
  // other programs refuse a file without it. Empty when n is negative or memory runs out.
  Ref<SacObject> initWithCapacity(std::int32_t n);

  // Takes the buffer as the image; it is shared, not copied, and must be a valid native image (as
  // for isSacFile, without the limit on DELTA). Neither swaps bytes nor computes E or the extrema.
  // On failure the log says so, and the second has no image afterwards.
  bool InitWithNSData_withPath(const Ref<ByteBuffer>& image, const std::string& path);
  bool initWithNSData_withPath(const Ref<ByteBuffer>& image, const std::string& path);

  // Reads a file of exactly 632 + 4 NPTS bytes, NPTS >= 0 and DELTA >= 0, in either byte order. The
  // image in memory is native; swappedBytes is true for a foreign file. False, with a line in the
  // log, when the file cannot be read or is invalid. All reset verbose to 0. InitWithPath
  // autoreleases only on success. loadFromPath keeps the swappedBytes of a live object where the
  // file is native (intended).
  bool InitWithPath(const std::string& path);
  bool initWithPath(const std::string& path);
  bool loadFromPath(const std::string& path);

  // Reads the header and as many samples as the existing buffer holds, and reduces NPTS to that
  // number. False when the file cannot be read, is invalid, or does not fill the buffer.
  bool replaceSacObjectDataWithPath(const std::string& path);

  // Copies the image, path and byte order of another trace, and its label only where the receiver
  // already has one (intended). Computes E, not the extrema. Empty when the image cannot be copied.
  Ref<SacObject> InitWithSeisObject(const SacObject& other);
  Ref<SacObject> initWithSeisObject(const SacObject& other);

  // True when the image is exactly 632 + 4 NPTS bytes, NPTS >= 0 and 0 <= DELTA < 10000.
  bool isSacFile() const;

  // ---- Saving, archiving and copying (SacObjectSaving.cc) ----
  //
  // Savers and copies use myData, also before setupPointers. Savers write 632 + 4 NPTS bytes, at
  // most those of the buffer and all of them where NPTS is negative, atomically and in the byte
  // order in which the trace was loaded. They return false when nothing was written, and leave
  // mSeisHasChanged unchanged. A trace with swappedBytes is always written to its old path,
  // whatever path was given (intended), and lastReason() says so: call setPath and then save.

  // Writes to the path; false when there is none.
  bool save() const;
  // Writes to that name in the working directory; success sets the path, not the file name.
  bool saveAs(const std::string& name);
  // Writes to the given path; the object's own path stays unchanged.
  bool saveToPath(const std::string& path) const;

  // Keys: myData, mSeisHasChanged, mSeisIsLocked, myPath, myFileName, labelString, myReferenceDate,
  // mySeisReferenceTime, tag, verbose, swappedBytes. Decoding computes the region names, DIST, AZ,
  // BAZ and GCARC, and does not check the image: call isSacFile after unarchive.
  const char* archiveClassName() const override { return "SacObject"; }
  void encodeWithCoder(KeyedArchiver& coder) const override;
  Ref<SacObject> initWithCoder(KeyedUnarchiver& coder);

  // An independent copy, with E and the geometry computed; empty when memory runs out.
  Ref<SacObject> copyWithZone() const { return clone(); }

  // ---- The object's own fields (SacObject.cc) ----

  // The image, header and samples.
  const Ref<ByteBuffer>& myData() const { return myData_; }
  // Keeps the header and sample pointers in the old buffer until setupPointers is called.
  void setMyData(Ref<ByteBuffer> image);
  // Points the header and the samples into myData.
  void setupPointers();
  // The header and the first sample inside the buffer; null without a 632-byte image.
  SacHeader* GetSacHeader() const { return h_; }
  float* GetSacSeis() const { return seis_; }

  // The path of the file, its last component at loading, and a label for the caller's use.
  const OptionalText& myPath() const { return myPath_; }
  const OptionalText& path() const { return myPath_; }
  void setMyPath(OptionalText path) { myPath_ = std::move(path); }
  void setPath(OptionalText path) { myPath_ = std::move(path); }
  const OptionalText& myFileName() const { return myFileName_; }
  void setMyFileName(OptionalText name) { myFileName_ = std::move(name); }
  const OptionalText& labelString() const { return labelString_; }
  void setLabelString(OptionalText label) { labelString_ = std::move(label); }
  // The reference time at loading, in whole seconds; no operation moves it.
  const std::optional<Date>& myReferenceDate() const { return myReferenceDate_; }
  void setMyReferenceDate(std::optional<Date> date) { myReferenceDate_ = date; }
  // The reference time with its milliseconds; empty for a trace made by initWithCapacity.
  const Ref<SeisTimeObject>& mySeisReferenceTime() const { return mySeisReferenceTime_; }
  void setMySeisReferenceTime(Ref<SeisTimeObject> time) { mySeisReferenceTime_ = std::move(time); }
  // Set by the operations that change samples. The library itself reads neither flag.
  bool mSeisHasChanged() const { return mSeisHasChanged_; }
  void setMSeisHasChanged(bool changed) { mSeisHasChanged_ = changed; }
  bool mSeisIsLocked() const { return mSeisIsLocked_; }
  void setMSeisIsLocked(bool locked) { mSeisIsLocked_ = locked; }
  // 2 or more logs the processing messages, 5 or more the retain counts on destruction. The loaders
  // reset it to 0 before they would log the reference time.
  std::int32_t verbose() const { return verbose_; }
  void setVerbose(std::int32_t level) { verbose_ = level; }
  // A number for the caller's use.
  std::int32_t tag() const { return tag_; }
  void setTag(std::int32_t tag) { tag_ = tag; }
  // True when the file on disk has the byte order opposite to this machine's.
  bool swappedBytes() const { return swappedBytes_; }
  void setSwappedBytes(bool swapped) { swappedBytes_ = swapped; }

  // ---- Header fields ----
  //
  // Getters return the field; setters store it and do nothing else.

  // Number of samples, data quality (IQUAL), and sampling interval in s.
  std::int32_t npts() const { return field(&SacHeader::NPTS); }
  void setNpts(std::int32_t npts) { setField(&SacHeader::NPTS, npts); }
  std::int32_t iqual() const { return field(&SacHeader::IQUAL); }
  void setIQual(std::int32_t quality) { setField(&SacHeader::IQUAL, quality); }
  float delta() const { return field(&SacHeader::DELTA); }
  void setDelta(float delta) { setField(&SacHeader::DELTA, delta); }
  // Times in s: first and last sample, event origin, first arrival, end of the event, ten picks.
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
  // Minimum, maximum and mean of the samples at the last ComputeExtrema.
  float smin() const { return field(&SacHeader::DEPMIN); }
  float smax() const { return field(&SacHeader::DEPMAX); }
  float smean() const { return field(&SacHeader::DEPMEN); }
  // DIST in km; great-circle arc, azimuths, and orientation of the component in degrees.
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
  // Locations of event and station in degrees. EVDP is stated in km, but many real files hold
  // metres: divide a depth above 1000 by 1000 before using it, as markJBTimes does.
  float evla() const { return field(&SacHeader::EVLA); }
  float evlo() const { return field(&SacHeader::EVLO); }
  float evdp() const { return field(&SacHeader::EVDP); }
  float stla() const { return field(&SacHeader::STLA); }
  float stlo() const { return field(&SacHeader::STLO); }
  // MAG, and IEVTYP, the type of source.
  void setMagnitude(float magnitude) { setField(&SacHeader::MAG, magnitude); }
  void setSrcType(std::int32_t type) { setField(&SacHeader::IEVTYP, type); }

  // Texts of 8 characters (KEVNM of 16), returned without white space at both ends.
  std::string kstnm() const { return text(&SacHeader::KSTNM); }
  std::string kcmpnm() const { return text(&SacHeader::KCMPNM); }
  std::string knetwk() const { return text(&SacHeader::KNETWK); }
  std::string kevnm() const { return text(&SacHeader::KEVNM); }
  std::string khole() const { return text(&SacHeader::KHOLE); }
  std::string kuser0() const { return text(&SacHeader::KUSER0); }
  std::string kuser1() const { return text(&SacHeader::KUSER1); }
  std::string kuser2() const { return text(&SacHeader::KUSER2); }
  // Copies the text, truncated or padded with NULs to the field's width. Null changes nothing.
  void setStationID(const char* name) { setText(&SacHeader::KSTNM, name); }
  void setComponentName(const char* name) { setText(&SacHeader::KCMPNM, name); }
  void setNetworkID(const char* name) { setText(&SacHeader::KNETWK, name); }
  void setEventName(const char* name) { setText(&SacHeader::KEVNM, name); }
  void setKHoleID(const char* name) { setText(&SacHeader::KHOLE, name); }

  // ---- Picks, user values and derived values (SacObjectHeader.cc) ----

  // Keys 0 to 9 are T0 to T9, 10 is A, 11 is F. Others read -12345.0 or "" and are not written.
  float timePickKey(int key) const;
  void setTimePickKey_Value(int key, float time);
  // The first 7 characters of the label, trimmed; an 8th is lost (intended).
  std::string pickLabelWithKey(int key) const;
  // Writes at most 8 characters, padded with NULs.
  void setPickLabelKey_Value(int key, const char* label);
  // Sets A, T0 to T9 and F to undefined and keeps the labels.
  void clearTimePicks();

  // Keys 0 to 9 are USER0 to USER9. Any other key returns -12345.0 and is ignored on writing.
  float userValue(int key) const;
  void setUserValueKey_Value(int key, float value);
  // Sets USER0 to USER9 to undefined and keeps the labels.
  void clearUserValues();
  // Keys 0 to 2 are KUSER0 to KUSER2, read like pick labels; any other key returns an empty text.
  std::string userValueLabelWithKey(int key) const;
  // Keys 0 to 2 as above, 3 is KSTNM, 4 KNETWK, 5 KCMPNM; any other key is ignored.
  void setUserValueLabelKey_Value(int key, const char* label);

  // The larger of |DEPMIN| and |DEPMAX| of the header.
  float absMax() const;
  // E - B, in s.
  float signalDuration() const;
  // The smallest power of two greater than NPTS; 1 where NPTS is below 1.
  std::int64_t nextPowerOfTwoPts() const;
  // USER2 cos(AZ - USER1) in single precision, AZ and USER1 in degrees.
  float gamma() const;
  // B and E in seconds since 1970-01-01 UTC: myReferenceDate + NZMSEC / 1000 + the time.
  double epochStartTime() const;
  double epochEndTime() const;
  // True when KUSER0 begins with "P", "SH", "R1" or "G1".
  bool isP() const;
  bool isSH() const;
  bool isR1() const;
  bool isG1() const;
  // Sets E = (NPTS - 1) DELTA + B.
  void fixEndTime();
  // Computes DEPMIN, DEPMAX and DEPMEN from the samples, the mean from a single-precision sum in
  // index order; an empty trace gets zeros. Sets mSeisHasChanged.
  void ComputeExtrema();

  // -1, 0 or 1, for sorting in ascending order of the field; undefined values sort first.
  int compareGCarcs(const SacObject& other) const;
  int compareDistances(const SacObject& other) const;
  int compareBackAzimuths(const SacObject& other) const;
  int compareAzimuths(const SacObject& other) const;

  // ---- Geometry and regions (SacObjectGeometry.cc) ----

  // Sets BAZ, AZ, GCARC and DIST (111.19 km per degree) from the locations of event and station.
  // Returns false and changes nothing when a coordinate is undefined.
  bool computeDistAzBAz();
  // Stores EVLA and EVLO (degrees) and EVDP (km), then computes geometry and region.
  void setEventLocationLat_Lon_Depth(float latitude, float longitude, float depth);
  // Stores STLA and STLO (degrees) and STEL (m), then computes the geometry.
  void setStationLocationLat_Lon_Elevation(float latitude, float longitude, float elevation);
  // Finds the Flinn-Engdahl region of the event: "<seismic region> / <geographic region>", or
  // "FE Region: N/A\n" where the location is undefined.
  void setFlinnEngdahlRegion();
  // The result of the last setFlinnEngdahlRegion.
  OptionalText flinnEngdahlString() const;
  // The event's geographic region, empty without a location.
  std::string flinnEngdahlGeographicRegion();

  // ---- Reference time (SacObjectReferenceTime.cc) ----
  //
  // None of these changes myReferenceDate.

  // Set the reference time, with millisecond 0, and keep the relative times unchanged.
  void setReferenceTimeWithNSCalendarDate(const Date& date);
  void setReferenceTimeWithNSDate(const Date& date);
  // Retains the time object as the reference time and keeps the relative times unchanged.
  void replaceReferenceTimeWith(const Ref<SeisTimeObject>& time);
  // Set the reference time and shift the relative times accordingly, as setReferenceTime does.
  void adjustReferenceTimeToNSCalendarDate(const Date& date);
  void adjustReferenceTimeToNSDate(const Date& date);
  // Shifts B and E, and O, A, F and T1 to T9 where defined, so that they mark the same instants. T0
  // is not shifted and a year of difference counts as 365 days (both intended). Sets
  // mSeisHasChanged. Without a previous reference time the shift is unknown, and only NZYEAR to
  // NZMSEC change.
  void setReferenceTime(const SeisTimeObject& time);
  // Sets O to the difference in s from the reference time; does nothing without one.
  void setOriginTimeYear_Month_Day_Hour_Minutes_Seconds(std::int32_t year, std::int32_t month,
                                                        std::int32_t day, std::int32_t hour,
                                                        std::int32_t minutes, float seconds);

  // Moves the reference time later by t seconds, and B, E and the defined of O, A and T0 to T9
  // earlier. F, the samples and mSeisHasChanged stay unchanged. Without a reference time only the
  // relative times move.
  void ZeroThisTime(float t);
  // Does the same and also moves F.
  void shiftTimesBy(float t);
  // ZeroThisTime with B, O or A; the last two do nothing where that time is undefined.
  void ZeroStartTime();
  void ZeroOriginTime();
  void ZeroPTime();
  // ZeroThisTime with DIST / v - O (intended: not + O), v in km/s; an undefined O counts as 0.
  void ReduceByVelocity(float v);

  // ---- Descriptions (SacObjectDescriptions.cc) ----

  // Path, times, extrema, station, event and geometry; undefined fields are left out. Each line
  // begins with its line break.
  std::string description() const;
  // The station lines and the geometry. The region is that of the event's location (intended).
  std::string stationDescription();
  // The path and the event lines, with 8 characters of KEVNM where description has all 16.
  std::string eventDescription() const;
  // The origin time as "2011/03/11 05:46:23.000"; none where O is undefined.
  OptionalText oTimeString() const;
  // Time of A and location of the event, logged when verbose > 0; "NoPick" where A is undefined.
  std::string hypoPickString() const;

  // ---- Amplitudes (SacObjectAmplitudes.cc) ----
  //
  // Unless stated otherwise these end with ComputeExtrema and set mSeisHasChanged. A window may
  // extend beyond the trace, to 1e30 or infinity, and ends at the ends of the trace; NaN changes
  // nothing.

  // Minimum and maximum of the samples from t1 to before t2, at truncated indexes; (0, 0) for a
  // window outside the trace.
  std::pair<double, double> ComputeMinMaxInRange(float t1, float t2) const;
  // DELTA / n times the sum of the n squared samples; 0 outside the trace, NaN for an empty window.
  float ComputePowerFrom_To(float t1, float t2) const;
  // Subtracts the mean. DEPMEN becomes 0 and the extrema are shifted, not searched again.
  void RemoveMean();
  // Removes the least-squares slope and leaves an offset of -slope n DELTA (intended).
  void SubtractLinearTrend();
  // Multiply every sample by -1, or by a factor.
  void FlipPolarity();
  void ScaleAmplitudes(float factor);
  // Multiply sample i by t, t^2 or sqrt(t) with t = DELTA (i + 1), the time since one interval
  // before the first sample (intended).
  void ScaleByLinearTime();
  void ScaleBySquareTime();
  void ScaleBySquareRootTime();
  // Multiplies every sample by DIST, even where that is undefined.
  void ScaleByDistance();
  // Replace every sample by its square, its absolute value, or 0.
  void sqrAmplitudes();
  void absAmplitudes();
  void ZeroAmplitudes();
  // Replaces every sample by its sign: 1, -1 or 0.
  void binary();
  // Reverses the samples. Sets only mSeisHasChanged.
  void reverseTime();
  // Integrates by the trapezoid rule, accumulated in double. The output is advanced by one sample,
  // the last two values are equal, and the sum and the first step both start from sample 0 times
  // DELTA / 2 (all intended). B, E and IDEP stay unchanged.
  void Integrate();
  // Forward difference over DELTA; the last value is repeated. A single sample stays unchanged.
  void Differentiate();
  // Multiplies the first and last fraction p of the trace by 1 - cos and cos of a quarter wave (two
  // different shapes, intended). The first sample always becomes 0; the others stay unchanged for p
  // <= 0. Where the edges overlap, p > 0.5, the falling one applies; for p >= 1 it covers the whole
  // trace but the first sample, from cos of (p - 1) / p quarter waves. defaultTaper has p = 0.05.
  void Taper(float p);
  void defaultTaper() { Taper(0.05f); }
  // Zero the samples after or before time t. A linear ramp over `length` samples ends at t; a
  // length below 1 means no ramp. The offset from B is first truncated to whole seconds (intended).
  void ZeroAmplitudesAfterTime(float t);
  void ZeroAmplitudesAfterTime_TaperLength(float t, std::int32_t length);
  void ZeroAmplitudesBeforeTime_TaperLength(float t, std::int32_t length);

  // ---- Cutting, decimating and joining (SacObjectCutting.cc) ----
  //
  // These allocate a buffer where NPTS changes, end with ComputeExtrema and set mSeisHasChanged.

  // Keeps the samples from t1 to t2, at rounded indexes, and logs the indexes. An end one past the
  // last sample appends a zero (intended).
  void ChopFromStart_END(float t1, float t2);
  // Cut by group velocity in km/s: from O to O + DIST / v, or from O + DIST / vmax to O + DIST /
  // vmin, extended to at least `minimum` seconds. Nothing happens where O or DIST is undefined.
  void ChopFromOriginToGVel(float v);
  void ChopWithGVelMin_Max(float vmin, float vmax);
  void ChopWithGVelMin_Max_MinDuration(float vmin, float vmax, float minimum);
  // The group velocities, km/s, of the last and the first sample; the latter is 1e10 for a trace
  // that begins at or before the origin. (0, 0) where O or DIST is undefined or O >= E.
  std::pair<double, double> getGroupVelocityRange() const;
  // Low-passes the trace and keeps every `factor`-th sample, for factors 2 to 5; ignores others.
  void Decimate(std::int32_t factor);
  // Does the same in the existing buffer, which keeps its length: isSacFile is false until another
  // operation allocates a new buffer. The scratch buffer must hold NPTS / factor floats; otherwise
  // nothing happens.
  void inPlaceDecimate_UsingTempData(std::int32_t factor, ByteBuffer& scratch);
  // Appends a trace that follows this one or overlaps its end; overlapping samples of the other are
  // dropped. Refuses, with a warning in the log, when the DELTAs differ or there is a gap, and
  // without one where they are equal but not positive; lastReason() says why.
  void AppendSacObject(const SacObject& other);

  // ---- Filters (SacObjectFilters.cc, SacObjectAnalyticSignal.cc) ----
  //
  // The spectral ones pad the trace with zeros to the smallest power of two above NPTS, change its
  // spectrum and transform back. They keep all phases unless stated otherwise, end with
  // ComputeExtrema, set mSeisHasChanged, and ignore an empty trace.

  // Butterworth low-pass and high-pass: corner in Hz, passes (2 is zero-phase, forward and
  // backward; any other number filters forward once), poles. An odd number runs the sections of its
  // design without the real pole; more than 21 leave the samples unchanged but set the flag.
  // Nothing happens unless the corner is above 0.
  void LPBUfilter_NPasses_NPoles(float corner, std::int32_t passes, std::int32_t poles);
  void HPBUfilter_NPasses_NPoles(float corner, std::int32_t passes, std::int32_t poles);
  // Gaussian low-pass exp(-w^2 / 4 a^2), a in rad/s.
  void RGaussianFilter(float a);
  // Replaces one such Gaussian by another. Bins where the old one is below 1e-6 get only the new.
  void RGaussianFilterSwapOld_New(float oldA, float newA);
  // Gaussian band-pass exp(-alpha^2 (w - w0)^2) around f0 Hz, alpha in s, times sqrt(alpha pi) /
  // w0. The Nyquist bin uses the first power of alpha (intended).
  void SGaussianFilter_Alpha(float f0, float alpha);
  // Band-pass with edges f1 to f2 (1 - cos) and f3 to f4 Hz (cos of a quarter wave; intended).
  void CosineTaperFilter(float f1, float f2, float f3, float f4);
  // Attenuation by t* in s, with its dispersion; the Nyquist bin becomes 0.
  void TstarFilter(float tstar);
  // Convolve with a one-cycle cosine pulse or a trapezoid of unit area, durations in s; the result
  // is advanced by one sample (intended). Ignore a negative duration, a cosine pulse shorter than
  // 1.5 samples, and any pulse longer than 2^24 samples. A trapezoid without area yields zeros.
  void CosineTimeFunctionFilterDuration(float duration);
  void TrapezoidFilter(float rise, float top, float fall);
  // The modulus of the analytic signal, whose zero-frequency bin is doubled too (intended).
  void Envelope();
  // The instantaneous frequency in Hz, despite the name, from the analytic signal and its
  // derivative. Both are smoothed in place by a five-point running mean, mirrored about the end
  // samples. -0.01 where the power is 0.
  void InstantaneousPeriod();
  // Multiplies each bin by 1 - |N(f)| / max |N|, N being the spectrum of the noise before time t.
  // Without noise before t the trace becomes NaN.
  void NoiseFilterStartingAtTime(float t);
  // The packed spectrum (see realft) of the samples times DELTA. Empty when memory runs out.
  Ref<ByteBuffer> spectrum() const;
  // Only multiplies the samples by 2 / (N DELTA), N being the padded length (intended).
  void prewhiten();

  // ---- Deconvolution and correlation (SacObjectDeconvolution.cc, SacObjectCorrelation.cc) ----
  //
  // Spectral operations as above. The other trace is cut or padded with zeros to this one's number
  // of samples; its DELTA is ignored.

  // Spectral division by another trace, whose power is raised to at least `level` times its
  // maximum. The result is shifted by tshift s: zero lag is tshift after the first sample. The
  // second also low-passes with a Gaussian of width a (rad/s). The numerators of the zero-frequency
  // and Nyquist bins are squared (intended). Method: Clayton and Wiggins (1976). NaN where the
  // other trace is 0.
  void WaterLevelDeconWith_wlevel_tshift(const SacObject& other, float level, float tshift);
  void WaterLevelDeconWith_wlevel_tshift_gwidth(const SacObject& other, float level, float tshift,
                                                float a);
  // Does the same as the second; the number of iterations and the misfit are ignored (intended).
  void iterDeconWith_wlevel_tshift_gwidth_nIter_minMF(const SacObject& other, float level,
                                                      float tshift, float a, int iterations,
                                                      float misfit);
  // Subtracts the pulse A exp(-k t^2), k in 1/s^2. A is the sum of samples times weights over the
  // 5 s before time 0, divided by the square of the last weight alone; it is not a least-squares
  // fit (intended). Does nothing when B is above 0.
  void subtractZeroLagGaussian(float k);
  // The cross-correlation sum of a[l + n] b[l], not normalised, with zero lag at time 0.
  void correlateWith(const SacObject& other);
  // The lag in s, up to half the padded length either way, with the largest absolute correlation,
  // and the correlation there divided by the square root of both energies. Positive where this
  // trace is later than the other. Stores the energies in USER9 of both traces and leaves the
  // samples unchanged. The zero-frequency and Nyquist bins use the square of this trace (intended).
  // (0, NaN) for an empty trace, (0, 0) and no change when memory runs out.
  std::pair<double, double> GetOptimalShift(SacObject& other);

  // ---- Instruments (SacObjectInstrument.cc) ----

  // Convolves with the response of a built-in instrument (see GetInstrumentResponse).
  void ConvolveInstrument(int code);
  // Divides by the response of a pole-zero file, in a band with the edges f1 to f2 and f3 to f4 Hz
  // of 1 - cos and cos; the band applies only where f2 > f1 and f4 > f3. A bin exactly at f4, other
  // than Nyquist, keeps its full weight (intended). A response of 0 at zero frequency, as every
  // seismometer has, requires the band and f1 >= 0: otherwise the trace is not finite. A file that
  // cannot be read, or holds no finite response, leaves the trace unchanged; see lastReason().
  void DeconvolveInstrument_TaperCorners(const std::string& path, const float corners[4]);

  // ---- Travel-time marks (SacObjectMarks.cc) ----

  // Set A and T0, labelled P(JB) and S(JB), to O plus the Jeffreys-Bullen times; the second also
  // sets USER2 and USER3 to the P and S slownesses (s/km). EVDP is in km; above 1000 it is taken as
  // metres. Nothing is marked, and lastReason() says why, when DIST exceeds 100 degrees (of 111.19
  // km), when DIST, EVDP or O is undefined, or when the tables cannot be read.
  void markJBTimes();
  void markJBTimesAndSlowness();

  // ---- Synthetics (SacObjectSynthetics.cc) ----
  //
  // Times are converted to truncated sample indexes; spikes outside the trace are skipped. `block`
  // is the block of 13 floats of GetBWResponse, which overwrites it with the response. Element 7
  // selects P, pP and sP (0) or SH and sS (any other value).

  // Replaces the trace, except its first sample (intended), by spikes of amplitude / (2 DELTA). The
  // direct wave is placed at A or T0, or at 5 s where that is undefined; the others follow it. Sets
  // EVDP to the source depth.
  void computeBWResponse(float* block);
  // Adds the spikes times `moment`, `delay` s later, without ComputeExtrema. mSeisHasChanged is set
  // only when the last spike is inside the trace (intended).
  void addBWResponse_Delay_Moment(float* block, float delay, float moment);
  // Does the same and adds 125 reverberations of pP and sP in a water layer (1.5 km/s) of
  // `waterDepth` km. They start from A only when T0 is set (intended). Sets mSeisHasChanged.
  void addBWResponseWater_Delay_Moment_WDepth(float* block, float delay, float moment,
                                              float waterDepth);
  // Adds moment / DELTA at time t (s); sets mSeisHasChanged when t is inside the trace.
  void addSpikeDelay_Moment(float t, float moment);
  // Adds the other trace sample by sample, whatever its B and DELTA; ends as amplitude operations
  // do.
  void addSeismogram(const SacObject& other);

  // ---- Measures (SacObjectMeasures.cc) ----
  //
  // Sums are in single precision. -12345 for an empty trace.

  // sqrt(sum x^2 / NPTS), and DELTA sum x^2.
  float simpleRMS() const;
  float signalPower() const;
  // The amplitude-weighted mean time after the first sample; -12345 where the samples sum to 0.
  float centroid() const;
  // The RMS from A to F divided by that before A; the end is E where F is not between B and E.
  // -12345 where A is not between B and E or the window is empty, not finite where no sample
  // precedes A, and -0 where F precedes A.
  float simpleSNR() const;
  // Logs the value, index and time of the maximum.
  void FindMaximum() const;
  // Does nothing.
  void FindMinimum() const;

 protected:
  ~SacObject() override;

  virtual Ref<SacObject> clone() const;

 private:
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

  // The buffer that h_ and seis_ point into, for the library's own files.
  friend const Ref<ByteBuffer>& viewedImage(const SacObject& s);
  friend OptionalText regionText(const SacObject& s);

  Ref<ByteBuffer> myData_;
  Ref<ByteBuffer> replacedData_;  // where h_ and seis_ point between setMyData and setupPointers
  SacHeader* h_ = nullptr;
  float* seis_ = nullptr;
  bool mSeisHasChanged_ = false;
  bool mSeisIsLocked_ = false;
  OptionalText myPath_;
  OptionalText myFileName_;
  OptionalText labelString_;
  // Constants: the names of the last look-up, or the text for no location and null; at first null.
  const char* mySeismicRegion_ = nullptr;
  const char* myGeographicRegion_ = nullptr;
  std::optional<Date> myReferenceDate_;
  Ref<SeisTimeObject> mySeisReferenceTime_;
  std::int32_t tag_ = 0;
  std::int32_t verbose_ = 0;
  bool swappedBytes_ = false;
};

}  // namespace krosac

#endif
