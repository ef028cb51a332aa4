#include "raytracing/PhaseCurve.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <utility>

namespace krosac::raytracing {
namespace {

constexpr int kSamplesPerPiece = 40;
// Distances that differ by less than this (rad; 6 mm on the ground) are the same.
constexpr double kSameDistance = 1e-9;

}  // namespace

PhaseCurve::PhaseCurve(std::vector<Leg> legs) : legs_(std::move(legs)) {
  double least = 0.0, greatest = std::numeric_limits<double>::infinity();
  std::vector<double> corners;
  for (const Leg& leg : legs_) {
    if (leg.shells->empty()) continue;
    if (leg.turns) least = std::max(least, leg.shells->bottomSlowness());
    greatest =
        std::min(greatest, leg.turns ? leg.shells->topSlowness() : leg.shells->leastSlowness());
    const auto& more = leg.shells->layerSlownesses();
    corners.insert(corners.end(), more.begin(), more.end());
  }
  if (!(least <= greatest) || !std::isfinite(greatest)) return;
  corners.insert(corners.end(), {least, greatest});
  std::erase_if(corners, [&](double p) { return p < least || p > greatest; });
  std::sort(corners.begin(), corners.end());

  samples_.push_back(sample(least));
  for (std::size_t c = 1; c < corners.size(); ++c) {
    const double from = corners[c - 1], width = corners[c] - from;
    if (width <= 0.0) continue;
    for (int i = 1; i < kSamplesPerPiece; ++i) {
      const double phase = std::numbers::pi * i / kSamplesPerPiece;
      samples_.push_back(sample(from + width * 0.5 * (1.0 - std::cos(phase))));
    }
    samples_.push_back(sample(corners[c]));
  }
  addCaustics();
}

Path PhaseCurve::path(double p) const {
  Path all;
  for (const Leg& leg : legs_) {
    const Path oneWay = leg.shells->down(p);
    all.distance += leg.ways * oneWay.distance;
    all.time += leg.ways * oneWay.time;
  }
  return all;
}

void PhaseCurve::addCaustics() {
  std::vector<Sample> caustics;
  for (std::size_t i = 1; i + 1 < samples_.size(); ++i) {
    const double before = samples_[i].distance - samples_[i - 1].distance;
    const double after = samples_[i].distance - samples_[i + 1].distance;
    if (before * after > 0.0) {
      caustics.push_back(
          extremeBetween(samples_[i - 1].p, samples_[i + 1].p, before > 0.0 ? 1.0 : -1.0));
    }
  }
  samples_.insert(samples_.end(), caustics.begin(), caustics.end());
  std::sort(samples_.begin(), samples_.end(),
            [](const Sample& a, const Sample& b) { return a.p < b.p; });
}

// The greatest (sign 1) or least (sign -1) distance between two ray parameters, by golden-section
// search.
PhaseCurve::Sample PhaseCurve::extremeBetween(double p1, double p2, double sign) const {
  constexpr double kGolden = std::numbers::phi - 1.0;
  Sample left = sample(p2 - kGolden * (p2 - p1)), right = sample(p1 + kGolden * (p2 - p1));
  while (p2 - p1 > 1e-9 * p2) {
    if (sign * left.distance > sign * right.distance) {
      p2 = right.p;
      right = left;
      left = sample(p2 - kGolden * (p2 - p1));
    } else {
      p1 = left.p;
      left = right;
      right = sample(p1 + kGolden * (p2 - p1));
    }
  }
  return sign * left.distance > sign * right.distance ? left : right;
}

// The time on the tangent to the travel-time curve, tau(p) + p distance. Since tau' = -distance,
// its error is of second order in the error of p.
Arrival PhaseCurve::arrivalOf(double p, double distance) const {
  const Path ray = path(p);
  return {p, ray.time + p * (distance - ray.distance)};
}

Arrival PhaseCurve::along(const Sample& grazing, double distance) const {
  if (distance < grazing.distance) return {grazing.p, -1.0};
  return arrivalOf(grazing.p, distance);
}

// Regula falsi (Illinois variant) between samples on both sides of the distance.
double PhaseCurve::rayParameterBetween(Sample near, Sample far, double distance) const {
  double nearMiss = near.distance - distance, farMiss = far.distance - distance;
  for (int i = 0; i < 100 && farMiss != nearMiss; ++i) {
    const double p = far.p - farMiss * (far.p - near.p) / (farMiss - nearMiss);
    const Sample tried = sample(p);
    const double miss = tried.distance - distance;
    if (std::abs(miss) < kSameDistance || p == near.p || p == far.p) return p;
    if ((miss < 0.0) == (farMiss < 0.0)) {
      nearMiss *= 0.5;
    } else {
      near = far;
      nearMiss = farMiss;
    }
    far = tried;
    farMiss = miss;
  }
  return far.p;
}

std::vector<Arrival> PhaseCurve::arrivals(double distance) const {
  std::vector<Arrival> found;
  const auto isHere = [&](const Sample& s) {
    return std::abs(s.distance - distance) < kSameDistance;
  };
  for (std::size_t i = 0; i < samples_.size(); ++i) {
    const Sample& here = samples_[i];
    if (isHere(here)) found.push_back(arrivalOf(here.p, distance));
    if (i == 0 || isHere(here) || isHere(samples_[i - 1])) continue;
    if ((samples_[i - 1].distance < distance) != (here.distance < distance)) {
      found.push_back(arrivalOf(rayParameterBetween(samples_[i - 1], here, distance), distance));
    }
  }
  return found;
}

}  // namespace krosac::raytracing
