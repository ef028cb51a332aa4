// Seismograms when memory runs out. Texts and paths are longer than a std::string holds inside.
#include <filesystem>

#include "TemporaryFolder.h"
#include "robustness/FailingAllocator.h"
#include "seismogram/Traces.h"

namespace krosac {
namespace {

using Operation = std::function<std::string(Ref<S>&)>;

// An operation whose result converts to bool, and one without a result.
template <typename Work>
Operation status(Work work) {
  return [=](Ref<S>& s) { return resultOf(static_cast<bool>(work(*s))); };
}
template <typename Work>
Operation done(Work work) {
  return [=](Ref<S>& s) {
    work(*s);
    return std::string("done");
  };
}

Ref<S> recording() {
  Samples x(300);
  for (std::size_t i = 0; i < x.size(); ++i) x[i] = static_cast<float>((i * 7919) % 101) - 50.0f;
  auto s = traceOf(x, 0.5f, 0.0f);
  s->setoriginTimeOffset(-200.0f);
  s->setPTime(20.0f);
  s->setEventName("A long event name");
  s->setStationLocationLat_Lon_Elevation(51.6807f, 103.6438f, 579.0f);
  s->setEventLocationLat_Lon_Depth(38.297f, 142.373f, 29.0f);
  s->setReferenceTimeWithNSDate(Date::fromComponents({2011, 12, 31, 23, 59, 59}));
  s->setPath("the path of a recording.sac");
  s->setLabelString("the label of a recording");
  s->ComputeExtrema();
  return s;
}

std::string seenOf(const Ref<S>& s) {
  return archivedState(*s) + printable(s->flinnEngdahlString());
}

// A recording that follows the first one, of twice the amplitude.
Ref<S> nextRecording() {
  const auto s = recording();
  s->setBeginTime(150.0f);
  s->fixEndTime();
  s->ScaleAmplitudes(2.0f);
  s->setLabelString("another label of a recording");
  return s;
}

struct FailingAllocatorSeismograms : testing::Test {
  FailingAllocatorSeismograms() {
    std::filesystem::current_path(folder.path());
    testing::internal::CaptureStderr();
  }
  ~FailingAllocatorSeismograms() override {
    testing::internal::GetCapturedStderr();
    std::filesystem::current_path(before);
  }
  void expectAllSafe(const std::vector<std::pair<const char*, Operation>>& operations,
                     Ref<S> (*make)() = recording) {
    for (const auto& [name, operation] : operations)
      expectSafe<Ref<S>>(name, {make, operation, seenOf});
  }

  const std::filesystem::path before = std::filesystem::current_path();
  const TemporaryFolder folder;
  const Ref<S> other = nextRecording();
};

TEST_F(FailingAllocatorSeismograms, LoadAndSaveWhollyOrNotAtAll) {
  const AutoreleasePool pool;
  const std::string image = imageOf(*other), target = folder.path("target"),
                    native = folder.write("native", image),
                    swapped = folder.write("swapped", foreign(image)),
                    invalid = folder.write("invalid", image.substr(4)),
                    name = "a name in the working directory.sac";
  const auto bytes = bufferOf(image), archived = archive(*other);
  expectAllSafe({
      {"initWithCapacity", status([](S& s) { return s.initWithCapacity(100); })},
      {"InitWithNSData", status([&](S& s) { return s.InitWithNSData_withPath(bytes, native); })},
      {"initWithNSData", status([&](S& s) { return s.initWithNSData_withPath(bytes, native); })},
      {"InitWithPath", status([&](S& s) { return s.InitWithPath(native); })},
      {"initWithPath", status([&](S& s) { return s.initWithPath(native); })},
      {"initWithPath, swapped", status([&](S& s) { return s.initWithPath(swapped); })},
      {"initWithPath, invalid", status([&](S& s) { return s.initWithPath(invalid); })},
      {"loadFromPath", status([&](S& s) { return s.loadFromPath(native); })},
      {"replaceData", status([&](S& s) { return s.replaceSacObjectDataWithPath(native); })},
      {"replaceData, swapped",
       status([&](S& s) { return s.replaceSacObjectDataWithPath(swapped); })},
      {"InitWithSeisObject", status([&](S& s) { return s.InitWithSeisObject(*other); })},
      {"initWithSeisObject", status([&](S& s) { return s.initWithSeisObject(*other); })},
      {"save", status([](S& s) { return s.save(); })},
      {"saveAs", status([&](S& s) { return s.saveAs(name); })},
      {"saveToPath", status([&](S& s) { return s.saveToPath(target); })},
      {"copyWithZone", status([](S& s) { return s.copyWithZone(); })},
      {"archive", status([](S& s) { return archive(s); })},
      {"unarchive",
       [&](Ref<S>& s) {
         auto decoded = unarchive<S>(*archived);
         if (decoded) s = decoded;
         return resultOf(static_cast<bool>(decoded));
       }},
  });
  expectAllSafe({{"initWithCapacity, new", status([](S& s) { return s.initWithCapacity(9); })},
                 {"initWithPath, new", status([&](S& s) { return s.initWithPath(native); })}},
                make<S>);
  expectAllSafe({{"save, swapped", status([](S& s) { return s.save(); })}}, [] {
    auto s = recording();
    s->setSwappedBytes(true);
    return s;
  });
}

TEST_F(FailingAllocatorSeismograms, ReturnNoTextOrAWholeOne) {
  expectAllSafe({
      {"kevnm", [](Ref<S>& s) { return s->kevnm(); }},
      {"flinnEngdahlString", [](Ref<S>& s) { return s->flinnEngdahlString().value_or("none"); }},
      {"geographicRegion", [](Ref<S>& s) { return s->flinnEngdahlGeographicRegion(); }},
      {"description", [](Ref<S>& s) { return s->description(); }},
      {"stationDescription", [](Ref<S>& s) { return s->stationDescription(); }},
      {"eventDescription", [](Ref<S>& s) { return s->eventDescription(); }},
      {"oTimeString", [](Ref<S>& s) { return s->oTimeString().value_or("none"); }},
      {"hypoPickString", [](Ref<S>& s) { return s->hypoPickString(); }},
  });
}

TEST_F(FailingAllocatorSeismograms, ChangeWhollyOrNotAtAll) {
  const std::string response = folder.write(
      "response of some length", "ZEROS 2\nPOLES 2\n-0.04 0.04\n-0.04 -0.04\nCONSTANT 2\n");
  const float corners[] = {0.01f, 0.05f, 0.5f, 0.8f};
  const auto time = make<SeisTimeObject>();
  time->initWithTimeObject(*other->mySeisReferenceTime());
  time->addSeconds(100.0f);
  expectAllSafe({
      {"setReferenceTimeWithNSDate", done([](S& s) { s.setReferenceTimeWithNSDate(Date{1e9}); })},
      {"adjustReferenceTimeToNSDate", done([](S& s) { s.adjustReferenceTimeToNSDate(Date{1e9}); })},
      {"setReferenceTime", done([&](S& s) { s.setReferenceTime(*time); })},
      {"setOriginTime", done([](S& s) {
         s.setOriginTimeYear_Month_Day_Hour_Minutes_Seconds(2011, 12, 31, 23, 58, 30.5f);
       })},
      {"ChopFromStart_END", done([](S& s) { s.ChopFromStart_END(10.0f, 100.0f); })},
      {"Decimate", done([](S& s) { s.Decimate(5); })},
      {"AppendSacObject", done([&](S& s) { s.AppendSacObject(*other); })},
      {"RGaussianFilter", done([](S& s) { s.RGaussianFilter(1.5f); })},
      {"RGaussianFilterSwapOld_New", done([](S& s) { s.RGaussianFilterSwapOld_New(1.5f, 2.5f); })},
      {"SGaussianFilter", done([](S& s) { s.SGaussianFilter_Alpha(0.05f, 20.0f); })},
      {"CosineTaperFilter", done([](S& s) { s.CosineTaperFilter(0.01f, 0.05f, 0.5f, 0.8f); })},
      {"TstarFilter", done([](S& s) { s.TstarFilter(1.0f); })},
      {"CosineTimeFunction", done([](S& s) { s.CosineTimeFunctionFilterDuration(5.0f); })},
      {"TrapezoidFilter", done([](S& s) { s.TrapezoidFilter(2.0f, 3.0f, 4.0f); })},
      {"Envelope", done([](S& s) { s.Envelope(); })},
      {"InstantaneousPeriod", done([](S& s) { s.InstantaneousPeriod(); })},
      {"NoiseFilterStartingAtTime", done([](S& s) { s.NoiseFilterStartingAtTime(30.0f); })},
      {"spectrum", status([](S& s) { return s.spectrum(); })},
      {"WaterLevelDecon",
       done([&](S& s) { s.WaterLevelDeconWith_wlevel_tshift(*other, 0.01f, 5.0f); })},
      {"iterDecon", done([&](S& s) {
         s.iterDeconWith_wlevel_tshift_gwidth_nIter_minMF(*other, 0.01f, 5.0f, 2.5f, 3, 0.1f);
       })},
      {"correlateWith", done([&](S& s) { s.correlateWith(*other); })},
      {"ConvolveInstrument", done([](S& s) { s.ConvolveInstrument(1); })},
      {"DeconvolveInstrument",
       done([&](S& s) { s.DeconvolveInstrument_TaperCorners(response, corners); })},
      {"markJBTimes", done([](S& s) { s.markJBTimes(); })},
      {"markJBTimesAndSlowness", done([](S& s) { s.markJBTimesAndSlowness(); })},
  });
}

}  // namespace
}  // namespace krosac
