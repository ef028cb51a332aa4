// Loading of images that are plausible in this machine's byte order, in the other, in both or in
// neither.
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

// A file that IsSacFile accepts, with this DELTA.
std::string image(std::size_t samples, float delta) {
  return sacImage(Samples(samples, 2.0f), {{0, word(delta)}, {304, 6}});
}

// The first three letters are for initialisers, replaceSacObjectDataWithPath and ReadSACfile: take
// the file as it is (N), swap it (S) or refuse it (-). The fourth is Y if IsSacFile accepts it.
TEST(ByteOrderTable, DecisionsOfTheLoaders) {
  // 0.5 stays positive when swapped, 0.1 becomes negative; 65536 becomes 256.
  const std::string five = image(5, 0.5f), tenth = image(5, 0.1f), many = image(65536, 0.5f);
  const struct {
    const char *name, *decisions;
    std::string bytes;
  } images[] = {{"native", "NNNY", five},
                // IsSacFile checks signs and lengths only, which may be plausible in both orders.
                {"foreign", "SS-Y", foreign(five)},
                {"foreign, DELTA of one sign", "SS--", foreign(tenth)},
                {"native, both counts plausible", "NNNY", many},
                // ReadSACfile never swaps; it reads 256 of the 65536 samples unchanged.
                {"foreign, both counts plausible", "SSN-", foreign(many)},
                {"native, no samples", "N---", image(0, 0.5f)},
                {"foreign, both fit, so as native", "N---", foreign(image(0, 0.5f))},
                {"foreign, one fits", "S---", foreign(image(0, 0.1f))},
                {"native, one byte more", "-NN-", five + 'x'},
                {"foreign, one byte more", "-S-Y", foreign(five) + 'x'},
                {"native, one byte less", "---Y", five.substr(0, 651)},
                {"foreign, one byte less", "---Y", foreign(five).substr(0, 651)},
                {"neither, DELTA is NaN", "--N-", image(5, NAN)},
                {"neither, DELTA < 0 in both orders", "--N-", image(5, -1.5e-39f)},
                {"neither, a header cut off", "----", five.substr(0, 631)},
                {"nothing", "----", ""}};
  const TemporaryFolder folder;
  const CapturedLog captured;
  for (const auto& row : images) {
    const std::string path = folder.write("a.sac", row.bytes);
    const auto by = [&](bool (S::*load)(const std::string&)) {
      const auto s = traceOf(Samples(5));
      return !((*s).*load)(path) ? '-' : s->swappedBytes() ? 'S' : 'N';
    };
    Samples x(70000);
    SacHeader header;
    std::int32_t status = 7;
    ReadSACfile(path.c_str(), x.data(), &header, 70000, &status);
    const char rest[] = {by(&S::replaceSacObjectDataWithPath), status == 0 ? 'N' : '-',
                         IsSacFile(path.c_str()) == 1 ? 'Y' : '-', '\0'};
    EXPECT_EQ(by(&S::initWithPath) + std::string(rest), row.decisions) << row.name;
    EXPECT_EQ(by(&S::loadFromPath), row.decisions[0]) << row.name;
  }
}

// Signalling and quiet NaNs with payloads, infinities, zeros, subnormal and ordinary numbers.
TEST(ByteOrderTable, LoadingAndSavingKeepEveryBitOfUserValuesAndSamples) {
  constexpr std::uint32_t kPatterns[] = {0x7f800001, 0xff812345, 0x7fa0a0a0, 0xffbfffff,
                                         0x7fc00001, 0xffedcba9, 0x7f800000, 0x80000000,
                                         0x00000001, 0xc640e400};
  Samples samples(std::size(kPatterns));
  std::memcpy(samples.data(), kPatterns, sizeof kPatterns);
  std::string native = sacImage({}).replace(316, 4, bytesOf(10));
  const std::string patterns(reinterpret_cast<const char*>(kPatterns), sizeof kPatterns);
  native.replace(160, 40, patterns) += patterns;  // the user values and the samples
  const auto kept = [](const std::string& image) {
    return image.substr(160, 40) + image.substr(632);
  };

  const TemporaryFolder folder;
  const CapturedLog captured;
  for (const bool swap : {false, true}) {
    const std::string file = swap ? foreign(native) : native;
    const std::string path = folder.write("a.sac", file);
    const auto s = make<S>(), again = traceOf(samples);
    ASSERT_TRUE(s->initWithPath(path) && again->replaceSacObjectDataWithPath(path));
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
  EXPECT_EQ(kept(folder.read("b.sac")), kept(native));
}

}  // namespace
}  // namespace krosac
