// A null input is refused and changes nothing; a null output is skipped.
#include <gtest/gtest.h>

#include "TemporaryFolder.h"
#include "krosac/platform/LastReason.h"
#include "krosac/sacio/SacFile.h"
#include "krosac/sacio/SacRoutines.h"
#include "sacio/SacImage.h"

namespace krosac {
namespace {

// The status that a call stores.
template <typename Call>
std::int32_t statusOf(Call call) {
  std::int32_t status = 7;
  call(&status);
  return status;
}

TEST(NullPointers, InputsAreRefusedAndOutputsSkipped) {
  const TemporaryFolder folder;
  const std::string xy =
      folder.write("xy", headerImage({{0, wordOf(1)}, {304, 6}, {316, 2}}) + std::string(16, 'x'));
  const char* const in = xy.c_str();
  const char* const none = nullptr;
  const int length = static_cast<int>(xy.size());
  const std::int32_t two = 2;
  const float one = 1, samples[2] = {};
  SacHeader header = kSacHeaderTemplate;
  header.NPTS = 2;
  float x[2] = {};
  testing::internal::CaptureStdout();
  const struct {
    const char* call;
    std::int32_t inputs, outputs;  // status without the inputs, and without the outputs
  } cases[] = {
      {"IsSacFile", IsSacFile(none), 0},
      {"ReadSACHeader", statusOf([&](auto* s) { ReadSACHeader(none, &header, s); }),
       statusOf([&](auto* s) { ReadSACHeader(in, nullptr, s); })},
      {"ReadSACfile", statusOf([&](auto* s) { ReadSACfile(none, x, &header, 2, s); }),
       statusOf([&](auto* s) { ReadSACfile(in, nullptr, nullptr, 2, s); })},
      {"ReadSAC1", statusOf([&](auto* s) { ReadSAC1(none, x, nullptr, nullptr, nullptr, 2, s); }),
       statusOf([&](auto* s) { ReadSAC1(in, nullptr, nullptr, nullptr, nullptr, 2, s); })},
      {"ReadSAC2", statusOf([&](auto* s) { ReadSAC2(none, nullptr, x, x, 2, s); }),
       statusOf([&](auto* s) { ReadSAC2(in, nullptr, nullptr, nullptr, 2, s); })},
      {"rsac1_",
       statusOf([&](auto* s) { rsac1_(in, x, nullptr, nullptr, nullptr, nullptr, s, length); }),
       statusOf([&](auto* s) { rsac1_(in, nullptr, nullptr, nullptr, nullptr, &two, s, length); })},
      {"rsac2_", statusOf([&](auto* s) { rsac2_(in, x, nullptr, x, nullptr, s, length); }),
       statusOf([&](auto* s) { rsac2_(in, nullptr, nullptr, nullptr, &two, s, length); })},
      {"WriteSACfile", statusOf([&](auto* s) { WriteSACfile(in, nullptr, s, header); }), 0},
      {"WriteSAC1", statusOf([&](auto* s) { WriteSAC1(none, samples, 2, s, 1, 0); }), 0},
      {"WriteSAC2", statusOf([&](auto* s) { WriteSAC2(in, 2, nullptr, samples, s); }), 0},
      {"wsac1_", statusOf([&](auto* s) { wsac1_(in, samples, &two, nullptr, &one, s, length); }),
       0},
      {"wsac2_", statusOf([&](auto* s) { wsac2_(in, samples, nullptr, samples, s, length); }), 0}};
  testing::internal::GetCapturedStdout();
  for (const auto& c : cases) {
    EXPECT_EQ(c.inputs, -1) << c.call;
    EXPECT_EQ(c.outputs, 0) << c.call;
  }
  EXPECT_EQ(folder.read("xy").size(), 648u) << "refused writers leave the file";
  ReadSAC2(in, nullptr, x, nullptr, 2, nullptr);
  EXPECT_STREQ(lastReason(), "");
  EXPECT_EQ(bytesOf(x), "xxxxxxxx") << "the second block, after the first was skipped";
  folder.write("xy", folder.read("xy").substr(0, 647));
  ReadSAC2(in, nullptr, nullptr, nullptr, 2, nullptr);
  EXPECT_STRNE(lastReason(), "") << "skipped samples must be there too";
}

}  // namespace
}  // namespace krosac
