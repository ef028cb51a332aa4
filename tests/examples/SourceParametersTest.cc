#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <sstream>
#include <string>
#include <vector>

#include "RunExample.h"

namespace {

struct Source {
  std::vector<double> plane1, plane2;  // strike, dip, rake
  std::vector<double> t, b, p;         // azimuth, plunge
  std::vector<double> tensor;          // rr, tt, pp, rt, rp, tp
  std::vector<double> amplitudes;      // every 45 degrees
};

std::vector<double> numbersBehind(const std::string& text, const std::string& name) {
  std::istringstream in(text.substr(text.find(name) + name.size()));
  std::vector<double> numbers;
  for (double x; in >> x;) numbers.push_back(x);
  return numbers;
}

Source describe(const TemporaryFolder& folder, double strike, double dip, double rake) {
  std::ostringstream arguments;
  arguments << strike << ' ' << dip << ' ' << rake;
  const std::string out = runExample(folder, "source_parameters", arguments.str()).out;
  return {numbersBehind(out, "Plane 1"),  numbersBehind(out, "Plane 2"),
          numbersBehind(out, "T axis"),   numbersBehind(out, "B axis"),
          numbersBehind(out, "P axis"),   numbersBehind(out, "Mtp\n"),
          numbersBehind(out, "amplitude")};
}

void expectNear(const std::vector<double>& a, const std::vector<double>& b, double tolerance) {
  ASSERT_EQ(a.size(), b.size());
  for (std::size_t i = 0; i < a.size(); ++i) EXPECT_NEAR(a[i], b[i], tolerance) << i;
}

TEST(SourceParameters, BothPlanesDescribeOneSource) {
  const TemporaryFolder folder;
  const double mechanisms[][3] = {
      {203, 10, 88}, {35, 60, -110}, {300, 45, 20}, {80, 85, -5}, {120, 30, 170}};
  for (const auto& [strike, dip, rake] : mechanisms) {
    SCOPED_TRACE(strike);
    const Source one = describe(folder, strike, dip, rake);
    ASSERT_EQ(one.plane2.size(), 3u);
    expectNear(one.plane1, {strike, dip, rake}, 0.02);
    const Source two = describe(folder, one.plane2[0], one.plane2[1], one.plane2[2]);
    expectNear(two.plane2, one.plane1, 0.1);  // of angles printed to 0.01 degrees
    expectNear(two.tensor, one.tensor, 1e-3);
    expectNear(two.t, one.t, 0.05);
    expectNear(two.p, one.p, 0.05);
    // The radiation of P is that of the tensor: g M g along the ray g.
    ASSERT_EQ(one.tensor.size(), 6u);
    ASSERT_EQ(one.amplitudes.size(), 8u);
    for (int i = 0; i < 8; ++i) {
      const double azimuth = i * std::numbers::pi / 4;
      const double n = 0.5 * std::cos(azimuth), e = 0.5 * std::sin(azimuth), d = std::sqrt(0.75);
      const auto& m = one.tensor;
      EXPECT_NEAR(one.amplitudes[i],
                  m[0] * d * d + m[1] * n * n + m[2] * e * e +
                      2 * (m[3] * n * d - m[4] * e * d - m[5] * n * e),
                  2e-3);
    }
  }
}

TEST(SourceParameters, OfSimpleMechanismsAreThoseOfTheTextbooks) {
  const TemporaryFolder folder;
  const Source thrust = describe(folder, 0, 45, 90);  // on a plane that dips to the east
  expectNear(thrust.tensor, {1, 0, -1, 0, 0, 0}, 1e-3);
  EXPECT_NEAR(thrust.t[1], 90, 0.05);
  EXPECT_NEAR(std::fmod(thrust.p[0], 180), 90, 0.05);
  EXPECT_NEAR(thrust.p[1], 0, 0.05);
  expectNear(describe(folder, 0, 90, 0).tensor, {0, 0, 0, 0, 0, -1}, 1e-3);  // left-lateral
  const std::string great = runExample(folder, "source_parameters", "203 10 88 9.1").out;
  EXPECT_NEAR(numbersBehind(great, "Moment")[0] / 5.6e22, 1, 0.01);
  EXPECT_EQ(runExample(folder, "source_parameters", "203 10").exitCode, 2);
}

}  // namespace
