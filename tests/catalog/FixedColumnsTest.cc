// The scanner of fixed columns, tested through the parsers of the records.
#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <cstdio>
#include <random>

#include "krosac/catalog/kroHypocenter.h"

namespace krosac {
namespace {

TEST(FixedColumns, ScanAsSscanfDoes) {
  std::mt19937 random(7);
  const std::string alphabet = "0123456789          ...--++eeSN&\t\v\xe9";
  const auto event = make<kroHypocenter>();
  const auto phase = make<kroSeismicPhase>();
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

TEST(FixedColumns, ScanAllFormsOfNumbersInEveryLocale) {
  std::setlocale(LC_ALL, "de_DE.UTF-8");  // a decimal comma, if the machine has this locale
  const auto event = make<kroHypocenter>();
  for (const auto& [text, expected] : {std::pair("0x1p4", 16.0f),
                                       {"-inf", -INFINITY},
                                       {"9e99", INFINITY},
                                       {"+-1", 7.0f},
                                       {"0x", 7.0f},
                                       {"-0Xg", 7.0f},
                                       {"INF", INFINITY},
                                       {"infini", 7.0f},
                                       {"1,5", 1.0f}}) {
    event->setLatErr(7.0f);
    event->parseEDRErrMagInfo(std::string(8, ' ') + text);
    EXPECT_EQ(event->latErr(), expected) << text;
  }
  std::setlocale(LC_ALL, "C");
}

}  // namespace
}  // namespace krosac
