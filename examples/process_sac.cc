// Processes seismograms for a first look at an earthquake: process_sac [FILE...]
//
// Each trace is detrended, demeaned, tapered, band-passed without phase shift and, if its sampling
// rate allows, decimated by 2. It gets a pick and is saved as NAME.processed in the working
// directory, in the byte order of its file. The input is not changed. Without a file a sample is
// made first.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <string>
#include <vector>

#include "MadeData.h"
#include "krosac/krosac.h"

namespace {

using krosac::Ref;
using krosac::SacObject;

constexpr float kLowCorner = 0.02f;  // Hz
constexpr float kHighCorner = 1.0f;  // Hz
constexpr int kPoles = 4;
constexpr int kTwoPasses = 2;
constexpr int kStrongestPick = 0;  // the key of T0

// A station near Lake Baikal, saved in the byte order opposite to that of this machine.
std::string makeSample() {
  auto tables = krosac::make<krosac::TTTableObject>();
  tables->init();
  const auto s = made::seismogram(*tables, {"BKL", 51.7f, 103.6f}, 240.0f, 0.05f, 24000);
  s->setSwappedBytes(true);
  s->setPath("sample.SAC");
  return s->save() ? s->path().value() : std::string();
}

float timeOfStrongestSample(const SacObject& s) {
  const float* x = s.GetSacSeis();
  const auto* strongest = std::max_element(
      x, x + s.npts(), [](float a, float b) { return std::fabs(a) < std::fabs(b); });
  return s.b() + static_cast<float>(strongest - x) * s.delta();
}

void process(SacObject& s) {
  s.SubtractLinearTrend();
  s.RemoveMean();  // the detrend leaves an offset
  s.defaultTaper();
  const float nyquist = 0.5f / s.delta();
  const float high = std::min(kHighCorner, 0.8f * nyquist);
  s.HPBUfilter_NPasses_NPoles(kLowCorner, kTwoPasses, kPoles);
  s.LPBUfilter_NPasses_NPoles(high, kTwoPasses, kPoles);
  if (0.5f * nyquist > 2.0f * high) s.Decimate(2);
  s.setTimePickKey_Value(kStrongestPick, timeOfStrongestSample(s));
  s.setPickLabelKey_Value(kStrongestPick, "maximum");
}

void printChange(const SacObject& before, const SacObject& after) {
  std::printf("%-12s %14s %14s\n", "", "before", "after");
  std::printf("%-12s %14d %14d\n", "NPTS", before.npts(), after.npts());
  const auto row = [&](const char* name, float was, float is) {
    std::printf("%-12s %14.6g %14.6g\n", name, static_cast<double>(was), static_cast<double>(is));
  };
  row("DELTA, s", before.delta(), after.delta());
  row("E, s", before.e(), after.e());
  row("DEPMIN", before.smin(), after.smin());
  row("DEPMEN", before.smean(), after.smean());
  row("DEPMAX", before.smax(), after.smax());
  std::printf("%-12s %14s %14.6g  (%s)\n\n", "T0, s", "", static_cast<double>(after.t0()),
              after.pickLabelWithKey(kStrongestPick).c_str());
}

bool processFile(const std::string& path) {
  auto s = krosac::make<SacObject>(), again = krosac::make<SacObject>();
  krosac::setLogSink([](const std::string&) {});  // failures are reported below, in one line
  const bool loaded = s->initWithPath(path) && s->npts() > 0;
  krosac::setLogSink(nullptr);
  if (!loaded)
    return std::fprintf(stderr, "%s: not a SAC file that can be processed\n", path.c_str()), false;
  std::printf("%s\n", s->description().c_str());
  std::printf("Byte order of the file: %s\n\n", s->swappedBytes() ? "swapped" : "native");

  const Ref<SacObject> original = s->copyWithZone();
  process(*s);
  s->setPath(s->myFileName().value() + ".processed");
  if (!s->save() || !again->initWithPath(s->path().value())) {
    return std::fprintf(stderr, "%s: cannot be written\n", s->path()->c_str()), false;
  }
  std::printf("Saved and loaded again: %s\n", again->path()->c_str());
  printChange(*original, *again);
  return true;
}

}  // namespace

int main(int argc, char** argv) {
  std::vector<std::string> paths(argv + 1, argv + argc);
  if (paths.empty()) paths.push_back(makeSample());
  int failures = 0;
  for (const auto& path : paths) failures += !processFile(path);
  return failures ? 1 : 0;
}
