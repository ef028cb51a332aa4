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
#include <utility>

#include "krosac/platform/ByteBuffer.h"
#include "krosac/platform/Date.h"
#include "krosac/platform/Export.h"
#include "krosac/platform/Object.h"
#include "krosac/platform/Text.h"

namespace krosac {

class KROSAC_API DispersionCurve : public Object {
 public:
  // Makes every field zero or empty. Returns the object.
  Ref<Object> init() override;

  // Clears the object, then reads a KESTRAV file: 12 header lines and one line of eight numbers per
  // period. Returns the object; without periods, see lastReason(), if the file cannot be read, is
  // empty, begins with a line break, or has no lines of periods or more than memory can hold. Out
  // of memory, all fields except wType are zero or empty.
  //
  // The reader ignores blank lines, leading blanks (except on the first line) and everything beyond
  // 4095 characters of a line. nPeriods is the number of lines that do not begin with "#", header
  // lines included; if there are fewer lines, the last one is read again. A field that is missing
  // or does not scan stays zero or empty, and so do the fields behind it on its line.
  Ref<DispersionCurve> initWithKESTRAVFile(const std::string& path);

  // The station code; none if the file has none.
  const OptionalText& stationID() const { return fields_.stationID; }
  // The network code, set by the caller.
  const OptionalText& networkID() const { return fields_.networkID; }
  void setNetworkID(OptionalText code) { fields_.networkID = std::move(code); }
  // The component name.
  const OptionalText& channelID() const { return fields_.channelID; }
  // At most the first 21 characters of line 1, then a blank and a word of line 4.
  const OptionalText& dataSource() const { return fields_.dataSource; }
  // A text and the date of the measurement, set by the caller.
  const OptionalText& originalText() const { return fields_.originalText; }
  void setOriginalText(OptionalText text) { fields_.originalText = std::move(text); }
  const std::optional<Date>& dateMeasured() const { return fields_.dateMeasured; }
  void setDateMeasured(std::optional<Date> date) { fields_.dateMeasured = date; }

  // The number of periods, which is the length of the arrays below.
  std::int32_t nPeriods() const { return fields_.nPeriods; }
  // The velocity type. It is not in the file and always 0.
  std::int32_t vType() const { return fields_.vType; }
  // 1 (Rayleigh) for a file name that ends in "r.ga", 2 (Love) for "l.ga", otherwise 0.
  std::int32_t wType() const { return fields_.wType; }
  // The mode-isolation flag: the number behind column 51 of line 8.
  std::int32_t modeIsolation() const { return fields_.modeIsolation; }

  // Station latitude and longitude (degrees) and elevation (set by the caller), then event latitude
  // and longitude (degrees) and depth. Missing coordinates are 0, also for distance and azimuths.
  float slat() const { return fields_.slat; }
  float slon() const { return fields_.slon; }
  float selva() const { return fields_.selva; }
  void setSelva(float elevation) { fields_.selva = elevation; }
  float elat() const { return fields_.elat; }
  float elon() const { return fields_.elon; }
  float edepth() const { return fields_.edepth; }
  // Degrees clockwise from north. The two are exchanged, which is intended: az is the azimuth at
  // the station toward the event, baz the azimuth at the event toward the station.
  float az() const { return fields_.az; }
  float baz() const { return fields_.baz; }
  // Distance in km (gcarc times kKilometresPerDegree) and in degrees of arc.
  float distance() const { return fields_.distance; }
  float gcarc() const { return fields_.gcarc; }
  // The extremes of instPeriod, s; 0 without periods.
  float minPeriod() const { return fields_.minPeriod; }
  float maxPeriod() const { return fields_.maxPeriod; }

  // nPeriods values each: filter period and instantaneous period, s; smoothed and measured
  // velocity, in the unit of the file; and the uncertainty (|hdv| + |ldv|) / 2 of the velocity.
  std::span<const float> fltrPeriod() const { return values(fields_.fltrPeriod); }
  std::span<const float> instPeriod() const { return values(fields_.instPeriod); }
  std::span<const float> smthVelocity() const { return values(fields_.smthVelocity); }
  std::span<const float> velocity() const { return values(fields_.velocity); }
  std::span<const float> uncertainty() const { return values(fields_.uncertainty); }
  // Values of the caller, any number of them. The setters copy them; false without memory, and the
  // array then keeps its values.
  std::span<const float> predictedValue() const { return values(fields_.predictedValue); }
  std::span<const float> misfit() const { return values(fields_.misfit); }
  bool setPredictedValue(std::span<const float> values);
  bool setMisfit(std::span<const float> values);

  // The last four columns of the last line that was read.
  float ldv() const { return fields_.ldv; }
  float hdv() const { return fields_.hdv; }
  float ramp() const { return fields_.ramp; }
  float iamp() const { return fields_.iamp; }

 protected:
  ~DispersionCurve() override = default;

 private:
  class Lines;

  // All fields, so that init clears every one of them.
  struct Fields {
    OptionalText stationID, networkID, channelID, dataSource, originalText;
    std::optional<Date> dateMeasured;
    std::int32_t nPeriods = 0, vType = 0, wType = 0, modeIsolation = 0;
    float slat = 0.0f, slon = 0.0f, selva = 0.0f;
    float elat = 0.0f, elon = 0.0f, edepth = 0.0f;
    float az = 0.0f, baz = 0.0f, distance = 0.0f, gcarc = 0.0f;
    float minPeriod = 0.0f, maxPeriod = 0.0f;
    Ref<ByteBuffer> fltrPeriod, instPeriod, smthVelocity, velocity, uncertainty;
    Ref<ByteBuffer> predictedValue, misfit;
    float ldv = 0.0f, hdv = 0.0f, ramp = 0.0f, iamp = 0.0f;
  };

  void readHeader(Lines& lines);
  bool readPeriods(Lines& lines, std::int64_t count);
  static std::span<const float> values(const Ref<ByteBuffer>& buffer);

  Fields fields_;
};

}  // namespace krosac

#endif
