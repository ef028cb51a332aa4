// Input that is made to break a reader or an operation.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <limits>
#include <string>

#include "CapturedLog.h"
#include "TemporaryFolder.h"
#include "krosac/krosac.h"

namespace krosac {
namespace {

bool readsHeader(const std::string& path) {
  SacHeader header;
  std::int32_t status = 0;
  ReadSACHeader(path.c_str(), &header, &status);
  return status == 0;
}

bool readsSamples(const std::string& path) {
  SacHeader header;
  float samples[4];
  std::int32_t status = 0;
  ReadSACfile(path.c_str(), samples, &header, 4, &status);
  return status == 0;
}

bool readsBothBlocks(const std::string& path) {
  float x[4], y[4];
  std::int32_t n = 0, status = 0;
  ReadSAC2(path.c_str(), &n, x, y, 4, &status);
  return status == 0;
}

bool readsByRoutine(const std::string& path) {
  float samples[4], b, delta;
  const std::int32_t max = 4;
  std::int32_t n = 0, error = 0;
  testing::internal::CaptureStdout();
  rsac1_(path.c_str(), samples, &n, &b, &delta, &max, &error, static_cast<int>(path.size()));
  testing::internal::GetCapturedStdout();
  return error == 0;
}

bool readsPoles(const std::string& path) {
  float poles[64], zeros[64], constant;
  int nPoles = 0, nZeros = 0;
  testing::internal::CaptureStderr();
  const int outcome = ParsePoleZeroFile(path.c_str(), poles, zeros, &constant, &nPoles, &nZeros);
  return testing::internal::GetCapturedStderr().empty() && outcome == 0;
}

bool readsTimes(const std::string& path) {
  auto table = make<LocsatTTTable>();
  table->init();
  table->loadTimesFromPath(path);
  return table->hasTimes();
}

bool readsCurve(const std::string& path) {
  return make<DispersionCurve>()->initWithKESTRAVFile(path)->nPeriods() > 0;
}

bool loads(const std::string& path) {
  return make<SacObject>()->initWithPath(path);
}

bool replaces(const std::string& path) {
  auto s = make<SacObject>();
  return s->initWithCapacity(4) && s->replaceSacObjectDataWithPath(path);
}

// A pipe blocks and a device has no end, so that each is refused at once.
TEST(HostileInput, NoReaderTakesAPipeOrADevice) {
  const TemporaryFolder folder;
  const CapturedLog log;
  ASSERT_EQ(::mkfifo(folder.path("pipe").c_str(), 0600), 0);
  using Reader = bool (*)(const std::string& path);
  for (const Reader reads : {readsHeader, readsSamples, readsBothBlocks, readsByRoutine, readsPoles,
                             readsTimes, readsCurve, loads, replaces}) {
    for (const std::string& path : {folder.path("pipe"), std::string("/dev/zero"), folder.path()})
      EXPECT_FALSE(reads(path)) << path;
  }
}

// The end of such a series is at infinity, which is no place to interpolate at.
TEST(HostileInput, AnEndlessSeriesEndsWithItsLastSample) {
  auto s = make<uniformSampleTimeSeries>();
  ASSERT_TRUE(s->initWithZerosNpts_Delta(300, 3e38f));
  s->dataPointer()[0] = 2.0f;
  s->dataPointer()[299] = 5.0f;
  EXPECT_EQ(s->interpolateValueAtRelativeTime(std::numeric_limits<float>::infinity()), 5.0f);
  EXPECT_EQ(s->interpolateValueAtRelativeTime(1.5e38f), 1.0f);
}

}  // namespace
}  // namespace krosac
