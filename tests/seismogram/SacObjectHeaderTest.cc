#include <gtest/gtest.h>

#include <cmath>
#include <cstring>

#include "seismogram/Traces.h"

namespace krosac {
namespace {

TEST(SacObjectHeader, NumbersByTheirPlaceInTheFile) {
  const auto s = traceOf({});
  auto* words = reinterpret_cast<std::int32_t*>(s->myData()->mutableBytes());
  for (int place = 0; place < 110; ++place)
    words[place] = place < 70 ? std::bit_cast<std::int32_t>(static_cast<float>(place)) : place;
  EXPECT_EQ(
      (Samples{s->delta(), s->smin(),  s->smax(), s->b(),  s->e(),  s->o(),  s->originTimeOffset(),
               s->a(),     s->pTime(), s->t0(),   s->t1(), s->t2(), s->t3(), s->t4(),
               s->t5(),    s->t6(),    s->t7(),   s->t8(), s->t9(), s->f(),  s->fini()}),
      (Samples{0, 1, 2, 5, 6, 7, 7, 8, 8, 10, 11, 12, 13, 14, 15, 16, 17, 18, 19, 20, 20}));
  EXPECT_EQ(
      (Samples{s->stla(), s->stlo(), s->evla(), s->evlo(), s->evdp(), s->distance(), s->azimuth(),
               s->backazimuth(), s->gcarc(), s->smean(), s->componentAzimuth()}),
      (Samples{31, 32, 35, 36, 38, 50, 51, 52, 53, 56, 57}));
  EXPECT_EQ(std::pair(s->npts(), s->iqual()), std::pair(79, 93));

  std::string image = imageOf(*s);
  s->setDelta(1000);
  s->setBeginTime(1005);
  s->setEndTime(1006);
  s->setoriginTimeOffset(1007);
  s->setPTime(1008);
  s->setMagnitude(1039);
  s->setDistance(1050);
  s->setAzimuth(1051);
  s->setBackazimuth(1052);
  s->setGcarc(1053);
  s->setComponentAzimuth(1057);
  s->setComponentIncAngle(1058);
  s->setNpts(1079);
  s->setSrcType(1092);
  s->setIQual(1093);
  for (const int place : {0, 5, 6, 7, 8, 39, 50, 51, 52, 53, 57, 58})
    image.replace(4 * place, 4, bytesOf(1000.0f + static_cast<float>(place)));
  for (const int place : {79, 92, 93}) image.replace(4 * place, 4, bytesOf(1000 + place));
  EXPECT_EQ(imageOf(*s), image);
  EXPECT_FALSE(s->mSeisHasChanged());
}

TEST(SacObjectHeader, PicksUserValuesAndLabelsByKey) {
  for (int key = -1; key <= 12; ++key) {
    SCOPED_TRACE(key);
    const bool isPick = key >= 0 && key <= 11, isUser = key >= 0 && key <= 9;
    const auto k = static_cast<std::size_t>(key);
    const auto s = traceOf({});
    const std::string before = imageOf(*s);
    std::string image = before;
    s->setTimePickKey_Value(key, 5.5f);
    s->setUserValueKey_Value(key, 6.5f);
    if (isPick) image.replace(key == 10 ? 32 : key == 11 ? 80 : 40 + 4 * k, 4, bytesOf(5.5f));
    if (isUser) image.replace(160 + 4 * k, 4, bytesOf(6.5f));
    EXPECT_EQ(imageOf(*s), image);
    EXPECT_EQ(s->timePickKey(key), isPick ? 5.5f : -12345.0f);
    EXPECT_EQ(s->userValue(key), isUser ? 6.5f : -12345.0f);
    s->clearTimePicks();
    s->clearUserValues();
    EXPECT_EQ(imageOf(*s), image = before);

    s->setPickLabelKey_Value(key, "12345678");
    s->setUserValueLabelKey_Value(key, " bcdefgh");
    if (isPick) image.replace(key == 10 ? 480 : key == 11 ? 568 : 488 + 8 * k, 8, "12345678");
    constexpr std::size_t kUserLabels[] = {576, 584, 592, 440, 608, 600};
    if (key >= 0 && key <= 5) image.replace(kUserLabels[key], 8, " bcdefgh");
    EXPECT_EQ(imageOf(*s), image);
    EXPECT_EQ(s->pickLabelWithKey(key), isPick ? "1234567" : "");
    EXPECT_EQ(s->userValueLabelWithKey(key), key >= 0 && key <= 2 ? "bcdefg" : "");
  }
}

TEST(SacObjectHeader, TextsFillTheirPlaceAndAreReadTrimmed) {
  const struct {
    std::size_t offset, width;
    std::string (S::*get)() const;
    void (S::*set)(const char*) = nullptr;
  } texts[] = {{440, 8, &S::kstnm, &S::setStationID},
               {448, 16, &S::kevnm, &S::setEventName},
               {464, 8, &S::khole, &S::setKHoleID},
               {576, 8, &S::kuser0},
               {584, 8, &S::kuser1},
               {592, 8, &S::kuser2},
               {600, 8, &S::kcmpnm, &S::setComponentName},
               {608, 8, &S::knetwk, &S::setNetworkID}};
  for (const auto& [offset, width, get, set] : texts) {
    SCOPED_TRACE(offset);
    const auto s = traceOf({});
    std::string image = imageOf(*s);
    for (std::string value : {"0123456789ABCDEFGHI", " \t a b ", ""}) {
      const char* text = value.c_str();
      if (set) (*s.*set)(text), (*s.*set)(nullptr);
      value.resize(width, '\0');
      if (!set) std::memcpy(s->myData()->mutableBytes() + offset, value.data(), width);
      EXPECT_EQ(imageOf(*s), image.replace(offset, width, value));
      EXPECT_EQ((*s.*get)(), value[0] == ' ' ? "a b" : std::string(value.c_str()));
    }
  }
}

TEST(SacObjectHeader, ExtremaOfTheSamples) {
  const std::tuple<Samples, float, float, float> cases[] = {
      {{}, 0, 0, 0},
      {{3, -1, 4, -1, 5}, -1, 5, 2},
      {{-16777216, -1, -1, -1}, -16777216, -1, -4194304},  // in single precision each 1 is lost
      {{1, 1, 16777216, 0}, 0, 16777216, 4194304.5f}};
  for (const auto& [samples, least, greatest, mean] : cases) {
    const auto s = traceOf(samples);
    s->ComputeExtrema();
    EXPECT_EQ((Samples{s->smin(), s->smax(), s->smean()}), (Samples{least, greatest, mean}));
    EXPECT_EQ(s->absMax(), std::max(std::fabs(least), std::fabs(greatest)));
    EXPECT_TRUE(s->mSeisHasChanged());
    s->setNpts(INT32_MAX);  // more than there are
    s->ComputeExtrema();
    EXPECT_EQ(s->smean(), mean);
  }
}

TEST(SacObjectHeader, DerivedValues) {
  const auto s = traceOf({1, 2, 3}, 0.5f, -10.0f), undefined = traceOf({});
  EXPECT_EQ(s->signalDuration(), 1.0f);
  for (const auto& [npts, power] :
       {std::pair(-5, 1ll), {0, 1}, {1023, 1024}, {1024, 2048}, {INT32_MAX, 1ll << 31}}) {
    s->setNpts(npts);
    EXPECT_EQ(s->nextPowerOfTwoPts(), power) << npts;
  }
  s->setUserValueKey_Value(1, 30.0f);
  s->setUserValueKey_Value(2, 4.0f);
  s->setAzimuth(90.0f);
  EXPECT_NEAR(s->gamma(), 2.0, 1e-6);  // 4 cos 60, in single precision
  s->setMyReferenceDate(Date{1e9});
  s->GetSacHeader()->NZMSEC = 250;
  EXPECT_EQ(s->epochStartTime(), 999999990.25);
  EXPECT_EQ(s->epochEndTime(), 999999991.25);
  for (const auto& [kind, answer] : {std::pair("P", "P"),
                                     {"PKP", "P"},
                                     {"SH", "SH"},
                                     {"SV", ""},
                                     {"R1x", "R1"},
                                     {"R2", ""},
                                     {"G1", "G1"},
                                     {"G", ""}}) {
    s->setUserValueLabelKey_Value(0, kind);
    EXPECT_EQ(std::string(s->isP() ? "P" : "") + (s->isSH() ? "SH" : "") + (s->isR1() ? "R1" : "") +
                  (s->isG1() ? "G1" : ""),
              answer);
  }
  const std::pair<int (S::*)(const S&) const, void (S::*)(float)> comparators[] = {
      {&S::compareGCarcs, &S::setGcarc},
      {&S::compareDistances, &S::setDistance},
      {&S::compareBackAzimuths, &S::setBackazimuth},
      {&S::compareAzimuths, &S::setAzimuth}};
  for (const auto& [compare, set] : comparators) {
    (*s.*set)(1.0f);
    EXPECT_EQ((*s.*compare)(*s), 0);
    EXPECT_EQ((*s.*compare)(*undefined), 1);
    EXPECT_EQ((*undefined.*compare)(*s), -1);
  }
}

// A station on the equator, a quarter of a turn west of the event.
TEST(SacObjectHeader, GeometryAndRegions) {
  const auto s = traceOf({});
  EXPECT_EQ(s->flinnEngdahlGeographicRegion(), "");
  s->setEventLocationLat_Lon_Depth(38.3f, 142.4f, 29.0f);
  EXPECT_EQ(s->flinnEngdahlGeographicRegion(), "Near east coast of eastern Honshu");
  EXPECT_EQ(s->distance(), -12345.0f);
  s->setStationLocationLat_Lon_Elevation(0.0f, 52.4f, 579.0f);
  EXPECT_EQ(s->evdp(), 29.0f);
  EXPECT_EQ(s->GetSacHeader()->STEL, 579.0f);
  EXPECT_NEAR(s->gcarc(), 90.0, 1e-4);  // floats of hundreds resolve 3e-5
  EXPECT_FLOAT_EQ(s->distance(), s->gcarc() * 111.19f);
  EXPECT_NEAR(s->azimuth(), 270.0, 1e-4);
  for (const std::size_t location : {124, 128, 140, 144}) {
    const auto other = s->copyWithZone();
    const float undefined = -12345.0f;
    std::memcpy(other->myData()->mutableBytes() + location, &undefined, 4);
    const std::string before = imageOf(*other);
    EXPECT_FALSE(other->computeDistAzBAz());
    EXPECT_EQ(imageOf(*other), before);
    other->setFlinnEngdahlRegion();
    EXPECT_EQ(other->flinnEngdahlString() == "FE Region: N/A\n", location >= 140);
  }
}

}  // namespace
}  // namespace krosac
