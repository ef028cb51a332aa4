// What each loader makes of images in this machine's byte order, the other, both and neither.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>

#include "CapturedLog.h"
#include "TemporaryFolder.h"
#include "krosac/sacio/ByteOrder.h"
#include "krosac/sacio/SacFile.h"
#include "seismogram/Traces.h"

namespace krosac {
namespace {

enum Decision { kRefused, kNative, kSwapped };

Decision bySacObject(bool (S::*load)(const std::string&), const std::string& path) {
  const auto s = traceOf(Samples(5));
  if (!((*s).*load)(path)) return kRefused;
  return s->swappedBytes() ? kSwapped : kNative;
}

Decision byPlainReader(const std::string& path) {
  Samples x(70000);
  SacHeader header;
  std::int32_t status = 7;
  ReadSACfile(path.c_str(), x.data(), &header, 70000, &status);
  return status == 0 ? kNative : kRefused;
}

// A file of samples with a header that IsSacFile accepts, and another DELTA.
std::string image(std::size_t samples, float delta) {
  return sacImage(Samples(samples, 2.0f), {{0, word(delta)}, {304, 6}});
}

TEST(ByteOrderTable, DecisionsOfTheLoaders) {
  // 0.5 stays positive when swapped, 0.1 becomes negative; 65536 becomes 256.
  const std::string five = image(5, 0.5f), tenth = image(5, 0.1f), many = image(65536, 0.5f);
  const struct {
    const char* name;
    std::string bytes;
    Decision initialisers, replacing, isSacFile, plainReader;
  } images[] = {
      {"native", five, kNative, kNative, kNative, kNative},
      // The test for a SAC file looks at signs and the least length only, which may be plausible
      // both ways.
      {"foreign", foreign(five), kSwapped, kSwapped, kNative, kRefused},
      {"foreign, DELTA of one sign", foreign(tenth), kSwapped, kSwapped, kRefused, kRefused},
      {"native, both counts plausible", many, kNative, kNative, kNative, kNative},
      // Plain readers never swap: 256 samples of the 65536 are taken as they are.
      {"foreign, both counts plausible", foreign(many), kSwapped, kSwapped, kRefused, kNative},
      {"native, no samples", image(0, 0.5f), kNative, kRefused, kRefused, kRefused},
      // What fits as it is counts as native.
      {"foreign, both fit", foreign(image(0, 0.5f)), kNative, kRefused, kRefused, kRefused},
      {"foreign, one fits", foreign(image(0, 0.1f)), kSwapped, kRefused, kRefused, kRefused},
      {"native, one byte more", five + 'x', kRefused, kNative, kRefused, kNative},
      {"foreign, one byte more", foreign(five) + 'x', kRefused, kSwapped, kNative, kRefused},
      {"native, one byte less", five.substr(0, 651), kRefused, kRefused, kNative, kRefused},
      {"foreign, one byte less", foreign(five).substr(0, 651), kRefused, kRefused, kNative,
       kRefused},
      {"neither, DELTA not a number", image(5, NAN), kRefused, kRefused, kRefused, kNative},
      {"neither, DELTA below 0 both ways", image(5, -1.5e-39f), kRefused, kRefused, kRefused,
       kNative},
      {"neither, a header cut off", five.substr(0, 631), kRefused, kRefused, kRefused, kRefused},
      {"nothing", "", kRefused, kRefused, kRefused, kRefused}};
  const TemporaryFolder folder;
  CapturedLog captured;
  for (const auto& row : images) {
    const std::string path = folder.write("a.sac", row.bytes);
    SCOPED_TRACE(row.name);
    for (const auto load : {&S::initWithPath, &S::loadFromPath})
      EXPECT_EQ(bySacObject(load, path), row.initialisers);
    EXPECT_EQ(bySacObject(&S::replaceSacObjectDataWithPath, path), row.replacing);
    EXPECT_EQ(IsSacFile(path.c_str()), row.isSacFile == kNative ? 1 : -1);
    EXPECT_EQ(byPlainReader(path), row.plainReader);
  }
}

// Signalling and quiet NaNs with payloads, infinities, zeros, subnormal and ordinary numbers.
TEST(ByteOrderTable, NoBitOfSamplesAndHeaderWordsIsLostOnAnyWay) {
  constexpr std::uint32_t kPatterns[] = {0x7f800001, 0xff812345, 0x7fa0a0a0, 0xffbfffff,
                                         0x7fc00001, 0xffedcba9, 0x7f800000, 0x80000000,
                                         0x00000001, 0xc640e400};
  Samples samples(std::size(kPatterns));
  std::memcpy(samples.data(), kPatterns, sizeof kPatterns);
  Words users;
  for (std::size_t k = 0; k < 10; ++k) users.emplace_back(160 + 4 * k, kPatterns[k]);
  std::string native = sacImage({}, users).replace(316, 4, bytesOf(10));
  native.append(reinterpret_cast<const char*>(kPatterns), sizeof kPatterns);
  const auto kept = [](const std::string& image) {
    return image.substr(160, 40) + image.substr(632);
  };

  const TemporaryFolder folder;
  CapturedLog captured;
  for (const bool swap : {false, true}) {
    const std::string file = swap ? foreign(native) : native;
    const std::string path = folder.write("a.sac", file);
    const auto s = make<S>(), again = traceOf(samples);
    ASSERT_TRUE(s->initWithPath(path) && again->replaceSacObjectDataWithPath(path));
    EXPECT_EQ(s->swappedBytes(), swap);
    for (const auto& each : {s, again, s->copyWithZone(), archivedCopy(*s)}) {
      EXPECT_EQ(kept(imageOf(*each)), kept(native));
      ASSERT_TRUE(each->save());
      EXPECT_EQ(kept(folder.read("a.sac")), kept(file));
    }
    const auto data = bufferOf(file);
    EXPECT_EQ((swap ? swapSACBytes : reverseSACBytes)(*data), 1);
    EXPECT_EQ(std::string(data->bytes(), data->bytes() + data->length()), foreign(file));
  }
  SacHeader header;
  std::int32_t status = 7;
  const std::string from = folder.write("a.sac", native), to = folder.path("b.sac");
  ReadSACfile(from.c_str(), samples.data(), &header, 10, &status);
  WriteSACfile(to.c_str(), samples.data(), &status, header);
  EXPECT_EQ(status, 0);
  EXPECT_EQ(kept(folder.read("b.sac")), kept(native));
}

}  // namespace
}  // namespace krosac
