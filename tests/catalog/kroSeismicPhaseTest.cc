#include "krosac/catalog/kroSeismicPhase.h"

#include <gtest/gtest.h>

#include <cmath>
#include <tuple>

#include "ArchivedKeys.h"

namespace krosac {
namespace {

Ref<kroSeismicPhase> newPhase() {
  auto phase = newRecord<kroSeismicPhase>();
  phase->setDateYr_Month_Date(2003, 12, 31);
  return phase;
}

// Every column of a line is filled, so that none can be read by its neighbour.
constexpr const char* kPrimary = "P MAJO1iPn+    235941.259-10.4*9103.629242.110.81141.5595.9X9";
constexpr const char* kSecondary = "SKSSKS12235941.259";
constexpr const char* kSurfaceWave = "M     9Z920.11234.569N918.22111.259E919.33112.559MSZ95.6*9";

std::string timeOf(const kroSeismicPhase& p) {
  return formatText("%02d:%02d:%02d+%g %s %.2f", p.hr(), p.min(), p.sec(), double{p.msec()},
                    p.arrivalDate()->description().c_str(), p.epochArrivalTime());
}

TEST(SeismicPhase, ReadsAndDescribesArrivals) {
  const auto phase = newPhase();
  EXPECT_TRUE(phase->isAmplitudeMeasurement());
  phase->setTakeoffAngle(20.0f);
  phase->parseEDRPrimaryPhase(kPrimary);
  const auto fields = [&] {
    return formatText("%s %s %s %g %c %d %g", printable(phase->stationCode()),
                      printable(phase->phaseName()), timeOf(*phase).c_str(),
                      double{phase->mbPeriod()} * double{phase->mbAmp()}, phase->mbUsageFlag(),
                      phase->isFirstArrival(), double{phase->takeoffAngle()});
  };
  const std::string time = "23:59:41+250 2003-12-31 23:59:41 +0000 1072915181.25";
  EXPECT_EQ(fields(), "MAJO1 Pn " + time + " 12328.7 X 1 0");
  const std::string description = "       Pn 1072915181.25 103.62   242.1   -10.40 *   5.9\n";
  EXPECT_EQ(phase->description(), "(null)" + description);
  phase->setStation(make<kroSeismicStation>());
  EXPECT_EQ(phase->description(), "(null)" + description);
  phase->station()->setStationCode("TLY");
  EXPECT_EQ(phase->description(), "  TLY" + description) << "not the record's own code";
  phase->setPResFlag(0);
  EXPECT_EQ(phase->description().find('*'), std::string::npos);
  EXPECT_EQ(phase->description().size(), ("  TLY" + description).size());

  phase->parseEDRSecondaryArrivalRecord(kSecondary);
  EXPECT_EQ(fields(), "MAJO1 SKSSKS12 " + time + " 12328.7 X 0 0");
  EXPECT_EQ(phase->polarity(), 0.5f) << "as it was";
  EXPECT_EQ(phase->doy(), 0);
}

TEST(SeismicPhase, TimesOfArrivals) {
  const auto phase = newPhase();
  phase->setEpochOriginTime(1072915190.0);
  const auto primary = &kroSeismicPhase::parseEDRPrimaryPhase;
  const auto secondary = &kroSeismicPhase::parseEDRSecondaryArrivalRecord;
  const struct {
    bool (kroSeismicPhase::*parse)(std::string_view);
    const char *line, *expected;
  } cases[] = {
      // Only a primary arrival before the origin moves to the next day.
      {primary, "               000005.00", "00:00:05+0 2004-01-01 00:00:05 +0000 1072915205.00"},
      {primary, "               235950.00", "23:59:50+0 2003-12-31 23:59:50 +0000 1072915190.00"},
      {secondary, "        000005.00", "00:00:05+0 2003-12-31 00:00:05 +0000 1072828805.00"},
      // A number led by a blank reads on within the nine characters.
      {secondary, "         51 07.25", "51:01:07+250 2004-01-02 03:01:07 +0000 1073012467.25"},
      {secondary, "        1  5     8", "01:05:07+250 2003-12-31 01:05:07 +0000 1072832707.25"},
  };
  for (const auto& [parse, line, expected] : cases) {
    (*phase.*parse)(line);
    EXPECT_EQ(timeOf(*phase), expected);
  }
  EXPECT_EQ(phase->date(), 31);
}

TEST(SeismicPhase, DecodesTheCodesOfPAndPn) {
  const auto decoded = [](const std::string& code) {
    const auto phase = newPhase();
    phase->setPolarity(7.0f);
    phase->setOnset(8.0f);
    phase->setPhaseName("raw");
    phase->parsePhaseCode(code);
    return std::tuple(*phase->phaseName(), phase->polarity(), phase->onset());
  };
  const std::pair<const char*, float> motions[] = {
      {"c", 1.0f}, {"d", -1.0f}, {"+", 0.5f}, {"-", -0.5f}, {"", 0.0f}};
  for (const std::string name : {"P", "Pn"}) {
    for (const auto& [motion, polarity] : motions) {
      EXPECT_EQ(decoded("i" + name + motion), std::tuple(name, polarity, 1.0f)) << motion;
      EXPECT_EQ(decoded(" e" + name + motion + "  "), std::tuple(name, polarity, -1.0f)) << motion;
    }
    EXPECT_EQ(decoded(name), std::tuple(name, 0.0f, 0.0f));
  }
  EXPECT_EQ(decoded("(P)"), std::tuple("P", 0.0f, 0.0f));
  for (const char* code : {"pP", "(Pn)", "IPc", "iPc c", "Pc", ""})
    EXPECT_EQ(decoded(code), std::tuple("raw", 7.0f, 8.0f)) << code;
}

TEST(SeismicPhase, ReadsSurfaceWavesOverOneScratchText) {
  const std::pair<const char*, const char*> cases[] = {
      {"M      Z 20.1   23.4                             MSZ 5.6*", "Z 20.1 23.4 MSZ 5.6 *"},
      // The end of a longer field goes on the shorter one behind it.
      {"M      z 20.112345.6 n 18.2  11.25", "N 18.25 11.25 (null) 0.25  "},
      {"M      Z 20.1   23.4               e 19.3   12.5 MSH 5.6*", "E 19.33 12.5 MSH 5.632 *"},
      {kSurfaceWave, "E 19.3 3112.55 MSZ 5.63 *"},
      // Without a component too, columns 38 to 41 lie under the magnitude; the kind reads on.
      {"M      X 20.1                        9.87            5.6*", "  0 0 5.6 5.67 *"},
  };
  for (const auto& [line, expected] : cases) {
    const auto p = newPhase();
    p->setIsFirstArrival(true);
    p->parseEDRSurfaceWaveRecord(line);
    EXPECT_EQ(formatText("%c %g %g %s %g %c", p->Ms_Component() ? p->Ms_Component() : ' ',
                         double{p->Ms_Period()}, double{p->Ms_Amplitude()}, printable(p->Ms_Type()),
                         double{p->Ms_Estimate()}, p->msUsage()),
              expected);
    EXPECT_EQ(p->takeoffAngle(), 90.0f);
    EXPECT_FALSE(p->isFirstArrival());
  }
}

TEST(SeismicPhase, ArchivesAllButTheOriginTime) {
  const auto phase = newPhase();
  phase->setEpochOriginTime(5.0);
  phase->parseEDRPrimaryPhase(kPrimary);
  phase->parseEDRSurfaceWaveRecord(kSurfaceWave);
  phase->setPhaseCode("code");
  phase->setOnsetCode("onset");
  phase->setTravelTime(1.5f);
  phase->setPredictedTime(2.5f);
  phase->setDoy(365);
  phase->setStation(make<kroSeismicStation>());
  phase->setSlowness(0.1f);
  EXPECT_NEAR(phase->takeoffAngle(), std::atan(0.75) * 180.0 / M_PI, 1e-5)
      << "sides of 3, 4 and 5; single precision has 4e-6 at 37";
  expectKeys(*phase,
             "phaseCode stationCode onsetCode arrivalDate epochArrivalTime travelTime residual "
             "gcarc azimuth mbPeriod mbAmp mb msec predictedTime takeoffAngle slowness polarity "
             "onset mbUsageFlag pResFlag yr month date doy hr min sec isFirstArrival "
             "isAmplitudeMeasurement phaseName station Ms_Component Ms_Period Ms_Amplitude Ms_Type "
             "Ms_Estimate msUsage kroSeismicPhase");
  const auto copy = expectCopied(phase);
  EXPECT_EQ(copy->epochOriginTime(), 0.0);
  EXPECT_TRUE(copy->station() && !(copy->station() == phase->station()));

  phase->setTakeoffAngle(90.0f);
  EXPECT_EQ(phase->copyWithZone()->takeoffAngle(), copy->takeoffAngle()) << "from the slowness";
  phase->setSlowness(0.17f);
  EXPECT_TRUE(std::isnan(phase->takeoffAngle()));
}

}  // namespace
}  // namespace krosac
