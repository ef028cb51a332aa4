// Seismograms when memory runs out.
#include "TemporaryFolder.h"
#include "robustness/FailingAllocator.h"
#include "seismogram/Traces.h"

namespace krosac {
namespace {

Ref<S> recording() {
  Samples x(300);
  for (std::size_t i = 0; i < x.size(); ++i) x[i] = static_cast<float>((i * 7919) % 101) - 50.0f;
  auto s = traceOf(x, 0.5f, 0.0f);
  s->setoriginTimeOffset(-200.0f);
  s->setPTime(20.0f);
  s->setTimePickKey_Value(0, 60.0f);
  s->setStationID("TLY");
  s->setReferenceTimeWithNSDate(Date::fromComponents({2011, 12, 31, 23, 59, 59}));
  s->setStationLocationLat_Lon_Elevation(51.6807f, 103.6438f, 579.0f);
  s->setEventLocationLat_Lon_Depth(38.297f, 142.373f, 29.0f);
  s->ComputeExtrema();
  return s;
}

TEST(FailingAllocator, SeismogramsAreAsTheyWereOrWhole) {
  setLogSink(nullptr);
  testing::internal::CaptureStderr();
  const TemporaryFolder folder;
  const std::string path = folder.path("a trace with a name of some length.sac"),
                    target = folder.path("a second name of some length.sac");
  const std::string response = folder.write(
      "response of some length", "ZEROS 2\nPOLES 2\n-0.04 0.04\n-0.04 -0.04\nCONSTANT 2\n");
  ASSERT_TRUE(recording()->saveToPath(path));
  const Ref<S> other = recording();
  const float corners[] = {0.01f, 0.05f, 0.5f, 0.8f};
  const std::string text(40, 'x');
  float block[13];
  const auto nothing = [](auto operation) {
    return [=](Ref<S>& s) {
      operation(*s);
      return std::string("done");
    };
  };
  const auto status = [](auto operation) {
    return [=](Ref<S>& s) { return resultOf(operation(*s)); };
  };
  const std::pair<const char*, std::function<std::string(Ref<S>&)>> operations[] = {
      {"initWithPath", status([&](S& s) { return bool(s.initWithPath(path)); })},
      {"InitWithPath", status([&](S& s) { return bool(s.InitWithPath(path)); })},
      {"loadFromPath", status([&](S& s) { return bool(s.loadFromPath(path)); })},
      {"replaceSacObjectDataWithPath",
       status([&](S& s) { return bool(s.replaceSacObjectDataWithPath(path)); })},
      {"initWithCapacity", status([&](S& s) { return bool(s.initWithCapacity(100)); })},
      {"initWithSeisObject", status([&](S& s) { return bool(s.initWithSeisObject(*other)); })},
      {"saveToPath", status([&](S& s) { return s.saveToPath(target); })},
      {"setPath", nothing([&](S& s) { s.setPath(target); })},
      {"copyWithZone", status([&](S& s) { return bool(s.copyWithZone()); })},
      {"archive", status([&](S& s) { return bool(archive(s)); })},
      {"archivedCopy", status([&](S& s) { return bool(archivedCopy(s)); })},
      {"description", [](Ref<S>& s) { return s->description(); }},
      {"stationDescription", [](Ref<S>& s) { return s->stationDescription(); }},
      {"eventDescription", [](Ref<S>& s) { return s->eventDescription(); }},
      {"hypoPickString", [](Ref<S>& s) { return s->hypoPickString(); }},
      {"oTimeString", [](Ref<S>& s) { return s->oTimeString().value_or("none"); }},
      {"epochStartTime", nothing([](S& s) { s.epochStartTime(); })},
      {"setReferenceTimeWithNSDate",
       nothing([](S& s) { s.setReferenceTimeWithNSDate(Date{1e9}); })},
      {"adjustReferenceTimeToNSDate",
       nothing([](S& s) { s.adjustReferenceTimeToNSDate(Date{1e9}); })},
      {"ZeroThisTime", nothing([](S& s) { s.ZeroThisTime(3.5f); })},
      {"shiftTimesBy", nothing([](S& s) { s.shiftTimesBy(3.5f); })},
      {"setEventLocation",
       nothing([](S& s) { s.setEventLocationLat_Lon_Depth(1.0f, 2.0f, 3.0f); })},
      {"flinnEngdahlGeographicRegion", [](Ref<S>& s) { return s->flinnEngdahlGeographicRegion(); }},
      {"Decimate", nothing([](S& s) { s.Decimate(5); })},
      {"ChopFromStart_END", nothing([](S& s) { s.ChopFromStart_END(10.0f, 100.0f); })},
      {"ChopWithGVelMin_Max", nothing([](S& s) { s.ChopWithGVelMin_Max(2.0f, 20.0f); })},
      {"AppendSacObject", nothing([](S& s) {
         static const Ref<S> next = [] {
           auto n = recording();
           n->setBeginTime(150.0f);
           n->fixEndTime();
           n->setReferenceTimeWithNSDate(Date::fromComponents({2011, 12, 31, 23, 59, 59}));
           return n;
         }();
         s.AppendSacObject(*next);
       })},
      {"reverseTime", nothing([](S& s) { s.reverseTime(); })},
      {"RGaussianFilter", nothing([](S& s) { s.RGaussianFilter(1.5f); })},
      {"SGaussianFilter", nothing([](S& s) { s.SGaussianFilter_Alpha(0.05f, 20.0f); })},
      {"CosineTaperFilter", nothing([](S& s) { s.CosineTaperFilter(0.01f, 0.05f, 0.5f, 0.8f); })},
      {"TstarFilter", nothing([](S& s) { s.TstarFilter(1.0f); })},
      {"CosineTimeFunctionFilterDuration",
       nothing([](S& s) { s.CosineTimeFunctionFilterDuration(5.0f); })},
      {"TrapezoidFilter", nothing([](S& s) { s.TrapezoidFilter(2.0f, 3.0f, 4.0f); })},
      {"LPBUfilter", nothing([](S& s) { s.LPBUfilter_NPasses_NPoles(0.2f, 2, 4); })},
      {"Envelope", nothing([](S& s) { s.Envelope(); })},
      {"InstantaneousPeriod", nothing([](S& s) { s.InstantaneousPeriod(); })},
      {"NoiseFilterStartingAtTime", nothing([](S& s) { s.NoiseFilterStartingAtTime(30.0f); })},
      {"spectrum", status([](S& s) { return bool(s.spectrum()); })},
      {"prewhiten", nothing([](S& s) { s.prewhiten(); })},
      {"WaterLevelDecon", nothing([&](S& s) {
         s.WaterLevelDeconWith_wlevel_tshift_gwidth(*other, 0.01f, 5.0f, 2.5f);
       })},
      {"iterDecon", nothing([&](S& s) {
         s.iterDeconWith_wlevel_tshift_gwidth_nIter_minMF(*other, 0.01f, 5.0f, 2.5f, 3, 0.1f);
       })},
      {"correlateWith", nothing([&](S& s) { s.correlateWith(*other); })},
      {"GetOptimalShift", nothing([](S& s) {
         const Ref<S> second = &s;
         s.GetOptimalShift(s);
       })},
      {"ConvolveInstrument", nothing([](S& s) { s.ConvolveInstrument(1); })},
      {"DeconvolveInstrument",
       nothing([&](S& s) { s.DeconvolveInstrument_TaperCorners(response, corners); })},
      {"subtractZeroLagGaussian", nothing([](S& s) { s.subtractZeroLagGaussian(0.25f); })},
      {"markJBTimes", nothing([](S& s) { s.markJBTimes(); })},
      {"markJBTimesAndSlowness", nothing([](S& s) { s.markJBTimesAndSlowness(); })},
      {"computeBWResponse", nothing([&](S& s) { s.computeBWResponse(block); })},
      {"RotateSeismogramsByAngle",
       nothing([&](S& s) { RotateSeismogramsByAngle(s, *other, 30.0f); })},
      {"L2SacFracMisfitWithShift", nothing([&](S& s) {
         std::int32_t shift;
         float misfit;
         L2SacFracMisfitWithShift(s, *other, &shift, &misfit);
       })},
      {"FindMaximum", nothing([](S& s) { s.FindMaximum(); })},
  };
  for (const auto& [name, operation] : operations)
    expectSafe<Ref<S>>(name,
                       {recording, operation, [](const Ref<S>& s) { return archivedState(*s); }});
  testing::internal::GetCapturedStderr();
}

}  // namespace
}  // namespace krosac
