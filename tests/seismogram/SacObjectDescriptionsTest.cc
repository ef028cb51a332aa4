#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "CapturedLog.h"
#include "seismogram/Traces.h"

namespace krosac {
namespace {

Ref<SacObject> describedTrace() {
  auto s = make<SacObject>();
  s->initWithNSData_withPath(bufferOf(sacImage({3, -1, 4, -1, 5})), "/data/II.TLY.sac");
  s->fixEndTime();
  s->ComputeExtrema();
  s->setIQual(-2);
  s->setStationID("TLY");
  s->setNetworkID("NETWORKS");
  s->setComponentName("BHZ     ");
  s->setComponentAzimuth(-0.04f);
  s->setEventName("20110311 Tohoku");
  s->setStationLocationLat_Lon_Elevation(0.0f, 52.4f, 579.0f);
  s->setEventLocationLat_Lon_Depth(38.3f, 142.4f, 29.0f);
  s->setMagnitude(9.1f);
  s->setoriginTimeOffset(-23.62f);
  s->setPTime(41.0f);
  return s;
}

const std::string kStars = "\n" + std::string(51, '*');
const std::string kDashes = "\n" + std::string(51, '-');
const std::string kLongDashes = "\n" + std::string(102, '-');

TEST(SacObjectDescriptions, OfAFullHeader) {
  const std::string trace = R"(
Npts: 5
delta: 0.500000
Reference Time:
2011 (070) 05:46:23.120
Seismogram Begin Time:  10.000
  [2011 (070) 05:46:33.120]
Seismogram End Time:  12.000
  [2011 (070) 05:46:35.120])",
                    amplitudes = R"(
Minimum Value: -1.000000e+00
Mean    Value:  2.000000e+00
Maximum Value:  5.000000e+00
Quality: -2)",
                    station = R"(
Station ID:      TLY
Network: NETWORKS
Station  Latitude:  0.0000
Station Longitude:  52.4000
Station Elevation:  579.00)",
                    component = "\nComponent ID: BHZ     \nComponent Azimuth: -0.0", event = R"(
Event ID: 20110311
JAPAN - KURIL ISLANDS - KAMCHATKA PENINSULA / Near east coast of eastern Honshu
Event Origin Time:2011 (070) 05:45:59.500
Event Laititude:  38.3000
Event Longitude:  142.4000
Event Depth:  29.000
Event Magnitude:  9.10)",
                    geometry = R"(
Great-Circle-Arclength:  90.00
Distance:  10007.10 km
Azimuth:  270.00
Backazimuth:  51.79)",
                    path = "\nFile Path:\n/data/II.TLY.sac",
                    region = "\nStation Geographic Region:Near east coast of eastern Honshu",
                    pick = "2011/03/11 05:47:04.120   38.300  142.400";
  const auto s = describedTrace();
  EXPECT_EQ(s->description(), kStars + path + kDashes + trace + kDashes + amplitudes + kDashes +
                                  station + component + kDashes + event + kDashes + geometry +
                                  kStars + "\n");
  EXPECT_EQ(s->stationDescription(), station + region + geometry);
  EXPECT_EQ(s->eventDescription(), kLongDashes + path + kLongDashes + event);
  EXPECT_EQ(s->oTimeString(), "2011/03/11 05:45:59.500");
  CapturedLog captured;
  EXPECT_EQ(s->hypoPickString(), pick);
  s->setVerbose(1);
  s->hypoPickString();
  EXPECT_THAT(captured.texts, testing::ElementsAre(pick));
  EXPECT_STREQ(s->mySeisReferenceTime()->DOYcString(), "2011 (070) 05:46:23.120");
}

TEST(SacObjectDescriptions, WithoutAReferenceTimeAndFields) {
  const auto s = traceOf({}, 1.0f, 0.0f);
  EXPECT_EQ(s->description(), kStars + "\nFile Path:\n./" + kDashes +
                                  "\nNpts: 0\ndelta: 1.000000\nReference Time:\n(null)"
                                  "\nSeismogram Begin Time:  0.000\n  [(null)]"
                                  "\nSeismogram End Time: -1.000\n  [(null)]" +
                                  kDashes +
                                  "\nMinimum Value: -1.234500e+04\nMean    Value: -1.234500e+04"
                                  "\nMaximum Value: -1.234500e+04" +
                                  kDashes + kDashes + kDashes + kStars + "\n");
  EXPECT_EQ(s->stationDescription(), "");
  EXPECT_EQ(s->oTimeString(), std::nullopt);
  EXPECT_EQ(s->hypoPickString(), "NoPick");

  s->setPTime(1.0f);
  s->setoriginTimeOffset(2.0f);
  s->setPath(std::nullopt);
  s->setStationLocationLat_Lon_Elevation(1.0f, 2.0f, -12345.0f);
  s->setStationID("-12345XY");  // the first six characters count
  s->setNetworkID("-1234");
  EXPECT_EQ(s->oTimeString(), std::nullopt);
  EXPECT_EQ(s->hypoPickString(), "(null) -12345.000 -12345.000");
  EXPECT_EQ(s->eventDescription(),
            kLongDashes + "\nFile Path:\n(null)" + kLongDashes + "\nEvent Origin Time:(null)");
  EXPECT_EQ(s->stationDescription(),
            "\nNetwork:    -1234\nStation  Latitude:  1.0000\nStation Longitude:  2.0000"
            "\nStation Geographic Region:");
}

TEST(SacObjectDescriptions, EndAtOnceForHostileTimes) {
  const auto s = describedTrace();
  s->setBeginTime(3e38f);
  s->setoriginTimeOffset(-1e30f);
  s->setPTime(1e30f);
  EXPECT_THAT(s->description(), testing::HasSubstr(formatText("% .3f\n  [", 3e38f)));
  EXPECT_TRUE(s->oTimeString());
  EXPECT_THAT(s->hypoPickString(), testing::EndsWith("   38.300  142.400"));
}

}  // namespace
}  // namespace krosac
