// The table files installed with the library.
#include <gtest/gtest.h>

#include <numeric>
#include <sstream>
#include <vector>

#include "krosac/platform/Resources.h"
#include "krosac/traveltimes/JBTableObject.h"
#include "krosac/traveltimes/LocsatTTTable.h"
#include "krosac/traveltimes/PsNMOTableObject.h"
#include "krosac/traveltimes/TTTableObject.h"
#include "krosac/traveltimes/TTTables.h"
#include "models/Models.h"
#include "raytracing/Phases.h"
#include "raytracing/PsDelays.h"

namespace krosac {
namespace {

// Times computed by an independent program: phase, depth, distance, time. Its IASP91 is linear
// between nodes every 50 km, which makes its times up to 0.014 s longer; its layering adds about
// 0.005 s.
constexpr double kOtherProgram = 0.02;

constexpr char kIasp91Times[] = R"(
p 0 10 144.896  p 100 20 264.559  p 300 60 575.404  p 600 90 716.486  p 300 130 924.013
s 0 20 500.852  s 100 50 947.659  s 600 80 1224.045  s 300 140 1791.032  pcp 0 10 516.045
pcp 600 60 588.052  scs 100 30 987.080  scs 300 80 1292.547  pcs 100 20 733.897
pcs 600 50 787.201  scp 0 40 811.629  scp 300 10 661.256  pp 0 30 426.456  pp 300 100 1040.191
pp 600 160 1399.425  ss 100 60 1320.731  ss 600 170 2661.519  sp 100 60 1092.730
sp 600 110 1599.155  ps 0 40 830.249  ps 300 120 1777.616  sksac 0 80 1348.769
sksac 600 120 1423.807  sksdf 100 120 1541.219  sksdf 300 170 1565.646  pkpab 0 150 1197.579
pkpab 600 160 1174.802  pkpdf 300 130 1113.694  pkpdf 0 170 1209.116  pklikp 0 50 1021.755
pklikp 100 100 1081.049  pklikp 600 150 1117.236  lpp 100 40 467.824  lpp 600 80 793.723
lss 300 50 1024.680  lss 100 90 1458.723  lps 100 70 1234.205  lps 300 90 1463.228
lsp 100 10 165.889  lsp 600 60 729.478)";

constexpr char kJeffreysBullenTimes[] = R"(
p 0 5 77.390  p 33 10 141.725  p 317 30 342.107  p 634 100 760.409  s 0 20 495.240
s 33 60 1092.462  s 634 90 1312.322  pcp 0 10 516.899  pcp 650 60 584.885  scs 322 30 936.816
scs 650 80 1228.915  pp 0 20 290.817  pp 322 90 965.119  pp 650 170 1449.155  ss 0 60 1338.276
ss 322 120 2140.611  ss 650 50 1088.919)";

template <typename LookUp>
void expectTimes(const char* nodes, LookUp lookUp) {
  std::istringstream text(nodes);
  text.imbue(std::locale::classic());
  std::string phase;
  for (float depth, gcarc, time; text >> phase >> depth >> gcarc >> time;) {
    // The look-up clamps the depth to 0.1 km, which S crosses in 0.03 s.
    EXPECT_NEAR(lookUp(phase, gcarc, depth).time, time, kOtherProgram + (depth == 0 ? 0.03 : 0))
        << phase << ", " << depth << " km, " << gcarc << " degrees";
  }
  EXPECT_TRUE(text.eof());
}

TEST(TableData, AgreesWithAnotherProgram) {
  const auto iasp91 = make<TTTableObject>();
  ASSERT_TRUE(iasp91->init());
  expectTimes(kIasp91Times, [&](const std::string& phase, float gcarc, float depth) {
    return iasp91->GetTTPhase_GCARC_Depth(phase, gcarc, depth);
  });
  const auto jeffreysBullen = make<JBTableObject>();
  ASSERT_TRUE(jeffreysBullen->init());
  expectTimes(kJeffreysBullenTimes, [&](const std::string& phase, float gcarc, float depth) {
    return jeffreysBullen->GetJBPhase_GCARC_Depth(phase, gcarc, depth);
  });
  // Cells at the end of a branch mix no times with absent nodes.
  for (float gcarc = 0.03f; gcarc < 180; gcarc += 0.61f)
    for (float depth = 0; depth < 720; depth += 7.7f) {
      const auto pp = jeffreysBullen->GetJBPhase_GCARC_Depth("PP", gcarc, depth);
      const float p = jeffreysBullen->GetJBPhase_GCARC_Depth("P", gcarc / 2, depth).time;
      EXPECT_TRUE(pp.time == -12345 ? pp.slowness == -12345 : pp.time > p && pp.slowness > 0)
          << gcarc << " degrees, " << depth << " km: " << pp.time;
    }
}

// Tests one column of each file, cycling through the columns.
TEST(TableData, AgreesWithTheModel) {
  using namespace raytracing;
  std::istringstream phases(
      "p s pcp scs pcs scp pp ss sp ps sksac sksdf pkpab pkpdf pkikp lpp lss lps lsp");
  std::size_t column = 0;
  for (std::string phase; phases >> phase; column = (column + 1) % 18) {
    std::vector<float> table(360 * 18);
    std::int32_t rows = 0;
    ReadTTTablePhase("iasp91_", phase.c_str(), table.data(), &rows);
    ASSERT_TRUE(rows > 60 && rows <= 181) << phase;
    std::vector<double> degrees(static_cast<std::size_t>(rows));
    std::iota(degrees.begin(), degrees.end(), 0.0);
    const int depth =
        column < 2 ? 25 * static_cast<int>(column) : 50 * static_cast<int>(column - 1);
    const Beyond beyond = phase.size() == 1 ? Beyond::Diffracts : Beyond::Ends;
    const auto times = Column(iasp91(), depth).arrivals(phase, degrees, beyond);
    for (std::size_t row = 0; row < degrees.size(); ++row) {
      // Half the last digit of the files plus the rounding of floats beyond 2048 s.
      EXPECT_NEAR(table[row * 18 + column], times[row].time, 0.0005 + 0.00025) << phase << row;
    }
  }
}

TEST(TableData, MoveoutAndLocsatTablesAgreeWithModelAndTables) {
  const auto model = raytracing::iasp91();
  std::vector<double> depths(77);
  for (int i = 0; i < 77; ++i) depths[i] = 10 * i;
  const auto tables = make<PsNMOTableObject>();
  const auto phases = make<TTTableObject>();
  ASSERT_TRUE(tables->init() && phases->init());
  for (int index = 0; index < 210; ++index) {
    SCOPED_TRACE(index);
    const PsNMO& curve = tables->nmos()[index];
    ASSERT_EQ(curve.srcdepth, 50.0f * static_cast<float>(index / 14));
    ASSERT_EQ(curve.gcarc, 30.0f + 5.0f * static_cast<float>(index % 14));
    // The slowness of the table is a difference over one degree.
    const auto p = phases->GetTTPhase_GCARC_Depth("p", curve.gcarc, curve.srcdepth);
    EXPECT_NEAR(curve.pTime, p.time, curve.srcdepth == 0.0f ? 0.03 : 0.002);
    EXPECT_NEAR(curve.pRayP, p.slowness, 0.0006);
    const auto delays = raytracing::psDelays(model, curve.pRayP * raytracing::kEarthRadius, depths);
    for (int i = 0; i < 77; ++i) {
      ASSERT_TRUE(curve.z[i] == 10.0f * static_cast<float>(i) && curve.p[i] == curve.pRayP);
      ASSERT_NEAR(curve.t[i], delays[i], 0.0006) << i;  // half the last digit of the file
    }
  }
  // Commonly quoted delays of the 410 and 660 km discontinuities at 67 degrees.
  EXPECT_NEAR(tables->bilinearTimeFromDepth_SrcDepth_Gcarc(410, 0, 67), 44.1, 0.1);
  EXPECT_NEAR(tables->bilinearTimeFromDepth_SrcDepth_Gcarc(660, 0, 67), 68.1, 0.1);
  for (const std::string name : {"P", "S"}) {
    const auto table = make<LocsatTTTable>();
    table->loadTimesFromPath(pathForResource("locsat_" + name, "txt").value_or(""));
    for (const float gcarc : {1.0f, 95.0f, 130.0f})
      EXPECT_NEAR(table->GetTTimeSlownessesForGCARC_Depth(gcarc, 700).time,
                  phases->GetTTPhase_GCARC_Depth(name, gcarc, 700).time, 0.002);
  }
}

}  // namespace
}  // namespace krosac
