#include "krosac/sacio/SacFile.h"

#include <dlfcn.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <bit>
#include <climits>
#include <cstdio>

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

constexpr float kSignalling = std::bit_cast<float>(0x7fa00001);
constexpr auto pattern = std::bit_cast<std::uint32_t, float>;

// A file with this NPTS, DELTA 0.5, B 2 and the samples 1, 2, ...
std::string file(std::int32_t npts, int samples) {
  std::string image = headerImage({{0, pattern(0.5f)}, {20, pattern(2)}, {304, 6}, {316, npts}});
  for (int i = 1; i <= samples; ++i) image += bytesOf(static_cast<float>(i));
  return image;
}

std::string cut(std::string bytes) {
  return bytes.substr(0, bytes.size() - 1);
}

// Whether n samples from a first one on were read, if the status says so, and no more touched.
bool holds(const float (&samples)[8], int n, int from, std::int32_t status) {
  for (int i = 0; i < 8; ++i) {
    const bool good =
        i < n ? status != 0 || samples[i] == static_cast<float>(from + i) : samples[i] == 0.0f;
    if (!good) return false;
  }
  return true;
}

TEST(SacFile, IsSacFileWantsPlausibleHeaders) {
  const TemporaryFolder folder;
  const auto result = [&](std::size_t offset, std::uint32_t word) {
    const auto path = folder.write("file", file(2, 0).replace(offset, 4, bytesOf(word)));
    return IsSacFile(path.c_str());
  };
  for (const std::uint32_t delta : {pattern(0), pattern(-0.5f), 0x7fc00000u})
    EXPECT_EQ(result(0, delta), -1) << delta;
  EXPECT_EQ(result(304, 0u - 12345), -1);
  EXPECT_EQ(result(304, 0), 1);
  for (const std::uint32_t none : {0u, 0u - 1}) EXPECT_EQ(result(316, none), -1) << none;
  for (const std::uint32_t huge : {1u << 30, 0u + INT_MAX}) EXPECT_EQ(result(316, huge), 1) << huge;
}

TEST(SacFile, ReadersTakeWhatIsThereAndSayWhatIsNot) {
  const TemporaryFolder folder;
  const struct {
    std::string name, bytes;
    std::int32_t max, isSac, n;  // n: what is read of each block; 9 where no header is
    std::int32_t even, xy;       // status of ReadSACfile and ReadSAC1, and of ReadSAC2
  } cases[] = {{"even samples", file(3, 3), 4, 1, 3, 0, -1},
               {"two blocks", file(3, 6), 4, -1, 3, 0, 0},
               {"small maximum: two reads in a row", file(3, 6), 2, -1, 2, 0, 0},
               {"greatest NPTS, small maximum", file(INT_MAX, 4), 2, 1, 2, 0, 0},
               {"first block a byte short", cut(file(3, 3)), 4, 1, 3, -1, -1},
               {"second block a byte short", cut(file(3, 6)), 4, -1, 3, 0, -1},
               {"a byte too long", file(1, 1) + "x", 4, -1, 1, 0, -1},
               {"NPTS zero", file(0, 0), 4, -1, 0, -1, 0},
               {"NPTS negative", file(INT_MIN, 4), 4, -1, INT_MIN, -1, -1},
               {"maximum zero", file(3, 6), 0, -1, 0, -1, 0},
               {"maximum negative", file(3, 6), -1, -1, -1, -1, -1},
               {"header a byte short", cut(file(3, 0)), 4, -1, 9, -1, -1},
               {"empty", "", 4, -1, 9, -1, -1},
               {"missing", "", 4, -1, 9, -1, -1},
               {"a folder", "", 4, -1, 9, -1, -1},
               {"no path", "", 4, -1, 9, -1, -1}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    const std::string written = folder.write("file", c.bytes), missing = folder.path("missing"),
                      here = folder.path();
    const char* const path = c.name == "missing"    ? missing.c_str()
                             : c.name == "a folder" ? here.c_str()
                             : c.name == "no path"  ? nullptr
                                                    : written.c_str();
    EXPECT_EQ(IsSacFile(path), c.isSac);
    SacHeader header;
    std::int32_t status = 7;
    ReadSACHeader(path, &header, &status);
    EXPECT_EQ(status, c.n == 9 ? -1 : 0);
    EXPECT_TRUE(status == -1 || bytesOf(header) == c.bytes.substr(0, 632));

    float one[8] = {}, again[8] = {}, first[8] = {}, second[8] = {};
    std::int32_t n = 9, npts = 9;
    float delta = 9, b = 9;
    ReadSACfile(path, one, &header, c.max, &(status = 7));
    EXPECT_EQ(status, c.even);
    EXPECT_TRUE(c.n == 9 || header.NPTS == c.n);
    ReadSAC1(path, again, &npts, &delta, &b, c.max, &(status = 7));
    EXPECT_EQ(status, c.even);
    EXPECT_EQ(std::tuple(npts, delta, b),
              c.even ? std::tuple(9, 9.0f, 9.0f) : std::tuple(c.n, 0.5f, 2.0f));
    ReadSAC2(path, &n, second, first, c.max, &(status = 7));
    EXPECT_EQ(std::tuple(status, n), std::tuple(c.xy, c.n));

    const std::int32_t count = c.n == 9 ? 0 : c.n;
    EXPECT_TRUE(holds(one, count, 1, c.even) && holds(again, count, 1, c.even));
    EXPECT_TRUE(holds(first, count, 1, c.even) && holds(second, count, count + 1, c.xy));
  }
}

TEST(SacFile, ReadersRefuseNullArrays) {
  const TemporaryFolder folder;
  const std::string path = folder.write("file", file(2, 4));
  SacHeader header;
  float samples[2] = {};
  std::int32_t status[6] = {7, 7, 7, 7, 7, 7};
  ReadSACHeader(path.c_str(), nullptr, &status[0]);
  ReadSACfile(path.c_str(), samples, nullptr, 2, &status[1]);
  ReadSACfile(path.c_str(), nullptr, &header, 2, &status[2]);
  ReadSAC1(path.c_str(), nullptr, nullptr, nullptr, nullptr, 2, &status[3]);
  ReadSAC2(path.c_str(), nullptr, nullptr, samples, 2, &status[4]);
  ReadSAC2(path.c_str(), nullptr, samples, nullptr, 2, &status[5]);
  EXPECT_THAT(status, testing::Each(-1));
  ReadSAC1(path.c_str(), samples, nullptr, nullptr, nullptr, 2, &status[0]);
  EXPECT_EQ(status[0], 0);
  ReadSAC2(path.c_str(), nullptr, samples, samples, 2, nullptr);
  EXPECT_EQ(samples[1], 4.0f);
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
  const float y[4] = {kSignalling, -2, -3, -4}, x[4] = {1, 2, 3, 4};
  const std::uint32_t delta = pattern(0.1f), b = pattern(-0.3f);
  const Words made = {{304, 6}, {308, 0}, {312, 0}, {424, 0}, {436, 0}};
  // 3 * 0.1f rounded to a float is 0.3f, so that E is 0; in double, or fused, it would not be.
  for (const auto& [n, e] : {std::pair(4u, 0u), std::pair(1u, b), std::pair(0u, pattern(-0.4f))}) {
    const std::string headers[] = {
        headerImage({{0, delta}, {20, b}, {24, e}, {316, n}}),
        headerImage(made, {{0, delta}, {20, b}, {24, e}, {316, n}, {348, 9}}),
        headerImage(made, {{316, n}, {340, 4}, {420, 0}})};
    for (int writer = 0; writer < 3; ++writer) {
      SCOPED_TRACE("writer " + std::to_string(writer) + ", n " + std::to_string(n));
      std::int32_t status = 7;
      write(writer, path.c_str(), y, x, n, &status);
      EXPECT_EQ(status, n == 0 && writer != 2 ? -1 : 0);
      EXPECT_EQ(folder.read("file"), headers[writer] + bytesOf(y).substr(0, 4 * n) +
                                         bytesOf(x).substr(0, writer == 2 ? 4 * n : 0));
    }
  }
}

TEST(SacFile, WritersRefuse) {
  const TemporaryFolder folder;
  const std::string old = folder.write("old", "precious"), missing = folder.path("no/file");
  const std::vector<float> values(5000, 1.0f);
  const float* const some = values.data();
  const struct {
    std::string name;
    const char* path;
    const float *samples, *others;
    std::int32_t n;
    std::string message;  // of WriteSAC2
  } cases[] = {
      {"missing folder", missing.c_str(), some, some, 2, "creating file " + missing},
      {"no path", nullptr, some, some, 2, "creating file (null)"},
      {"no samples", old.c_str(), nullptr, some, 2, "creating file " + old},
      {"negative", old.c_str(), some, some, -1, "creating file " + old},
      {"least count", old.c_str(), some, some, INT_MIN, "creating file " + old},
      {"header", "/dev/null", some, some, 2, "writing header for file /dev/null"},
      {"first block", "/dev/full", some, some, 5000, "writing x values for file /dev/full"},
      {"second block", "/dev/full", some, some, 600, "writing y values for file /dev/full"},
      {"close", "/dev/full", some, some, 10, ""}};
  for (const auto& c : cases) {
    for (int writer = 0; writer < 3; ++writer) {
      std::int32_t status = 7;
      headersFail = c.name == "header";
      testing::internal::CaptureStdout();
      write(writer, c.path, c.samples, c.others, c.n, &status);
      write(writer, c.path, c.samples, c.others, c.n, nullptr);
      headersFail = false;
      const std::string line = c.message.empty() ? "" : "Problem " + c.message + "\n";
      EXPECT_EQ(testing::internal::GetCapturedStdout(), writer == 2 ? line + line : "") << c.name;
      EXPECT_EQ(status, -1) << c.name << ", writer " << writer;
    }
  }
  EXPECT_EQ(folder.read("old"), "precious");
}

}  // namespace
}  // namespace krosac
