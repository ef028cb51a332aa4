#include "krosac/sacio/SacRoutines.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <bit>
#include <climits>
#include <cstdlib>
#include <functional>
#include <sstream>

#include "TemporaryFolder.h"
#include "sacio/SacImage.h"

namespace krosac {
namespace {

constexpr auto pattern = std::bit_cast<std::uint32_t, float>;

// What the action prints on standard output, a bar, and what it prints on standard error.
std::string printed(const std::function<void()>& action) {
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  action();
  const std::string out = testing::internal::GetCapturedStdout();
  return out + "|" + testing::internal::GetCapturedStderr();
}

int length(const std::string& text) {
  return static_cast<int>(text.size());
}

// A header of NPTS 3, DELTA 0.5 and B 2, and values for two blocks.
const Words kEven = {{0, pattern(0.5f)}, {20, pattern(2)}, {24, pattern(3)}, {304, 6}, {316, 3}};
const float kValues[6] = {1, -2, 3, 4, 5, 6};

TEST(SacRoutines, NamesReachTheirFields) {
  std::istringstream fields(
      "B 20 E 24 DELTA 0 DEPMIN 4 DEPMEN 224 DEPMAX 8 EVLA 140 EVLO 144 EVDP 152 STLA 124 STLO 128 "
      "STEL 132 CMPAZ 228 CMPINC 232 DIST 200 GCARC 212 AZ 204 BAZ 208 O 28 A 32 T0 40 T1 44 T2 48 "
      "T3 52 T4 56 T5 60 T6 64 T7 68 T8 72 T9 76 USER0 160 USER1 164 USER2 168 USER3 172 USER4 176 "
      "USER5 180 USER6 184 USER7 188 USER8 192 USER9 196 "
      "NZYEAR 280 NZJDAY 284 NZHOUR 288 NZMIN 292 NZSEC 296 NZMSEC 300 NVHDR 304 NPTS 316");
  std::string name;
  for (std::size_t offset; fields >> name >> offset;) {
    newhdr_();
    const float value = 7.5f;
    const std::int32_t count = 1089470464;  // the bits of 7.5f
    float valueBack = 0;
    std::int32_t countBack = 0;
    const std::string out = printed([&] {
      if (offset < 280) {
        setfhv_(name.data(), &value, nullptr, length(name));
        getfhv_(name.data(), &valueBack, nullptr, length(name));
      } else {
        setnhv_(name.data(), &count, nullptr, length(name));
        getnhv_(name.data(), &countBack, nullptr, length(name));
      }
    });
    EXPECT_EQ(bytesOf(ghdr), headerImage({{offset, pattern(value)}})) << name;
    EXPECT_TRUE(valueBack == value || countBack == count) << name;
    EXPECT_EQ(out, name == "NPTS" ? "NPTS = 1089470464\n|" : "|") << name;
  }
}

TEST(SacRoutines, NamesWithoutAMatchAreToldAndChangeNothing) {
  const std::string fifteen(15, 'X'), sixteen(16, 'X'), padded = "DELTA" + std::string(35, ' ');
  const std::tuple<std::string, int, std::string> names[] = {
      {"MAG", 3, "MAG"},       {"KHOLE", 5, "KHOLE"},
      {"lovrok", 6, "LOVROK"}, {"DELTA   ", 8, "DELTA   "},
      {"DELTA", 4, "DELT"},    {"T0", 0, ""},
      {"T0", INT_MIN, ""},     {"no%s@z{", INT_MAX, "NO%S@Z{"},
      {fifteen, 15, fifteen},  {sixteen, 16, sixteen},
      {padded, 40, padded}};
  for (const auto& [name, size, told] : names) {
    const char* const text = name.data();
    const int n = size;
    const float value = 1;
    const std::int32_t one = 1;
    std::int32_t error = 7, count = 7;
    float read = 7;
    char station[9] = "abcdefgh";
    newhdr_();
    EXPECT_EQ(printed([&] {
                getfhv_(text, &read, &error, n);
                setfhv_(text, &value, &error, n);
                getnhv_(text, &count, &error, n);
                setnhv_(text, &one, &error, n);
                getkhv_(text, station, &error, n, 8);
                setkhv_(text, station, &error, n, 8);
                setihv_(text, "ITIME", &error, n, 5);
                setlhv_(text, &one, &error, n);
              }),
              "Warning " + told + " not matched in getfhv\nWarning " + told +
                  " not matched in setfhv\nWarning " + told + " not matched in getnhv\nWarning: " +
                  told + " not found in setnhv\nWarning: " + told +
                  " not found in setihv\nWarning: " + told + " not found in setlhv\n|Warning " +
                  told + " not matched in getfhv\nWarning setkhv is not implemented yet.\n");
    EXPECT_EQ(std::tuple(read, count, error), std::tuple(-12345.0f, -12345, 7));
    EXPECT_STREQ(station, "-12345gh");
    EXPECT_EQ(bytesOf(ghdr), headerImage());
  }
}

TEST(SacRoutines, TextsLogicalsAndEnumeratedValues) {
  ghdr = kSacHeaderTemplate;
  std::copy_n("ANMO    ", 8, ghdr.KSTNM);
  std::copy_n("BHZ\0wxyz", 8, ghdr.KCMPNM);
  for (const int room : {INT_MIN, -1, 0, 1, 6, 7, 8, 12}) {
    const auto kept = static_cast<std::size_t>(std::clamp(room, 0, 8));
    const std::string fields[][2] = {
        {"kstnm", "ANMO    "}, {"KCMPNM", std::string("BHZ\0wxyz", 8)}, {"KA", "-12345.."}};
    for (const auto& [name, field] : fields) {
      std::string text(12, '.');
      printed([&] { getkhv_(name.data(), text.data(), nullptr, length(name), room); });
      EXPECT_EQ(text, field.substr(0, kept) + std::string(12 - kept, '.')) << name << room;
    }
  }
  const std::string values[] = {"ITIME", "itime", "ITIME ", "IXY", "", std::string(40, 'I')};
  for (const std::string& value : values) {
    ghdr.IFTYPE = 4;
    EXPECT_EQ(printed([&] { setihv_("iftype", value.data(), nullptr, 6, length(value)); }), "|");
    EXPECT_EQ(ghdr.IFTYPE, value == "ITIME" || value == "itime" ? 1 : 4) << value;
  }
  const std::int32_t odd = -77;
  setlhv_("leven", &odd, nullptr, 5);
  EXPECT_EQ(ghdr.LEVEN, odd);
}

TEST(SacRoutines, ReadersTellEachFailure) {
  const TemporaryFolder folder;
  const std::string file = folder.path("file"), missing = folder.path("missing");
  const std::string slashes(508 - folder.path().size(), '/');  // make a path of 512 characters
  const struct {
    std::size_t bytes;
    std::string path;
    std::int32_t even, xy;  // errors
    bool header;
  } cases[] = {{656, file, 0, 0, true},
               {656, file + " \t", 0, 0, true},
               {656, folder.path() + slashes.substr(1) + "file", 0, 0, true},
               {656, folder.path() + slashes + "file", -1, -1, false},
               {655, file, 0, -1, true},
               {643, file, -1, -1, true},
               {631, file, -1, -1, false},
               {656, missing, -1, -1, false},
               {656, "    ", -1, -1, false}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.path + " " + std::to_string(c.bytes));
    folder.write("file", (headerImage(kEven) + bytesOf(kValues)).substr(0, c.bytes));
    const std::string name = c.path.substr(0, c.path.find(' '));
    const auto told = [&](std::int32_t error, const std::string& kind) {
      const std::string start = "Problem reading the SAC " + kind,
                        end = " (io_error = -1, name = " + name + ")\n";
      return (c.header ? "" : start + "Header" + end) + (error ? start + "File" + end : "") + "|";
    };
    float one[3] = {}, two[6] = {}, b = 9, delta = 9;
    std::int32_t max = 3, n = 9, error = 7;
    const auto even = [&] {
      rsac1_(c.path.data(), one, &n, &b, &delta, &max, &error, length(c.path));
    };
    const auto xy = [&] { rsac2_(c.path.data(), two, &n, two + 3, &max, &error, length(c.path)); };
    newhdr_();
    EXPECT_EQ(printed(even), told(c.even, ""));
    EXPECT_EQ(std::tuple(error, n, b, delta),
              c.even ? std::tuple(-1, 9, 9.0f, 9.0f) : std::tuple(0, 3, 2.0f, 0.5f));
    EXPECT_TRUE(error || bytesOf(one) == bytesOf(kValues).substr(0, 12));
    EXPECT_EQ(bytesOf(ghdr), headerImage(c.header ? kEven : Words()));
    newhdr_();
    EXPECT_EQ(printed(xy), told(c.xy, "XY "));
    EXPECT_EQ(error, c.xy);
    EXPECT_TRUE(error || bytesOf(two) == bytesOf(kValues));
    EXPECT_EQ(bytesOf(ghdr), headerImage(c.header ? kEven : Words()));

    if (c.even) continue;
    max = 2;
    EXPECT_EQ(printed(even), "|");
    EXPECT_EQ(std::pair(n, ghdr.NPTS), std::pair(2, 3));
  }
}

TEST(SacRoutines, TheGlobalHeaderIsWrittenWithAnyCount) {
  const TemporaryFolder folder;
  const std::string path = folder.path("file");
  const std::pair<std::int32_t, float> counts[] = {
      {3, 3.0f}, {1, 2.0f}, {0, 1.5f}, {-1, 1.0f}, {-12345, -6171.0f}, {INT_MIN, -0x1p30f}};
  for (const auto& [n, e] : counts) {
    newhdr_();
    ghdr.NPTS = n;
    ghdr.DELTA = 0.5f;
    ghdr.B = 2;
    ghdr.LEVEN = 0;  // an x-y header, and yet one block is written
    std::int32_t error = 7;
    wsac0_(path.data(), kValues, kValues + 3, &error, length(path));
    const auto count = static_cast<std::uint32_t>(n);
    const Words words = {{0, pattern(0.5f)}, {20, pattern(2)}, {304, 6}, {316, count}, {420, 0}};
    EXPECT_EQ(folder.read("file"), headerImage(words, {{24, pattern(e)}}) +
                                       bytesOf(kValues).substr(12, n > 0 ? 4 * count : 0));
    EXPECT_EQ(bytesOf(ghdr), headerImage(words));
    EXPECT_EQ(error, n > 0 ? 0 : -1);
  }
}

TEST(SacRoutines, WritersRefuse) {
  const TemporaryFolder folder;
  const std::string old = folder.write("old", "precious");
  const std::string tooLong = folder.path() + std::string(600, '/') + "old";
  const std::int32_t three = 3, negative = -1;
  const float one = 1;
  const struct {
    std::string path;
    const float* y;
    const std::int32_t* n;
  } cases[] = {{folder.path("no/file"), kValues, &three},
               {" ", kValues, &three},
               {tooLong, kValues, &three},
               {old, nullptr, &three},
               {old, kValues, nullptr},
               {old, kValues, &negative}};
  for (const auto& c : cases) {
    std::int32_t errors[3] = {7, 7, 7};
    newhdr_();
    ghdr.NPTS = 3;
    const std::string out = printed([&] {
      const float* const all = c.n == &three ? c.y : nullptr;
      wsac0_(c.path.data(), kValues, all, &errors[0], length(c.path));
      wsac1_(c.path.data(), c.y, c.n, &one, &one, &errors[1], length(c.path));
      wsac2_(c.path.data(), c.y, c.n, kValues, &errors[2], length(c.path));
    });
    EXPECT_EQ(out, "Problem creating file " + c.path.substr(0, c.path.find(' ')) + "\n|");
    EXPECT_EQ(std::to_array(errors), std::to_array({-1, -1, -1})) << c.path;
  }
  for (const bool hasB : {true, false}) {
    std::int32_t error = 7;
    wsac1_(old.data(), kValues, &three, hasB ? &one : nullptr, hasB ? nullptr : &one, &error,
           length(old));
    EXPECT_EQ(error, -1);
  }
  EXPECT_EQ(folder.read("old"), "precious");
}

TEST(SacRoutines, NullArgumentsAreHarmless) {
  newhdr_();
  printed([] {
    rsac1_(nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, 4);
    rsac2_(nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, 4);
    wsac0_(nullptr, nullptr, nullptr, nullptr, 4);
    wsac1_(nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, 4);
    wsac2_(nullptr, nullptr, nullptr, nullptr, nullptr, 4);
    getfhv_(nullptr, nullptr, nullptr, 4);
    setfhv_("B", nullptr, nullptr, 1);
    getnhv_("NPTS", nullptr, nullptr, 4);
    setnhv_("NPTS", nullptr, nullptr, 4);
    getkhv_("KSTNM", nullptr, nullptr, 5, 8);
    setihv_("IFTYPE", nullptr, nullptr, 6, 5);
    setlhv_("LEVEN", nullptr, nullptr, 5);
  });
  EXPECT_EQ(bytesOf(ghdr), headerImage({{304, 6}}));  // wsac0_ defined NVHDR.
}

TEST(SacRoutines, TextHelpers) {
  const std::tuple<const char*, int, int> cases[] = {
      {"ABC DEF", 7, 3}, {"ABC DEF", 2, 2}, {"ABC DEF", 0, 0}, {"ABC", INT_MIN, 0},
      {"ABC", 9, 3},     {" ABC", 4, 0},    {"A\tB", 3, 1},    {"A\nB", 3, 1},
      {"A\vB", 3, 1},    {"A\fB", 3, 1},    {"A\rB", 3, 1},    {"\x08\x0e\xa0", 3, 3},
      {nullptr, 5, 0}};
  for (const auto& [text, max, size] : cases) {
    EXPECT_EQ(fslen(text, max), size);
    EXPECT_EQ(fslen_(text, max), size);
    const auto n = static_cast<std::size_t>(size);
    std::string copy(9, '.');
    EXPECT_EQ(fscpy(copy.data(), text, max), copy.data());
    EXPECT_EQ(copy, std::string(text ? text : "", n) + '\0' + std::string(8 - n, '.'));
  }
  EXPECT_EQ(fscpy(nullptr, "ABC", 3), nullptr);
  for (const int n : {3, 0, -2}) {
    const auto blanks = static_cast<std::size_t>(std::max(n, 0));
    std::string text(6, '.');
    EXPECT_EQ(fclearstring_(text.data(), n), std::max(n, 0));
    EXPECT_EQ(text, std::string(blanks, ' ') + '\0' + std::string(5 - blanks, '.'));
  }
  EXPECT_EQ(fclearstring_(nullptr, 3), 3);
  EXPECT_EQ(printed(printSacIOVersion), "Brevlo library version: myVersionNumber\n|");
}

TEST(SacRoutines, FortranReadsEditsAndWrites) {
#ifndef KROSAC_FORTRAN_PROGRAM
  GTEST_SKIP() << "no Fortran compiler";
#else
  const TemporaryFolder folder;
  std::string header = headerImage(kEven, {{280, 2010}}).replace(440, 8, "ANMO    ");
  folder.write("even.sac", header + bytesOf(kValues).substr(0, 12));
  const std::string command =
      "cd '" + folder.path() + "' && '" KROSAC_FORTRAN_PROGRAM "' >out 2>&1";
  ASSERT_EQ(std::system(command.c_str()), 0) << folder.read("out");
  EXPECT_NE(folder.read("out").find("read 3 2.00 0.50 0.50 2010 ANMO 8\n"), std::string::npos)
      << folder.read("out");

  const float y[3] = {2, -4, 6}, x[3] = {1, -5, 5};
  const std::string one = bytesOf(y), two = bytesOf(y) + bytesOf(x);
  const Words made = {{304, 6}, {308, 0}, {312, 0}, {316, 3}, {424, 0}, {436, 0}};
  const Words begun = {{0, pattern(0.25f)}, {20, pattern(-1)}, {24, pattern(-0.5f)}, {316, 3}};
  header.replace(172, 4, bytesOf(2.5f)).replace(280, 4, bytesOf(2011)).replace(420, 1, 1, '\0');
  EXPECT_EQ(folder.read("edited.sac"), header + one);
  EXPECT_EQ(folder.read("begun.sac"), headerImage(begun, {{304, 6}}) + one);
  EXPECT_EQ(folder.read("again.sac"), headerImage(made, kEven).replace(348, 4, bytesOf(9)) + one);
  EXPECT_EQ(folder.read("xy.sac"), headerImage(made, {{340, 4}, {420, 0}}) + two);
#endif
}

}  // namespace
}  // namespace krosac
