#include <gtest/gtest.h>

#include <cmath>
#include <cstring>

#include "seismogram/Traces.h"

namespace krosac {
namespace {

// A getter reads the word at its offset in the file.
template <typename T>
void check(std::size_t offset, T (S::*get)() const) {
  const auto s = traceOf({});
  const T value = 1234;
  std::memcpy(s->myData()->mutableBytes() + offset, &value, 4);
  EXPECT_EQ((*s.*get)(), value) << offset;
}

// A setter writes the word at its offset and no other.
template <typename T>
void check(std::size_t offset, void (S::*set)(T)) {
  const auto s = traceOf({});
  const T value = -7;
  std::string image = imageOf(*s);
  (*s.*set)(value);
  EXPECT_EQ(imageOf(*s), image.replace(offset, 4, bytesOf(value))) << offset;
  EXPECT_FALSE(s->mSeisHasChanged());
}

template <typename... Accessors>
void checkAll(std::initializer_list<std::size_t> offsets, Accessors... accessors) {
  ASSERT_EQ(offsets.size(), sizeof...(accessors));
  const std::size_t* offset = offsets.begin();
  (check(*offset++, accessors), ...);
}

TEST(SacObjectHeader, NumbersByTheirPlaceInTheFile) {
  checkAll({0,  4,  8,  20, 24, 28,  28,  32,  32,  40,  44,  48,  52,  56,  60,  64,
            68, 72, 76, 80, 80, 124, 128, 140, 144, 152, 200, 204, 208, 212, 224, 228},
           &S::delta, &S::smin, &S::smax, &S::b, &S::e, &S::o, &S::originTimeOffset, &S::a,
           &S::pTime, &S::t0, &S::t1, &S::t2, &S::t3, &S::t4, &S::t5, &S::t6, &S::t7, &S::t8,
           &S::t9, &S::f, &S::fini, &S::stla, &S::stlo, &S::evla, &S::evlo, &S::evdp, &S::distance,
           &S::azimuth, &S::backazimuth, &S::gcarc, &S::smean, &S::componentAzimuth);
  checkAll({0, 20, 24, 28, 32, 156, 200, 204, 208, 212, 228, 232}, &S::setDelta, &S::setBeginTime,
           &S::setEndTime, &S::setoriginTimeOffset, &S::setPTime, &S::setMagnitude, &S::setDistance,
           &S::setAzimuth, &S::setBackazimuth, &S::setGcarc, &S::setComponentAzimuth,
           &S::setComponentIncAngle);
  checkAll({316, 316, 368, 372, 372}, &S::npts, &S::setNpts, &S::setSrcType, &S::iqual,
           &S::setIQual);
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

TEST(SacObjectHeader, Texts) {
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
  const std::string longText = "0123456789ABCDEFGHI";
  for (const auto& [offset, width, get, set] : texts) {
    SCOPED_TRACE(offset);
    const auto s = traceOf({});
    std::string image = imageOf(*s);
    unsigned char* field = s->myData()->mutableBytes() + offset;
    std::memcpy(field, longText.data(), width);
    EXPECT_EQ((*s.*get)(), longText.substr(0, width));
    std::memcpy(field, " \t a b\n         ", width);
    EXPECT_EQ((*s.*get)(), "a b");
    for (std::string value : {longText, std::string("TLY"), std::string()}) {
      if (!set) continue;
      (*s.*set)(value.c_str());
      (*s.*set)(nullptr);
      value.resize(width, '\0');
      EXPECT_EQ(imageOf(*s), image.replace(offset, width, value));
    }
  }
}

TEST(SacObjectHeader, ExtremaOfTheSamples) {
  const std::tuple<Samples, float, float, float> cases[] = {
      {{}, 0, 0, 0},
      {{-3}, -3, -3, -3},
      {{3, -1, 4, -1, 5}, -1, 5, 2},
      {{16777216, 1, 1, 1}, 1, 16777216, 4194304},  // in single precision each 1 is lost
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
  const auto s = traceOf({1, 2, 3}, 0.5f, -10.0f);
  EXPECT_EQ(s->signalDuration(), 1.0f);
  for (const auto& [npts, power] :
       {std::pair(-5, 1ll), {0, 1}, {4, 8}, {1023, 1024}, {1024, 2048}, {INT32_MAX, 1ll << 31}}) {
    s->setNpts(npts);
    EXPECT_EQ(s->nextPowerOfTwoPts(), power) << npts;
  }
  s->setNpts(5);
  s->fixEndTime();
  EXPECT_EQ(s->e(), -8.0f);
  s->setUserValueKey_Value(1, 30.0f);
  s->setUserValueKey_Value(2, 4.0f);
  s->setAzimuth(90.0f);
  EXPECT_NEAR(s->gamma(), 2.0, 1e-6);  // 4 cos 60, in single precision
  s->setMyReferenceDate(Date{1e9});
  s->GetSacHeader()->NZMSEC = 250;
  EXPECT_EQ(s->epochStartTime(), 999999990.25);
  EXPECT_EQ(s->epochEndTime(), 999999992.25);

  const char* kinds[] = {"P", "PKP", "SH", "SV", "S", "R1x", "R2", "G1", "G", " P", ""};
  const char* answers[] = {"P", "P", "SH", "", "", "R1", "", "G1", "", "", ""};
  for (int i = 0; i < 11; ++i) {
    s->setUserValueLabelKey_Value(0, kinds[i]);
    EXPECT_EQ(std::string(s->isP() ? "P" : "") + (s->isSH() ? "SH" : "") + (s->isR1() ? "R1" : "") +
                  (s->isG1() ? "G1" : ""),
              answers[i]);
  }

  const auto checkComparator = [](auto compare, auto set) {
    const auto near = traceOf({}), undefined = traceOf({});
    (*near.*set)(1.0f);
    EXPECT_EQ((*near.*compare)(*near), 0);
    EXPECT_EQ((*near.*compare)(*undefined), 1);
    EXPECT_EQ((*undefined.*compare)(*near), -1);
  };
  checkComparator(&S::compareGCarcs, &S::setGcarc);
  checkComparator(&S::compareDistances, &S::setDistance);
  checkComparator(&S::compareBackAzimuths, &S::setBackazimuth);
  checkComparator(&S::compareAzimuths, &S::setAzimuth);
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
  // Floats of hundreds resolve 3e-5.
  EXPECT_NEAR(s->gcarc(), 90.0, 1e-4);
  EXPECT_NEAR(s->distance(), 90.0 * 111.19, 1e-2);
  EXPECT_NEAR(s->azimuth(), 270.0, 1e-4);
  const double degree = std::acos(-1.0) / 180.0, flattened = 0.9966102 * std::tan(38.3 * degree);
  EXPECT_NEAR(s->backazimuth(), std::atan(1.0 / flattened) / degree, 1e-4);
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
