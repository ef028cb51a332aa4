// One surface-wave dispersion measurement at one station for one event.
//
//   auto curve = krosac::make<krosac::DispersionCurve>();
//   curve->initWithKESTRAVFile("TLY.2011070.r.ga");
//   for (int i = 0; i < curve->nPeriods(); ++i) use(curve->instPeriod()[i], curve->velocity()[i]);
#ifndef KROSAC_SERIES_DISPERSIONCURVE_H
#define KROSAC_SERIES_DISPERSIONCURVE_H

#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "krosac/platform/ByteBuffer.h"
#include "krosac/platform/Date.h"
#include "krosac/platform/Export.h"
#include "krosac/platform/Object.h"
#include "krosac/platform/Text.h"

namespace krosac {

class KROSAC_API DispersionCurve : public Object {
 public:
  // Sets no periods; every other field of a made object is zero or empty. Returns the object.
  Ref<Object> init() override;

  // Reads a KESTRAV file: 12 header lines and one line of eight numbers per period. Returns the
  // object, without periods if the file cannot be read or begins with a line break.
  //
  // The reader ignores blank lines, leading blanks (except on the first line) and everything beyond
  // 4095 characters of a line. nPeriods is the number of lines that do not begin with "#", header
  // lines included; if there are fewer lines, the last one is read again. A field that is missing
  // or does not scan keeps its value, and so do the fields behind it on its line. A file with more
  // periods than memory can hold leaves none.
  Ref<DispersionCurve> initWithKESTRAVFile(const std::string& path);

  // The station code; none if the file has none.
  const OptionalText& stationID() const { return stationID_; }
  const OptionalText& networkID() const { return networkID_; }  // not read
  // The component name.
  const OptionalText& channelID() const { return channelID_; }
  // The first 21 characters of line 1, a blank and a word of line 4; none if line 1 is shorter.
  const OptionalText& dataSource() const { return dataSource_; }
  const OptionalText& originalText() const { return originalText_; }         // not read
  const std::optional<Date>& dateMeasured() const { return dateMeasured_; }  // not read

  // The number of periods, which is the length of the arrays below.
  std::int32_t nPeriods() const { return nPeriods_; }
  // The velocity type. It is not in the file and always 0.
  std::int32_t vType() const { return vType_; }
  // 1 (Rayleigh) for a file name that ends in "r.ga", 2 (Love) for "l.ga", otherwise 0.
  std::int32_t wType() const { return wType_; }
  // The mode-isolation flag: the number behind column 51 of line 8.
  std::int32_t modeIsolation() const { return modeIsolation_; }

  // Station latitude and longitude (degrees) and elevation (not read), then event latitude and
  // longitude (degrees) and depth. Missing coordinates are 0, also for distance and azimuths.
  float slat() const { return slat_; }
  float slon() const { return slon_; }
  float selva() const { return selva_; }
  float elat() const { return elat_; }
  float elon() const { return elon_; }
  float edepth() const { return edepth_; }
  // Degrees clockwise from north. The two are exchanged, which is intended: az is the azimuth at
  // the station toward the event, baz the azimuth at the event toward the station.
  float az() const { return az_; }
  float baz() const { return baz_; }
  // Distance in km (gcarc times kKilometresPerDegree) and in degrees of arc.
  float distance() const { return distance_; }
  float gcarc() const { return gcarc_; }
  // The extremes of instPeriod, s; 0 without periods.
  float minPeriod() const { return minPeriod_; }
  float maxPeriod() const { return maxPeriod_; }

  // nPeriods values each: filter period and instantaneous period, s; smoothed and measured
  // velocity, in the unit of the file; and the uncertainty (|hdv| + |ldv|) / 2 of the velocity.
  std::span<const float> fltrPeriod() const { return values(fltrPeriod_); }
  std::span<const float> instPeriod() const { return values(instPeriod_); }
  std::span<const float> smthVelocity() const { return values(smthVelocity_); }
  std::span<const float> velocity() const { return values(velocity_); }
  std::span<const float> uncertainty() const { return values(uncertainty_); }
  // Not read, so empty.
  std::span<const float> predictedValue() const { return values(predictedValue_); }
  std::span<const float> misfit() const { return values(misfit_); }

  // The last four columns of the last line that was read.
  float ldv() const { return ldv_; }
  float hdv() const { return hdv_; }
  float ramp() const { return ramp_; }
  float iamp() const { return iamp_; }

 protected:
  ~DispersionCurve() override = default;

 private:
  class Lines;

  void readHeader(Lines& lines);
  void readPeriods(Lines& lines, std::int64_t count);
  static std::span<const float> values(const Ref<ByteBuffer>& buffer);

  OptionalText stationID_, networkID_, channelID_, dataSource_, originalText_;
  std::optional<Date> dateMeasured_;
  std::int32_t nPeriods_ = 0, vType_ = 0, wType_ = 0, modeIsolation_ = 0;
  float slat_ = 0.0f, slon_ = 0.0f, selva_ = 0.0f;
  float elat_ = 0.0f, elon_ = 0.0f, edepth_ = 0.0f;
  float az_ = 0.0f, baz_ = 0.0f, distance_ = 0.0f, gcarc_ = 0.0f;
  float minPeriod_ = 0.0f, maxPeriod_ = 0.0f;
  Ref<ByteBuffer> fltrPeriod_, instPeriod_, smthVelocity_, velocity_, uncertainty_;
  Ref<ByteBuffer> predictedValue_, misfit_;
  float ldv_ = 0.0f, hdv_ = 0.0f, ramp_ = 0.0f, iamp_ = 0.0f;
};

}  // namespace krosac

#endif
