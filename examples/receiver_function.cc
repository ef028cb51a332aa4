// Finds the converted waves behind a teleseismic P: receiver_function [Z N E]
//
// The horizontals are rotated to radial and transverse, and the radial is deconvolved by the
// vertical. The lags and amplitudes of the largest peaks are printed, and the function is saved as
// receiver_function.SAC, P at time 0. Without files a sample is made: a crust over a half-space.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <functional>
#include <numbers>
#include <ranges>
#include <string>
#include <utility>
#include <vector>

#include "krosac/krosac.h"

namespace {

using krosac::Ref;
using krosac::SacObject;

constexpr float kWaterLevel = 0.01f;
constexpr float kWidth = 2.5f;  // of the Gaussian low-pass, rad/s
constexpr float kBeforeP = 10.0f, kAfterP = 60.0f, kShift = 5.0f, kLastLag = 30.0f;  // s

// Delays and amplitudes of what a P of ray parameter p (s/km) brings to the radial component above
// a crust of h km: itself, its conversion Ps and the multiples PpPs and PpSs + PsPs.
std::vector<std::pair<double, double>> radialArrivals(double h, double vp, double vs, double p) {
  const double etaP = std::sqrt(1 / (vp * vp) - p * p), etaS = std::sqrt(1 / (vs * vs) - p * p);
  return {{0, 0.4}, {h * (etaS - etaP), 0.12}, {h * (etaS + etaP), 0.08}, {2 * h * etaS, -0.06}};
}

// Three components of a made P that comes from the east-southeast.
std::vector<std::string> makeSample() {
  constexpr double kDelta = 0.05, kP = 369.0;
  const auto arrivals = radialArrivals(35.0, 6.3, 3.6, 0.06);
  const auto source = [](double u) {
    return u < 0 ? 0.0 : 1000 * u * std::exp(-3 * u) * (1 + 0.8 * std::sin(2 * u));
  };
  std::vector<std::string> paths;
  unsigned noise = 1;
  for (const char* component : {"BHZ", "BHN", "BHE"}) {
    auto s = krosac::make<SacObject>();
    s->initWithCapacity(4000);
    s->setDelta(static_cast<float>(kDelta));
    s->setBeginTime(300.0f);
    s->fixEndTime();
    s->setPTime(static_cast<float>(kP));
    s->setBackazimuth(104.0f);
    const bool vertical = component[2] == 'Z';
    if (!vertical) s->setComponentAzimuth(component[2] == 'E' ? 90.0f : 0.0f);
    const double away = (s->componentAzimuth() - s->backazimuth() - 180) * std::numbers::pi / 180;
    for (int i = 0; i < s->npts(); ++i) {
      const double t = 300.0 + i * kDelta - kP;
      double radial = 0;
      for (const auto& [delay, amplitude] : arrivals) radial += amplitude * source(t - delay);
      noise = noise * 1664525u + 1013904223u;
      s->GetSacSeis()[i] = static_cast<float>((vertical ? source(t) : radial * std::cos(away)) +
                                              0.2 * (noise / 4294967296.0 - 0.5));
    }
    s->setComponentName(component);
    s->setPath(std::string("sample.") + component + ".SAC");
    if (s->save()) paths.push_back(s->path().value());
  }
  return paths;
}

Ref<SacObject> load(const std::string& path) {
  auto s = krosac::make<SacObject>();
  if (!s->initWithPath(path))
    return std::fprintf(stderr, "%s: no SAC file\n", path.c_str()), nullptr;
  if (s->pTime() != krosac::kSacUndefinedFloat)
    s->ChopFromStart_END(s->pTime() - kBeforeP, s->pTime() + kAfterP);
  s->RemoveMean();
  return s;
}

bool areOne(const SacObject& z, const SacObject& n, const SacObject& e) {
  for (const float angle : {n.componentAzimuth(), e.componentAzimuth(), n.backazimuth()})
    if (angle == krosac::kSacUndefinedFloat) return false;
  return z.npts() == n.npts() && n.npts() == e.npts() && z.delta() == n.delta() &&
         n.delta() == e.delta();
}

void printPeaks(const SacObject& s) {
  const float* x = s.GetSacSeis();
  const auto size = [x](int i) { return std::fabs(x[i]); };
  const auto lag = [&s](int i) { return s.b() + static_cast<float>(i) * s.delta(); };
  std::vector<int> peaks;
  for (int i = 1; i + 1 < s.npts() && lag(i) < kLastLag; ++i)
    if (size(i) > size(i - 1) && size(i) >= size(i + 1)) peaks.push_back(i);
  std::ranges::sort(peaks, std::greater(), size);
  std::printf("%8s %10s\n", "lag, s", "amplitude");
  for (const int i : peaks | std::views::take(4)) std::printf("%8.2f %10.3f\n", lag(i), x[i]);
}

}  // namespace

int main(int argc, char** argv) {
  std::vector<std::string> paths(argv + 1, argv + argc);
  if (paths.empty()) paths = makeSample();
  if (paths.size() != 3) return std::fprintf(stderr, "receiver_function [Z N E]\n"), 2;
  krosac::setLogSink([](const std::string&) {});  // what is wrong is said here
  const auto z = load(paths[0]), n = load(paths[1]), e = load(paths[2]);
  if (!z || !n || !e) return 1;
  if (!areOne(*z, *n, *e))
    return std::fprintf(stderr, "the three files are no components of one seismogram\n"), 1;
  krosac::RotateSeismograms(*n, *e);
  n->WaterLevelDeconWith_wlevel_tshift_gwidth(*z, kWaterLevel, kShift, kWidth);
  // So that amplitudes are those of radial against vertical motion.
  n->ScaleAmplitudes(std::sqrt(std::numbers::pi_v<float>) / (kWidth * n->delta()));
  n->setBeginTime(-kShift);
  n->fixEndTime();
  n->setPTime(0.0f);
  n->setComponentName("RF");
  printPeaks(*n);
  n->setPath("receiver_function.SAC");
  return n->save() ? 0 : 1;
}
