// Series and spectra, and the plain functions on numbers and sample arrays, with any arguments.
#include "Harness.h"

namespace {

using namespace fuzz;
using M = momentRateFtn;
using R = rfSpectrum;
using D = Dislocation;
using T = SeisTimeObject;

constexpr Operation<M> kOfSeries[] = {
    // Samples
    call<&M::computeExtrema>, call<&M::removeMean>, call<&M::subtractLinearTrend>,
    call<&M::scaleAmplitudes>, call<&M::squareAmplitudes>, call<&M::absAmplitudes>,
    [](M& s, Arguments& a) { s.taper(a.real()); }, call<&M::lookupValueAtRelativeTime>,
    call<&M::interpolateValueAtRelativeTime>, call<&M::integrate>, call<&M::differentiate>,
    call<&M::LPBUfilter_NPasses_NPoles>, call<&M::HPBUfilter_NPasses_NPoles>,
    call<&M::addSpikeAtTimeDelay_Amplitude>, call<&M::cosineTimeFunctionFilterDuration>,
    call<&M::trapezoidFilter>, call<&M::setEpochStartTime>,
    // Values
    call<&M::epochEnd>, call<&M::simpleRMS>, call<&M::signalPower>, call<&M::area>,
    call<&M::centroid>, call<&M::description>,
    [](M& s, Arguments&) { s.copyWithZone()->removeMean(); }};

void useSeries(Arguments& a) {
  auto s = make<M>();
  s->init();
  s->initWithZerosNpts_Delta(a.ConsumeIntegralInRange(-1, 300), a.real());
  if (a.ConsumeBool()) s->setData(a.realBytes(300));
  if (a.ConsumeBool()) s->setNpts(a.integer());
  if (a.ConsumeBool()) s->setDelta(0.25f);
  applySome(4, kOfSeries, *s, a);  // few, since a single pulse can take a third of a second
}

constexpr Operation<R> kOfSpectra[] = {
    // Amplitudes
    call<&R::computeExtrema>, call<&R::signalPower>, call<&R::signalPowerFromFreq_To>,
    call<&R::meanAmplitudeValueFrom_To>, call<&R::meanLog10AmplitudeValueFrom_To>,
    call<&R::amplitudeSpectrum>, call<&R::prewhiten>, call<&R::phaseShiftBy>,
    call<&R::multiplyByScalar>, call<&R::multiplyByIOmega>, call<&R::divideByIOmega>,
    // Values
    call<&R::setZeroFrequencyValue>, call<&R::description>,
    [](R& s, Arguments&) { s.addSpectrum(*s.copyWithZone()); }};

void useSpectrum(Arguments& a) {
  auto s = make<R>();
  s->init();
  s->initWithImpulseSpectrumDt_Npts(a.real(), a.ConsumeIntegralInRange(-5, 300));
  if (a.ConsumeBool()) s->setSpectrum(a.realBytes(300));
  // An amplitude spectrum has npts / 2 + 1 values, however few the buffer holds.
  if (a.ConsumeBool()) s->setNpts(std::min(a.integer(), 1 << 24));
  if (a.ConsumeBool()) s->setDf(a.real());
  s->nextPowerOfTwoPts(a.integer());
  applySome(4, kOfSpectra, *s, a);
}

struct Array {
  explicit Array(std::vector<float> values) : in(std::move(values)) {}

  std::vector<float> in, to = std::vector<float>(in.size() + 1);
  int n = static_cast<int>(in.size()), length = 0;
  float *x = in.empty() ? to.data() : in.data(), *out = to.data(), *before = x - 1;
};

constexpr Operation<Array> kOfArrays[] = {
    // Statistics and transforms
    [](Array& v, Arguments&) { vmax(v.x, v.n); }, [](Array& v, Arguments&) { vmin(v.x, v.n); },
    [](Array& v, Arguments&) { vmean(v.x, v.n); }, [](Array& v, Arguments&) { kahanSum(v.x, v.n); },
    [](Array& v, Arguments&) {
      mdian2(v.before, v.n, v.out);
      mdian1(v.before, v.n, v.out);
      require(std::ranges::is_sorted(v.in));
    },
    [](Array& v, Arguments& a) { four1(v.before, v.in.size() / 2, a.ConsumeBool() ? 1 : -1); },
    [](Array& v, Arguments& a) { realft(v.before, v.in.size(), a.ConsumeBool() ? 1 : -1); },
    // Filters
    [](Array& v, Arguments& a) {
      (a.ConsumeBool() ? GRLPBUfilter : GRHPBUfilter)(v.x, v.n, a.integer(), a.integer(), a.real(),
                                                      a.real());
    },
    [](Array& v, Arguments& a) {
      decimateSignal(a.ConsumeIntegralInRange(0, 7), v.n, v.x, v.out, &v.length);
      require(v.length <= v.n);
    },
    [](Array& v, Arguments& a) {
      const auto taps = a.reals(a.index(40));
      decim(a.integer(), static_cast<int>(taps.size()), taps.data(), nullptr, v.n, v.x, v.out,
            &v.length);
      require(v.length <= v.n);
    },
    [](Array& v, Arguments& a) {
      const auto taps = a.reals(1 + a.index(40));
      std::vector<float> delay(taps.size());
      const int factor = a.ConsumeIntegralInRange(1, 9);
      decimorig(factor, static_cast<int>(taps.size()), taps.data(), delay.data(),
                v.n - v.n % factor, v.x, v.out, &v.length);
      require(v.length == v.n / factor);
    },
    [](Array& v, Arguments& a) {
      const auto b = a.reals(a.index(300));
      TDconvolve(v.x, b.data(), v.out, static_cast<unsigned>(v.n), std::ssize(b), a.real());
    },
    [](Array& v, Arguments& a) {
      BUFilterDesign design{};
      BUroots(&design, a.integer());
      if (a.ConsumeBool()) design.nSections = a.integer();
      (a.ConsumeBool() ? LP : LPtoHP)(&design);
      CutOffs(&design, warp(a.real(), a.real()));
      BiLin(&design);
      Apply(&design, v.x, v.n, a.integer());
    },
    [](Array&, Arguments& a) {
      QuasiRandomContext context{};
      QuasiRandomInitialize(&context, a.integer());
      std::vector<float> point(static_cast<std::size_t>(std::max(context.dimensions, 0)));
      for (int i = 0; i < 5; ++i) QuasiRandomNumber(&context, point.data());
      QuasiRandomRelease(&context);
    }};

constexpr Operation<D> kOfPlaces[] = {
    // Sources
    call<&D::initWithSDR>, call<&D::pAmplitudeAz_RayP_Vel_Upgoing>,
    call<&D::ComputeSHWaveAmplitudeAz_RayP_Vel>, call<&D::ComputeSurfWaveAmplitudeAz_Period>,
    // Places
    call<latLonFromDistAz>, call<geospread>,
    [](D&, Arguments& a) { GetBWResponse(a.reals(13).data()); },
    [](D&, Arguments& a) {
      const float lat1 = a.real(), lon1 = a.real(), lat2 = a.real(), lon2 = a.real();
      float distance = 0.0f, azimuth = 0.0f;
      delta_az(&lat1, &lon1, &lat2, &lon2, &distance, &azimuth);
      require(!(distance < 0.0f || distance > 180.0f || azimuth < 0.0f || azimuth > 360.0f));
    }};

constexpr Operation<T> kOfTimes[] = {
    // Days
    call<doy>, call<ndaysinyear>, call<monthdate>,
    // Times
    call<&T::setMDay>, call<&T::setMMsec>,
    call<&T::initWithValues_month_date_hour_minute_second_millisecond>,
    call<&T::subtractMinutesSeconds_Seconds>, call<&T::addSeconds>, call<&T::DOYcString>,
    call<&T::YMDcString>, [](T& t, Arguments& a) { t.initWithTimeObject(*a.time()); },
    [](T& t, Arguments& a) { t.addSeisTimeObject(*a.time()); },
    [](T& t, Arguments& a) { t.lessThanSeisTime(*a.time()); },
    [](T& t, Arguments& a) { t.differenceInSecondsFrom(*a.time()); },
    [](T&, Arguments& a) {
      const Date moment = a.date();
      const auto c = moment.components();
      require(c.month >= 1 && c.month <= 12 && c.day >= 1 && c.day <= 31);
      moment.description();
    }};

constexpr void (*kKinds[])(Arguments& a) = {
    useSeries, useSpectrum,
    [](Arguments& a) {
      Array array(a.reals(a.index(300)));
      applySome(1, kOfArrays, array, a);
    },
    [](Arguments& a) { applySome(8, kOfPlaces, *make<D>(), a); },
    [](Arguments& a) { applySome(8, kOfTimes, *a.time(), a); }};

}  // namespace

void runInput(std::string_view input) {
  Arguments a(input);
  // The largest result of any operation is a pulse of 2^24 weights.
  AllocationLimit limit((std::size_t{1} << 26) + 65536);
  a.PickValueInArray(kKinds)(a);
}
