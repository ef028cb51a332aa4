#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "CapturedLog.h"
#include "TemporaryFolder.h"
#include "seismogram/Traces.h"

namespace krosac {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

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
  s->setPTime(61.0f);
  return s;
}

const std::string kStation =
    "\nStation ID:      TLY"
    "\nNetwork: NETWORKS"
    "\nStation  Latitude:  0.0000"
    "\nStation Longitude:  52.4000"
    "\nStation Elevation:  579.00";
const std::string kEvent =
    "\nEvent ID: 20110311"
    "\nJAPAN - KURIL ISLANDS - KAMCHATKA PENINSULA / Near east coast of eastern Honshu"
    "\nEvent Origin Time:2011 (070) 05:45:59.500"
    "\nEvent Laititude:  38.3000"
    "\nEvent Longitude:  142.4000"
    "\nEvent Depth:  29.000"
    "\nEvent Magnitude:  9.10";
const std::string kGeometry =
    "\nGreat-Circle-Arclength:  90.00"
    "\nDistance:  10007.10 km"
    "\nAzimuth:  270.00"
    "\nBackazimuth:  51.79";
const std::string kStars = "\n" + std::string(51, '*');
const std::string kDashes = "\n" + std::string(51, '-');
const std::string kLongDashes = "\n" + std::string(102, '-');

TEST(SacObjectDescriptions, OfAFullHeader) {
  const auto s = describedTrace();
  EXPECT_EQ(s->description(), kStars + "\nFile Path:\n/data/II.TLY.sac" + kDashes +
                                  "\nNpts: 5"
                                  "\ndelta: 0.500000"
                                  "\nReference Time:\n2011 (070) 05:46:23.120"
                                  "\nSeismogram Begin Time:  10.000"
                                  "\n  [2011 (070) 05:46:33.120]"
                                  "\nSeismogram End Time:  12.000"
                                  "\n  [2011 (070) 05:46:35.120]" +
                                  kDashes +
                                  "\nMinimum Value: -1.000000e+00"
                                  "\nMean    Value:  2.000000e+00"
                                  "\nMaximum Value:  5.000000e+00"
                                  "\nQuality: -2" +
                                  kDashes + kStation +
                                  "\nComponent ID: BHZ     "
                                  "\nComponent Azimuth: -0.0" +
                                  kDashes + kEvent + kDashes + kGeometry + kStars + "\n");
  EXPECT_EQ(s->stationDescription(),
            kStation + "\nStation Geographic Region:Near east coast of eastern Honshu" + kGeometry);
  EXPECT_EQ(s->eventDescription(),
            kLongDashes + "\nFile Path:\n/data/II.TLY.sac" + kLongDashes + kEvent);
  EXPECT_EQ(s->oTimeString(), "2011/03/11 05:45:59.500");
  CapturedLog captured;
  const std::string pick = "2011/03/11 05:47:24.120   38.300  142.400";
  EXPECT_EQ(s->hypoPickString(), pick);
  s->setVerbose(1);
  s->hypoPickString();
  EXPECT_THAT(captured.texts, ElementsAre(pick));
  EXPECT_STREQ(s->mySeisReferenceTime()->DOYcString(), "2011 (070) 05:46:23.120");
}

TEST(SacObjectDescriptions, WithoutAReferenceTimeAndFields) {
  const auto s = traceOf({}, 1.0f, 0.0f);
  const std::string expected = kStars + "\nFile Path:\n./" + kDashes +
                               "\nNpts: 0"
                               "\ndelta: 1.000000"
                               "\nReference Time:\n(null)"
                               "\nSeismogram Begin Time:  0.000"
                               "\n  [(null)]"
                               "\nSeismogram End Time: -1.000"
                               "\n  [(null)]" +
                               kDashes +
                               "\nMinimum Value: -1.234500e+04"
                               "\nMean    Value: -1.234500e+04"
                               "\nMaximum Value: -1.234500e+04" +
                               kDashes + kDashes + kDashes + kStars + "\n";
  EXPECT_EQ(s->description(), expected);
  EXPECT_EQ(s->stationDescription(), "");
  EXPECT_EQ(s->eventDescription(), kLongDashes + "\nFile Path:\n./" + kLongDashes);
  EXPECT_EQ(s->oTimeString(), std::nullopt);
  EXPECT_EQ(s->hypoPickString(), "NoPick");

  s->setPTime(1.0f);
  s->setoriginTimeOffset(2.0f);
  s->setPath(std::nullopt);
  s->setStationLocationLat_Lon_Elevation(1.0f, 2.0f, -12345.0f);
  EXPECT_EQ(s->oTimeString(), std::nullopt);
  EXPECT_EQ(s->hypoPickString(), "(null) -12345.000 -12345.000");
  EXPECT_EQ(s->eventDescription(),
            kLongDashes + "\nFile Path:\n(null)" + kLongDashes + "\nEvent Origin Time:(null)");
  EXPECT_EQ(s->stationDescription(),
            "\nStation  Latitude:  1.0000\nStation Longitude:  2.0000\nStation Geographic Region:");
  s->setStationID("-12345XY");  // the first six characters count
  s->setNetworkID("-1234");
  EXPECT_THAT(s->stationDescription(), testing::StartsWith("\nNetwork:    -1234\n"));
}

TEST(SacObjectDescriptions, EndAtOnceForHostileTimes) {
  TemporaryFolder folder;
  CapturedLog captured;
  for (const float hostile : {-1e30f, 1e30f, -3e38f, 3e38f}) {
    const auto s = make<SacObject>();
    const Words words = {{20, word(hostile)}, {28, word(hostile)}, {32, word(hostile)}};
    ASSERT_TRUE(s->initWithPath(folder.write("a.sac", foreign(sacImage({1, 2}, words)))));
    const std::string begin = formatText("\nSeismogram Begin Time: % .3f\n  [", double{hostile});
    EXPECT_THAT(s->description(), HasSubstr(begin));
    EXPECT_THAT(s->eventDescription(), HasSubstr("\nEvent Origin Time:"));
    EXPECT_TRUE(s->oTimeString());
    EXPECT_THAT(s->hypoPickString(), testing::EndsWith("   38.300  142.400"));
    s->ZeroStartTime();
    EXPECT_EQ(s->b(), 0.0f);
  }
}

}  // namespace
}  // namespace krosac
