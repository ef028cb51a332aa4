#include <cmath>

#include "krosac/platform/internal/Text.h"
#include "krosac/traveltimes/PsNMOTableObject.h"
#include "traveltimes/TableFolder.h"

namespace krosac {
namespace {

TEST(PsNMO, FindsCurves) {
  const float cases[][5] = {{0, 30, 0, 0, 0},           {24.9f, 32.4f, 0, 0, 0},
                            {25, 32.5f, 15, 0, 0},      {700, 95, 209, 14, 13},
                            {701, 50, -1, -1, 4},       {kNaN, 50, -1, -1, 4},
                            {-0.1f, 95.1f, -1, -1, -1}, {50, 29.9f, -1, 1, -1}};
  for (const auto& [depth, gcarc, closest, above, before] : cases) {
    EXPECT_EQ(psNMOCurveIndexClosestTo(depth, gcarc), closest) << depth << " " << gcarc;
    EXPECT_EQ(psNMOCurveIndexClosestButShallowerThan(depth), above) << depth;
    EXPECT_EQ(psNMOCurveIndexClosestButLessThan(gcarc), before) << gcarc;
  }
}

TEST(PsNMO, InterpolatesAlongACurve) {
  // Delays of 0.1 s per km down to 300 km, then 0.2 s per km.
  PsNMO curve{};
  for (int i = 0; i < 77; ++i) {
    curve.z[i] = float(10 * i);
    curve.t[i] = float(i <= 30 ? i : 2 * i - 30);
  }
  const float pairs[][2] = {{5, 0.5f}, {295, 29.5f}, {310, 32}, {760, 122}, {800, 130}};
  for (const auto& [depth, time] : pairs) {
    EXPECT_NEAR(timeFromDepth(depth, curve), time, 1e-5 * time);
    EXPECT_NEAR(depthFromTime(time, curve), depth, 1e-5 * depth);
  }
  EXPECT_TRUE(depthFromTime(-1, curve) == kNone && timeFromDepth(kNaN, curve) == kNone);
  // Extrapolates from the first two points.
  for (float& z : curve.z) z += 10;
  EXPECT_NEAR(timeFromDepth(5, curve), -0.5, 1e-6);
  EXPECT_EQ(timeFromDepth(0, curve), 0.0f);
}

// Delays of depth / 10 * (1 + i + k / 2) at source depth i and distance k.
std::string curves(int count, int points) {
  std::string text;
  for (int c = 0; c < count; ++c) {
    const int i = c / 14, k = c % 14;
    text += formatText(">%d %d 500 0.06\n", 50 * i, 30 + 5 * k);
    for (int n = 0; n < points; ++n)
      text += formatText("%d %f 0.06\n", 10 * n, n * (1 + i + 0.5 * k));
  }
  return text;
}

TEST(PsNMO, InterpolatesBetweenCurves) {
  const TableFolder folder;
  folder.write("PsNMO.txt", curves(210, 77));
  const auto tables = make<PsNMOTableObject>();
  ASSERT_TRUE(tables->init());
  const PsNMO curve = tables->FetchNMOForSrcDepth_Gcarc(330, 48);
  EXPECT_TRUE(curve.srcdepth == 350.0f && curve.gcarc == 50.0f);
  EXPECT_EQ(tables->FetchNMOForSrcDepth_Gcarc(800, 48).srcdepth, kNone);
  // Delays are linear in source depth and distance, up to the far edges of the grid.
  for (const float srcdepth : {0.0f, 20.0f, 700.0f}) {
    for (const float gcarc : {30.0f, 47.0f, 95.0f}) {
      const double expected = 10.5 * (1 + srcdepth / 50 + (gcarc - 30) / 10);
      EXPECT_NEAR(tables->bilinearTimeFromDepth_SrcDepth_Gcarc(105, srcdepth, gcarc), expected,
                  1e-5 * expected);
      EXPECT_FALSE(std::isfinite(tables->bilinearDepthFromTime_SrcDepth_Gcarc(5, srcdepth, gcarc)))
          << "the weights are divided by 0";
    }
  }
  const float cases[][4] = {{0, 900, 50, 0},        {-1, 100, 50, kNone},   {kNaN, 100, 50, kNone},
                            {5, 700.1f, 50, kNone}, {5, 100, 29.9f, kNone}, {5, kNaN, 50, kNone}};
  for (const auto& [value, srcdepth, gcarc, result] : cases) {
    EXPECT_EQ(tables->bilinearTimeFromDepth_SrcDepth_Gcarc(value, srcdepth, gcarc), result);
    EXPECT_EQ(tables->bilinearDepthFromTime_SrcDepth_Gcarc(value, srcdepth, gcarc), result);
  }
}

TEST(PsNMO, ReadsBlocksWithinLimits) {
  const TableFolder folder;
  std::int32_t count = -5;
  // A 78th point is read as the header of a curve.
  for (const auto& [text, expected] : {std::pair{curves(230, 77), 209},
                                       {curves(1, 80), 1},
                                       {curves(1, 77) + "> 50 30 5", 0},
                                       {">\xff 1 2 3", -1}}) {
    folder.write("own.txt", text);
    std::vector<PsNMO> records(211);
    records[210].gcarc = -7;
    ReadPsDelayTable("own", records.data(), &count);
    EXPECT_EQ(count, expected) << text.substr(0, 9);
    EXPECT_TRUE(records[210].gcarc == -7 && records[0].t[4] == (expected < 0 ? 0 : 4));
  }
  for (const char* name : {"none", (const char*)nullptr})
    EXPECT_EQ(printedBy([&] { ReadPsDelayTable(name, nullptr, &count); }),
              "|Sorry, can't open the Ps Travel Time Table file.\n");
}

}  // namespace
}  // namespace krosac
