#include "krosac/seismogram/Rotation.h"

#include "SpectralTraces.h"

namespace krosac {
namespace {

constexpr float kUndefined = -12345.0f;

struct Components {
  Ref<S> first, second;

  Components(const Samples& x, const Samples& y, float azimuth, float otherAzimuth, float baz)
      : first(traceOf(x)), second(traceOf(y)) {
    first->setComponentAzimuth(azimuth);
    second->setComponentAzimuth(otherAzimuth);
    first->setBackazimuth(baz);
  }
};

TEST(Rotation, YieldsRadialAndTransverseMotion) {
  const Samples away = noise(50), across = cutTo(noise(51), 50);
  for (const auto& [azimuth, baz, radial] :
       {std::tuple{0.0f, 37.0f, 217.0f}, {123.0f, 180.0f, 360.0f}, {350.0f, 359.0f, 179.0f}}) {
    const float angle = (azimuth - baz) * 0.017453292f, c = std::cos(angle), s = std::sin(angle);
    Samples x, y;  // y is 90 degrees clockwise from x, or counterclockwise
    for (int j = 0; j < 50; ++j) {
      x.push_back(-away[j] * c - across[j] * s);
      y.push_back((away[j] * s - across[j] * c) * (azimuth == 123.0f ? -1 : 1));
    }
    Components pair(x, y, azimuth, azimuth == 123.0f ? 33.0f : azimuth + 90, baz);
    pair.second->setMSeisHasChanged(true);
    RotateSeismograms(*pair.first, *pair.second);
    EXPECT_TRUE(!pair.first->mSeisHasChanged() && pair.second->mSeisHasChanged())
        << "the flags stay unchanged";
    pair.first->setMSeisHasChanged(true);
    expectSamples(*pair.first, Reals(away.begin(), away.end()));
    expectSamples(*pair.second, Reals(across.begin(), across.end()));
    EXPECT_EQ(pair.first->componentAzimuth(), radial);
    EXPECT_EQ(pair.second->componentAzimuth(), radial + 90);  // up to 450
  }
}

TEST(Rotation, RefusesUnequalLengthsAndUnknownAzimuths) {
  const Samples x = noise(8), y = noise(9), z = cutTo(y, 8);
  const auto rotates = [](const Components& c) {
    const std::string before = imageOf(*c.first) + imageOf(*c.second);
    RotateSeismograms(*c.first, *c.second);
    return imageOf(*c.first) + imageOf(*c.second) != before;
  };
  EXPECT_FALSE(rotates({x, z, kUndefined, kUndefined, 10}) || rotates({x, z, 0, 90, kUndefined}));
  // Only azimuths more than 271 degrees apart are refused as not orthogonal.
  for (const float apart : {45.0f, 271.0f, 271.5f})
    EXPECT_EQ(rotates({x, z, apart, 0, 10}), apart <= 271) << apart;
  // NPTS differs although the buffers do not, and the buffers differ although NPTS does not.
  const Components unequal(x, y, 0, 90, 10);
  for (const int count : {8, 9}) {
    unequal.first->setNpts(9);
    unequal.second->setNpts(count);
    EXPECT_FALSE(rotates(unequal)) << count;
  }
  RotateSeismograms(*make<S>(), *make<S>());
}

TEST(Rotation, AnglesAddUp) {
  const Components pair(noise(20), cutTo(noise(21), 20), 0, kUndefined, kUndefined);
  for (const float angle : {690.0f, 120.0f})  // together 90 degrees
    RotateSeismogramsByAngle(*pair.first, *pair.second, angle);
  Reals first, second;
  for (int j = 0; j < 20; ++j) first.push_back(noise(21)[j]), second.push_back(-noise(20)[j]);
  expectSamples(*pair.first, first);
  expectSamples(*pair.second, second);
  EXPECT_EQ(pair.first->componentAzimuth(), 0);
}

}  // namespace
}  // namespace krosac
