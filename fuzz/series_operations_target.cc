// Series and spectra, and the plain functions on numbers and sample arrays, with any arguments.
#include "Harness.h"
#include "krosac/collections/momentRateFtn.h"
#include "krosac/collections/rfSpectrum.h"
#include "krosac/dsp/Butterworth.h"
#include "krosac/dsp/Convolution.h"
#include "krosac/dsp/Decimation.h"
#include "krosac/dsp/Fft.h"
#include "krosac/dsp/QuasiRandom.h"
#include "krosac/dsp/Statistics.h"
#include "krosac/source/BodyWaveResponse.h"
#include "krosac/source/Dislocation.h"
#include "krosac/timegeo/Calendar.h"
#include "krosac/timegeo/GreatCircle.h"
#include "krosac/timegeo/SeisTimeObject.h"

namespace {

using namespace fuzz;
using krosac::ByteBuffer;
using krosac::make;
using krosac::Ref;

// Short, since a single pulse can take a third of a second.
constexpr int kLongestChain = 4;

Ref<ByteBuffer> buffer(const std::vector<float>& values) {
  return ByteBuffer::copyOf(values.data(), values.size() * sizeof(float));
}

void useSeries(Arguments& a) {
  auto s = make<krosac::momentRateFtn>();
  s->init();
  s->initWithZerosNpts_Delta(a.ConsumeIntegralInRange<std::int32_t>(-1, 300), a.real());
  if (a.ConsumeBool()) s->setData(buffer(a.reals(a.index(300))));
  if (a.ConsumeBool()) s->setNpts(a.integer());
  if (a.ConsumeBool()) s->setDelta(0.25f);
  for (int i = 0; i < kLongestChain && a.remaining_bytes() > 0; ++i) {
    switch (a.ConsumeIntegralInRange(0, 17)) {
      case 0:
        s->computeExtrema();
        break;
      case 1:
        s->removeMean();
        break;
      case 2:
        s->subtractLinearTrend();
        break;
      case 3:
        s->scaleAmplitudes(a.real());
        break;
      case 4:
        s->taper(a.real());
        break;
      case 5:
        s->lookupValueAtRelativeTime(a.real());
        break;
      case 6:
        s->interpolateValueAtRelativeTime(a.real());
        break;
      case 7:
        s->integrate();
        break;
      case 8:
        s->differentiate();
        break;
      case 9:
        s->LPBUfilter_NPasses_NPoles(a.real(), a.integer(), a.integer());
        break;
      case 10:
        s->HPBUfilter_NPasses_NPoles(a.real(), a.integer(), a.integer());
        break;
      case 11:
        s->addSpikeAtTimeDelay_Amplitude(a.real(), a.real());
        break;
      case 12:
        s->cosineTimeFunctionFilterDuration(a.real());
        break;
      case 13:
        s->trapezoidFilter(a.real(), a.real(), a.real());
        break;
      case 14:
        s->setEpochStartTime(a.date().secondsSince1970);
        s->epochEnd();
        break;
      case 15:
        s = s->copyWithZone();
        require(s && true);
        break;
      case 16:
        s->squareAmplitudes();
        s->absAmplitudes();
        break;
      default:
        s->simpleRMS();
        s->signalPower();
        s->area();
        s->centroid();
        s->description();
    }
  }
}

void useSpectrum(Arguments& a) {
  auto s = make<krosac::rfSpectrum>();
  s->init();
  s->initWithImpulseSpectrumDt_Npts(a.real(), a.ConsumeIntegralInRange<std::int32_t>(-5, 300));
  if (a.ConsumeBool()) s->setSpectrum(buffer(a.reals(a.index(300))));
  if (a.ConsumeBool()) s->setNpts(a.integer());
  if (a.ConsumeBool()) s->setDf(a.real());
  s->nextPowerOfTwoPts(a.integer());
  for (int i = 0; i < kLongestChain && a.remaining_bytes() > 0; ++i) {
    switch (a.ConsumeIntegralInRange(0, 10)) {
      case 0:
        s->computeExtrema();
        s->signalPower();
        break;
      case 1:
        s->signalPowerFromFreq_To(a.real(), a.real());
        break;
      case 2:
        s->meanAmplitudeValueFrom_To(a.real(), a.real());
        break;
      case 3:
        s->meanLog10AmplitudeValueFrom_To(a.real(), a.real());
        break;
      case 4:
        s->amplitudeSpectrum();
        break;
      case 5:
        s->prewhiten();
        break;
      case 6:
        s->phaseShiftBy(a.real());
        break;
      case 7:
        s->multiplyByScalar(a.real());
        break;
      case 8:
        s->multiplyByIOmega();
        s->divideByIOmega();
        break;
      case 9:
        s->addSpectrum(*s->copyWithZone());
        break;
      default:
        s->setZeroFrequencyValue(a.real());
        s->description();
    }
  }
}

void useArrays(Arguments& a) {
  const std::size_t count = a.index(300);
  const int n = static_cast<int>(count);
  auto x = a.reals(count), out = std::vector<float>(count + 1);
  x.reserve(1);                        // an array also where it is empty
  const float* before = x.data() - 1;  // unit offset
  std::int32_t length = 0;
  float value = 0.0f;
  switch (a.ConsumeIntegralInRange(0, 10)) {
    case 0:
      krosac::vmax(x.data(), n);
      krosac::vmin(x.data(), n);
      krosac::vmean(x.data(), n);
      krosac::kahanSum(x.data(), n);
      break;
    case 1:
      krosac::mdian2(before, n, &value);
      krosac::mdian1(const_cast<float*>(before), n, &value);
      require(std::is_sorted(x.begin(), x.end(), [](float l, float r) { return l < r; }));
      break;
    case 2:
      krosac::GRLPBUfilter(x.data(), n, a.integer(), a.integer(), a.real(), a.real());
      krosac::GRHPBUfilter(x.data(), n, a.integer(), a.integer(), a.real(), a.real());
      break;
    case 3:
      krosac::decimateSignal(a.ConsumeIntegralInRange(0, 7), n, x.data(), out.data(), &length);
      require(length <= n);
      break;
    case 4: {
      const auto taps = a.reals(a.index(40));
      krosac::decim(a.integer(), static_cast<std::int32_t>(taps.size()), taps.data(), nullptr, n,
                    x.data(), out.data(), &length);
      require(length <= n);
      break;
    }
    case 5: {
      const auto b = a.reals(a.index(300));
      krosac::TDconvolve(x.data(), b.data(), out.data(), static_cast<unsigned>(count),
                         static_cast<int>(b.size()), a.real());
      break;
    }
    case 6:
      krosac::four1(const_cast<float*>(before), count / 2, a.ConsumeBool() ? 1 : -1);
      break;
    case 7:
      krosac::realft(const_cast<float*>(before), count, a.ConsumeBool() ? 1 : -1);
      break;
    case 8: {
      krosac::BUFilterDesign design{};
      krosac::BUroots(&design, a.integer());
      if (a.ConsumeBool()) design.nSections = a.integer();
      (a.ConsumeBool() ? krosac::LP : krosac::LPtoHP)(&design);
      krosac::CutOffs(&design, krosac::warp(a.real(), a.real()));
      krosac::BiLin(&design);
      krosac::Apply(&design, x.data(), n, a.integer());
      break;
    }
    case 9: {
      const auto taps = a.reals(1 + a.index(40));
      std::vector<float> delay(taps.size());
      const int factor = a.ConsumeIntegralInRange(1, 9);
      krosac::decimorig(factor, static_cast<std::int32_t>(taps.size()), taps.data(), delay.data(),
                        n - n % factor, x.data(), out.data(), &length);
      require(length == n / factor);
      break;
    }
    default: {
      krosac::QuasiRandomContext context{};
      krosac::QuasiRandomInitialize(&context, a.integer());
      std::vector<float> point(static_cast<std::size_t>(std::max(context.dimensions, 0)));
      for (int i = 0; i < 5; ++i) krosac::QuasiRandomNumber(&context, point.data());
      krosac::QuasiRandomRelease(&context);
    }
  }
}

void usePlaces(Arguments& a) {
  const float lat1 = a.real(), lon1 = a.real(), lat2 = a.real(), lon2 = a.real();
  float distance = 0.0f, azimuth = 0.0f, latitude, longitude;
  krosac::delta_az(&lat1, &lon1, &lat2, &lon2, &distance, &azimuth);
  require(!(distance < 0.0f || distance > 180.0f || azimuth < 0.0f || azimuth > 360.0f));
  krosac::latLonFromDistAz(&latitude, &longitude, a.real(), lat1, lon1, a.real(), a.real());
  krosac::geospread(a.real());
  auto block = a.reals(13);
  krosac::GetBWResponse(block.data());
  auto source = make<krosac::Dislocation>();
  source->initWithSDR(a.real(), a.real(), a.real());
  const float az = a.real(), p = a.real(), velocity = a.real();
  source->pAmplitudeAz_RayP_Vel_Upgoing(az, p, velocity, a.ConsumeBool());
  source->ComputeSHWaveAmplitudeAz_RayP_Vel(az, p, velocity);
  source->ComputeSurfWaveAmplitudeAz_Period(az, a.ConsumeBool() ? 360.0f : 20.0f);
}

void useTimes(Arguments& a) {
  std::int32_t month = 0, date = 0;
  const std::int32_t year = a.integer(), day = a.integer();
  krosac::doy(year, day, a.integer());
  krosac::ndaysinyear(year);
  krosac::monthdate(year, day, &month, &date);
  auto t = make<krosac::SeisTimeObject>(), u = make<krosac::SeisTimeObject>();
  t->initWithValues_month_date_hour_minute_second_millisecond(
      a.integer(), a.integer(), a.integer(), a.integer(), a.integer(), a.integer(), a.real());
  u->initWithTimeObject(*t);
  u->setMDay(a.integer());
  u->setMMsec(a.real());
  for (int i = 0; i < 4; ++i) {
    t->addSeisTimeObject(*u);
    t->subtractMinutesSeconds_Seconds(a.integer(), a.real());
    u->addSeconds(a.real());
    t->lessThanSeisTime(*u);
    u->differenceInSecondsFrom(*t);
  }
  t->DOYcString();
  u->YMDcString();
  const krosac::Date moment = a.date();
  const auto c = moment.components();
  require(c.month >= 1 && c.month <= 12 && c.day >= 1 && c.day <= 31);
  moment.description();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Arguments a(data, size);
  // The greatest that any operation makes is a pulse of 2^24 weights.
  AllocationLimit limit((std::size_t{1} << 26) + 65536);
  switch (a.ConsumeIntegralInRange(0, 4)) {
    case 0:
      useSeries(a);
      break;
    case 1:
      useSpectrum(a);
      break;
    case 2:
      useArrays(a);
      break;
    case 3:
      usePlaces(a);
      break;
    default:
      useTimes(a);
  }
  return 0;
}
