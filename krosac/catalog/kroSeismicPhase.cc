#include "krosac/catalog/kroSeismicPhase.h"

#include <cmath>
#include <new>
#include <numbers>

#include "krosac/catalog/internal/CodedFields.h"
#include "krosac/catalog/internal/FixedColumns.h"
#include "krosac/platform/internal/Text.h"

namespace krosac {
namespace {

constexpr float kSourceVelocity = 6.0f;  // km/s

using P = kroSeismicPhase;

constexpr std::tuple kFields{
    codedField("phaseCode", &P::phaseCode, &P::setPhaseCode),
    codedField("stationCode", &P::stationCode, &P::setStationCode),
    codedField("onsetCode", &P::onsetCode, &P::setOnsetCode),
    codedField("arrivalDate", &P::arrivalDate, &P::setArrivalDate),
    codedField("epochArrivalTime", &P::epochArrivalTime, &P::setEpochArrivalTime),
    codedField("travelTime", &P::travelTime, &P::setTravelTime),
    codedField("residual", &P::residual, &P::setResidual),
    codedField("gcarc", &P::gcarc, &P::setGcarc),
    codedField("azimuth", &P::azimuth, &P::setAzimuth),
    codedField("mbPeriod", &P::mbPeriod, &P::setMbPeriod),
    codedField("mbAmp", &P::mbAmp, &P::setMbAmp),
    codedField("mb", &P::mb, &P::setMb),
    codedField("msec", &P::msec, &P::setMsec),
    codedField("predictedTime", &P::predictedTime, &P::setPredictedTime),
    codedField("takeoffAngle", &P::takeoffAngle, &P::setTakeoffAngle),
    // Sets the take-off angle again; this is intended.
    codedField("slowness", &P::slowness, &P::setSlowness),
    codedField("polarity", &P::polarity, &P::setPolarity),
    codedField("onset", &P::onset, &P::setOnset),
    codedField("mbUsageFlag", &P::mbUsageFlag, &P::setMbUsageFlag),
    codedField("pResFlag", &P::pResFlag, &P::setPResFlag),
    codedField("yr", &P::yr, &P::setYr),
    codedField("month", &P::month, &P::setMonth),
    codedField("date", &P::date, &P::setDate),
    codedField("doy", &P::doy, &P::setDoy),
    codedField("hr", &P::hr, &P::setHr),
    codedField("min", &P::min, &P::setMin),
    codedField("sec", &P::sec, &P::setSec),
    codedField("isFirstArrival", &P::isFirstArrival, &P::setIsFirstArrival),
    codedField("isAmplitudeMeasurement", &P::isAmplitudeMeasurement, &P::setIsAmplitudeMeasurement),
    codedField("phaseName", &P::phaseName, &P::setPhaseName),
    codedField("station", &P::station, &P::setStation),
    codedField("Ms_Component", &P::Ms_Component, &P::setMs_Component),
    codedField("Ms_Period", &P::Ms_Period, &P::setMs_Period),
    codedField("Ms_Amplitude", &P::Ms_Amplitude, &P::setMs_Amplitude),
    codedField("Ms_Type", &P::Ms_Type, &P::setMs_Type),
    codedField("Ms_Estimate", &P::Ms_Estimate, &P::setMs_Estimate),
    codedField("msUsage", &P::msUsage, &P::setMsUsage),
};

}  // namespace

Ref<Object> kroSeismicPhase::init() {
  isFirstArrival_ = false;
  isAmplitudeMeasurement_ = true;
  return Archivable::init();
}

void kroSeismicPhase::setSlowness(float slowness) {
  slowness_ = slowness;
  const double sine = kSourceVelocity * slowness;
  takeoffAngle_ = static_cast<float>(std::asin(sine) * 180.0 / std::numbers::pi);
}

void kroSeismicPhase::setDateYr_Month_Date(std::int32_t yr, std::int32_t month, std::int32_t date) {
  yr_ = yr;
  month_ = month;
  date_ = date;
}

std::string lineOf(const kroSeismicPhase& phase) {
  const auto& station = phase.station();
  return formatText("%5s %8s %.2lf %6.2f %7.1f %8.2f %c %5.1f\n",
                    station ? printable(station->stationCode()) : "(null)",
                    printable(phase.phaseName()), phase.epochArrivalTime(), double{phase.gcarc()},
                    double{phase.azimuth()}, double{phase.residual()},
                    printableFlag(phase.pResFlag()), double{phase.mb()});
}

std::string kroSeismicPhase::description() const try {
  clearReason();
  return lineOf(*this);
} catch (const std::bad_alloc&) {
  setMemoryReason();
  return {};
}

void kroSeismicPhase::encodeWithCoder(KeyedArchiver& coder) const {
  encodeFields(kFields, *this, coder);
}

Ref<kroSeismicPhase> kroSeismicPhase::initWithCoder(KeyedUnarchiver& coder) {
  if (!Archivable::init()) return nullptr;
  decodeFields(kFields, *this, coder);
  return Ref<kroSeismicPhase>(this);
}

}  // namespace krosac
