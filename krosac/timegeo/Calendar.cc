#include "krosac/timegeo/Calendar.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>
#include <numeric>

namespace krosac {
namespace {

constexpr std::int32_t kMonthLengths[12] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};

std::array<std::int32_t, 12> monthLengths(std::int32_t year) {
  auto lengths = std::to_array(kMonthLengths);
  lengths[1] += is_leap_year(year);
  return lengths;
}

}  // namespace

std::int32_t is_leap_year(std::int32_t year) {
  return year % 400 == 0 || (year % 4 == 0 && year % 100 != 0);
}

std::int32_t ndaysinyear(std::int32_t year) {
  return 365 + is_leap_year(year);
}

std::int32_t doy(std::int32_t year, std::int32_t month, std::int32_t date) {
  const auto lengths = monthLengths(year);
  const std::int32_t monthsBefore = std::clamp(month, 1, 12) - 1;
  const auto day =
      std::accumulate(lengths.begin(), lengths.begin() + monthsBefore, std::int64_t{date});
  return static_cast<std::int32_t>(
      std::min<std::int64_t>(day, std::numeric_limits<std::int32_t>::max()));
}

std::int32_t monthdate(std::int32_t year, std::int32_t day, std::int32_t* month,
                       std::int32_t* date) {
  if (day > ndaysinyear(year)) return -1;
  const auto lengths = monthLengths(year);
  std::size_t m = 0;
  while (lengths[m] < day) day -= lengths[m++];
  if (month) *month = static_cast<std::int32_t>(m) + 1;
  if (date) *date = day;
  return 1;
}

}  // namespace krosac
