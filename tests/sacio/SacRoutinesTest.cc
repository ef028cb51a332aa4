#include "krosac/sacio/SacRoutines.h"

#include <climits>
#include <sstream>

#include "CapturedLog.h"
#include "TemporaryFolder.h"
#include "krosac/sacio/SacFile.h"
#include "sacio/SacImage.h"

namespace krosac {
namespace {

int length(const std::string& text) {
  return static_cast<int>(text.size());
}

// A header of NPTS 3, DELTA 0.5 and B 2, and values for two blocks.
const Words kEven = {{0, wordOf(0.5f)}, {20, wordOf(2)}, {24, wordOf(3)}, {304, 6}, {316, 3}};
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
    const float value = 7.5f;
    const auto count = static_cast<std::int32_t>(wordOf(value));
    float valueBack = 0;
    std::int32_t countBack = 0;
    newhdr_();
    const std::string out = printedBy([&] {
      (offset < 280 ? setfhv_(name.data(), &value, nullptr, length(name))
                    : setnhv_(name.data(), &count, nullptr, length(name)));
      (offset < 280 ? getfhv_(name.data(), &valueBack, nullptr, length(name))
                    : getnhv_(name.data(), &countBack, nullptr, length(name)));
    });
    EXPECT_EQ(bytesOf(ghdr), headerImage({{offset, wordOf(value)}})) << name;
    EXPECT_TRUE(valueBack == value || countBack == count) << name;
    EXPECT_EQ(out, name == "NPTS" ? "NPTS = 1089470464\n|" : "|") << name;
  }
}

TEST(SacRoutines, NamesWithoutAMatchAreToldAndChangeNothing) {
  const std::tuple<std::string, int, std::string> names[] = {{"MAG", 3, "MAG"},
                                                             {"KHOLE", 5, "KHOLE"},
                                                             {"lovrok", 6, "LOVROK"},
                                                             {"DELTA   ", 8, "DELTA   "},
                                                             {"DELTA", 4, "DELT"},
                                                             {"T0", INT_MIN, ""},
                                                             {"no%s@z{", INT_MAX, "NO%S@Z{"}};
  for (const auto& [name, size, told] : names) {
    const char* const text = name.data();
    const int n = size;
    const float value = 1;
    const std::int32_t one = 1;
    std::int32_t error = 7, count = 7;
    float read = 7;
    char station[9] = "abcdefgh";
    const std::string warning = "Warning " + told + " not matched in ",
                      notFound = "Warning: " + told + " not found in ";
    newhdr_();
    EXPECT_EQ(printedBy([&] {
                getfhv_(text, &read, &error, n);
                setfhv_(text, &value, &error, n);
                getnhv_(text, &count, &error, n);
                setnhv_(text, &one, &error, n);
                getkhv_(text, station, &error, n, 8);
                setkhv_(text, station, &error, n, 8);
                setihv_(text, "ITIME", &error, n, 5);
                setlhv_(text, &one, &error, n);
              }),
              warning + "getfhv\n" + warning + "setfhv\n" + warning + "getnhv\n" + notFound +
                  "setnhv\n" + notFound + "setihv\n" + notFound + "setlhv\n|" + warning +
                  "getfhv\nWarning setkhv is not implemented yet.\n");
    EXPECT_EQ(std::tuple(read, count, error), std::tuple(-12345.0f, -12345, 7));
    EXPECT_STREQ(station, "-12345gh");
    EXPECT_EQ(bytesOf(ghdr), headerImage());
  }
}

TEST(SacRoutines, TextsLogicalsAndEnumeratedValues) {
  ghdr = kSacHeaderTemplate;
  std::copy_n("BHZ\0wxyz", 8, ghdr.KCMPNM);
  for (const int room : {INT_MIN, -1, 0, 1, 6, 7, 8, 12}) {
    const auto kept = static_cast<std::size_t>(std::clamp(room, 0, 8));
    const std::string fields[][2] = {{"kcmpnm", std::string("BHZ\0wxyz", 8)}, {"KA", "-12345.."}};
    for (const auto& [name, field] : fields) {
      std::string text(12, '.');
      printedBy(
          [&, &name = name] { getkhv_(name.data(), text.data(), nullptr, length(name), room); });
      EXPECT_EQ(text, field.substr(0, kept) + std::string(12 - kept, '.')) << name << room;
    }
  }
  for (const std::string value : {"ITIME", "itime", "ITIME ", "IXY", ""}) {
    ghdr.IFTYPE = 4;
    setihv_("iftype", value.data(), nullptr, 6, length(value));
    EXPECT_EQ(ghdr.IFTYPE, value == "ITIME" || value == "itime" ? 1 : 4) << value;
  }
  const std::int32_t odd = -77;
  setlhv_("leven", &odd, nullptr, 5);
  EXPECT_EQ(ghdr.LEVEN, odd);
}

TEST(SacRoutines, ReadersTellEachFailure) {
  const TemporaryFolder folder;
  const std::string file = folder.path("file"), image = headerImage(kEven) + bytesOf(kValues);
  const std::string slashes(508 - folder.path().size(), '/');  // make a path of 512 characters
  const struct {
    std::size_t bytes;
    std::string path;
    bool header, even, xy;  // what can be read
  } cases[] = {{656, file + " \t", true, true, true},
               {656, folder.path() + slashes.substr(1) + "file", true, true, true},
               {656, folder.path() + slashes + "file", false, false, false},
               {655, file, true, true, false},
               {643, file, true, false, false},
               {631, file, false, false, false},
               {656, "    ", false, false, false}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.path + " " + std::to_string(c.bytes));
    folder.write("file", image.substr(0, c.bytes));
    const auto told = [&](bool good, const std::string& kind) {
      const std::string start = "Problem reading the SAC " + kind,
                        end =
                            " (io_error = -1, name = " + c.path.substr(0, c.path.find(' ')) + ")\n";
      return (c.header ? "" : start + "Header" + end) + (good ? "" : start + "File" + end) + "|";
    };
    float x[6] = {}, b = 9, delta = 9;
    std::int32_t max = 3, n = 9, error = 7;
    const auto even = [&] {
      rsac1_(c.path.data(), x, &n, &b, &delta, &max, &error, length(c.path));
    };
    const auto xy = [&] { rsac2_(c.path.data(), x, &n, x + 3, &max, &error, length(c.path)); };
    newhdr_();
    EXPECT_EQ(printedBy(even), told(c.even, ""));
    EXPECT_EQ(std::tuple(error, n, b, delta),
              c.even ? std::tuple(0, 3, 2.0f, 0.5f) : std::tuple(-1, 9, 9.0f, 9.0f));
    EXPECT_TRUE(!c.even || bytesOf(x).substr(0, 12) == bytesOf(kValues).substr(0, 12));
    EXPECT_EQ(bytesOf(ghdr), headerImage(c.header ? kEven : Words()));
    newhdr_();
    EXPECT_EQ(printedBy(xy), told(c.xy, "XY "));
    EXPECT_EQ(error, c.xy ? 0 : -1);
    EXPECT_TRUE(!c.xy || bytesOf(x) == bytesOf(kValues));
    EXPECT_EQ(bytesOf(ghdr), headerImage(c.header ? kEven : Words()));
    if (!c.even) continue;
    max = 2;
    EXPECT_EQ(printedBy(even), "|");
    EXPECT_TRUE(n == 2 && ghdr.NPTS == 3);
  }
}

TEST(SacRoutines, TheGlobalHeaderIsWrittenWithAnyCount) {
  const TemporaryFolder folder;
  const std::string path = folder.path("file");
  for (const auto& [n, e] :
       {std::pair{3, 3.0f}, {0, 1.5f}, {-1, 1.0f}, {-12345, -6171.0f}, {INT_MIN, -0x1p30f}}) {
    newhdr_();
    ghdr.NPTS = n;
    ghdr.DELTA = 0.5f;
    ghdr.B = 2;
    ghdr.LEVEN = 0;  // an x-y header, and yet one block is written
    std::int32_t error = 7;
    wsac0_(path.data(), kValues, kValues + 3, &error, length(path));
    const Words words = {{0, wordOf(0.5f)}, {20, wordOf(2)}, {304, 6}, {316, n}, {420, 0}};
    EXPECT_EQ(folder.read("file"),
              headerImage(words, {{24, wordOf(e)}}) + bytesOf(kValues).substr(12, n > 0 ? 12 : 0));
    EXPECT_EQ(bytesOf(ghdr), headerImage(words));
    EXPECT_EQ(error, n > 0 ? 0 : -1);
  }
}

TEST(SacRoutines, WritersWriteAsThePlainFunctions) {
  const TemporaryFolder folder;
  const std::string routine = folder.path("routine"), plain = folder.path("plain");
  const std::int32_t n = 3;
  const float b = 2, delta = 0.5f;
  std::int32_t error = 7, status = 7;
  wsac1_(routine.data(), kValues, &n, &b, &delta, &error, length(routine));
  WriteSAC1(plain.c_str(), kValues, n, &status, delta, b);
  EXPECT_EQ(folder.read("routine"), folder.read("plain"));
  wsac2_(routine.data(), kValues, &n, kValues + 3, &error, length(routine));
  WriteSAC2(plain.c_str(), n, kValues + 3, kValues, &status);
  EXPECT_EQ(folder.read("routine"), folder.read("plain"));
  EXPECT_EQ(error, 0);
}

TEST(SacRoutines, WritersRefuse) {
  const TemporaryFolder folder;
  const std::string old = folder.write("old", "precious");
  const std::int32_t three = 3, negative = -1;
  const float one = 1;
  const std::tuple<std::string, const float*, const std::int32_t*, bool> cases[] = {
      {folder.path("no/file"), kValues, &three, true},
      {" ", kValues, &three, true},
      {folder.path() + std::string(600, '/') + "old", kValues, &three, true},
      {old, nullptr, &three, true},
      {old, kValues, nullptr, false},
      {old, kValues, &negative, false}};
  for (const auto& [path, y, n, global] : cases) {
    std::int32_t error0 = -1, error1 = 7, error2 = 7, noB = 7, noDelta = 7;
    newhdr_();
    ghdr.NPTS = 3;
    if (global) wsac0_(path.data(), kValues, y, &(error0 = 7), length(path));
    wsac1_(path.data(), y, n, &one, &one, &error1, length(path));
    wsac1_(path.data(), kValues, &three, nullptr, &one, &noB, length(path));
    wsac1_(path.data(), kValues, &three, &one, nullptr, &noDelta, length(path));
    const auto xy = [&, &path = path, y = y, n = n] {
      wsac2_(path.data(), y, n, kValues, &error2, length(path));
    };
    EXPECT_EQ(printedBy(xy), "Problem creating file " + path.substr(0, path.find(' ')) + "\n|");
    EXPECT_EQ(std::tuple(error0, error1, error2, noB, noDelta), std::tuple(-1, -1, -1, -1, -1));
  }
  EXPECT_EQ(folder.read("old"), "precious");
}

TEST(SacRoutines, NullArgumentsAreHarmless) {
  newhdr_();
  printedBy([] {
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
      {"ABC DEF", 7, 3}, {"ABC DEF", 2, 2}, {"ABC", INT_MIN, 0},    {"ABC", 9, 3},  {" ABC", 4, 0},
      {"A\tB", 3, 1},    {"A\rB", 3, 1},    {"\x08\x0e\xa0", 3, 3}, {nullptr, 5, 0}};
  for (const auto& [text, max, size] : cases) {
    EXPECT_TRUE(fslen(text, max) == size && fslen_(text, max) == size);
    const auto n = static_cast<std::size_t>(size);
    std::string copy(9, '.');
    EXPECT_EQ(fscpy(copy.data(), text, max), copy.data());
    EXPECT_EQ(copy, std::string(text ? text : "", n) + '\0' + std::string(8 - n, '.'));
  }
  std::string text(4, '.');
  EXPECT_EQ(fclearstring_(text.data(), -2), 0);
  EXPECT_EQ(text, std::string("\0...", 4));
  EXPECT_EQ(fclearstring_(text.data(), 3), 3);
  EXPECT_EQ(text, std::string("   \0", 4));
  EXPECT_TRUE(fclearstring_(nullptr, 3) == 3 && fscpy(nullptr, "ABC", 3) == nullptr);
  EXPECT_EQ(printedBy(printSacIOVersion), "Brevlo library version: myVersionNumber\n|");
}

}  // namespace
}  // namespace krosac
