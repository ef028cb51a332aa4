#include "krosac/sacio/SacFile.h"

#include <gmock/gmock.h>

#include <climits>

#include "CapturedLog.h"
#include "TemporaryFolder.h"
#include "krosac/platform/LastReason.h"
#include "krosac/sacio/ByteOrder.h"
#include "sacio/SacImage.h"

namespace krosac {
namespace {

using testing::Each;
using testing::ElementsAre;

// A file with this NPTS, DELTA 0.5, B 2 and the samples 1, 2, ..., `off` bytes longer or shorter.
std::string file(std::int32_t npts, int samples, int off = 0) {
  std::string image = headerImage({{0, wordOf(0.5f)}, {20, wordOf(2)}, {304, 6}, {316, npts}});
  for (int i = 1; i <= samples; ++i) image += bytesOf(static_cast<float>(i));
  image.resize(image.size() + off);
  return image;
}

TEST(SacFile, IsSacFileChecksTheHeader) {
  const TemporaryFolder folder;
  const std::tuple<std::size_t, std::uint32_t, int> cases[] = {
      {0, wordOf(0), -1}, {0, wordOf(-0.5f), -1}, {0, 0x7fc00000, -1}, {304, 0u - 12345, -1},
      {304, 0, 1},        {316, 0, -1},           {316, 0u - 1, -1},   {316, INT_MAX, 1}};
  for (const auto& [offset, word, result] : cases) {
    const auto path = folder.write("file", file(2, 0).replace(offset, 4, bytesOf(word)));
    EXPECT_EQ(IsSacFile(path.c_str()), result) << offset << ' ' << word;
  }
  EXPECT_EQ(IsSacFile(folder.write("text", std::string(632, 'x')).c_str()), 1);
}

TEST(SacFile, ReadersReturnSamplesAndStatus) {
  const TemporaryFolder folder;
  const struct {
    std::string bytes;
    std::int32_t max, isSac, n;  // n: values read of each block
    std::int32_t even, xy;       // status of ReadSACfile and ReadSAC1, and of ReadSAC2
  } cases[] = {{file(3, 3), 4, 1, 3, 0, -1},
               {file(3, 6), 4, -1, 3, 0, 0},
               {file(3, 6), 2, -1, 2, 0, 0},  // two consecutive reads
               {file(INT_MAX, 4), 2, 1, 2, 0, 0},
               {file(3, 3, -1), 4, 1, 3, -1, -1},
               {file(3, 6, -1), 4, -1, 3, 0, -1},
               {file(0, 0), 4, -1, 0, -1, 0},
               {file(INT_MIN, 4), 4, -1, INT_MIN, -1, -1},
               {file(3, 6), -1, -1, -1, -1, -1}};
  for (const auto& c : cases) {
    SCOPED_TRACE(&c - cases);
    const std::string path = folder.write("file", c.bytes);
    SacHeader header;
    std::int32_t status[4] = {7, 7, 7, 7}, n = 9, npts = 9;
    float one[4] = {}, again[4] = {}, first[4] = {}, second[4] = {}, delta = 9, b = 9;
    EXPECT_EQ(IsSacFile(path.c_str()), c.isSac);
    ReadSACHeader(path.c_str(), &header, &status[0]);
    EXPECT_EQ(bytesOf(header), c.bytes.substr(0, 632));
    ReadSACfile(path.c_str(), one, &header, c.max, &status[1]);
    ReadSAC1(path.c_str(), again, &npts, &delta, &b, c.max, &status[2]);
    ReadSAC2(path.c_str(), &n, second, first, c.max, &status[3]);
    EXPECT_THAT(status, ElementsAre(0, c.even, c.even, c.xy));
    EXPECT_TRUE(header.NPTS == c.n && n == c.n);
    EXPECT_EQ(std::tuple(npts, delta, b),
              c.even ? std::tuple(9, 9.0f, 9.0f) : std::tuple(c.n, 0.5f, 2.0f));
    for (int i = 0; i < 4; ++i) {
      const float wanted = i < c.n ? i + 1 : 0, behind = i < c.n ? c.n + i + 1 : 0;
      EXPECT_TRUE(c.even || (one[i] == wanted && again[i] == wanted));
      EXPECT_TRUE(c.xy || (first[i] == wanted && second[i] == behind));
    }
  }
}

TEST(SacFile, ReadersRefuseBadPaths) {
  const TemporaryFolder folder;
  const std::string brief = folder.write("brief", file(3, 0, -1));
  SacHeader header;
  float x[2] = {}, y[2] = {};
  const char* const paths[] = {brief.c_str(), "missing", "/", nullptr};
  for (const char* path : paths) {
    std::int32_t status[] = {7, 7, 7, 7}, n = 7;
    ReadSACHeader(path, &header, &status[0]);
    ReadSACfile(path, x, &header, 2, &status[1]);
    ReadSAC1(path, x, nullptr, nullptr, nullptr, 2, &status[2]);
    ReadSAC2(path, &n, x, y, 2, &status[3]);
    EXPECT_THAT(status, Each(-1)) << path;
    EXPECT_TRUE(n == 7 && IsSacFile(path) == -1);
  }
}

std::string readReason(const std::string& path, std::int32_t max = 9) {
  SacHeader header;
  float x[9];
  ReadSACfile(path.c_str(), x, &header, max, nullptr);
  return lastReason();
}

std::string readReasonXY(const std::string& path) {
  float x[9], y[9];
  ReadSAC2(path.c_str(), nullptr, x, y, 9, nullptr);
  return lastReason();
}

std::string testReason(const std::string& path) {
  IsSacFile(path.c_str());
  return lastReason();
}

std::string writeReason(const char* path, const float* samples, std::int32_t n) {
  WriteSAC1(path, samples, n, nullptr, 1.0f, 0.0f);
  return lastReason();
}

std::string writeReasonXY(const std::string& path, const float* x, std::int32_t n) {
  WriteSAC2(path.c_str(), n, x, x, nullptr);
  return lastReason();
}

std::string swapReason(const std::string& image) {
  swapSACBytes(*ByteBuffer::copyOf(image.data(), image.size()));
  return lastReason();
}

// In order: a success leaves no reason from the failure before it.
TEST(SacFile, FailuresHaveReasonsAndSuccessHasNone) {
  const TemporaryFolder folder;
  const auto saved = [&](const std::string& bytes) { return folder.write("f", bytes); };
  const std::string f = folder.path("f") + ": ", missing = folder.path("missing");
  const std::vector<float> x(5000);
  testing::internal::CaptureStdout();  // WriteSAC2 prints
  const std::pair<std::string, std::string> reasons[] = {
      {readReason(missing), missing + ": No such file or directory"},
      {readReason(folder.path()), folder.path() + ": is a folder"},
      {readReason("/dev/null"), "/dev/null: is not a regular file"},
      {readReason(saved("x")), f + "needs 632 bytes, found 1"},
      {readReason(saved(file(12684, 3)), 20000),
       f + "needs 632 + 4 x 12684 = 51368 bytes, found 644"},
      {readReason(saved(file(0, 0))), f + "no samples to read, NPTS or the maximum is 0"},
      {readReason(saved(file(3, 3))), ""},
      {readReasonXY(saved(file(3, 5))), f + "needs 632 + 4 x 6 = 656 bytes, found 652"},
      {readReasonXY(saved(file(3, 6))), ""},
      {testReason(saved(file(3, 4))), f + "may have 632 + 4 x 3 = 644 bytes, found 648"},
      {testReason(saved(file(0, 0))), f + "NPTS is 0, below 1"},
      {testReason(saved(headerImage())), f + "DELTA is -12345, not above 0"},
      {testReason(saved(headerImage({{0, wordOf(1)}, {316, 1}}))), f + "NVHDR is -12345, below 0"},
      {testReason(saved(file(3, 3))), ""},
      {writeReason(nullptr, &x[0], 1), "no path given"},
      {writeReason(missing.c_str(), nullptr, 1), missing + ": no samples given"},
      {writeReason(missing.c_str(), nullptr, -1), missing + ": NPTS is -1"},
      {writeReason(missing.c_str(), nullptr, 0),
       missing + ": NPTS is 0, so the header alone was written"},
      {writeReason("/dev/full", &x[0], 5000), "/dev/full: No space left on device"},
      {writeReason(missing.c_str(), &x[0], 1), ""},
      {writeReasonXY(missing + "/f", &x[0], 1), missing + "/f: Not a directory"},
      {writeReasonXY("/dev/full", &x[0], 10), "/dev/full: No space left on device"},
      {writeReasonXY(missing, &x[0], 1), ""},
      {swapReason(""), "the image: needs 632 bytes, found 0"},
      {swapReason(headerImage({{316, 0x80u}})), "the image: NPTS is -2147483648"},
      {swapReason(headerImage({{316, 0x05000000u}})),
       "the image: needs 632 + 4 x 5 = 652 bytes, found 632"},
      {swapReason(headerImage({{316, 0u}})), ""}};
  testing::internal::GetCapturedStdout();
  for (const auto& [reason, expected] : reasons) EXPECT_EQ(reason, expected);
}

// Calls one of the writers with n samples, or n points with y = samples and x = others.
void write(int writer, const char* path, const float* samples, const float* others, std::int32_t n,
           std::int32_t* status) {
  SacHeader header = kSacHeaderTemplate;
  header.DELTA = 0.1f;
  header.B = -0.3f;
  header.NPTS = n;
  if (writer == 0) WriteSACfile(path, samples, status, header);
  if (writer == 1) WriteSAC1(path, samples, n, status, 0.1f, -0.3f);
  if (writer == 2) WriteSAC2(path, n, others, samples, status);
}

TEST(SacFile, WritersWriteHeaderAndSamples) {
  const TemporaryFolder folder;
  const std::string path = folder.write("file", std::string(5000, 'x'));
  const float y[4] = {std::bit_cast<float>(0x7fa00001), -2, -3, -4}, x[4] = {1, 2, 3, 4};
  const Words made = {{304, 6}, {308, 0}, {312, 0}, {424, 0}, {436, 0}};
  // E is 0 since 3 * 0.1f rounds to 0.3f. In double precision or fused it would differ from 0.
  for (const auto& [n, e] : {std::pair(4u, 0.0f), {0u, -0.4f}}) {
    const Words even = {{0, wordOf(0.1f)}, {20, wordOf(-0.3f)}, {24, wordOf(e)}, {316, n}};
    const std::string headers[] = {headerImage(even),
                                   headerImage(made, even).replace(348, 4, bytesOf(9)),
                                   headerImage(made, {{316, n}, {340, 4}, {420, 0}})};
    for (int writer = 0; writer < 3; ++writer) {
      std::int32_t status = 7;
      write(writer, path.c_str(), y, x, n, &status);
      EXPECT_EQ(status, n == 0 && writer != 2 ? -1 : 0);
      EXPECT_EQ(folder.read("file"), headers[writer] + bytesOf(y).substr(0, 4 * n) +
                                         bytesOf(x).substr(0, writer == 2 ? 4 * n : 0))
          << "writer " << writer << ", n " << n;
    }
  }
}

TEST(SacFile, WritersReportFailuresAndLeaveOldFilesWhenArgumentsAreBad) {
  const TemporaryFolder folder;
  const std::string old = folder.write("old", "precious"), missing = folder.path("no/file");
  const std::vector<float> values(5000, 1.0f);
  const std::tuple<const char*, const float*, std::int32_t, std::string> cases[] = {
      {missing.c_str(), &values[0], 2, "creating file " + missing},
      {nullptr, &values[0], 2, "creating file (null)"},
      {old.c_str(), nullptr, 2, "creating file " + old},
      {old.c_str(), &values[0], -1, "creating file " + old},
      {"/dev/full", &values[0], 5000, "writing x values for file /dev/full"},
      {"/dev/full", &values[0], 600, "writing y values for file /dev/full"},
      {"/dev/full", &values[0], 10, ""}};  // closing the file fails
  for (const auto& [path, samples, n, message] : cases) {
    std::int32_t status[] = {7, 7, 7};
    std::string printed;
    for (int writer = 0; writer < 3; ++writer)
      printed += printedBy([&, path = path, samples = samples, n = n] {
        write(writer, path, samples, &values[0], n, &status[writer]);
        if (writer < 2) write(writer, path, samples, &values[0], n, nullptr);
      });
    EXPECT_EQ(printed, message.empty() ? "|||" : "||Problem " + message + "\n|");
    EXPECT_THAT(status, Each(-1)) << message;
  }
  EXPECT_EQ(folder.read("old"), "precious");
}

}  // namespace
}  // namespace krosac
