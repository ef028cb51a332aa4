#include "krosac/seismogram/Rotation.h"

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <tuple>
#include <utility>

#include "krosac/seismogram/internal/SacObjectAccess.h"

namespace krosac {
namespace {

constexpr auto kDegree = static_cast<float>(kRadiansPerDegree);

struct Direction {
  explicit Direction(float degrees)
      : cosine(std::cos(degrees * kDegree)), sine(std::sin(degrees * kDegree)) {}
  float cosine, sine;
};

bool areDefined(std::initializer_list<float> values) {
  return std::ranges::none_of(values, [](float value) { return value == kSacUndefinedFloat; });
}

// Replaces each pair of samples by rotate(a, b). Returns false and changes nothing when the counts
// differ.
template <typename Rotate>
bool rotateSamples(SacObject& first, SacObject& second, Rotate rotate) {
  const auto a = samplesOf(first), b = samplesOf(second);
  if (first.npts() != second.npts() || a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i) std::tie(a[i], b[i]) = rotate(a[i], b[i]);
  first.ComputeExtrema();
  second.ComputeExtrema();
  return true;
}

}  // namespace

void RotateSeismograms(SacObject& first, SacObject& second) {
  const float azimuthA = first.componentAzimuth(), azimuthB = second.componentAzimuth(),
              baz = first.backazimuth();
  if (!areDefined({azimuthA, azimuthB, baz})) return;
  const float between = std::fabs(azimuthA - azimuthB);
  if (between - 90.0f > 1.0f && between - 270.0f > 1.0f) return;

  const Direction a(azimuthA), b(azimuthB), back(baz);
  const bool firstHadChanged = first.mSeisHasChanged(), secondHadChanged = second.mSeisHasChanged();
  const bool isRotated = rotateSamples(first, second, [&](float sampleA, float sampleB) {
    const float north = b.cosine * sampleB + a.cosine * sampleA;
    const float east = b.sine * sampleB + a.sine * sampleA;
    return std::pair(-back.cosine * north - back.sine * east,
                     -back.cosine * east + back.sine * north);
  });
  if (!isRotated) return;
  first.setMSeisHasChanged(firstHadChanged);
  second.setMSeisHasChanged(secondHadChanged);
  const float radial = baz + 180.0f > 360.0f ? baz + 180.0f - 360.0f : baz + 180.0f;
  first.setComponentAzimuth(radial);
  second.setComponentAzimuth(radial + 90.0f);
}

void RotateSeismogramsByAngle(SacObject& a, SacObject& b, float angle) {
  const Direction by(angle);
  rotateSamples(a, b, [&](float sampleA, float sampleB) {
    return std::pair(by.cosine * sampleA + by.sine * sampleB,
                     by.cosine * sampleB - by.sine * sampleA);
  });
}

}  // namespace krosac
