#include <algorithm>
#include <cmath>

#include "krosac/dsp/internal/Series.h"
#include "krosac/platform/Log.h"
#include "krosac/platform/internal/TruncIndex.h"
#include "krosac/seismogram/internal/SacObjectAccess.h"

namespace krosac {

float SacObject::simpleRMS() const {
  const auto x = samplesOf(*this);
  return x.empty() ? kSacUndefinedFloat : std::sqrt(sumOfSquares(x) / static_cast<float>(x.size()));
}

float SacObject::signalPower() const {
  const auto x = samplesOf(*this);
  return x.empty() ? kSacUndefinedFloat : delta() * sumOfSquares(x);
}

float SacObject::centroid() const {
  const auto x = samplesOf(*this);
  float sum = 0.0f, moment = 0.0f;
  for (std::size_t i = 0; i < x.size(); ++i) {
    sum += x[i];
    moment += static_cast<float>(i) * delta() * x[i];
  }
  return sum == 0.0f ? kSacUndefinedFloat : moment / sum;
}

float SacObject::simpleSNR() const {
  const auto x = samplesOf(*this);
  const std::int64_t n = std::ssize(x);
  const auto isInside = [this](float t) { return t != kSacUndefinedFloat && b() < t && t < e(); };
  const auto rounded = [this](float t) { return truncIndex((t - b()) / delta() + 0.5); };
  if (!isInside(a())) return kSacUndefinedFloat;
  const std::int64_t arrival = std::max<std::int64_t>(rounded(a()), 0);
  const std::int64_t end = std::min(rounded(isInside(f()) ? f() : e()), n);
  if (arrival > n || end < 0 || end == arrival) return kSacUndefinedFloat;

  const auto mean = [&](std::int64_t from, std::int64_t to) {
    const auto window = x.subspan(static_cast<std::size_t>(from),
                                  static_cast<std::size_t>(std::max(to - from, std::int64_t{0})));
    return sumOfSquares(window) / static_cast<float>(to - from);
  };
  return std::sqrt(mean(arrival, end)) / std::sqrt(mean(0, arrival));
}

void SacObject::FindMaximum() const {
  const auto x = samplesOf(*this);
  if (x.empty()) return;
  std::size_t best = 0;
  for (std::size_t i = 1; i < x.size(); ++i) {
    if (x[i] > x[best]) best = i;
  }
  const float time = static_cast<float>(best) * delta();
  log("Max Value: %.3e, Index: %d, Time (Relative to start): %.3f, Time (Relative to Reference): "
      "%.3f",
      static_cast<double>(x[best]), static_cast<int>(best), static_cast<double>(time),
      static_cast<double>(b() + time));
}

// The interface has this operation, which does nothing; this is intended.
void SacObject::FindMinimum() const {}

}  // namespace krosac
