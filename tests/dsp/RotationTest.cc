#include "krosac/dsp/Rotation.h"

#include "SpectralTraces.h"

namespace krosac {
namespace {

constexpr float kUndefined = -12345.0f;

// Horizontal components with their azimuths.
struct Components {
  Ref<S> first, second;

  Components(const Samples& x, const Samples& y, float azimuth, float otherAzimuth, float baz)
      : first(traceOf(x)), second(traceOf(y)) {
    first->setComponentAzimuth(azimuth);
    second->setComponentAzimuth(otherAzimuth);
    first->setBackazimuth(baz);
  }
};

TEST(Rotation, GivesTheMotionAwayFromTheSourceAndAcross) {
  const Samples away = noise(50), across = noise(51);
  for (const auto& [azimuth, otherAzimuth] :
       {std::pair{0.0f, 90.0f}, {123.0f, 33.0f}, {350.0f, 80.0f}}) {
    for (const float baz : {0.0f, 37.0f, 180.0f, 359.0f}) {
      SCOPED_TRACE(testing::Message() << azimuth << " " << otherAzimuth << " " << baz);
      Components c(Samples(50), Samples(50), azimuth, otherAzimuth, baz);
      for (S* s : {c.first.get(), c.second.get()}) {
        const double angle = (s->componentAzimuth() - baz) * kPi / 180;
        for (int j = 0; j < 50; ++j)
          s->GetSacSeis()[j] =
              static_cast<float>(-away[j] * std::cos(angle) - across[j] * std::sin(angle));
      }
      const bool firstHadChanged = baz > 100;
      c.first->setMSeisHasChanged(firstHadChanged);
      c.second->setMSeisHasChanged(!firstHadChanged);
      RotateSeismograms(*c.first, *c.second);
      EXPECT_EQ(c.first->mSeisHasChanged(), firstHadChanged);
      EXPECT_EQ(c.second->mSeisHasChanged(), !firstHadChanged);
      for (const auto& [s, motion] : {std::pair(c.first, away), {c.second, across}}) {
        s->setMSeisHasChanged(true);
        expectSamples(*s, Reals(motion.begin(), motion.begin() + 50), 1e-6);
      }
      const float radial = baz > 180 ? baz - 180 : baz + 180;
      EXPECT_EQ(c.first->componentAzimuth(), radial);
      EXPECT_EQ(c.second->componentAzimuth(), radial + 90);  // up to 450
    }
  }
}

TEST(Rotation, RefusesUnequalLengthsAndUnknownAzimuths) {
  const Samples x = noise(8), y = noise(9), z = cutTo(y, 8);
  const auto rotates = [](const Components& c) {
    const std::string before = imageOf(*c.first) + imageOf(*c.second);
    RotateSeismograms(*c.first, *c.second);
    return imageOf(*c.first) + imageOf(*c.second) != before;
  };
  EXPECT_FALSE(rotates({x, y, 0, 90, 10}) || rotates({x, z, kUndefined, kUndefined, 10}) ||
               rotates({x, z, 0, 90, kUndefined}));
  // Only azimuths more than 271 degrees apart count as not orthogonal.
  for (const float apart : {0.0f, 45.0f, 180.0f, 271.0f, 271.5f, 359.0f}) {
    EXPECT_EQ(rotates({x, z, 0, apart, 10}), apart <= 271) << apart;
    EXPECT_EQ(rotates({x, z, apart, 0, 10}), apart <= 271) << apart;
  }
  const Components unequal(x, y, 0, 90, 10);
  // Then unequal counts of equal numbers of samples, and equal counts of unequal buffers.
  for (const auto& [count, other] : {std::pair{8, 9}, {9, 8}, {9, 9}}) {
    unequal.first->setNpts(count);
    unequal.second->setNpts(other);
    RotateSeismogramsByAngle(*unequal.first, *unequal.second, 45);
    EXPECT_FALSE(rotates(unequal));
    expectUnchanged(*unequal.second, cutTo(y, other));
  }
  RotateSeismograms(*make<S>(), *make<S>());
}

TEST(Rotation, ByAnAngle) {
  const Samples x = noise(20), y = cutTo(noise(21), 20);
  for (const float angle : {0.0f, 90.0f, 660.0f}) {
    const double c = std::cos(angle * kPi / 180), s = std::sin(angle * kPi / 180);
    const Components pair(x, y, 0, kUndefined, kUndefined);
    RotateSeismogramsByAngle(*pair.first, *pair.second, angle);
    Reals first, second;
    for (int j = 0; j < 20; ++j) {
      first.push_back(c * x[j] + s * y[j]);
      second.push_back(c * y[j] - s * x[j]);
    }
    expectSamples(*pair.first, first, angle == 0 ? 0 : 2e-6);
    expectSamples(*pair.second, second, angle == 0 ? 0 : 2e-6);
    EXPECT_EQ(pair.first->componentAzimuth(), 0);
  }
}

}  // namespace
}  // namespace krosac
