// The scanner of columns, through the parsers of the records.
#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <cstdio>
#include <random>

#include "CapturedLog.h"
#include "krosac/catalog/kroHypocenter.h"

namespace krosac {
namespace {

using H = kroHypocenter;
using P = kroSeismicPhase;

TEST(FixedColumns, ScanAsSscanfDoes) {
  std::mt19937 random(7);
  const std::string alphabet = "0123456789          ...--++eeSN&\t\v\xe9";
  const auto event = make<H>();
  const auto phase = make<P>();
  float latErr = 0.0f, mb = 0.0f, field = 0.0f;
  int nmb = 0;
  char code[6] = "?";
  phase->setStationCode("?");
  const std::string before = std::setlocale(LC_NUMERIC, nullptr);
  std::setlocale(LC_NUMERIC, "C");  // for sscanf
  for (int i = 0; i < 100000; ++i) {
    std::string line(random() % 40, ' ');
    for (char& c : line) c = alphabet[random() % alphabet.size()];
    const auto columns = [padded = line + std::string(40, ' ')](std::size_t first,
                                                                std::size_t width) {
      return padded.substr(first - 1, width);
    };
    event->parseEDRErrMagInfo(line);
    if (std::sscanf(columns(9, 6).c_str(), "%f", &field) == 1) latErr = field;
    if (std::sscanf(columns(29, 3).c_str(), "%f", &field) == 1) mb = field;
    std::sscanf(columns(33, 3).c_str(), "%d", &nmb);
    ASSERT_EQ(std::tuple(event->latErr(), event->mb(), event->nmb()), std::tuple(latErr, mb, nmb))
        << line;
    phase->parseEDRPrimaryPhase(line);
    std::sscanf(columns(3, 5).c_str(), "%5s", code);
    ASSERT_EQ(phase->stationCode(), code) << line;
  }
  std::setlocale(LC_NUMERIC, before.c_str());
}

TEST(FixedColumns, TakeNumbersOfEveryFormInEveryLocale) {
  std::setlocale(LC_ALL, "de_DE.UTF-8");  // a decimal comma, where the machine has one
  const auto event = make<H>();
  for (const auto& [text, expected] : {std::pair("0x1p4", 16.0f),
                                       {"-inf", -INFINITY},
                                       {"9e99", INFINITY},
                                       {"+-1", 7.0f},
                                       {"1,5", 1.0f}}) {
    event->setLatErr(7.0f);
    event->parseEDRErrMagInfo(std::string(8, ' ') + text);
    EXPECT_EQ(event->latErr(), expected) << text;
  }
  std::setlocale(LC_ALL, "C");
}

template <typename T, bool (T::*parse)(std::string_view)>
std::string parsed(std::string_view line) {
  const auto record = make<T>();
  record->init();
  EXPECT_TRUE((*record.*parse)(line));
  // The number of a point in no region is another one each time.
  if constexpr (std::is_same_v<T, H>) record->setFeGreg(0);
  const auto bytes = archive(*record);
  return record->description() + std::string(bytes->bytes(), bytes->bytes() + bytes->length());
}

TEST(FixedColumns, AnyLineIsSafeAndEndsAtItsLineEnd) {
  std::mt19937 random(8);
  const CapturedLog quiet;
  for (const auto parser :
       {parsed<P, &P::parseEDRPrimaryPhase>, parsed<P, &P::parseEDRSecondaryArrivalRecord>,
        parsed<P, &P::parseEDRSurfaceWaveRecord>, parsed<H, &H::parseEDRErrMagInfo>,
        parsed<H, &H::parseEDRHypocenter>,
        parsed<kroSeismicStation, &kroSeismicStation::parseUSGSStationInfo>}) {
    EXPECT_EQ(parser({}), parser(""));
    for (int i = 0; i < 1000; ++i) {
      std::string line(random() % 90, ' ');
      for (char& c : line) c = static_cast<char>(random() % (i % 3 ? 64 : 256));
      // With nothing behind it, so that a sanitizer sees every access outside.
      const std::vector<char> exact(line.begin(), line.end());
      const std::string whole = line.substr(0, line.find_first_of({"\0\r\n", 3}));
      ASSERT_EQ(parser({exact.data(), exact.size()}), parser(whole));
    }
  }
}

}  // namespace
}  // namespace krosac
