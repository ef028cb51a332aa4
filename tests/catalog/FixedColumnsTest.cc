#include "krosac/catalog/FixedColumnsInternal.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cstdio>
#include <cstring>
#include <random>
#include <vector>

#include "ArchivedKeys.h"
#include "CapturedLog.h"
#include "krosac/catalog/kroHypocenter.h"

namespace krosac {
namespace {

// The bytes of a text with nothing behind them, so that a sanitizer sees every access outside.
std::vector<char> exactly(const std::string& text) {
  return {text.begin(), text.end()};
}

// Random fields of random lines, beside sscanf on a line that is padded with blanks.
TEST(FixedColumns, ScansAsSscanfDoes) {
  std::mt19937 random(7);
  const std::string alphabet = "0123456789          ...--++eeSN&\t\v\xe9";
  for (int i = 0; i < 100000; ++i) {
    std::string line(random() % 25, ' ');
    for (char& c : line) c = alphabet[random() % alphabet.size()];
    const auto exact = exactly(line);
    FixedColumns columns({exact.data(), exact.size()});
    const std::string padded = line + std::string(60, ' ');
    char scratch[kScratchLength + 1] = "               ", format[8], word[16] = "?";
    const std::size_t first = 1 + random() % 30, width = 1 + random() % 9, at = random() % 15;
    ASSERT_EQ(columns.at(first), padded[first - 1]);

    // The second copy leaves what it does not cover of the first.
    std::int32_t number = -1;
    int expectedNumber = -1;
    columns.copy(first, width);
    columns.copyOver(first + 3, 2);
    std::memcpy(scratch, &padded[first - 1], width);
    std::memcpy(scratch, &padded[first + 2], 2);
    std::snprintf(format, sizeof format, "%%%zud", width);
    ASSERT_EQ(columns.scanCopied(at + 1, width, number),
              std::sscanf(scratch + at, format, &expectedNumber) == 1);
    ASSERT_EQ(number, expectedNumber) << line;

    float value = -1.0f, expectedValue = -1.0f;
    std::snprintf(format, sizeof format, "%%%zuf", width);
    ASSERT_EQ(columns.scanInPlace(first, width, value),
              std::sscanf(&padded[first - 1], format, &expectedValue) == 1);
    ASSERT_EQ(value, expectedValue) << line;

    OptionalText text = "?";
    std::snprintf(scratch, sizeof scratch, "%.*s", static_cast<int>(width), &padded[first - 1]);
    ASSERT_EQ(columns.scanField(first, width, text), std::sscanf(scratch, "%15s", word) == 1);
    ASSERT_EQ(text, word) << line;
  }
}

TEST(FixedColumns, TakesNumbersOfEveryFormInEveryLocale) {
  const std::pair<const char*, float> cases[] = {
      {"+.5", 0.5f},      {"1.5e", 1.5f}, {"2e1", 20.0f}, {"0x1p4", 16.0f}, {"-inf", -INFINITY},
      {"9e99", INFINITY}, {"e5", 7.0f},   {"-.", 7.0f},   {"+-1", 7.0f},    {"1,5", 1.0f}};
  std::setlocale(LC_ALL, "de_DE.UTF-8");  // a decimal comma, where the machine has one
  for (const auto& [text, expected] : cases) {
    float value = 7.0f;
    EXPECT_EQ(FixedColumns(text).scanField(1, 5, value), expected != 7.0f) << text;
    EXPECT_EQ(value, expected) << text;
  }
  std::setlocale(LC_ALL, "C");
}

template <typename T, bool (T::*parse)(std::string_view)>
std::string parsed(std::string_view line) {
  const CapturedLog quiet;
  auto record = make<T>();
  record->init();
  EXPECT_TRUE((*record.*parse)(line));
  return record->description() + archivedBytes(*record);
}

TEST(FixedColumns, AnyLineIsSafeAndEndsAtItsLineEnd) {
  using P = kroSeismicPhase;
  using H = kroHypocenter;
  std::string (*const parsers[])(std::string_view) = {
      parsed<P, &P::parseEDRPrimaryPhase>, parsed<P, &P::parseEDRSecondaryArrivalRecord>,
      parsed<P, &P::parseEDRSurfaceWaveRecord>, parsed<H, &H::parseEDRErrMagInfo>,
      parsed<kroSeismicStation, &kroSeismicStation::parseUSGSStationInfo>,
      // The number of a point in no region is another one each time.
      [](std::string_view line) {
        auto h = make<H>();
        EXPECT_TRUE(h->parseEDRHypocenter(line));
        h->setFeGreg(0);
        return h->description() + archivedBytes(*h);
      }};
  std::mt19937 random(8);
  const CapturedLog quiet;
  for (const auto& parser : parsers) {
    for (int i = 0; i < 1000; ++i) {
      std::string line(random() % 90, ' ');
      for (char& c : line) c = static_cast<char>(random() % (i % 3 ? 64 : 256));
      const auto exact = exactly(line);
      const std::string whole = line.substr(0, line.find_first_of({"\0\r\n", 3}));
      ASSERT_EQ(parser({exact.data(), exact.size()}), parser(whole));
    }
    EXPECT_EQ(parser({}), parser(""));
  }
}

}  // namespace
}  // namespace krosac
