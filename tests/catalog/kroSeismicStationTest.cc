#include "krosac/catalog/kroSeismicStation.h"

#include <gtest/gtest.h>

#include "ArchivedKeys.h"

namespace krosac {
namespace {

TEST(SeismicStation, ReadsLinesOfAStationList) {
  const std::pair<const char*, const char*> cases[] = {
      // Every column is filled, so that none can be read by its neighbour.
      {"ABCDE9123036.5S1451518.5W120.759A place", "ABCDE -12.5101 -145.255 120 A place"},
      // Any letter but S and W is north or east; leading blanks of the elevation do not count.
      {" QR5  894536.0s1790036.0E  1234 a, b ", "QR5 89.76 179.01 123 a, b "},
      // A blank longitude repeats the latitude's parts, a blank elevation the signed longitude.
      {"      123000.0          W", "(null) 12.5 -12.5 -12.5 "},
      {"                45        -99", "(null) -2048 45 -99 "},
      {"", "(null) -2048 -2048 -2048 "},
  };
  for (const auto& [line, expected] : cases) {
    const auto s = newRecord<kroSeismicStation>();
    EXPECT_TRUE(s->parseUSGSStationInfo(line));
    EXPECT_EQ(formatText("%s %g %g %g %s", printable(s->stationCode()), double{s->lat()},
                         double{s->lon()}, double{s->elevation()}, printable(s->locationString())),
              expected);
  }
}

TEST(SeismicStation, CopiesWhatItArchivesAndDescribesItself) {
  const auto station = newRecord<kroSeismicStation>();
  station->setLocationLat_Lon_Elevation(-12.5f, 142.25f, 0.5f);
  EXPECT_EQ(station->description(), " (null)   -12.500   142.250");
  station->setStationCode("ABC");
  station->setNetworkCode("II");
  station->setSensorCode("STS2");
  station->setLocationString("A place");
  station->setNChannels(3);
  station->setStartDate(Date{1.0});
  for (const char* name : {"a", "b", "a", "c"}) station->addFileName(name);
  station->removeFileName("a");

  expectKeys(*station,
             "stationCode networkCode sensorCode locationString location fileNames "
             "kroSeismicStation latitude");
  const auto copy = expectCopied(station);
  EXPECT_EQ(copy->nChannels(), 0);
  EXPECT_FALSE(copy->startDate());
  station->setElevation(2.5f);
  station->clearFileList();
  EXPECT_EQ(copy->elevation(), 0.5f);
  EXPECT_EQ(copy->fileNames(), (std::vector<std::string>{"b", "c"}));
  EXPECT_EQ(copy->numberOfFilenames(), 2u);
  copy->init();
  EXPECT_FALSE(copy->sensorCode());
  copy->setLocation(nullptr);
  copy->setLat(1.0f);
  EXPECT_EQ(copy->description(), " (null)     0.000     0.000");
}

}  // namespace
}  // namespace krosac
