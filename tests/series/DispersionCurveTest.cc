#include "krosac/series/DispersionCurve.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "TemporaryFolder.h"
#include "krosac/platform/LastReason.h"

namespace krosac {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::FloatEq;

const std::string kHeader =
    "# Group velocities   KESTRAV\n"
    "# Station       TLY 51.68 103.64 BHZ\n"
    "# Event      38.3 142.4 29.0\n"
    "# Measured with version   ab12 cd\n"
    "# 5\n# 6\n# 7\n"
    "# Mode isolation, as the measuring program wrote it    1\n"
    "# 9\n# 10\n# 11\n# 12\n";

Ref<DispersionCurve> read(const std::string& text, const std::string& name = "x.r.ga") {
  const TemporaryFolder folder;
  auto curve = make<DispersionCurve>();
  EXPECT_EQ(curve->initWithKESTRAVFile(folder.write(name, text)), curve);
  return curve;
}

TEST(DispersionCurve, ReadsHeaderAndPeriods) {
  const auto c = read(kHeader +
                      "20 19.5 3.1 3.2 -0.2 0.4 5 6\n\n  \t\n"
                      "  30 21.5 3.3 3.4 0.1 -0.1 7 8\n"
                      "40 33 3.5 3.6 -1 -2 9 10 11\n");
  EXPECT_EQ(c->nPeriods(), 3);
  EXPECT_THAT(c->fltrPeriod(), ElementsAre(20.0f, 30.0f, 40.0f));
  EXPECT_THAT(c->instPeriod(), ElementsAre(19.5f, 21.5f, 33.0f));
  EXPECT_THAT(c->smthVelocity(), ElementsAre(3.1f, 3.3f, 3.5f));
  EXPECT_THAT(c->velocity(), ElementsAre(3.2f, 3.4f, 3.6f));
  EXPECT_THAT(c->uncertainty(), ElementsAre(FloatEq(0.3f), FloatEq(0.1f), 1.5f));
  EXPECT_THAT((std::vector{c->minPeriod(), c->maxPeriod(), c->ldv(), c->hdv(), c->ramp(), c->iamp(),
                           c->slat(), c->slon(), c->elat(), c->elon(), c->edepth()}),
              ElementsAre(19.5f, 33, -1, -2, 9, 10, 51.68f, 103.64f, 38.3f, 142.4f, 29));
  EXPECT_THAT((std::vector{c->stationID(), c->channelID(), c->dataSource(), c->networkID()}),
              ElementsAre("TLY", "BHZ", "# Group velocities    ab12", std::nullopt));
  EXPECT_EQ(c->modeIsolation(), 1);
  // The azimuth from Japan to the station is north-west, that from the station to Japan east; the
  // two names are exchanged.
  EXPECT_NEAR(c->baz(), 309.092, 1e-3);
  EXPECT_NEAR(c->az(), 101.021, 1e-3);
  EXPECT_FLOAT_EQ(c->distance(), c->gcarc() * 111.19f);
}

TEST(DispersionCurve, CountsLinesAndDerivesTheWaveTypeFromTheName) {
  EXPECT_TRUE(read(kHeader, "r.ga")->wType() == 1 && read(kHeader, "TLY.r.gas")->wType() == 0);
  // Header lines without "#" count as periods; the last line is then read again for each of them.
  std::string bare = kHeader;
  std::erase(bare, '#');
  const auto c = read(bare + "20 21 3 3 0 0 0 0\n30 31 3 3 0 0 0 0", "x.l.ga");
  EXPECT_TRUE(c->wType() == 2 && c->nPeriods() == 14 && c->instPeriod()[0] == 21);
  EXPECT_THAT(c->instPeriod().subspan(1), Each(31.0f));
}

TEST(DispersionCurve, SurvivesAnyFile) {
  const std::pair<std::string, std::size_t> texts[] = {
      {"\n" + kHeader + "1 2 3 4 5 6 7 8\n", 0},
      {"  \n\n \n", 1},
      {std::string(300000, '7') + "\n" + std::string(200000, 'x'), 2},
      {std::string(5000, '\0') + "\n" + std::string(3, '\0'), 2},
      // A line too short for a field leaves this field and those behind it unset.
      {"# short\n# Station       TLY 51.68\n# Event\n#\n5\n6\n7\n8\n9\n10\n11\n12\na b", 9}};
  for (const auto& [text, periods] : texts) {
    const auto c = read(text);
    EXPECT_EQ(c->instPeriod().size(), periods) << text.substr(0, 9);
    EXPECT_LT(c->stationID().value_or("").size(), 4096u) << text.substr(0, 9);
    EXPECT_FALSE(c->channelID() || c->elat() != 0.0f) << text.substr(0, 9);
    EXPECT_THAT(c->velocity(), Each(0.0f));
  }
  EXPECT_EQ(read("# short\n2\n3\n#   26 characters in all  word")->dataSource(), "# short word");
}

TEST(DispersionCurve, ClearsEverythingAndReportsWhatItCannotRead) {
  const TemporaryFolder folder;
  const auto c = read(kHeader + "20 19.5 3.1 3.2 -0.2 0.4 5 6\n");
  EXPECT_STREQ(lastReason(), "");
  const std::vector<float> predicted = {3.5f, 3.75f};
  EXPECT_TRUE(c->setPredictedValue(predicted) && c->setMisfit(predicted));
  EXPECT_THAT(c->misfit(), ElementsAre(3.5f, 3.75f));
  c->setNetworkID("IU");
  c->setOriginalText("text");
  c->setDateMeasured(Date{1.0});
  c->setSelva(579.0f);
  for (const std::string& path :
       {folder.path("missing.l.ga"), folder.path(), folder.write("blank", "\n20 21"),
        folder.write("none", "# 1\n")}) {
    EXPECT_EQ(c->initWithKESTRAVFile(path), c);
    EXPECT_THAT(lastReason(), testing::StartsWith(path + ": "));
    EXPECT_FALSE(c->stationID() || c->channelID() || c->networkID() || c->originalText() ||
                 c->dateMeasured());
    EXPECT_THAT((std::vector{c->minPeriod(), c->maxPeriod(), c->gcarc(), c->az(), c->baz(),
                             c->slat(), c->selva(), c->elon(), c->hdv(), float(c->nPeriods())}),
                Each(0.0f));
    EXPECT_TRUE(c->instPeriod().empty() && c->predictedValue().empty() && c->misfit().empty());
  }
}

}  // namespace
}  // namespace krosac
