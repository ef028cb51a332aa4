#include "krosac/catalog/kroHypocenter.h"

#include <gtest/gtest.h>

#include <cmath>

#include "ArchivedKeys.h"
#include "CapturedLog.h"

namespace krosac {
namespace {

Ref<kroHypocenter> newEvent(std::string_view line = {}) {
  auto event = newRecord<kroHypocenter>();
  if (!line.empty()) event->parseEDRHypocenter(line);
  return event;
}

Ref<kroSeismicPhase> newPhase(const char* name, bool isFirstArrival) {
  auto phase = newRecord<kroSeismicPhase>();
  phase->setPhaseName(name);
  phase->setIsFirstArrival(isFirstArrival);
  return phase;
}

// Every column of a line is filled, so that none can be read by its neighbour.
const std::string kPlace = "38.297S9142.373W9129.5G12.345692281BCD*9",
                  kEarlier = "HY199706099235959.99&" + kPlace,
                  kLater = "HY199706109000000.00&" + kPlace,
                  kErrors = "E 10.129103.109204.209302.595.8914195.6112";

TEST(Hypocenter, ReadsBothLayoutsOfTheReport) {
  const CapturedLog log;
  const std::string unset = " -2048 -2048 -2048   0 0 0 0 (null)";
  const std::pair<std::string, std::string> cases[] = {
      {kLater, "1997-06-10 00:00:00 +0000+0 -38.297 -142.373 129.5 &G* 12.3 456 228 1BCD"},
      {kEarlier, "1997-06-09 23:59:59 +0000+990 -38.297 -142.373 129.5 &G* 2.34 456 228 BCD"},
      // Any letter but S and W is north or east.
      {"HY20040102 041503.75 17.520N  69.800w 10.00 ",
       "2004-01-02 04:15:03 +0000+750 17.52 69.8 10   0 0 0 0 (null)"},
      // A blank number repeats the one before, without its sign; without one the value stays.
      {"HY20040102 041503.75 17.520S        W",
       "2004-01-02 04:15:03 +0000+750 -17.52 -17.52 17.52   0 0 0 0 (null)"},
      {"HY20040102 041503.75       S  69.800W",
       "2004-01-02 04:15:03 +0000+750 -2048 -69.8 69.8   0 0 0 0 (null)"},
      // Read in place, a number led by a blank reads on into later columns: here hour 42.
      {"HY2004 1 2  4 5 7.5", "2004-01-02 04:05:07 +0000+500" + unset},
      {"HY", "-001-11-30 00:00:00 +0000+0" + unset},
  };
  const auto shown = [](signed char flag) { return flag ? flag : '0'; };
  for (const auto& [line, expected] : cases) {
    const auto e = newEvent(line);
    EXPECT_EQ(formatText("%s+%.4g %g %g %g %c%c%c %g %d %d %s", e->oDate()->description().c_str(),
                         double{e->msec()}, double{e->lat()}, double{e->lon()}, double{e->depth()},
                         shown(e->locQualityFlag()), shown(e->depthQualityFlag()),
                         shown(e->prelimLocFlag()), double{e->stdev()}, e->nstations(),
                         e->flinn_engdahl(), printable(e->authority())),
              expected);
    EXPECT_EQ(e->epochOTime(), e->oDate()->secondsSince1970 + double{e->msec()} * 0.001);
    EXPECT_EQ(e->originalLatitude(), e->lat() == kUnsetLocation ? 0.0f : e->lat());
    EXPECT_EQ(e->originalLongitude(), e->lon() == kUnsetLocation ? 0.0f : e->lon());
    EXPECT_EQ(e->originalDepth(), e->depth() == kUnsetLocation ? 0.0f : e->depth());
    EXPECT_EQ(e->doy(), 0);
  }
  EXPECT_EQ(newEvent(kEarlier)->name(), "E1997-06-09-23-59-59");
  EXPECT_EQ(log.texts, std::vector<std::string>{"1BCD 1BCD"}) << "of the later layout only";
}

TEST(Hypocenter, PrintsItsSummaryAndPhases) {
  const auto event = newEvent("HY20031231 235950.5  38.297N 142.373E  29.0");
  event->parseEDRErrMagInfo(kErrors);
  EXPECT_EQ(event->oTimeErr(), 10.12f);
  EXPECT_EQ(event->feGreg(), 228);
  const std::string summary =
      "Hypocenter Summary:\n\nOrigin Time:\n 2003-12-31 23:59:50 +0000 (1072915190.500000)\n\n"
      "Location:\n Latitude:   38.297N / Longitude:  142.373E / Depth  29.0 km\n"
      "  LatUnc: 103.100 km /  LonUnc:  204.200 km / DepthUnc:302.5 km\n"
      " (FE Region:19) [JAPAN - KURIL ISLANDS - KAMCHATKA PENINSULA / Near east coast of eastern "
      "Honshu]\n\nMagnitude (nObs):\n mb: 5.8 (141)\n Ms: 5.6 (112)\n\n";
  EXPECT_EQ(event->description(), summary + "\n\n") << "nothing without phases";

  const auto rayleigh = newPhase("S", false);
  event->setPhases({nullptr, newPhase("P", true), rayleigh});
  const std::string titles = "Station PhaseCode EpochTime Gcarc Azimuth Residual mb\n",
                    p = "(null)        P 0.00   0.00     0.0     0.00     0.0\n",
                    s = "(null)        S 0.00   0.00     0.0     0.00     0.0\n";
  EXPECT_EQ(event->stringWithAllPhases(), "All Phases:\n" + titles + p + s);
  EXPECT_EQ(event->description(),
            summary + "\nPrimary Phases:\n" + titles + p + "\nNo Rayleigh Observations");

  rayleigh->setPhaseName("R1");
  rayleigh->setStation(make<kroSeismicStation>());
  rayleigh->setStationCode("TLY");
  rayleigh->parseEDRSurfaceWaveRecord("M      Z 20.0    3.4                             MSZ 5.6");
  event->addPhase(nullptr);
  EXPECT_EQ(event->stringWithRayleighMeasurements(),
            "Rayleigh Measurements:\nStation PhaseCode Gcarc Azimuth Period(s) "
            "Amplitude(microns) Component Ms\n"
            "  TLY   R1   0.00     0.0  20.0        3.4 Z  5.6\n");
}

TEST(Hypocenter, Compares) {
  using H = kroHypocenter;
  const std::pair<int (H::*)(const H&) const, void (H::*)(float)> keys[] = {
      {&H::compare_mb, &H::setMb},         {&H::compare_ms, &H::setMs},
      {&H::compareDepths, &H::setDepth},   {&H::compareLatitudes, &H::setLat},
      {&H::compareLongitudes, &H::setLon},
  };
  const auto a = newEvent(), b = newEvent();
  for (const auto& [compare, set] : keys) {
    (*a.*set)(1.0f);
    (*b.*set)(2.0f);
    EXPECT_EQ(std::pair((*a.*compare)(*b), (*b.*compare)(*a)), std::pair(-1, 1));
    (*b.*set)(NAN);
    EXPECT_EQ((*a.*compare)(*b), 0);
  }
  a->setODate(Date{5.0});
  EXPECT_EQ(a->compareOriginTimes(*b), -1) << "a record without a date is last";
  b->setODate(Date{4.0});
  EXPECT_EQ(a->compareOriginTimes(*b), 1);
}

TEST(Hypocenter, OwnsItsLocationAndKeepsTheOriginal) {
  const auto event = newEvent(kEarlier);
  event->updateLat_Lon_Depth(1.0f, 2.0f, 0.5f);
  EXPECT_EQ(event->depth(), 130.0f);
  EXPECT_EQ(event->originalDepth(), 129.5f);
  const auto own = event->location(), other = own->copyWithZone();
  event->setLocation(own);
  EXPECT_EQ(event->location(), own);
  event->setLocation(other);
  other->setDepth(1.0f);
  EXPECT_EQ(event->depth(), 130.0f);
  event->setLocation(nullptr);
  event->setDepth(1.0f);
  EXPECT_EQ(event->depth(), 0.0f);
}

TEST(Hypocenter, ACopyHasWhatIsArchivedAndSharesStationsAmongItsPhases) {
  const auto event = newEvent(kEarlier);
  event->parseEDRErrMagInfo(kErrors);
  event->setDoy(161);
  event->setMw(5.5f);
  event->setMwSrc("XX");
  event->setFileList({"file"});
  event->updateOriginTimeShift(0.25f);
  event->updateOriginTimeShift(0.5f);
  EXPECT_EQ(event->originTimeShift(), 0.75f);
  const auto station = make<kroSeismicStation>();
  for (int i = 0; i < 2; ++i) {
    event->addPhase(newPhase("P", true));
    event->phases().back()->setStation(station);
  }
  expectKeys(*event,
             "location msec stdev yr month date doy hr min sec epochOTime locQualityFlag "
             "depthQualityFlag prelimLocFlag nstations flinn_engdahl feGreg feSreg authority "
             "oTimeErr latErr lonErr depthErr mb Ms nmb nMs Mw mwSrc myFERegionString oDate phases "
             "kroHypocenter");
  const auto copy = expectCopied(event);
  EXPECT_TRUE(copy->phases()[0]->station() && !(copy->phases()[0]->station() == station));
  EXPECT_EQ(copy->phases()[0]->station(), copy->phases()[1]->station());
  EXPECT_FALSE(copy->name());
  EXPECT_TRUE(copy->fileList().empty());
  EXPECT_EQ(copy->originTimeShift() + std::fabs(copy->originalLatitude()) +
                std::fabs(copy->originalLongitude()) + copy->originalDepth(),
            0.0f);
  event->setLocation(nullptr);
  EXPECT_FALSE(event->copyWithZone()->location());
}

}  // namespace
}  // namespace krosac
