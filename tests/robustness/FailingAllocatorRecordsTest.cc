// Records, series, spectra and dispersion curves when memory runs out.
#include <span>
#include <sstream>
#include <stdexcept>

#include "TemporaryFolder.h"
#include "robustness/FailingAllocator.h"

namespace krosac {
namespace {

// The name of an operation, and what performs it.
template <typename T>
using Operation = std::pair<const char*, std::function<std::string(Ref<T>&)>>;

// An operation with a result that converts to bool, or without a result.
template <typename Perform>
auto run(Perform perform) {
  return [perform](auto& object) {
    if constexpr (std::is_void_v<decltype(perform(*object))>) {
      perform(*object);
      return std::string("done");
    } else {
      return resultOf(static_cast<bool>(perform(*object)));
    }
  };
}

// An operation that returns a text, which must be whole or empty.
template <typename T>
auto textOf(std::string (T::*text)() const, const Ref<T>& example) {
  return [text, whole = (*example.*text)()](const Ref<T>& object) -> std::string {
    const std::string returned = (*object.*text)();
    if (returned == whole) return "whole";
    return returned.empty() ? "none" : throw std::logic_error("half a text");
  };
}

template <typename T>
void expectAllSafe(std::span<const Operation<T>> operations, Ref<T> (*make)(),
                   std::string (*state)(const Ref<T>&)) {
  setLogSink(nullptr);
  testing::internal::CaptureStderr();
  for (const auto& [name, operation] : operations)
    expectSafe<Ref<T>>(name, {make, operation, state});
  testing::internal::GetCapturedStderr();
}

// ---- Records ----

// Texts longer than those that std::string holds without memory.
const std::string kLongText(40, 'x'),
    kHypocenterLine = "HY201103110546233.00&38.297S9142.373W9129.5G12.345692281BCD*9",
    kErrorLine = "E 10.129103.109204.209302.595.8914195.6112",
    kPrimaryLine = "P MAJO1iPn+    235941.259-10.4*9103.629242.110.81141.5595.9X9",
    kSecondaryLine = "SKSSKS12235941.259",
    kSurfaceWaveLine = "M     9Z920.11234.569N918.22111.259E919.33112.559MSZ95.6*9",
    kStationLine = "ABCDE9123036.5S1451518.5W120.759A place with a name of some length",
    kPhaseCode = std::string(30, ' ') + "iPnc" + std::string(30, ' ');

template <typename T>
Ref<T> newRecord() {
  auto record = make<T>();
  record->init();
  return record;
}

Ref<kroGeoLocation> location() {
  auto l = newRecord<kroGeoLocation>();
  l->setLatitude(51.5f);
  return l;
}

Ref<kroSeismicOrigin> origin() {
  auto o = newRecord<kroSeismicOrigin>();
  o->setLocation(location());
  o->setEpochtime(1e9);
  return o;
}

Ref<kroSeismicStation> station() {
  auto s = newRecord<kroSeismicStation>();
  s->setLocation(location());
  s->setStationCode("TLY");
  s->setLocationString(kLongText);
  for (int i = 0; i < 4; ++i) s->addFileName(kLongText);
  return s;
}

Ref<kroSeismicPhase> phase() {
  auto p = newRecord<kroSeismicPhase>();
  p->setStation(station());
  p->setPhaseName("R1");
  p->setStationCode(kLongText);
  p->setIsFirstArrival(true);
  return p;
}

Ref<kroHypocenter> hypocenter() {
  auto h = newRecord<kroHypocenter>();
  h->setLat(1.5f);
  h->setPhases({phase(), phase(), phase(), phase()});
  h->setMyFERegionString(kLongText);
  h->setOriginTimeShift(2.0f);
  h->setODate(Date{1e9});
  return h;
}

template <typename T>
std::string recordState(const Ref<T>& record) {
  std::string state = archivedState(*record);
  if constexpr (std::is_same_v<T, kroHypocenter>) {
    for (const float value : {record->originalLatitude(), record->originalLongitude(),
                              record->originalDepth(), record->originTimeShift()})
      state += " " + std::to_string(value);
    state += record->name().value_or("no name");
  }
  return state;
}

template <typename T>
void expectRecordSafe(Ref<T> (*make)(), std::vector<Operation<T>> operations) {
  operations.push_back({"init", run([](T& record) { return record.init(); })});
  operations.push_back({"copyWithZone", run([](T& record) { return record.copyWithZone(); })});
  operations.push_back({"archive", run([](T& record) { return archive(record); })});
  operations.push_back({"archivedCopy", run([](T& record) { return archivedCopy(record); })});
  expectAllSafe<T>(operations, make, recordState<T>);
}

TEST(FailingAllocator, RecordsAreAsTheyWereOrWhole) {
  using L = kroGeoLocation;
  using O = kroSeismicOrigin;
  using S = kroSeismicStation;
  using P = kroSeismicPhase;
  using H = kroHypocenter;
  static const Ref<L> place = location();
  static const Ref<P> arrival = phase();
  expectRecordSafe<L>(location, {});
  expectRecordSafe<O>(origin, {});
  expectRecordSafe<S>(station, {{"parseUSGSStationInfo",
                                 run([](S& s) { return s.parseUSGSStationInfo(kStationLine); })},
                                {"addFileName", run([](S& s) { s.addFileName(kLongText); })},
                                {"removeFileName", run([](S& s) { s.removeFileName(kLongText); })},
                                {"description", textOf(&S::description, station())}});
  expectRecordSafe<P>(
      phase,
      {{"parseEDRPrimaryPhase", run([](P& p) { return p.parseEDRPrimaryPhase(kPrimaryLine); })},
       {"parseEDRSecondaryArrivalRecord",
        run([](P& p) { return p.parseEDRSecondaryArrivalRecord(kSecondaryLine); })},
       {"parseEDRSurfaceWaveRecord",
        run([](P& p) { return p.parseEDRSurfaceWaveRecord(kSurfaceWaveLine); })},
       {"parsePhaseCode", run([](P& p) { p.parsePhaseCode(kPhaseCode); })},
       {"description", textOf(&P::description, phase())}});
  expectRecordSafe<H>(
      hypocenter,
      {{"parseEDRHypocenter", run([](H& h) { return h.parseEDRHypocenter(kHypocenterLine); })},
       {"parseEDRErrMagInfo", run([](H& h) { return h.parseEDRErrMagInfo(kErrorLine); })},
       {"buildName", run([](H& h) { h.buildName(); })},
       {"setFlinnEngdahlRegion", run([](H& h) { h.setFlinnEngdahlRegion(); })},
       {"setLocation", run([](H& h) { h.setLocation(place); })},
       {"addPhase", run([](H& h) { h.addPhase(arrival); })},
       {"description", textOf(&H::description, hypocenter())},
       {"stringWithHypoStats", textOf(&H::stringWithHypoStats, hypocenter())},
       {"stringWithPrimaryPhases", textOf(&H::stringWithPrimaryPhases, hypocenter())},
       {"stringWithRayleighMeasurements", textOf(&H::stringWithRayleighMeasurements, hypocenter())},
       {"stringWithAllPhases", textOf(&H::stringWithAllPhases, hypocenter())}});
}

// ---- Series and spectra ----

std::string bytesOf(const Ref<ByteBuffer>& buffer) {
  return buffer ? std::string(buffer->bytes(), buffer->bytes() + buffer->length()) : "none";
}

Ref<momentRateFtn> pulse() {
  auto series = make<momentRateFtn>();
  series->initWithZerosNpts_Delta(200, 0.05f);
  series->setTypeString(kLongText);
  series->addSpikeAtTimeDelay_Amplitude(2.0f, 20.0f);
  series->computeExtrema();
  return series;
}

Ref<uniformSampleTimeSeries> samples() {
  auto series = make<uniformSampleTimeSeries>();
  series->initWithZerosNpts_Delta(50, 0.1f);
  return series;
}

Ref<timeSeries> series() {
  auto series = make<timeSeries>();
  series->setNpts(7);
  series->setTypeString(kLongText);
  return series;
}

// Without the start, which init sets to the current time.
template <typename T>
std::string seriesState(const Ref<T>& s) {
  std::string state = s->description();
  if constexpr (!std::is_same_v<T, timeSeries>)
    state += " " + std::to_string(s->delta()) + " " + std::to_string(s->min()) + " " +
             std::to_string(s->max()) + " " + std::to_string(s->mean()) + " " + bytesOf(s->data());
  return state;
}

template <typename T>
void expectSeriesSafe(Ref<T> (*make)()) {
  const Ref<timeSeries> example = make();
  const Operation<T> operations[] = {
      {"init", run([](T& s) { return s.init(); })},
      {"copyWithZone", run([](T& s) { return s.copyWithZone(); })},
      {"base copyWithZone", run([](timeSeries& s) { return s.copyWithZone(); })},
      {"description", textOf(&timeSeries::description, example)},
  };
  expectAllSafe<T>(operations, make, seriesState<T>);
}

TEST(FailingAllocator, SeriesAreAsTheyWereOrWhole) {
  using S = momentRateFtn;
  expectSeriesSafe<timeSeries>(series);
  expectSeriesSafe<uniformSampleTimeSeries>(samples);
  expectSeriesSafe<S>(pulse);
  const Operation<S> operations[] = {
      {"initWithZerosNpts_Delta", run([](S& s) { return s.initWithZerosNpts_Delta(30, 0.5f); })},
      {"computeExtrema", run([](S& s) { s.computeExtrema(); })},
      {"removeMean", run([](S& s) { s.removeMean(); })},
      {"subtractLinearTrend", run([](S& s) { s.subtractLinearTrend(); })},
      {"taper", run([](S& s) { s.taper(); })},
      {"integrate", run([](S& s) { s.integrate(); })},
      {"differentiate", run([](S& s) { s.differentiate(); })},
      {"LPBUfilter", run([](S& s) { s.LPBUfilter_NPasses_NPoles(2.0f, 2, 4); })},
      {"HPBUfilter", run([](S& s) { s.HPBUfilter_NPasses_NPoles(2.0f, 2, 4); })},
      {"cosineTimeFunctionFilterDuration",
       run([](S& s) { s.cosineTimeFunctionFilterDuration(1.0f); })},
      {"trapezoidFilter", run([](S& s) { s.trapezoidFilter(1.0f, 2.0f, 1.0f); })},
  };
  expectAllSafe<S>(operations, pulse, seriesState<S>);
}

TEST(FailingAllocator, SpectraAreAsTheyWereOrWhole) {
  using S = rfSpectrum;
  const auto spectrum = []() -> Ref<S> {
    return make<S>()->initWithImpulseSpectrumDt_Npts(0.1f, 60);
  };
  const auto state = [](const Ref<S>& s) { return s->description() + bytesOf(s->spectrum()); };
  const Ref<kroSpectrum> example = spectrum();
  static const Ref<S> other = spectrum();
  const Operation<S> operations[] = {
      {"init", run([](S& s) { return s.init(); })},
      {"initWithImpulseSpectrumDt_Npts",
       run([](S& s) { return s.initWithImpulseSpectrumDt_Npts(0.5f, 900); })},
      {"amplitudeSpectrum", run([](S& s) { return s.amplitudeSpectrum(); })},
      {"prewhiten", run([](S& s) { s.prewhiten(); })},
      {"phaseShiftBy", run([](S& s) { s.phaseShiftBy(2.5f); })},
      {"multiplyByIOmega", run([](S& s) { s.multiplyByIOmega(); })},
      {"divideByIOmega", run([](S& s) { s.divideByIOmega(); })},
      {"addSpectrum", run([](S& s) { s.addSpectrum(*other); })},
      {"copyWithZone", run([](S& s) { return s.copyWithZone(); })},
      {"copy", run([](S& s) { return s.copy(); })},
      {"base copy", run([](kroSpectrum& s) { return s.copy(); })},
      {"description", textOf(&kroSpectrum::description, example)},
  };
  expectAllSafe<S>(operations, +spectrum, +state);
  const Operation<kroSpectrum> ofTheBase[] = {
      {"base init", run([](kroSpectrum& s) { return s.init(); })},
      {"copyWithZone of the base", run([](kroSpectrum& s) { return s.copyWithZone(); })},
  };
  expectAllSafe<kroSpectrum>(
      ofTheBase,
      [] {
        auto s = make<kroSpectrum>();
        s->setSpectrum(ByteBuffer::zeroed(64));
        return s;
      },
      [](const Ref<kroSpectrum>& s) { return s->description() + bytesOf(s->spectrum()); });
}

// ---- Dispersion curves ----

Ref<DispersionCurve> curve() {
  auto c = make<DispersionCurve>();
  c->initWithKESTRAVFile("no such file r.ga");
  c->setMisfit(std::vector{1.0f, 2.0f});
  c->setPredictedValue(std::vector{3.0f});
  return c;
}

std::string curveState(const Ref<DispersionCurve>& c) {
  std::ostringstream state;
  state << c->nPeriods() << c->wType();
  for (const auto& text : {c->stationID(), c->channelID(), c->dataSource()})
    state << text.value_or("none");
  for (const auto values : {c->fltrPeriod(), c->instPeriod(), c->smthVelocity(), c->velocity(),
                            c->uncertainty(), c->predictedValue(), c->misfit()}) {
    for (const float value : values) state << ' ' << value;
    state << ';';
  }
  for (const float value : {c->slat(), c->elat(), c->edepth(), c->az(), c->baz(), c->distance(),
                            c->gcarc(), c->minPeriod(), c->maxPeriod(), c->ldv(), c->iamp()})
    state << ' ' << value;
  return state.str();
}

TEST(FailingAllocator, DispersionCurvesAreAsTheyWereOrWhole) {
  using C = DispersionCurve;
  const TemporaryFolder folder;
  const std::string path = folder.write(
      "a name of some length r.ga",
      "# Group velocities   KESTRAV\n"
      "# Station       TLY-with-a-code-of-some-length 51.68 103.64 BHZ-and-a-component\n"
      "# Event      38.3 142.4 29.0\n# Measured with version   ab12 cd\n# 5\n# 6\n# 7\n"
      "# Mode isolation, as the measuring program wrote it    1\n# 9\n# 10\n# 11\n# 12\n"
      "20 19.5 3.1 3.2 -0.2 0.4 5 6\n30 21.5 3.3 3.4 0.1 -0.1 7 8\n");
  const std::vector values(10, 4.0f);
  const Operation<C> operations[] = {
      {"init", run([](C& c) { return c.init(); })},
      {"setPredictedValue", run([&](C& c) { return c.setPredictedValue(values); })},
      {"setMisfit", run([&](C& c) { return c.setMisfit(values); })},
  };
  expectAllSafe<C>(operations, curve, curveState);
  // The reader clears the curve first.
  expectSafe<Ref<C>>(
      "initWithKESTRAVFile",
      {[] {
         auto c = make<C>();
         c->initWithKESTRAVFile("no such file r.ga");
         return c;
       },
       run([&](C& c) { return c.initWithKESTRAVFile(path)->nPeriods() == 2; }), curveState});
}

}  // namespace
}  // namespace krosac
