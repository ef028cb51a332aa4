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
  // No periods; all else of a made object is zero or empty. Gives the object.
  Ref<Object> init() override;

  // Reads a KESTRAV file: 12 header lines and one line of eight numbers a period. Gives the object,
  // without periods when the file cannot be read or begins with a line break.
  //
  // Blank lines and leading blanks do not count, but on the first line; nor does what goes beyond
  // 4095 characters of a line. nPeriods is the number of lines that do not begin with "#", header
  // lines included; where lines are missing the last one is read again. A field that its line is
  // too short for, or that does not scan, stays as it was, and so do those behind it on the line.
  // More periods than memory holds give none.
  Ref<DispersionCurve> initWithKESTRAVFile(const std::string& path);

  // The station's code; none when the file names none.
  const OptionalText& stationID() const { return stationID_; }
  const OptionalText& networkID() const { return networkID_; }  // not read
  // The component's name.
  const OptionalText& channelID() const { return channelID_; }
  // The first 21 characters of line 1, a blank and a word of line 4; none when line 1 is shorter.
  const OptionalText& dataSource() const { return dataSource_; }
  const OptionalText& originalText() const { return originalText_; }         // not read
  const std::optional<Date>& dateMeasured() const { return dateMeasured_; }  // not read

  // The number of periods, and so of the values below.
  std::int32_t nPeriods() const { return nPeriods_; }
  // The type of velocity, which the file does not tell: 0.
  std::int32_t vType() const { return vType_; }
  // 1 Rayleigh for a file name that ends in "r.ga", 2 Love for "l.ga", else 0.
  std::int32_t wType() const { return wType_; }
  // The flag of mode isolation, the number behind column 51 of line 8.
  std::int32_t modeIsolation() const { return modeIsolation_; }

  // Degrees; the elevation is not read. A position that was not read counts as 0, 0 below.
  float slat() const { return slat_; }
  float slon() const { return slon_; }
  float selva() const { return selva_; }
  float elat() const { return elat_; }
  float elon() const { return elon_; }
  float edepth() const { return edepth_; }
  // Degrees clockwise from north. The reader fills them crosswise, as intended: az holds the
  // azimuth at the station toward the event, baz the one at the event toward the station.
  float az() const { return az_; }
  float baz() const { return baz_; }
  // In km, 111.19 a degree of gcarc, and in degrees.
  float distance() const { return distance_; }
  float gcarc() const { return gcarc_; }
  // Of instPeriod, in s; 0 without periods.
  float minPeriod() const { return minPeriod_; }
  float maxPeriod() const { return maxPeriod_; }

  // nPeriods values each: the periods of the filter and the instantaneous ones, s; the smoothed and
  // the measured velocities, in the unit of the file; and their uncertainty (|hdv| + |ldv|) / 2.
  std::span<const float> fltrPeriod() const { return values(fltrPeriod_); }
  std::span<const float> instPeriod() const { return values(instPeriod_); }
  std::span<const float> smthVelocity() const { return values(smthVelocity_); }
  std::span<const float> velocity() const { return values(velocity_); }
  std::span<const float> uncertainty() const { return values(uncertainty_); }
  // Not read, so empty.
  std::span<const float> predictedValue() const { return values(predictedValue_); }
  std::span<const float> misfit() const { return values(misfit_); }

  // The last four columns of the last line.
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
