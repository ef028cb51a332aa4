#include "krosac/dsp/Rotation.h"

#include "SpectralTraces.h"

namespace krosac {
namespace {

constexpr float kUndefined = -12345.0f;

// Horizontal components with their azimuths; neither has changed.
struct Components {
  Ref<SacObject> first, second;

  Components(const Samples& x, const Samples& y, float azimuth, float otherAzimuth, float baz)
      : first(madeTrace(x)), second(madeTrace(y)) {
    first->setComponentAzimuth(azimuth);
    second->setComponentAzimuth(otherAzimuth);
    first->setBackazimuth(baz);
  }
  std::string images() const { return imageOf(*first) + imageOf(*second); }
};

TEST(Rotation, GivesTheMotionAwayFromTheSourceAndAcross) {
  const Samples away = noise(50), across = noise(51);
  for (const auto& [azimuth, otherAzimuth] :
       {std::pair{0.0f, 90.0f}, {90.0f, 0.0f}, {123.0f, 33.0f}, {350.0f, 80.0f}}) {
    for (const float baz : {0.0f, 37.0f, 180.0f, 200.5f, 359.0f}) {
      SCOPED_TRACE(testing::Message() << azimuth << " " << otherAzimuth << " " << baz);
      Samples x, y;
      for (int j = 0; j < 50; ++j) {
        const auto along = [&](double azimuthOfSensor) {
          const double angle = (azimuthOfSensor - baz) * kPi / 180;
          return static_cast<float>(-away[j] * std::cos(angle) - across[j] * std::sin(angle));
        };
        x.push_back(along(azimuth));
        y.push_back(along(otherAzimuth));
      }
      const Components c(x, y, azimuth, otherAzimuth, baz);
      c.second->setMSeisHasChanged(true);
      RotateSeismograms(*c.first, *c.second);
      expectSamples(*c.first, Reals(away.begin(), away.end()), 1e-6);
      expectSamples(*c.second, Reals(across.begin(), across.end()), 1e-6);
      const float radial = baz > 180 ? baz - 180 : baz + 180;
      EXPECT_EQ(c.first->componentAzimuth(), radial);
      EXPECT_EQ(c.second->componentAzimuth(), radial + 90);  // up to 450
      EXPECT_FALSE(c.first->mSeisHasChanged());
      expectChanged(*c.second);  // the flag as it was, the extrema computed
    }
  }
}

TEST(Rotation, RefusesUnequalLengthsAndUnknownAzimuths) {
  const Samples x = noise(8), y = noise(9), z(y.begin(), y.begin() + 8);
  const auto rotates = [](const Components& c) {
    const std::string before = c.images();
    RotateSeismograms(*c.first, *c.second);
    return c.images() != before;
  };
  EXPECT_FALSE(rotates({x, y, 0, 90, 10}));
  EXPECT_FALSE(rotates({x, z, kUndefined, 90, 10}));
  EXPECT_FALSE(rotates({x, z, 0, kUndefined, 10}));
  EXPECT_FALSE(rotates({x, z, 0, 90, kUndefined}));
  // Only azimuths more than 271 degrees apart count as not orthogonal.
  for (const float apart : {0.0f, 45.0f, 180.0f, 271.0f})
    EXPECT_TRUE(rotates({x, z, 0, apart, 10}) && rotates({x, z, apart, 0, 10})) << apart;
  for (const float apart : {271.5f, 359.0f})
    EXPECT_FALSE(rotates({x, z, 0, apart, 10}) || rotates({x, z, apart, 0, 10})) << apart;

  const Components unequal(x, y, 0, 90, 10);
  for (const int count : {8, 9}) {  // then equal counts, of unequal buffers
    unequal.first->setNpts(count);
    const std::string before = unequal.images();
    RotateSeismogramsByAngle(*unequal.first, *unequal.second, 45);
    EXPECT_FALSE(rotates(unequal));
    EXPECT_EQ(unequal.images(), before);
  }
  RotateSeismograms(*make<SacObject>(), *make<SacObject>());
}

TEST(Rotation, ByAnAngle) {
  const double half = std::sqrt(0.5);
  const Samples x = noise(20), y = noise(21);
  for (const auto& [angle, c, s] : {std::tuple{0.0f, 1.0, 0.0},
                                    {90.0f, 0.0, 1.0},
                                    {-60.0f, 0.5, -std::sqrt(0.75)},
                                    {765.0f, half, half}}) {
    const Components pair(x, Samples(y.begin(), y.begin() + 20), 0, kUndefined, kUndefined);
    RotateSeismogramsByAngle(*pair.first, *pair.second, angle);
    Reals first, second;
    for (int j = 0; j < 20; ++j) {
      first.push_back(c * x[j] + s * y[j]);
      second.push_back(c * y[j] - s * x[j]);
    }
    expectSamples(*pair.first, first, angle == 0 ? 0 : 2e-6);
    expectSamples(*pair.second, second, angle == 0 ? 0 : 2e-6);
    expectChanged(*pair.first);
    expectChanged(*pair.second);
    EXPECT_EQ(pair.first->componentAzimuth(), 0);
  }
}

}  // namespace
}  // namespace krosac
