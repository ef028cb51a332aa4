#include "krosac/sacio/SacRoutines.h"

#include <gmock/gmock.h>

#include <climits>
#include <sstream>

#include "CapturedLog.h"
#include "TemporaryFolder.h"
#include "krosac/platform/LastReason.h"
#include "krosac/sacio/SacFile.h"
#include "sacio/SacImage.h"

namespace krosac {
namespace {

int length(const std::string& text) {
  return static_cast<int>(text.size());
}

// A header with NPTS 3, DELTA 0.5 and B 2, and values for two blocks.
const Words kEven = {{0, wordOf(0.5f)}, {20, wordOf(2)}, {24, wordOf(3)}, {304, 6}, {316, 3}};
const float kValues[6] = {1, -2, 3, 4, 5, 6};

TEST(SacRoutines, NamesSelectTheirFields) {
  std::istringstream fields(
      "B 20 E 24 DELTA 0 DEPMIN 4 DEPMEN 224 DEPMAX 8 EVLA 140 EVLO 144 EVDP 152 STLA 124 STLO 128 "
      "STEL 132 CMPAZ 228 CMPINC 232 DIST 200 GCARC 212 AZ 204 BAZ 208 O 28 A 32 T0 40 T1 44 T2 48 "
      "T3 52 T4 56 T5 60 T6 64 T7 68 T8 72 T9 76 USER0 160 USER1 164 USER2 168 USER3 172 USER4 176 "
      "USER5 180 USER6 184 USER7 188 USER8 192 USER9 196 "
      "NZYEAR 280 NZJDAY 284 NZHOUR 288 NZMIN 292 NZSEC 296 NZMSEC 300 NVHDR 304 NPTS 316");
  std::string name;
  const float value = 7.5f;
  const auto count = static_cast<std::int32_t>(wordOf(value));
  for (std::size_t offset; fields >> name >> offset;) {
    const bool isReal = offset < 280;
    float valueBack = 0;
    std::int32_t countBack = 0;
    newhdr_();
    const std::string out = printedBy([&] {
      isReal ? setfhv_(name.data(), &value, nullptr, length(name))
             : setnhv_(name.data(), &count, nullptr, length(name));
    });
    isReal ? getfhv_(name.data(), &valueBack, nullptr, length(name))
           : getnhv_(name.data(), &countBack, nullptr, length(name));
    EXPECT_EQ(bytesOf(ghdr), headerImage({{offset, wordOf(value)}})) << name;
    EXPECT_TRUE(valueBack == value || countBack == count) << name;
    EXPECT_EQ(out, name == "NPTS" ? "NPTS = 1089470464\n|" : "|") << name;
  }
}

TEST(SacRoutines, NamesWithoutAMatchPrintWarningsAndChangeNothing) {
  std::int32_t error = 7, count = 7, one = 1;
  float read = 7, value = 1;
  char station[] = "abcdefgh";
  newhdr_();
  EXPECT_EQ(printedBy([&] {
              getfhv_("t0 ", &read, &error, 3);
              setfhv_("t0 ", &value, &error, 3);
              getnhv_("t0", &count, &error, 2);
              setnhv_("t0", &one, &error, 2);
              setihv_("t0", "ITIME", &error, 2, 5);
              setlhv_("lovrok", &one, &error, 6);
              getkhv_("ka", station, &error, 2, 8);
              setkhv_("kstnm", station, &error, 5, 8);
              for (const int n : {-1, 4, 100}) setfhv_("DEL%sTA", &value, &error, n);
            }),
            "Warning T0  not matched in getfhv\nWarning T0  not matched in setfhv\n"
            "Warning T0 not matched in getnhv\nWarning: T0 not found in setnhv\n"
            "Warning: T0 not found in setihv\nWarning: LOVROK not found in setlhv\n"
            "Warning  not matched in setfhv\nWarning DEL% not matched in setfhv\n"
            "Warning DEL%STA not matched in setfhv\n|Warning KA not matched in getfhv\n"
            "Warning setkhv is not implemented yet.\n");
  EXPECT_EQ(std::tuple(read, count, error), std::tuple(-12345.0f, -12345, 7));
  EXPECT_STREQ(station, "-12345gh");
  EXPECT_EQ(bytesOf(ghdr), headerImage());
}

TEST(SacRoutines, TextsLogicalsAndEnumeratedValues) {
  ghdr = kSacHeaderTemplate;
  std::copy_n("BHZ\0wxyz", 8, ghdr.KCMPNM);
  for (const auto& [room, text] :
       {std::pair(-1, "........."), {7, "BHZ\0wxy.."}, {9, "BHZ\0wxyz."}}) {
    std::string component(9, '.');
    getkhv_("kcmpnm", component.data(), nullptr, 6, room);
    EXPECT_EQ(component, std::string(text, 9)) << room;
  }
  for (const auto& [value, type] : {std::pair("itime", 1), {"ITIME ", 4}, {"IXY", 4}}) {
    ghdr.IFTYPE = 4;
    setihv_("iftype", value, nullptr, 6, length(value));
    EXPECT_EQ(ghdr.IFTYPE, type) << value;
  }
  const std::int32_t odd = -77;
  setlhv_("leven", &odd, nullptr, 5);
  EXPECT_EQ(ghdr.LEVEN, odd);
}

TEST(SacRoutines, ReadersPrintEachFailure) {
  const TemporaryFolder folder;
  const std::string file = folder.path("file"), image = headerImage(kEven) + bytesOf(kValues);
  const std::string slashes(508 - folder.path().size(), '/');  // make a path of 512 characters
  const std::tuple<std::size_t, std::string, bool, bool, bool> cases[] = {
      {656, file + " \t", true, true, true},  // can header, one block, two be read?
      {656, folder.path() + slashes.substr(1) + "file", true, true, true},
      {656, folder.path() + slashes + "file", false, false, false},
      {655, file, true, true, false},
      {643, file, true, false, false},
      {631, file, false, false, false}};
  for (const auto& [bytes, path, header, even, xy] : cases) {
    SCOPED_TRACE(bytes);
    folder.write("file", image.substr(0, bytes));
    const std::string end = " (io_error = -1, name = " + path.substr(0, path.find(' ')) + ")\n";
    const auto message = [&](bool good, const char* what) {
      return good ? "" : std::string("Problem reading the SAC ") + what + end;
    };
    float values[9] = {}, b = 9, delta = 9;
    std::int32_t most = 3, n = 9, error = 7, errorXY = 7;
    newhdr_();
    EXPECT_EQ(printedBy([&, &path = path] {
                rsac1_(path.data(), values + 6, &n, &b, &delta, &most, &error, length(path));
                rsac2_(path.data(), values, &n, values + 3, &most, &errorXY, length(path));
              }),
              message(header, "Header") + message(even, "File") + message(header, "XY Header") +
                  message(xy, "XY File") + "|");
    EXPECT_EQ(bytesOf(ghdr), headerImage(header ? kEven : Words()));
    EXPECT_EQ(std::tuple(error, errorXY, b, delta),
              std::tuple(even - 1, xy - 1, even ? 2 : 9, even ? 0.5f : 9));
    EXPECT_TRUE(!even || bytesOf(values).substr(24) == bytesOf(kValues).substr(0, 12));
    EXPECT_TRUE(!xy || bytesOf(values).substr(0, 24) == bytesOf(kValues));
    if (even) rsac1_(path.data(), values, &n, &b, &delta, &(most = 2), &error, length(path));
    EXPECT_TRUE(!even || (n == 2 && ghdr.NPTS == 3));
  }
}

TEST(SacRoutines, WritersUseTheGlobalHeaderOrThePlainFunctions) {
  const TemporaryFolder folder;
  const std::string path = folder.path("file"), plain = folder.path("plain");
  std::int32_t error = 7, status = 7;
  for (const auto& [n, e] : {std::pair{3, 3.0f}, {0, 1.5f}, {INT_MIN, -0x1p30f}}) {
    newhdr_();
    ghdr.NPTS = n;
    ghdr.DELTA = 0.5f;
    ghdr.B = 2;
    ghdr.LEVEN = 0;  // one block is written although the header is x-y
    wsac0_(path.data(), kValues, kValues + 3, &error, length(path));
    const Words words = {{0, wordOf(0.5f)}, {20, wordOf(2)}, {304, 6}, {316, n}, {420, 0}};
    EXPECT_EQ(folder.read("file"),
              headerImage(words, {{24, wordOf(e)}}) + bytesOf(kValues).substr(12, n > 0 ? 12 : 0));
    EXPECT_EQ(bytesOf(ghdr), headerImage(words));
    EXPECT_EQ(error, n > 0 ? 0 : -1);
  }
  const std::int32_t n = 3;
  const float b = 2, delta = 0.5f;
  wsac1_(path.data(), kValues, &n, &b, &delta, &error, length(path));
  WriteSAC1(plain.c_str(), kValues, n, &status, delta, b);
  EXPECT_EQ(folder.read("file"), folder.read("plain"));
  wsac2_(path.data(), kValues, &n, kValues + 3, &error, length(path));
  WriteSAC2(plain.c_str(), n, kValues + 3, kValues, &status);
  EXPECT_EQ(folder.read("file"), folder.read("plain"));
  EXPECT_EQ(error, 0);
}

TEST(SacRoutines, NullInputsAreRefusedAndNullOutputsSkipped) {
  const TemporaryFolder folder;
  const std::string old = folder.write("old", "precious");
  const std::int32_t three = 3, negative = -1;
  const float one = 1;
  for (const std::string& path :
       {std::string(" "), folder.path() + std::string(600, '/') + "old", old}) {
    const float* const y = path == old ? nullptr : kValues;
    std::int32_t errors[] = {7, 7, 7, 7, 7, 7};
    newhdr_();
    ghdr.NPTS = 3;
    const std::string printed = printedBy([&] {
      wsac0_(path.data(), kValues, y, &errors[0], length(path));
      wsac1_(path.data(), y, &three, &one, &one, &errors[1], length(path));
      wsac1_(path.data(), kValues, &three, nullptr, &one, &errors[2], length(path));
      wsac1_(path.data(), kValues, &three, &one, nullptr, &errors[3], length(path));
      wsac1_(path.data(), kValues, &negative, &one, &one, &errors[4], length(path));
      wsac2_(path.data(), kValues, nullptr, kValues, &errors[5], length(path));
      wsac2_(nullptr, y, &three, kValues, nullptr, 4);
      rsac1_(nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, 4);
      getfhv_(nullptr, nullptr, nullptr, 4);
      setfhv_("B", nullptr, nullptr, 1);
      setnhv_("NPTS", nullptr, nullptr, 4);
      getkhv_("KSTNM", nullptr, nullptr, 5, 8);
      setlhv_("LEVEN", nullptr, nullptr, 5);
    });
    EXPECT_EQ(printed.find("Problem creating file " + path.substr(0, path.find(' ')) + "\n"), 0u);
    EXPECT_THAT(errors, testing::Each(-1));
    EXPECT_EQ(bytesOf(ghdr), headerImage({{304, 6}, {316, 3}}));
  }
  EXPECT_EQ(folder.read("old"), "precious");
}

TEST(SacRoutines, FailuresHaveReasonsAndSuccessHasNone) {
  const TemporaryFolder folder;
  const std::string file = folder.path("file"), tooLong(513, 'f');
  const std::int32_t one = 1;
  const float value = 7;
  const auto write = [&](const std::string& path, const float* b) {
    wsac1_(path.data(), kValues, &one, b, &value, nullptr, length(path));
    return std::string(lastReason());
  };
  const auto set = [&](const std::string& name, const float* input) {
    setfhv_(name.data(), input, nullptr, length(name));
    return std::string(lastReason());
  };
  const auto setType = [&](const std::string& type) {
    setihv_("IFTYPE", type.data(), nullptr, 6, length(type));
    return std::string(lastReason());
  };
  testing::internal::CaptureStdout();
  const std::pair<std::string, std::string> reasons[] = {
      {write(tooLong, &value), "file name of 513 characters, at most 511 are possible"},
      {write(file, nullptr), "no count, begin time or interval given"},
      {write(file, &value), ""},
      {set("T0 ", &value), "no header field of this type is named \"T0 \""},
      {set("T0", nullptr), "no value given"},
      {set("T0", &value), ""},
      {setType("IXY"), "no value of IFTYPE is named \"IXY\""},
      {setType("ITIME"), ""}};
  testing::internal::GetCapturedStdout();
  for (const auto& [reason, expected] : reasons) EXPECT_EQ(reason, expected);
}

TEST(SacRoutines, TextHelpers) {
  for (const auto& [text, max, kept] : {std::tuple("ABC DEF", 7, "ABC"),
                                        {"ABC DEF", 2, "AB"},
                                        {"ABC", INT_MIN, ""},
                                        {"A\rB", 3, "A"},
                                        {"\x08\x0e", 9, "\x08\x0e"},
                                        {nullptr, 5, ""}}) {
    char copy[] = "........";
    EXPECT_EQ(fscpy(copy, text, max), copy);
    EXPECT_STREQ(copy, kept);
    EXPECT_TRUE(fslen(text, max) == length(kept) && fslen_(text, max) == length(kept));
    EXPECT_EQ(copy[length(kept) + 1], '.');
  }
  char text[] = "....";
  EXPECT_TRUE(fclearstring_(text, -2) == 0 && std::string(text, 4) == std::string("\0...", 4));
  EXPECT_TRUE(fclearstring_(text, 3) == 3 && std::string(text, 4) == std::string("   \0", 4));
  EXPECT_TRUE(fclearstring_(nullptr, 3) == 3 && fscpy(nullptr, "ABC", 3) == nullptr);
  EXPECT_EQ(printedBy(printSacIOVersion), "Brevlo library version: myVersionNumber\n|");
}

}  // namespace
}  // namespace krosac
