// The examples for travel times, sources and reports.
#include <cmath>
#include <numbers>

#include "RunExample.h"

namespace {

TEST(TravelTimeCurves, AgreeWithWhatIsKnownOfThem) {
  const TemporaryFolder folder;
  const auto surface = dataSetsOf(runExample(folder, "travel_time_curves", "0").out);
  const auto deep = dataSetsOf(runExample(folder, "travel_time_curves").out);
  EXPECT_TRUE(surface.size() == 19 && deep.size() == 19);
  const auto at = [](const auto& phases, const char* name, double degrees, int column = 1) {
    for (const auto& row : phases.at(name))
      if (row[0] == degrees) return row[column];
    return -1.0;
  };
  // SKS overtakes S at 82 to 84 degrees, PcP merges with P where the core casts its shadow, a ray
  // from surface to surface takes as long backward, and slowness is the slope of the curve.
  EXPECT_LT(at(surface, "S", 81), at(surface, "SKSac", 81));
  EXPECT_GT(at(surface, "S", 85), at(surface, "SKSac", 85));
  EXPECT_NEAR(at(surface, "P", 97), at(surface, "PcP", 97), 1.0);
  EXPECT_NEAR(at(surface, "SP", 90), at(surface, "PS", 90), 1.0);
  EXPECT_NEAR(at(surface, "P", 60.5, 2), at(surface, "P", 61) - at(surface, "P", 60), 0.01);
  for (double degrees = 30; degrees < 90; degrees += 5) {
    double before = 0;
    for (const char* name : {"P", "pP", "sP", "S", "sS"})
      EXPECT_LT(std::exchange(before, at(deep, name, degrees)), at(deep, name, degrees)) << name;
  }
}

// The numbers behind a name in what source_parameters prints.
std::vector<double> numbersBehind(const std::string& text, const std::string& name) {
  std::istringstream in(text.substr(text.find(name) + name.size()));
  return {std::istream_iterator<double>(in), {}};
}

TEST(SourceParameters, DescribeOneSourceByEitherPlane) {
  using testing::DoubleNear;
  using testing::Pointwise;
  const TemporaryFolder folder;
  for (const std::string plane : {"0 45 90", "203 10 88", "35 60 -110", "120 30 170"}) {
    SCOPED_TRACE(plane);
    const std::string out = runExample(folder, "source_parameters", plane).out;
    const auto m = numbersBehind(out, "Mtp\n"), amplitudes = numbersBehind(out, "amplitude");
    ASSERT_TRUE(m.size() == 6 && amplitudes.size() == 8);
    std::ostringstream other;
    for (const double angle : numbersBehind(out, "Plane 2")) other << angle << ' ';
    EXPECT_THAT(numbersBehind(runExample(folder, "source_parameters", other.str()).out, "Mtp\n"),
                Pointwise(DoubleNear(1e-3), m));
    // The radiation of P along a ray g is g M g, which is extreme along the axes.
    const auto along = [&](double azimuth, double plunge) {
      const double turn = std::numbers::pi / 180, d = std::sin(plunge * turn);
      const double n = std::cos(plunge * turn) * std::cos(azimuth * turn),
                   e = std::cos(plunge * turn) * std::sin(azimuth * turn);
      return m[0] * d * d + m[1] * n * n + m[2] * e * e +
             2 * (m[3] * n * d - m[4] * e * d - m[5] * n * e);
    };
    for (int i = 0; i < 8; ++i) EXPECT_NEAR(amplitudes[i], along(45 * i, 60), 2e-3);
    for (const auto& [name, extreme] : {std::pair("T axis", 1), {"B axis", 0}, {"P axis", -1}}) {
      const auto axis = numbersBehind(out, name);
      EXPECT_NEAR(along(axis.at(0), axis.at(1)), extreme, 1e-3) << name;
    }
  }
  const std::string great = runExample(folder, "source_parameters", "0 90 0 9.1").out;
  const double moment = 5.623e22;  // 10^(1.5 * 9.1 + 9.1) N m
  EXPECT_NEAR(numbersBehind(great, "Moment")[0], moment, 1e-3 * moment);
  EXPECT_THAT(numbersBehind(great, "Mtp\nN m"),
              Pointwise(DoubleNear(1e-3 * moment), {0.0, 0.0, 0.0, 0.0, 0.0, -moment}));
}

TEST(ReadEdr, PrintsAndSortsTheEventsOfAReport) {
  const TemporaryFolder folder;
  // In no order, with line ends of both kinds; the depth of the last event is not a number.
  folder.write("report",
               "P LOST\n"
               "HY20040102 041503.75 17.520S  69.800W 110.0\r\n"
               "E                           4.9  17\r\n"
               "M      Z 20.0    3.4                             MSZ 5.6\n"
               "XX\n\nXX\n"
               "HY20031231 235950.00 38.297N 142.373E  29.0\n"
               "P TLY  eP      000541.80   0.3   29.84 301.5 1.1   63.0 5.7\n"
               "S      iS      000920.50                   Lg      001144.00\n"
               "M      Z 20.0    3.4                             MSZ 5.6\n"
               "E                           5.8  41\n"
               "HY20040101 100000.00  0.500N  25.300W nan\n");
  const ExampleRun run = runExample(folder, "read_edr", "missing report");
  EXPECT_EQ(run.exitCode, 1);
  EXPECT_EQ(run.err, "missing: cannot be read\n");
  EXPECT_EQ(run.out.find("E2003-12-31-23-59-50, 4 phases\nHypocenter Summary:"), 0u);
  EXPECT_THAT(run.out, testing::HasSubstr("\n  TLY   R1  29.84   301.5  20.0        3.4 Z  5.6\n"));
  EXPECT_THAT(run.out, testing::EndsWith("By depth, km:\n"
                                         "E2003-12-31-23-59-50   29.0\n"
                                         "E2004-01-02-04-15-03  110.0\n"
                                         "E2004-01-01-10-00-00    nan\n"
                                         "By mb:\n"
                                         "E2004-01-01-10-00-00    0.0\n"
                                         "E2004-01-02-04-15-03    4.9\n"
                                         "E2003-12-31-23-59-50    5.8\n"
                                         "Skipped lines of the kind \"M \": 1\n"
                                         "Skipped lines of the kind \"P \": 1\n"
                                         "Skipped lines of the kind \"XX\": 2\n"));
}

}  // namespace
