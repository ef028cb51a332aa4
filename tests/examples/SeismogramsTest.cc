// The examples that process seismograms.
#include <algorithm>
#include <cmath>

#include "RunExample.h"
#include "krosac/krosac.h"

namespace krosac {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

Ref<SacObject> load(const TemporaryFolder& folder, const std::string& name) {
  auto s = make<SacObject>();
  EXPECT_TRUE(s->initWithPath(folder.path(name))) << name;
  return s;
}

TEST(ProcessSac, MakesAndProcessesASampleInTheOtherByteOrder) {
  const TemporaryFolder folder;
  EXPECT_THAT(runExample(folder, "process_sac").out,
              HasSubstr("Near east coast of eastern Honshu"));
  const auto before = load(folder, "sample.SAC"), after = load(folder, "sample.SAC.processed");
  EXPECT_TRUE(before->swappedBytes() && after->swappedBytes());
  EXPECT_EQ(after->npts(), before->npts() / 2);
  EXPECT_LT(std::abs(after->smean()), 1e-3f * after->smax());
  // The strongest wave is the Rayleigh wave, at 2.9 to 4.1 km/s. P is above the noise at the time
  // of the Jeffreys-Bullen tables, which differ by 2 s.
  EXPECT_NEAR(after->distance() / after->t0(), 3.5f, 0.6f);
  EXPECT_GT(after->simpleSNR(), 2.0f);
  after->markJBTimes();
  EXPECT_NEAR(after->pTime(), before->pTime(), 4.0f);
}

TEST(SacToText, PrintsSamplesAndPicksAfterTheOrigin) {
  const TemporaryFolder folder;
  auto s = make<SacObject>();
  s->initWithCapacity(2);
  s->setDelta(0.5f);
  s->setBeginTime(10.0f);
  s->setoriginTimeOffset(4.0f);
  s->setPTime(10.5f);
  s->setTimePickKey_Value(2, 11.0f);
  s->setPickLabelKey_Value(2, "pP");
  s->setStationID("BKL");
  s->GetSacSeis()[1] = -2.5f;
  ASSERT_TRUE(s->saveToPath(folder.path("x.SAC")));
  EXPECT_EQ(runExample(folder, "sac_to_text", "x.SAC").out,
            "# BKL -12345\n6.0000 0\n6.5000 -2.5\n\n\n7.0000 \"pP\"\n6.5000 \"A\"\n");
}

TEST(MarkAndSynthesize, TheSyntheticBeginsAtTheMarkedP) {
  const TemporaryFolder folder;
  runExample(folder, "mark_and_synthesize");
  const auto marked = load(folder, "made.marked"), synthetic = load(folder, "made.synthetic");
  EXPECT_EQ(marked->pickLabelWithKey(10), "P(JB)");
  EXPECT_NEAR(marked->pTime(), 513.6f, 4.0f);  // the time of IASP91
  // The P pulse begins one sample before the mark, because of the filter, and lasts 4 s.
  const float p = marked->pTime();
  EXPECT_EQ(synthetic->ComputeMinMaxInRange(p - 60.0f, p - 0.2f), std::pair(0.0, 0.0));
  EXPECT_NE(synthetic->ComputeMinMaxInRange(p, p + 4.0f), std::pair(0.0, 0.0));
}

TEST(ReceiverFunction, FindsTheConvertedWaveAndItsMultiplesWithinOneSample) {
  const TemporaryFolder folder;
  const std::string made = runExample(folder, "receiver_function").out;
  const auto peaks = dataSetsOf(made)[""];
  // The crust is 35 km thick, with 6.3 and 3.6 km/s. The ray parameter is 0.06 s/km, the rate 20
  // samples per second. P, Ps, PpPs and PpSs + PsPs come in the order of their amplitudes.
  const double p = std::sqrt(1 / (6.3 * 6.3) - 0.06 * 0.06),
               s = std::sqrt(1 / (3.6 * 3.6) - 0.06 * 0.06);
  const double expected[][2] = {
      {0, 0.4}, {35 * (s - p), 0.12}, {35 * (s + p), 0.08}, {35 * 2 * s, -0.06}};
  ASSERT_EQ(peaks.size(), 4u) << made;
  for (int i = 0; i < 4; ++i) {
    EXPECT_NEAR(peaks[i][0], expected[i][0], 0.05);
    EXPECT_NEAR(peaks[i][1] / expected[i][1], 1, 0.15);  // the water level reduces it
  }
  EXPECT_NEAR(peaks[1].at(2), 35, 1);  // in IASP91, whose crust has 5.8 to 6.5 km/s
  const auto north = load(folder, "sample.BHN.SAC");
  north->setEventLocationLat_Lon_Depth(north->evla(), north->evlo(), 1000 * north->evdp());
  ASSERT_TRUE(north->save());
  const std::string files = "sample.BHZ.SAC sample.BHN.SAC sample.BHE.SAC";
  EXPECT_EQ(runExample(folder, "receiver_function", files).out, made) << "a depth in metres";
  const auto function = load(folder, "receiver_function.SAC");
  EXPECT_EQ(function->pickLabelWithKey(0) + function->pickLabelWithKey(1), "P35 km");
}

TEST(RecordSection, AlignsTheArrivalsOfAFolderWithTheirPredictions) {
  const TemporaryFolder folder;
  runExample(folder, "make_stations", "in 6 20000");
  // The first has its depth in metres. The time of one begins a minute after the origin; another
  // has no origin time.
  const auto first = load(folder, "in/XX.S001.BHZ.SAC"), later = load(folder, "in/XX.S004.BHZ.SAC"),
             unknown = load(folder, "in/XX.S006.BHZ.SAC");
  first->setEventLocationLat_Lon_Depth(first->evla(), first->evlo(), 1000 * first->evdp());
  later->ZeroThisTime(60.0f);
  unknown->setoriginTimeOffset(kSacUndefinedFloat);
  ASSERT_TRUE(first->save() && later->save() && unknown->save());
  const ExampleRun run = runExample(folder, "record_section", "in");
  EXPECT_EQ(run.err, "1 seismograms without origin time or distance are left out\n");
  auto sets = dataSetsOf(run.out);
  std::map<double, double> noise, signal, greatest;  // by distance
  for (const auto& sample : sets[""]) {
    const double degrees = sample[1], amplitude = std::abs(sample[2]);
    const auto p =
        std::ranges::lower_bound(sets["P"], degrees, {}, [](const auto& row) { return row[1]; });
    const double after = sample[0] - p->at(0);
    // The zero-phase filter also rings for some seconds before the arrival.
    auto& part = after > -60 && after < -14 ? noise : after > -4 && after < 40 ? signal : greatest;
    part[degrees] = std::max(part[degrees], amplitude);
  }
  EXPECT_EQ(greatest.size(), 5u);
  for (const auto& [degrees, amplitude] : greatest) {
    EXPECT_EQ(amplitude, 1.0) << degrees;
    EXPECT_GT(signal[degrees], 1.5 * noise[degrees]) << "P at " << degrees << " degrees";
  }
}

TEST(EditHeader, ChangesTheFieldsAskedForAndNothingElse) {
  if (!KROSAC_HAS_FORTRAN) GTEST_SKIP() << "not installed: Fortran";
  const TemporaryFolder folder;
  runExample(folder, "make_stations", "in 1 500");
  runExample(folder, "edit_header", "in/XX.S001.BHZ.SAC out.SAC EVDP 33.5 NZYEAR 2012 USER0 -1e-3");
  const std::string before = folder.read("in/XX.S001.BHZ.SAC"), after = folder.read("out.SAC");
  ASSERT_EQ(after.size(), before.size());
  std::vector<std::size_t> changed;
  for (std::size_t word = 0; word < after.size() / 4; ++word)
    if (after.compare(4 * word, 4, before, 4 * word, 4) != 0) changed.push_back(word);
  EXPECT_THAT(changed, ElementsAre(38, 40, 70));  // EVDP, USER0, NZYEAR
  const std::string shown = runExample(folder, "edit_header", "out.SAC").out;
  EXPECT_THAT(shown, HasSubstr("S001 BHZ\nNZYEAR          2012\n"));
  EXPECT_THAT(shown, HasSubstr("USER0  -0.100000E-02\n"));
}

}  // namespace
}  // namespace krosac
