#include "krosac/traveltimes/internal/TravelTimeScanner.h"

#include <clocale>
#include <random>
#include <sstream>

#include "traveltimes/TableFolder.h"

namespace krosac {
namespace {

// Expects the result of strtof in the C locale.
void expectNumber(const std::string& text) {
  static const locale_t cLocale = newlocale(LC_ALL_MASK, "C", nullptr);
  char* end;
  const float expected = strtof_l(text.c_str(), &end, cLocale);
  float value = 4711.0f;
  EXPECT_EQ(scanFloat(text.c_str(), value), end) << text;
  EXPECT_EQ(std::bit_cast<std::uint32_t>(value),
            std::bit_cast<std::uint32_t>(end == text.c_str() ? 4711.0f : expected))
      << text;
}

TEST(TravelTimeScanner, ReadsNumbersAsStrtofInEveryLocale) {
  std::setlocale(LC_ALL, "de_DE.UTF-8");  // has a decimal comma, if installed
  std::istringstream texts(
      "-0.000|.|e5|1e+x|1E-3|-nan|infx|NaN(12)z|1e39|7e-46|0x1.8p3|0x|1,5|16777217|8388608.5|"
      "8388608.50000000000000000001|9007199254740993|18446744073709551617|\t\n 7 8");
  for (std::string text; std::getline(texts, text, '|');) expectNumber(text);
  std::mt19937 random(20110311);
  for (int i = 0; i < 20000; ++i) {
    static constexpr char kPieces[] = "0123456789012345678901234567890.-+e";
    std::string text;
    for (auto n = random() % 24; n > 0; --n) text += kPieces[random() % (sizeof kPieces - 1)];
    expectNumber(text);
    // Halfway between two floats, where double rounding fails.
    const auto odd = (1UL << 24 | random() % (1UL << 24)) | 1;
    for (const char* tail : {"", ".0000001", "0.0"}) expectNumber(std::to_string(odd) + tail);
    expectNumber(std::to_string(odd - 1) + ".99999999");
  }
  std::setlocale(LC_ALL, "C");
}

TEST(TravelTimeScanner, LimitsNumbersAndStopsAtOtherBytes) {
  const TableFolder folder;
  const std::string zeros(TravelTimeScanner::kLongestNumber - 1, '0');
  const std::pair<std::string, int> cases[] = {{zeros + " 2", 2},
                                               {"3 " + zeros + "001 2", 1},
                                               {std::string("1 2\0 3", 6), 2},
                                               {"1 2 \xff 3", 2},
                                               {std::string(100000, ' ') + "1", 1}};
  for (const auto& [text, numbers] : cases) {
    TravelTimeScanner file;
    ASSERT_TRUE(file.open(folder.write("numbers.txt", text).c_str()));
    int read = 0;
    for (float value; file.nextFloat(value);) ++read;
    EXPECT_EQ(read, numbers) << text.substr(0, 9);
  }
  EXPECT_FALSE(TravelTimeScanner().open("/dev/zero"));
}

}  // namespace
}  // namespace krosac
