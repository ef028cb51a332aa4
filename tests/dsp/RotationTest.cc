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
  const Samples away = noise(50), across = cutTo(noise(51), 50);
  for (const auto& [azimuth, otherAzimuth, baz] :
       {std::tuple{0.0f, 90.0f, 37.0f}, {123.0f, 33.0f, 180.0f}, {350.0f, 80.0f, 359.0f}}) {
    Components c(Samples(50), Samples(50), azimuth, otherAzimuth, baz);
    for (S* s : {c.first.get(), c.second.get()}) {
      const double angle = (s->componentAzimuth() - baz) * kPi / 180;
      for (int j = 0; j < 50; ++j)
        s->GetSacSeis()[j] = float(-away[j] * std::cos(angle) - across[j] * std::sin(angle));
      s->setMSeisHasChanged(s == c.second);
    }
    RotateSeismograms(*c.first, *c.second);
    EXPECT_TRUE(!c.first->mSeisHasChanged() && c.second->mSeisHasChanged()) << "as they were";
    c.first->setMSeisHasChanged(true);
    expectSamples(*c.first, Reals(away.begin(), away.end()));
    expectSamples(*c.second, Reals(across.begin(), across.end()));
    const float radial = baz > 180 ? baz - 180 : baz + 180;
    EXPECT_EQ(c.first->componentAzimuth(), radial);
    EXPECT_EQ(c.second->componentAzimuth(), radial + 90);  // up to 450
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
  // Only azimuths more than 271 degrees apart count as not orthogonal.
  for (const float apart : {45.0f, 271.0f, 271.5f})
    EXPECT_EQ(rotates({x, z, apart, 0, 10}), apart <= 271) << apart;
  // Unequal counts of equal numbers of samples, and equal counts of unequal buffers.
  const Components unequal(x, y, 0, 90, 10);
  for (const int count : {8, 9}) {
    unequal.first->setNpts(9);
    unequal.second->setNpts(count);
    EXPECT_FALSE(rotates(unequal)) << count;
  }
}

TEST(Rotation, ByAnglesAddsUp) {
  const Components pair(noise(20), cutTo(noise(21), 20), 0, kUndefined, kUndefined);
  for (const float angle : {690.0f, 120.0f})  // together a right one
    RotateSeismogramsByAngle(*pair.first, *pair.second, angle);
  Reals first, second;
  for (int j = 0; j < 20; ++j) first.push_back(noise(21)[j]), second.push_back(-noise(20)[j]);
  expectSamples(*pair.first, first);
  expectSamples(*pair.second, second);
  EXPECT_EQ(pair.first->componentAzimuth(), 0);
}

}  // namespace
}  // namespace krosac
