// Parsing, texts and archives of the records.
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <sstream>

#include "CapturedLog.h"
#include "krosac/catalog/kroHypocenter.h"
#include "krosac/catalog/kroSeismicOrigin.h"
#include "krosac/platform/internal/Text.h"

namespace krosac {
namespace {

std::string archivedBytes(const Archivable& record) {
  const auto bytes = archive(record);
  return {bytes->bytes(), bytes->bytes() + bytes->length()};
}

// A record after init.
template <typename T>
Ref<T> newRecord() {
  auto record = make<T>();
  record->init();
  return record;
}

Ref<kroHypocenter> hypocenterOf(const std::string& line) {
  auto hypocenter = newRecord<kroHypocenter>();
  hypocenter->parseEDRHypocenter(line);
  return hypocenter;
}

// These lines fill every column, so a field that is one column off reads its neighbour.
const std::string kPlace = "38.297S9142.373W9129.5G12.345692281BCD*9",
                  kEarlier = "HY199706099235959.99&" + kPlace,
                  kLater = "HY199706109000000.00&" + kPlace,
                  kErrors = "E 10.129103.109204.209302.595.8914195.6112",
                  kPrimary = "P MAJO1iPn+    235941.259-10.4*9103.629242.110.81141.5595.9X9",
                  kSecondary = "SKSSKS12235941.259",
                  kSurfaceWave = "M     9Z920.11234.569N918.22111.259E919.33112.559MSZ95.6*9",
                  kStation = "ABCDE9123036.5S1451518.5W120.759A place";

char shown(signed char flag) {
  return flag ? flag : '0';
}

std::string hypocenter(const std::string& line) {
  const auto e = hypocenterOf(line);
  return formatText("%.2f %g %g %g %c%c%c %g %d %d %s", e->epochOTime(), double{e->lat()},
                    double{e->lon()}, double{e->depth()}, shown(e->locQualityFlag()),
                    shown(e->depthQualityFlag()), shown(e->prelimLocFlag()), double{e->stdev()},
                    e->nstations(), e->flinn_engdahl(), printable(e->authority()));
}

template <bool (kroSeismicPhase::*kParse)(std::string_view)>
std::string arrival(const std::string& line) {
  const auto p = newRecord<kroSeismicPhase>();
  p->setDateYr_Month_Date(2003, 12, 31);
  p->setEpochOriginTime(1072915190.0);
  p->setIsFirstArrival(kParse != &kroSeismicPhase::parseEDRPrimaryPhase);
  (*p.*kParse)(line);
  return formatText("%s %s %.2f %.2f %d", printable(p->stationCode()), printable(p->phaseName()),
                    p->arrivalDate()->secondsSince1970, p->epochArrivalTime(), p->isFirstArrival());
}
const auto primary = arrival<&kroSeismicPhase::parseEDRPrimaryPhase>,
           secondary = arrival<&kroSeismicPhase::parseEDRSecondaryArrivalRecord>;

std::string surfaceWave(const std::string& line) {
  const auto p = newRecord<kroSeismicPhase>();
  p->setIsFirstArrival(true);
  p->parseEDRSurfaceWaveRecord(line);
  return formatText("%c %g %g %s %g %c %g %d", shown(p->Ms_Component()), double{p->Ms_Period()},
                    double{p->Ms_Amplitude()}, printable(p->Ms_Type()), double{p->Ms_Estimate()},
                    p->msUsage(), double{p->takeoffAngle()}, p->isFirstArrival());
}

std::string station(const std::string& line) {
  const auto s = newRecord<kroSeismicStation>();
  s->parseUSGSStationInfo(line);
  return formatText("%s %g %g %g %s", printable(s->stationCode()), double{s->lat()},
                    double{s->lon()}, double{s->elevation()}, printable(s->locationString()));
}

TEST(Records, ReadTheirLines) {
  const CapturedLog log;
  const std::string none = "   0 0 0 0 (null)";
  const std::tuple<std::string (*)(const std::string&), std::string, std::string> cases[] = {
      {hypocenter, kLater, "865900800.00 -38.297 -142.373 129.5 &G* 12.3 456 228 1BCD"},
      {hypocenter, kEarlier, "865900799.99 -38.297 -142.373 129.5 &G* 2.34 456 228 BCD"},
      // Any letter except S and W means north or east.
      {hypocenter, "HY19700102 000003.75 17.520N  69.800w 10.00 ", "86403.75 17.52 69.8 10" + none},
      // A blank number repeats the previous one without its sign; a blank first number is kept.
      {hypocenter, "HY19700102 000003.75 17.52 S        W", "86403.75 -17.52 -17.52 17.52" + none},
      {hypocenter, "HY19700102 000003.75       S  69.800W", "86403.75 -2048 -69.8 69.8" + none},
      // Scanned in place, a number with a leading blank reads on into later columns: here hour 42.
      {hypocenter, "HY1970 1 2  4 5 7.5", "101107.50 -2048 -2048 -2048" + none},
      {hypocenter, "HY", "-62169984000.00 -2048 -2048 -2048" + none},
      // Only a primary arrival before the origin is moved to the next day.
      {primary, kPrimary, "MAJO1 Pn 1073001581.25 1073001581.25 1"},
      {primary, "               235950.00", "(null) (null) 1072915190.00 1072915190.00 1"},
      {secondary, kSecondary, "(null) SKSSKS12 1072915181.00 1072915181.25 0"},
      // A number with a leading blank reads on within the nine characters.
      {secondary, "         51 07.25", "(null) (null) 1073012467.00 1073012467.25 0"},
      {secondary, "        1  5     8", "(null) (null) 1072832700.00 1072832700.00 0"},
      {surfaceWave, "M      Z 20.1   23.4                             MSZ 5.6*",
       "Z 20.1 23.4 MSZ 5.6 * 90 0"},
      // The end of a longer field extends the shorter one behind it.
      {surfaceWave, "M      z 20.112345.6 n 18.2  11.25", "N 18.25 11.25 (null) 0.25   90 0"},
      {surfaceWave, kSurfaceWave, "E 19.3 3112.55 MSZ 5.63 * 90 0"},
      // Columns 38 to 41 lie under the magnitude without a component too; the type reads on.
      {surfaceWave, "M" + std::string(36, ' ') + "9.87            5.6*", "0 0 0 5.6 5.67 * 90 0"},
      {station, kStation, "ABCDE -12.5101 -145.255 120 A place"},
      // Leading blanks of the elevation do not count. A line ends at a line break or NUL.
      {station, " QR5  894536.0s1790036.0E  1234 a, b \r c", "QR5 89.76 179.01 123 a, b "},
      {station, std::string("      \0 12", 10), "(null) -2048 -2048 -2048 "},
      // A blank longitude repeats the latitude's parts, a blank elevation the signed longitude.
      {station, "      123000.0          W\n   1234", "(null) 12.5 -12.5 -12.5 "},
      {station, "                45        -99", "(null) -2048 45 -99 "}};
  for (const auto& [parsed, line, expected] : cases) EXPECT_EQ(parsed(line), expected) << line;
  EXPECT_EQ(log.texts, std::vector<std::string>{"1BCD 1BCD"}) << "only the later layout logs";
}

TEST(Hypocenter, PrintsItsSummaryAndPhases) {
  const auto event = hypocenterOf("HY20031231 235950.5  38.297N 142.373E  29.0");
  event->parseEDRErrMagInfo(kErrors);
  const std::string summary =
      "Hypocenter Summary:\n\nOrigin Time:\n 2003-12-31 23:59:50 +0000 (1072915190.500000)\n\n"
      "Location:\n Latitude:   38.297N / Longitude:  142.373E / Depth  29.0 km\n"
      "  LatUnc: 103.100 km /  LonUnc:  204.200 km / DepthUnc:302.5 km\n"
      " (FE Region:19) [JAPAN - KURIL ISLANDS - KAMCHATKA PENINSULA / Near east coast of eastern "
      "Honshu]\n\nMagnitude (nObs):\n mb: 5.8 (141)\n Ms: 5.6 (112)\n\n";
  EXPECT_EQ(event->description(), summary + "\n\n") << "no phases";
  const auto p = newRecord<kroSeismicPhase>(), rayleigh = newRecord<kroSeismicPhase>();
  p->setDateYr_Month_Date(1970, 1, 1);
  p->parseEDRPrimaryPhase(kPrimary);
  p->setStation(newRecord<kroSeismicStation>());
  p->station()->setStationCode("TLY");  // printed instead of the record's own code
  rayleigh->setPhaseName("S");
  event->setPhases({nullptr, p, rayleigh});
  event->addPhase(nullptr);
  const std::string titles = "Station PhaseCode EpochTime Gcarc Azimuth Residual mb\n",
                    arrival = "  TLY       Pn 86381.25 103.62   242.1   -10.40 *   5.9\n";
  EXPECT_EQ(event->stringWithAllPhases(),
            "All Phases:\n" + titles + arrival +
                "(null)        S 0.00   0.00     0.0     0.00     0.0\n");
  EXPECT_EQ(event->description(),
            summary + "\nPrimary Phases:\n" + titles + arrival + "\nNo Rayleigh Observations");
  rayleigh->setPhaseName("R1");
  rayleigh->setStation(make<kroSeismicStation>());
  rayleigh->setStationCode("TLY");
  rayleigh->parseEDRSurfaceWaveRecord("M      Z 20.0    3.4                             MSZ 5.6");
  EXPECT_EQ(event->stringWithRayleighMeasurements(),
            "Rayleigh Measurements:\nStation PhaseCode Gcarc Azimuth Period(s) "
            "Amplitude(microns) Component Ms\n"
            "  TLY   R1   0.00     0.0  20.0        3.4 Z  5.6\n");
}

TEST(Hypocenter, Compares) {
  using H = kroHypocenter;
  const auto a = newRecord<H>(), b = newRecord<H>();
  a->setODate(Date{5.0});
  EXPECT_EQ(a->compareOriginTimes(*b), -1) << "a record without a date comes last";
  for (const float value : {2.0f, NAN}) {  // NaN compares equal to everything
    a->setMb(1.0f), b->setMb(value);
    a->setMs(value), b->setMs(1.0f);
    a->setLat(1.0f), b->setLat(value);
    a->setLon(value), b->setLon(1.0f);
    a->setDepth(1.0f), b->setDepth(value);
    const int less = value == 2.0f ? -1 : 0;
    EXPECT_EQ((std::array{a->compare_mb(*b), b->compare_ms(*a), a->compareLatitudes(*b),
                          b->compareLongitudes(*a), a->compareDepths(*b), -b->compareDepths(*a)}),
              (std::array{less, less, less, less, less, less}));
  }
  b->setODate(Date{4.0});
  EXPECT_EQ(a->compareOriginTimes(*b), 1);
}

TEST(Hypocenter, OwnsItsLocationAndKeepsTheOriginal) {
  const auto event = hypocenterOf(kEarlier);
  event->updateLat_Lon_Depth(1.0f, 2.0f, 0.5f);
  event->updateOriginTimeShift(0.25f);
  const auto own = event->location(), other = own->copyWithZone();
  EXPECT_EQ((std::vector{own->latitude(), own->longitude(), own->depth(), own->elevation()}),
            (std::vector{-37.297f, -140.373f, 130.0f, -0.5f}));  // not minus the new depth
  EXPECT_EQ(
      (std::vector{event->originalLatitude(), event->originalLongitude(), event->originalDepth()}),
      (std::vector{-38.297f, -142.373f, 129.5f}));
  event->setLocation(own);
  EXPECT_EQ(event->location(), own);
  event->setLocation(other);
  other->setDepth(1.0f);
  EXPECT_EQ(event->depth(), 130.0f);
  event->setLocation(nullptr);
  event->setDepth(1.0f);
  EXPECT_EQ(event->depth(), 0.0f);
  EXPECT_FALSE(event->copyWithZone()->location());
  EXPECT_EQ(event->originTimeShift(), 0.25f);
  event->parseEDRHypocenter(kEarlier);
  EXPECT_EQ(event->originTimeShift(), 0.0f);
}

TEST(SeismicPhase, DecodesTheCodesOfPAndPn) {
  const auto expectDecoded = [](const std::string& code, const std::string& name, float polarity,
                                float onset) {
    const auto phase = newRecord<kroSeismicPhase>();
    phase->setPolarity(7.0f);
    phase->setOnset(8.0f);
    phase->setPhaseName("raw");
    phase->parsePhaseCode(code);
    EXPECT_EQ(std::tuple(*phase->phaseName(), phase->polarity(), phase->onset()),
              std::tuple(name, polarity, onset))
        << code;
  };
  const std::pair<const char*, float> motions[] = {
      {"c", 1}, {"d", -1}, {"+", 0.5f}, {"-", -0.5f}, {"", 0}};
  for (const std::string name : {"P", "Pn"}) {
    for (const auto& [motion, polarity] : motions) {
      expectDecoded("i" + name + motion, name, polarity, 1);
      expectDecoded(" e" + name + motion + "  ", name, polarity, -1);
    }
    expectDecoded(name, name, 0, 0);
  }
  expectDecoded("(P)", "P", 0, 0);
  for (const char* code : {"pP", "(Pn)", "IPc", "iPc c", "Pc", ""})
    expectDecoded(code, "raw", 7, 8);
}

TEST(GeoLocation, MeasuresFromItselfToAnotherPoint) {
  // The flattening has no effect along the equator and toward the pole; 1e-5 is the precision of a
  // float.
  const auto location = make<kroGeoLocation>();
  EXPECT_NEAR(location->gcarcToLat_Lon(0.0f, 45.0f), 45.0f, 1e-5f);
  EXPECT_NEAR(location->azToLat_Lon(0.0f, 45.0f), 90.0f, 1e-5f);
  EXPECT_NEAR(location->azToLat_Lon(-89.0f, 0.0f), 180.0f, 2e-5f);
}

// Returns a copy of a record and checks that it archives to the same bytes, which hold these names
// (keys and classes of less than 24 characters) as CBOR texts: 0x60 plus the length, then the name.
template <typename T>
Ref<T> copied(const Ref<T>& record, const std::string& names) {
  const std::string archived = archivedBytes(*record);
  std::istringstream words(names);
  for (std::string name; words >> name;) {
    const std::string text = static_cast<char>(0x60 + name.size()) + name;
    EXPECT_NE(archived.find(text), std::string::npos) << name;
  }
  const auto copy = record->copyWithZone();
  EXPECT_EQ(archivedBytes(*copy), archivedBytes(*record));
  return copy;
}

TEST(Records, ArchiveTheirFieldsUnderTheirKeys) {
  const auto station = newRecord<kroSeismicStation>();
  station->parseUSGSStationInfo(kStation);
  station->setNetworkCode("II");
  station->setSensorCode("STS2");
  station->setLocationLat_Lon_Elevation(-12.5f, 142.25f, 0.5f);
  for (const char* name : {"a", "b", "a", "c"}) station->addFileName(name);
  station->removeFileName("a");
  const auto sameStation = copied(
      station,
      "stationCode networkCode sensorCode locationString "
      "location fileNames kroSeismicStation latitude longitude elevation depth kroGeoLocation");
  station->setElevation(7.0f);
  EXPECT_EQ(sameStation->elevation(), 0.5f);
  EXPECT_EQ(sameStation->description(), " ABCDE   -12.500   142.250");
  EXPECT_EQ(sameStation->fileNames(), (std::vector<std::string>{"b", "c"}));

  const auto origin = newRecord<kroSeismicOrigin>();
  EXPECT_EQ(origin->location()->latitude(), kUnsetLocation);
  origin->setEpochtime(1299822383.25);
  copied(origin, "location originDateTime epochtime kroSeismicOrigin latitude");
  origin->setOriginDateTime(Date{7.0});
  EXPECT_EQ(origin->copyWithZone()->originDateTime(), Date{1299822383.25}) << "as the epoch time";

  const auto phase = newRecord<kroSeismicPhase>();
  EXPECT_TRUE(phase->isAmplitudeMeasurement());
  phase->setTakeoffAngle(20.0f);
  phase->parseEDRPrimaryPhase(kPrimary);
  EXPECT_EQ(phase->takeoffAngle(), 0.0f);
  phase->parseEDRSurfaceWaveRecord(kSurfaceWave);
  phase->setPhaseCode("code");
  phase->setOnsetCode("onset");
  phase->setStation(station);
  phase->setSlowness(0.1f);
  const auto samePhase =
      copied(phase,
             "phaseCode stationCode onsetCode arrivalDate epochArrivalTime travelTime residual "
             "gcarc azimuth mbPeriod mbAmp mb msec predictedTime takeoffAngle slowness polarity "
             "onset mbUsageFlag pResFlag yr month date doy hr min sec isFirstArrival "
             "isAmplitudeMeasurement phaseName station Ms_Component Ms_Period Ms_Amplitude Ms_Type "
             "Ms_Estimate msUsage kroSeismicPhase");
  EXPECT_EQ(samePhase->description(), phase->description());
  EXPECT_EQ(std::pair(samePhase->polarity(), samePhase->onset()), std::pair(0.5f, 1.0f));
  EXPECT_EQ(std::pair(samePhase->mbPeriod(), samePhase->mbAmp()), std::pair(10.8f, 1141.55f));
  EXPECT_TRUE(samePhase->station() && !(samePhase->station() == station));
  phase->setTakeoffAngle(90.0f);  // restored from the slowness: a triangle of 3, 4 and 5
  EXPECT_NEAR(phase->copyWithZone()->takeoffAngle(), std::atan(0.75) * 180.0 / M_PI, 1e-5);
  phase->setSlowness(0.17f);
  EXPECT_TRUE(std::isnan(phase->takeoffAngle()));

  const auto event = hypocenterOf(kEarlier);
  event->parseEDRErrMagInfo(kErrors);
  event->setMwSrc("XX");
  event->setFileList({"file"});
  event->setPhases({phase, phase->copyWithZone()});
  event->phases()[1]->setStation(station);
  const auto sameEvent =
      copied(event,
             "location msec stdev yr month date doy hr min sec epochOTime locQualityFlag "
             "depthQualityFlag prelimLocFlag nstations flinn_engdahl feGreg feSreg authority "
             "oTimeErr latErr lonErr depthErr mb Ms nmb nMs Mw mwSrc myFERegionString oDate phases "
             "kroHypocenter");
  EXPECT_EQ(sameEvent->description(), event->description());
  EXPECT_EQ(event->name(), "E1997-06-09-23-59-59");
  EXPECT_TRUE(!sameEvent->name() && sameEvent->fileList().empty() &&
              sameEvent->originalDepth() == 0);
  EXPECT_EQ(sameEvent->phases()[0]->station(), sameEvent->phases()[1]->station()) << "shared";
}

}  // namespace
}  // namespace krosac
