// Finds the converted waves behind a teleseismic P: receiver_function [Z N E]
//
// The horizontals are rotated to radial and transverse, and the radial is deconvolved by the
// vertical. The largest peaks are printed with their lags and amplitudes and, if the source depth
// and the distance (30 to 95 degrees) are known, with the apparent depth: where P would convert to
// S in IASP91 to arrive at this lag. The apparent depth of a multiple has no meaning. The peaks are
// marked, and the function is saved as receiver_function.SAC with P at time 0. Without files a
// sample is made.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <functional>
#include <numbers>
#include <string>
#include <vector>

#include "Depth.h"
#include "MadeData.h"
#include "krosac/krosac.h"

namespace {

using krosac::Ref;
using krosac::SacObject;

constexpr float kWaterLevel = 0.01f;
constexpr float kWidth = 2.5f;  // of the Gaussian low-pass, rad/s
constexpr float kBeforeP = 10.0f, kAfterP = 60.0f, kShift = 5.0f, kLastLag = 30.0f;  // s
constexpr int kPeaks = 4;

Ref<SacObject> load(const std::string& path) {
  auto s = krosac::make<SacObject>();
  if (!s->initWithPath(path))
    return std::fprintf(stderr, "%s: not a SAC file\n", path.c_str()), nullptr;
  if (krosac::isDefined(s->pTime()))
    s->ChopFromStart_END(s->pTime() - kBeforeP, s->pTime() + kAfterP);
  s->RemoveMean();
  return s;
}

bool areOne(const SacObject& z, const SacObject& n, const SacObject& e) {
  for (const float angle : {n.componentAzimuth(), e.componentAzimuth(), n.backazimuth()})
    if (!krosac::isDefined(angle)) return false;
  return z.npts() == n.npts() && n.npts() == e.npts() && z.delta() == n.delta() &&
         n.delta() == e.delta();
}

// The indexes of the largest peaks and troughs, the largest first.
std::vector<int> peaksOf(const SacObject& s) {
  const float* x = s.GetSacSeis();
  const auto size = [x](int i) { return std::fabs(x[i]); };
  std::vector<int> peaks;
  const int last = std::min(s.npts() - 1, static_cast<int>((kShift + kLastLag) / s.delta()));
  for (int i = 1; i < last; ++i)
    if (size(i) > size(i - 1) && size(i) >= size(i + 1)) peaks.push_back(i);
  std::ranges::sort(peaks, std::greater(), size);
  if (peaks.size() > kPeaks) peaks.resize(kPeaks);
  return peaks;
}

void markPeaks(SacObject& s) {
  auto tables = krosac::make<krosac::PsNMOTableObject>();
  tables->init();
  const krosac::PsNMO curve = tables->FetchNMOForSrcDepth_Gcarc(depthInKilometres(s), s.gcarc());
  std::printf("%8s %10s %10s\n", "lag, s", "amplitude", "depth, km");
  int key = 0;  // of the picks T0, T1, ...
  for (const int i : peaksOf(s)) {
    const float lag = s.b() + static_cast<float>(i) * s.delta();
    const float depth =
        curve.gcarc < 0 || lag < 0 ? krosac::kSacUndefinedFloat : krosac::depthFromTime(lag, curve);
    char depthText[16] = "-";
    if (depth >= 0) std::snprintf(depthText, sizeof depthText, "%.0f", static_cast<double>(depth));
    std::printf("%8.2f %10.3f %10s\n", static_cast<double>(lag),
                static_cast<double>(s.GetSacSeis()[i]), depthText);
    s.setTimePickKey_Value(key, lag);
    s.setPickLabelKey_Value(key++, depth > 0 ? (std::string(depthText) + " km").c_str() : "P");
  }
}

}  // namespace

int main(int argc, char** argv) {
  std::vector<std::string> paths(argv + 1, argv + argc);
  if (paths.empty()) paths = made::threeComponents();
  if (paths.size() != 3) return std::fprintf(stderr, "receiver_function [Z N E]\n"), 2;
  krosac::setLogSink([](const std::string&) {});  // failures are reported below
  const auto z = load(paths[0]), n = load(paths[1]), e = load(paths[2]);
  if (!z || !n || !e) return 1;
  if (!areOne(*z, *n, *e))
    return std::fprintf(stderr, "the three files are not components of one seismogram\n"), 1;
  krosac::RotateSeismograms(*n, *e);
  n->WaterLevelDeconWith_wlevel_tshift_gwidth(*z, kWaterLevel, kShift, kWidth);
  // Scales the amplitudes to the ratio of radial to vertical motion.
  n->ScaleAmplitudes(std::sqrt(std::numbers::pi_v<float>) / (kWidth * n->delta()));
  n->clearTimePicks();
  n->setoriginTimeOffset(krosac::kSacUndefinedFloat);
  n->setBeginTime(-kShift);
  n->fixEndTime();
  n->setComponentName("RF");
  markPeaks(*n);
  n->setPath("receiver_function.SAC");
  return n->save() ? 0 : 1;
}
