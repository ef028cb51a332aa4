// The header, the values derived from it, the reference time, and descriptions.
#include <gmock/gmock.h>

#include <limits>
#include <random>

#include "CapturedLog.h"
#include "krosac/platform/internal/Text.h"
#include "seismogram/Traces.h"

namespace krosac {
namespace {

TEST(SacObjectHeader, PicksUserValuesAndLabelsByKey) {
  constexpr std::size_t kUserLabels[] = {576, 584, 592, 440, 608, 600};
  for (int key = -1; key <= 12; ++key) {
    SCOPED_TRACE(key);
    const bool isPick = key >= 0 && key <= 11, isUser = key >= 0 && key <= 9;
    const auto k = static_cast<std::size_t>(key);
    const auto s = traceOf({});
    std::string image = imageOf(*s);
    s->setTimePickKey_Value(key, 5.5f);
    s->setUserValueKey_Value(key, 6.5f);
    s->setPickLabelKey_Value(key, "123456789");
    s->setUserValueLabelKey_Value(key, " b \t");
    if (isPick) image.replace(key == 10 ? 32 : key == 11 ? 80 : 40 + 4 * k, 4, bytesOf(5.5f));
    if (isPick) image.replace(key == 10 ? 480 : key == 11 ? 568 : 488 + 8 * k, 8, "12345678");
    if (isUser) image.replace(160 + 4 * k, 4, bytesOf(6.5f));
    if (key >= 0 && key <= 5) image.replace(kUserLabels[key], 8, {" b \t\0\0\0\0", 8});
    EXPECT_EQ(imageOf(*s), image);
    EXPECT_EQ(s->timePickKey(key), isPick ? 5.5f : -12345.0f);
    EXPECT_EQ(s->userValue(key), isUser ? 6.5f : -12345.0f);
    EXPECT_EQ(s->pickLabelWithKey(key), isPick ? "1234567" : "");  // 7 of the 8 characters
    EXPECT_EQ(s->userValueLabelWithKey(key), key >= 0 && key <= 2 ? "b" : "");
    s->clearTimePicks();
    s->clearUserValues();
    EXPECT_EQ(s->timePickKey(key) + s->userValue(key), 2 * -12345.0f);
  }
}

TEST(SacObjectHeader, ExtremaEqualThoseOfAPlainLoopToTheBit) {
  constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
  const Samples kinds[] = {{-0.0f, 0.0f, 1, 2}, {0.0f, -0.0f, -3}, {-2, 5, 0.1f}, {kNaN, 7, -7}};
  std::mt19937 random(1);
  for (std::size_t n = 1; n < 200; ++n) {
    const Samples& values = kinds[n % 4];
    Samples x(n);
    for (float& sample : x) sample = values[random() % values.size()];
    float least = x[0], greatest = x[0], sum = x[0];
    for (std::size_t i = 1; i < n; ++i) {
      if (x[i] < least) least = x[i];
      if (x[i] > greatest) greatest = x[i];
      sum += x[i];
    }
    const auto s = traceOf(x);
    s->ComputeExtrema();
    EXPECT_EQ(bytesOf(s->smin()) + bytesOf(s->smax()), bytesOf(least) + bytesOf(greatest)) << n;
    const float mean = sum / static_cast<float>(n);
    EXPECT_TRUE(s->smean() == mean || std::isnan(mean)) << n;
  }
}

TEST(SacObjectHeader, DerivedValues) {
  const auto s = traceOf({3, -1, 4, -7, 6}, 0.5f, -10.0f), undefined = traceOf({});
  s->ComputeExtrema();
  EXPECT_EQ((Samples{s->smin(), s->smax(), s->smean(), s->absMax()}), (Samples{-7, 6, 1, 7}));
  EXPECT_TRUE(s->mSeisHasChanged());
  for (const auto& [npts, power] : {std::pair(-5, 1ll), {1024, 2048}, {INT32_MAX, 1ll << 31}}) {
    s->setNpts(npts);
    EXPECT_EQ(s->nextPowerOfTwoPts(), power);
  }
  s->ComputeExtrema();  // over the samples in the buffer, not over NPTS
  EXPECT_EQ(s->smean(), 1.0f);
  s->setUserValueKey_Value(1, 30.0f);
  s->setUserValueKey_Value(2, 4.0f);
  s->setAzimuth(90.0f);
  EXPECT_NEAR(s->gamma(), 2.0, 1e-6);  // 4 cos 60 in single precision
  s->setMyReferenceDate(Date{1e9});
  s->GetSacHeader()->NZMSEC = 250;
  EXPECT_EQ(std::pair(s->epochStartTime(), s->epochEndTime()), std::pair(1e9 - 9.75, 1e9 - 7.75));
  for (const std::string kind : {"P", "SH", "R1", "G1", "SV"}) {
    s->setUserValueLabelKey_Value(0, (kind + "x").c_str());
    EXPECT_EQ((std::array{s->isP(), s->isSH(), s->isR1(), s->isG1()}),
              (std::array{kind == "P", kind == "SH", kind == "R1", kind == "G1"}));
  }
  for (const auto& [compare, set] : {std::pair(&S::compareGCarcs, &S::setGcarc),
                                     {&S::compareDistances, &S::setDistance},
                                     {&S::compareBackAzimuths, &S::setBackazimuth},
                                     {&S::compareAzimuths, &S::setAzimuth}}) {
    s->setAzimuth(-12345.0f);
    ((*s).*set)(1.0f);
    EXPECT_EQ(((*s).*compare)(*undefined), 1);
    EXPECT_EQ(((*undefined).*compare)(*s), -1);
    EXPECT_EQ(((*s).*compare)(*s), 0);
  }
}

TEST(SacObjectHeader, GeometryAndRegions) {
  const auto s = traceOf({});
  s->setEventLocationLat_Lon_Depth(38.3f, 142.4f, 29.0f);
  EXPECT_THAT(*s->flinnEngdahlString(), testing::EndsWith(" / Near east coast of eastern Honshu"));
  EXPECT_EQ(s->distance(), -12345.0f);
  s->setStationLocationLat_Lon_Elevation(0.0f, 52.4f, 579.0f);  // 90 degrees west
  EXPECT_NEAR(s->gcarc(), 90.0, 1e-4);                          // single precision: 8e-6 at 90
  EXPECT_FLOAT_EQ(s->distance(), s->gcarc() * 111.19f);
  EXPECT_NEAR(s->azimuth(), 270.0, 1e-4);
  for (const auto location :
       {&SacHeader::STLA, &SacHeader::STLO, &SacHeader::EVLA, &SacHeader::EVLO}) {
    const auto other = s->copyWithZone();
    other->GetSacHeader()->*location = -12345.0f;
    other->setAzimuth(1.0f);
    EXPECT_FALSE(other->computeDistAzBAz());
    EXPECT_EQ(other->azimuth(), 1.0f);
    other->setFlinnEngdahlRegion();
    const bool hasEvent = other->evla() > 0 && other->evlo() > 0;
    EXPECT_EQ(other->flinnEngdahlString() == "FE Region: N/A\n", !hasEvent);
    EXPECT_EQ(other->flinnEngdahlGeographicRegion() == "", !hasEvent);
  }
}

// The reference time of the header in the format of SeisTimeObject.
std::string headerTime(const S& s) {
  const SacHeader& h = *s.GetSacHeader();
  return formatText("%04d (%03d) %02d:%02d:%02d.%03d", h.NZYEAR, h.NZJDAY, h.NZHOUR, h.NZMIN,
                    h.NZSEC, h.NZMSEC);
}

Ref<SeisTimeObject> timeOf(int year, int date, int hour, int minute) {
  return make<SeisTimeObject>()->initWithValues_month_date_hour_minute_second_millisecond(
      year, 3, date, hour, minute, 3, 456);
}

// A trace of 2003-03-01, day 60, with B 10, O -20, picks of 100 plus their key and T5 undefined.
Ref<S> datedTrace() {
  const auto s = traceOf({1, 2, 3}, 0.5f, 10.0f);
  s->replaceReferenceTimeWith(timeOf(2003, 1, 1, 2));
  s->setoriginTimeOffset(-20.0f);
  for (int key = 0; key <= 11; ++key)
    s->setTimePickKey_Value(key, key == 5 ? -12345.0f : 100.0f + static_cast<float>(key));
  return s;
}

TEST(SacObjectHeader, PicksTextsAndOtherFieldsByName) {
  const auto s = datedTrace();
  EXPECT_EQ((Samples{s->t0(), s->t1(), s->t2(), s->t3(), s->t4(), s->t5(), s->t6(), s->t7(),
                     s->t8(), s->t9(), s->a(), s->pTime(), s->f(), s->fini()}),
            (Samples{100, 101, 102, 103, 104, -12345, 106, 107, 108, 109, 110, 110, 111, 111}));
  s->setEventName("0123456789ABCDEFGHI");
  s->setKHoleID(" 10\t");
  s->setKHoleID(nullptr);  // ignored
  EXPECT_EQ(s->kevnm() + " " + s->khole(), "0123456789ABCDEF 10");
  s->setComponentIncAngle(7.0f);
  s->setSrcType(8);
  EXPECT_EQ(s->GetSacHeader()->CMPINC + static_cast<float>(s->GetSacHeader()->IEVTYP), 15.0f);
}

TEST(SacObjectReferenceTime, SettingAdjustingAndMoving) {
  enum Moves { kNone, kAllButT0, kAllButF, kAll };
  static const Date date = Date::fromComponents({2003, 3, 1, 0, 1, 53});
  const std::string cut = "2003 (060) 00:01:53.000";
  const std::tuple<void (*)(S&), std::string, float, Moves> cases[] = {
      {[](S& s) { s.setReferenceTimeWithNSCalendarDate(date); }, cut, 0.0f, kNone},
      {[](S& s) { s.setReferenceTimeWithNSDate(date); }, cut, 0.0f, kNone},
      {[](S& s) { s.adjustReferenceTimeToNSCalendarDate(date); }, cut, 3610.456f, kAllButT0},
      {[](S& s) { s.adjustReferenceTimeToNSDate(date); }, cut, 3610.456f, kAllButT0},
      {[](S& s) { s.setReferenceTime(*timeOf(2003, 2, 2, 4)); }, "2003 (061) 02:04:03.456",
       -90120.0f, kAllButT0},
      // A year counts as 365 days.
      {[](S& s) { s.setReferenceTime(*timeOf(2002, 1, 1, 2)); }, "2002 (060) 01:02:03.456",
       31536000.0f, kAllButT0},
      {[](S& s) { s.shiftTimesBy(-4.0f); }, "2003 (060) 01:01:59.456", 4.0f, kAll},
      {[](S& s) { s.ZeroThisTime(2.5f); }, "2003 (060) 01:02:05.956", -2.5f, kAllButF},
      {[](S& s) { s.ZeroStartTime(); }, "2003 (060) 01:02:13.456", -10.0f, kAllButF},
      {[](S& s) { s.ZeroOriginTime(); }, "2003 (060) 01:01:43.456", 20.0f, kAllButF},
      {[](S& s) { s.ZeroPTime(); }, "2003 (060) 01:03:53.456", -110.0f, kAllButF},
      {[](S& s) { s.setDistance(60.0f), s.ReduceByVelocity(8.0f); },  // 60 / 8 - -20
       "2003 (060) 01:02:30.956", -27.5f, kAllButF}};
  for (const auto& [apply, time, shift, moves] : cases) {
    SCOPED_TRACE(testing::Message() << time << shift);
    const auto s = datedTrace();
    apply(*s);
    EXPECT_EQ(headerTime(*s), time);
    EXPECT_EQ(s->mySeisReferenceTime()->DOYcString(), time);
    EXPECT_EQ(s->mSeisHasChanged(), moves == kAllButT0);
    EXPECT_FALSE(s->myReferenceDate());
    const float ulp = 3e-4f;  // at thousands; shifts of whole days are exact
    EXPECT_NEAR(s->b(), 10 + shift, ulp);
    EXPECT_NEAR(s->e(), 11 + shift, ulp);
    EXPECT_NEAR(s->o(), -20 + shift, ulp);
    for (const int key : {0, 1, 2, 3, 4, 6, 7, 8, 9, 10, 11}) {
      const bool stays = (key == 0 && moves == kAllButT0) || (key == 11 && moves == kAllButF);
      EXPECT_NEAR(s->timePickKey(key), 100.0f + static_cast<float>(key) + (stays ? 0 : shift), ulp)
          << key;
    }
    EXPECT_EQ(s->t5(), -12345.0f);
  }
}

TEST(SacObjectReferenceTime, UndefinedTimes) {
  const auto s = datedTrace(), untimed = traceOf({1, 2, 3}, 1.0f, 10.0f);
  const auto kept = s->mySeisReferenceTime();
  s->setOriginTimeYear_Month_Day_Hour_Minutes_Seconds(2003, 2, 28, 1, 2, 63.456f);
  EXPECT_NEAR(s->o(), -86340.0f, 1e-2);  // spacing of single precision at that size
  s->replaceReferenceTimeWith(nullptr);  // leaves the header unchanged
  s->replaceReferenceTimeWith(kept);
  s->clearTimePicks();
  s->setoriginTimeOffset(-12345.0f);
  s->ZeroOriginTime();
  s->ZeroPTime();
  EXPECT_EQ(headerTime(*s), "2003 (060) 01:02:03.456");
  s->ReduceByVelocity(8.0f);
  s->setDistance(60.0f);
  s->ReduceByVelocity(8.0f);  // an undefined origin counts as 0
  EXPECT_STREQ(kept->DOYcString(), "2003 (060) 01:02:10.956");
  EXPECT_EQ((Samples{s->o(), s->a(), s->f()}), Samples(3, -12345));
  untimed->ZeroThisTime(4.0f);
  untimed->setOriginTimeYear_Month_Day_Hour_Minutes_Seconds(2000, 1, 1, 0, 0, 0.0f);
  EXPECT_EQ((Samples{untimed->b(), untimed->e(), untimed->o()}), (Samples{6, 8, -12345}));
}

const std::string kStars = "\n" + std::string(51, '*'), kDashes = "\n" + std::string(51, '-'),
                  kLongDashes = "\n" + std::string(102, '-');

TEST(SacObjectDescriptions, OfAFullHeader) {
  const auto s = make<S>();
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
  const std::string path = "\nFile Path:\n/data/II.TLY.sac", trace = R"(
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
                    region = "\nStation Geographic Region:Near east coast of eastern Honshu",
                    pick = "2011/03/11 05:47:04.120   38.300  142.400";
  EXPECT_EQ(s->description(), kStars + path + kDashes + trace + kDashes + amplitudes + kDashes +
                                  station + component + kDashes + "\nEvent ID: 20110311 Tohoku" +
                                  event + kDashes + geometry + kStars + "\n");
  EXPECT_EQ(s->stationDescription(), station + region + geometry);
  EXPECT_EQ(s->eventDescription(),
            kLongDashes + path + kLongDashes + "\nEvent ID: 20110311" + event);
  EXPECT_EQ(s->oTimeString(), "2011/03/11 05:45:59.500");
  CapturedLog captured;
  s->hypoPickString();
  s->setVerbose(1);
  EXPECT_EQ(s->hypoPickString(), pick);
  EXPECT_EQ(captured.texts, Texts{pick});
  EXPECT_STREQ(s->mySeisReferenceTime()->DOYcString(), "2011 (070) 05:46:23.120");
  s->mySeisReferenceTime()->setMDay(71);  // the day counts, not month and date
  EXPECT_THAT(s->description(), testing::HasSubstr("\nReference Time:\n2011 (071) 05:46:23.120\n"));
  EXPECT_THAT(s->eventDescription(), testing::HasSubstr("Origin Time:2011 (071) 05:45:59.500\n"));
  EXPECT_EQ(s->oTimeString(), "2011/03/12 05:45:59.500");
}

TEST(SacObjectDescriptions, OmitUndefinedFields) {
  const auto s = traceOf({});
  s->setNetworkID("-12345XY");  // only the first six characters are compared
  EXPECT_EQ(s->stationDescription() + s->hypoPickString(), "NoPick");
  EXPECT_EQ(s->oTimeString(), std::nullopt);
  EXPECT_THAT(s->description(), testing::EndsWith("Maximum Value: -1.234500e+04" + kDashes +
                                                  kDashes + kDashes + kStars + "\n"));
  s->setPTime(1.0f);
  s->setoriginTimeOffset(2.0f);
  s->setPath(std::nullopt);
  s->setStationLocationLat_Lon_Elevation(1.0f, 2.0f, -12345.0f);
  EXPECT_EQ(s->oTimeString(), std::nullopt);
  EXPECT_EQ(s->hypoPickString(), "(null) -12345.000 -12345.000");
  EXPECT_EQ(s->eventDescription(),
            kLongDashes + "\nFile Path:\n(null)" + kLongDashes + "\nEvent Origin Time:(null)");
  EXPECT_THAT(s->stationDescription(), testing::EndsWith("\nStation Geographic Region:"));
}

}  // namespace
}  // namespace krosac
