#include "krosac/sacio/SacFile.h"

#include <dlfcn.h>
#include <gmock/gmock.h>

#include <climits>
#include <cstdio>

#include "CapturedLog.h"
#include "TemporaryFolder.h"
#include "sacio/SacImage.h"

static bool headersFail = false;

// Stands before the C library's own: a buffered stream takes a header on every device.
extern "C" KROSAC_API size_t fwrite(const void* from, size_t size, size_t count, FILE* file) {
  static const auto real = reinterpret_cast<decltype(&fwrite)>(dlsym(RTLD_NEXT, "fwrite"));
  return headersFail && size * count == 632 ? 0 : real(from, size, count, file);
}

namespace krosac {
namespace {

using Block = std::array<float, 8>;

// A file with this NPTS, DELTA 0.5, B 2 and the samples 1, 2, ..., `off` bytes longer or shorter.
std::string file(std::int32_t npts, int samples, int off = 0) {
  std::string image = headerImage({{0, wordOf(0.5f)}, {20, wordOf(2)}, {304, 6}, {316, npts}});
  for (int i = 1; i <= samples; ++i) image += bytesOf(static_cast<float>(i));
  image.resize(image.size() + off);
  return image;
}

// What a reader makes of an array of zeros: n samples from a first one on.
Block read(int n, float from) {
  Block block{};
  for (int i = 0; i < n; ++i) block[i] = from++;
  return block;
}

TEST(SacFile, IsSacFileWantsPlausibleHeaders) {
  const TemporaryFolder folder;
  const std::tuple<std::size_t, std::uint32_t, int> cases[] = {
      {0, wordOf(0), -1}, {0, wordOf(-0.5f), -1}, {0, 0x7fc00000, -1}, {304, 0u - 12345, -1},
      {304, 0, 1},        {316, 0, -1},           {316, 0u - 1, -1},   {316, 1u << 30, 1},
      {316, INT_MAX, 1}};
  for (const auto& [offset, word, result] : cases) {
    const auto path = folder.write("file", file(2, 0).replace(offset, 4, bytesOf(word)));
    EXPECT_EQ(IsSacFile(path.c_str()), result) << offset << ' ' << word;
  }
}

TEST(SacFile, ReadersTakeWhatIsThereAndSayWhatIsNot) {
  const TemporaryFolder folder;
  const std::string path = folder.path("file"), missing = folder.path("missing");
  const struct {
    const char* path;
    std::string bytes;
    std::int32_t max, isSac, n;  // n: what is read of each block; 9 where no header is
    std::int32_t even, xy;       // status of ReadSACfile and ReadSAC1, and of ReadSAC2
  } cases[] = {{path.c_str(), file(3, 3), 4, 1, 3, 0, -1},
               {path.c_str(), file(3, 6), 4, -1, 3, 0, 0},
               {path.c_str(), file(3, 6), 2, -1, 2, 0, 0},  // two reads in a row
               {path.c_str(), file(INT_MAX, 4), 2, 1, 2, 0, 0},
               {path.c_str(), file(3, 3, -1), 4, 1, 3, -1, -1},
               {path.c_str(), file(3, 6, -1), 4, -1, 3, 0, -1},
               {path.c_str(), file(1, 1, 1), 4, -1, 1, 0, -1},
               {path.c_str(), file(0, 0), 4, -1, 0, -1, 0},
               {path.c_str(), file(INT_MIN, 4), 4, -1, INT_MIN, -1, -1},
               {path.c_str(), file(3, 6), 0, -1, 0, -1, 0},
               {path.c_str(), file(3, 6), -1, -1, -1, -1, -1},
               {path.c_str(), file(3, 0, -1), 4, -1, 9, -1, -1},
               {missing.c_str(), "", 4, -1, 9, -1, -1},
               {"/", "", 4, -1, 9, -1, -1},
               {nullptr, "", 4, -1, 9, -1, -1}};
  for (const auto& c : cases) {
    SCOPED_TRACE(&c - cases);
    folder.write("file", c.bytes);
    EXPECT_EQ(IsSacFile(c.path), c.isSac);
    SacHeader header;
    std::int32_t status = 7, n = 9, npts = 9;
    ReadSACHeader(c.path, &header, &status);
    EXPECT_EQ(status, c.n == 9 ? -1 : 0);
    EXPECT_TRUE(status == -1 || bytesOf(header) == c.bytes.substr(0, 632));

    Block one{}, again{}, first{}, second{};
    float delta = 9, b = 9;
    ReadSACfile(c.path, &one[0], &header, c.max, &(status = 7));
    EXPECT_EQ(status, c.even);
    EXPECT_TRUE(c.n == 9 || header.NPTS == c.n);
    ReadSAC1(c.path, &again[0], &npts, &delta, &b, c.max, &(status = 7));
    EXPECT_EQ(std::tuple(status, npts, delta, b),
              c.even ? std::tuple(-1, 9, 9.0f, 9.0f) : std::tuple(0, c.n, 0.5f, 2.0f));
    ReadSAC2(c.path, &n, &second[0], &first[0], c.max, &(status = 7));
    EXPECT_EQ(std::tuple(status, n), std::tuple(c.xy, c.n));
    EXPECT_TRUE(c.even || (one == read(c.n, 1) && again == one && first == one));
    EXPECT_TRUE(c.xy || second == read(c.n, static_cast<float>(c.n + 1)));
    EXPECT_EQ(one[3] + again[3] + first[3] + second[3], 0) << "behind the samples";
  }
}

TEST(SacFile, ReadersRefuseNullArrays) {
  const TemporaryFolder folder;
  const std::string file = folder.write("file", krosac::file(2, 4));
  const char* const path = file.c_str();
  SacHeader header;
  float samples[2] = {};
  std::int32_t status[] = {7, 7, 7, 7, 7, 7}, good = 7;
  ReadSACHeader(path, nullptr, &status[0]);
  ReadSACfile(path, samples, nullptr, 2, &status[1]);
  ReadSACfile(path, nullptr, &header, 2, &status[2]);
  ReadSAC1(path, nullptr, nullptr, nullptr, nullptr, 2, &status[3]);
  ReadSAC2(path, nullptr, nullptr, samples, 2, &status[4]);
  ReadSAC2(path, nullptr, samples, nullptr, 2, &status[5]);
  EXPECT_THAT(status, testing::Each(-1));
  ReadSAC1(path, samples, nullptr, nullptr, nullptr, 2, &good);
  ReadSAC2(path, nullptr, samples, samples, 2, nullptr);
  EXPECT_EQ(good + samples[1], 4);
}

// The writers alike: n samples, or n points with y from `samples` and x from `others`.
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

TEST(SacFile, WritersWriteTheseBytes) {
  const TemporaryFolder folder;
  const std::string path = folder.write("file", std::string(5000, 'x'));
  const float y[4] = {std::bit_cast<float>(0x7fa00001), -2, -3, -4}, x[4] = {1, 2, 3, 4};
  const Words made = {{304, 6}, {308, 0}, {312, 0}, {424, 0}, {436, 0}};
  // 3 * 0.1f rounded to a float is 0.3f, so that E is 0; in double, or fused, it would not be.
  for (const auto& [n, e] : {std::pair(4u, 0.0f), {1u, -0.3f}, {0u, -0.4f}}) {
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

TEST(SacFile, WritersRefuse) {
  const TemporaryFolder folder;
  const std::string old = folder.write("old", "precious"), missing = folder.path("no/file");
  const std::vector<float> values(5000, 1.0f);
  const float* const some = values.data();
  const struct {
    const char* path;
    const float* samples;
    std::int32_t n;
    std::string message;  // of WriteSAC2
  } cases[] = {{missing.c_str(), some, 2, "creating file " + missing},
               {nullptr, some, 2, "creating file (null)"},
               {old.c_str(), nullptr, 2, "creating file " + old},
               {old.c_str(), some, -1, "creating file " + old},
               {old.c_str(), some, INT_MIN, "creating file " + old},
               {"/dev/null", some, 2, "writing header for file /dev/null"},
               {"/dev/full", some, 5000, "writing x values for file /dev/full"},
               {"/dev/full", some, 600, "writing y values for file /dev/full"},
               {"/dev/full", some, 10, ""}};  // fails when it is closed
  for (const auto& [path, samples, n, message] : cases) {
    headersFail = message.starts_with("writing header");
    for (int writer = 0; writer < 3; ++writer) {
      std::int32_t status = 7;
      const std::string line = writer < 2 || message.empty() ? "" : "Problem " + message + "\n";
      EXPECT_EQ(printedBy([&, path = path, samples = samples, n = n] {
                  write(writer, path, samples, some, n, &status);
                }),
                line + "|");
      EXPECT_EQ(status, -1) << message << ", writer " << writer;
      printedBy([&, path = path, samples = samples, n = n] {
        write(writer, path, samples, some, n, nullptr);
      });
    }
  }
  headersFail = false;
  EXPECT_EQ(folder.read("old"), "precious");
}

}  // namespace
}  // namespace krosac
