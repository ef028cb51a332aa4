// Synthetic seismograms for trying the examples without recordings: one great earthquake off Honshu
// with realistic noise.
#ifndef KROSAC_EXAMPLES_MADEDATA_H
#define KROSAC_EXAMPLES_MADEDATA_H

#include <algorithm>
#include <cmath>
#include <numbers>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "krosac/krosac.h"

namespace made {

inline constexpr float kEventLatitude = 38.3f, kEventLongitude = 142.4f, kEventDepth = 29.0f;

// White noise from -1 to 1, reproducible for a seed.
class Noise {
 public:
  explicit Noise(unsigned seed) : state_(seed) {}
  double operator()() {
    state_ = state_ * 1664525u + 1013904223u;
    return state_ / 2147483648.0 - 1.0;
  }

 private:
  unsigned state_;
};

// A wave that begins at u = 0 s and has a coda of several frequencies around f Hz.
inline double wave(double u, double f, double rise, double decay) {
  if (u < 0 || u > 10 * decay) return 0;
  double sum = 0;
  for (int k = 0; k < 5; ++k)
    sum += std::sin(2 * std::numbers::pi * f * (1 + 0.19 * k * (k % 2 ? 1 : -0.55)) * u);
  return sum / 5 * (1 - std::exp(-u / rise)) * std::exp(-u / decay);
}

struct Station {
  std::string name;
  float latitude, longitude;  // degrees
};

// Vertical motion in counts: P, PP, S and SS at the times of the IASP91 tables, a dispersed surface
// wave with group velocities from 4.1 to 2.9 km/s, microseisms, white noise, drift and an offset.
// P and S are marked in A and T1. Times are relative to the origin.
inline krosac::Ref<krosac::SacObject> seismogram(const krosac::TTTableObject& tables,
                                                 const Station& station, float begin, float delta,
                                                 int npts) {
  auto s = krosac::make<krosac::SacObject>();
  s->initWithCapacity(npts);
  s->GetSacHeader()->NVHDR = 6;  // undefined in a new seismogram; other programs need it
  s->setDelta(delta);
  s->setBeginTime(begin);
  s->fixEndTime();
  s->setReferenceTimeWithNSCalendarDate(krosac::Date::fromComponents({2011, 3, 11, 5, 46, 23}));
  s->setoriginTimeOffset(0.0f);
  s->setStationID(station.name.c_str());
  s->setNetworkID("XX");
  s->setComponentName("BHZ");
  s->setEventLocationLat_Lon_Depth(kEventLatitude, kEventLongitude, kEventDepth);
  s->setStationLocationLat_Lon_Elevation(station.latitude, station.longitude, 579.0f);
  s->setMagnitude(9.1f);
  const auto arrival = [&](const char* phase) {
    const float time = tables.GetTTPhase_GCARC_Depth(phase, s->gcarc(), kEventDepth).time;
    return time < 0 ? 1e9 : static_cast<double>(time);
  };
  const double p = arrival("p"), pp = arrival("pp"), secondary = arrival("s"), ss = arrival("ss");
  for (const auto& [key, label, time] : {std::tuple(10, "P", p), {1, "S", secondary}}) {
    if (time < s->b() || time > s->e()) continue;
    s->setTimePickKey_Value(key, static_cast<float>(time));
    s->setPickLabelKey_Value(key, label);
  }

  const double first = s->distance() / 4.1, last = s->distance() / 2.9;
  Noise white(static_cast<unsigned>(static_cast<int>(station.latitude * 1000 + station.longitude)));
  const double step = 2 * std::numbers::pi * 0.14 * delta, radius = 1 - 0.1 * delta;
  double phase = 0, microseism = 0, before = 0;
  for (int i = 0; i < npts; ++i) {
    const double t = begin + static_cast<double>(delta) * i;
    // White noise through a resonator at 0.14 Hz.
    before = std::exchange(microseism, 2 * radius * std::cos(step) * microseism -
                                           radius * radius * before + delta * white());
    double x = 4000 + 4 * t + 900 * std::sin(t / 90) + 600 * white() + 40 * microseism;
    x += 4500 * wave(t - p, 0.25, 1.5, 30) + 1800 * wave(t - pp, 0.2, 3, 30) +
         6500 * wave(t - secondary, 0.12, 4, 40) + 2600 * wave(t - ss, 0.08, 6, 40);
    const double along = (t - first) / (last - first);
    if (along > 0 && along < 1) {
      phase += 2 * std::numbers::pi * delta * (1.0 / 45 + along * (1.0 / 16 - 1.0 / 45));
      x += 5000 * std::pow(std::sin(std::numbers::pi * std::sqrt(along)), 2) * std::sin(phase);
    }
    s->GetSacSeis()[i] = static_cast<float>(x);
  }
  s->ComputeExtrema();
  return s;
}

// Delays (s) and amplitudes on the radial component of a P wave with ray parameter p (s/km) above a
// crust of h km: P itself, the conversion Ps and the multiples PpPs and PpSs + PsPs.
inline std::vector<std::pair<double, double>> radialArrivals(double h, double vp, double vs,
                                                             double p) {
  const double etaP = std::sqrt(1 / (vp * vp) - p * p), etaS = std::sqrt(1 / (vs * vs) - p * p);
  return {{0, 0.4}, {h * (etaS - etaP), 0.12}, {h * (etaS + etaP), 0.08}, {2 * h * etaS, -0.06}};
}

// Saves the components Z, N and E of a P wave from the east-southeast above a crust over a
// half-space in the working directory and returns their paths.
inline std::vector<std::string> threeComponents() {
  constexpr double kDelta = 0.05, kP = 369.0;
  const auto arrivals = radialArrivals(35.0, 6.3, 3.6, 0.06);
  const auto source = [](double u) {
    return u < 0 ? 0.0 : 1000 * u * std::exp(-3 * u) * (1 + 0.8 * std::sin(2 * u));
  };
  std::vector<std::string> paths;
  Noise noise(1);
  for (const char* component : {"BHZ", "BHN", "BHE"}) {
    auto s = krosac::make<krosac::SacObject>();
    s->initWithCapacity(4000);
    s->setDelta(static_cast<float>(kDelta));
    s->setBeginTime(300.0f);
    s->fixEndTime();
    s->setPTime(static_cast<float>(kP));
    s->setEventLocationLat_Lon_Depth(kEventLatitude, kEventLongitude, kEventDepth);
    s->setBackazimuth(104.0f);
    s->setGcarc(60.0f);
    const bool vertical = component[2] == 'Z';
    if (!vertical) s->setComponentAzimuth(component[2] == 'E' ? 90.0f : 0.0f);
    const double away =
        (s->componentAzimuth() - s->backazimuth() - 180) * krosac::kRadiansPerDegree;
    for (int i = 0; i < s->npts(); ++i) {
      const double t = 300.0 + i * kDelta - kP;
      double radial = 0;
      for (const auto& [delay, amplitude] : arrivals) radial += amplitude * source(t - delay);
      s->GetSacSeis()[i] =
          static_cast<float>((vertical ? source(t) : radial * std::cos(away)) + 0.1 * noise());
    }
    s->setComponentName(component);
    s->setPath(std::string("sample.") + component + ".SAC");
    if (s->save()) paths.push_back(s->path().value());
  }
  return paths;
}

// A made Earthquake Data Report.
inline constexpr const char* kReport =
    R"(HY20031231 235950.0  38.297N 142.373E  29.0  1.1 58 228
E  0.12   3.10   4.20   2.5 5.8  41 5.6 12
P MAJO iPc     000041.20  -0.4    3.62 242.1 0.8   41.5 5.9
S      iS      000120.50 Lg      000144.00
P TLY  eP      000541.80   0.3   29.84 301.5 1.1   63.0 5.7
M      Z 20.0    3.4                             MSZ 5.6
HY20040102 041503.75&17.520S  69.800W 110.0G 0.9 23 118LIM
E  0.31   6.00   7.70   5.1 4.9  17
P LPAZ iPnd    041537.10   1.2*   2.17  68.0
C Felt along the coast.
HY20040101 100000.00  0.500N  25.300W  10.0  0.7 12 406
E                           5.1  9
)";

}  // namespace made

#endif
