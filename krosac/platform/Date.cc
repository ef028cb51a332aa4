#include "krosac/platform/Date.h"

#include <algorithm>
#include <cmath>
#include <new>

#include "krosac/platform/internal/Reason.h"
#include "krosac/platform/internal/Text.h"

namespace krosac {
namespace {

constexpr std::int64_t kSecondsPerDay = 86400;
constexpr std::int64_t kLastYear = 9999999;

std::int64_t floorDivide(std::int64_t a, std::int64_t b) {
  return a / b - (a % b != 0 && (a < 0) != (b < 0));
}

// Days from 1970-01-01 to the first day of a month (1 to 12). Years count from March, so the leap
// day is the last of its year; 400 years have 146097 days.
std::int64_t daysToMonth(std::int64_t year, std::int64_t month) {
  const std::int64_t marchYear = year - (month <= 2);
  const std::int64_t marchMonth = (month + 9) % 12;
  return 365 * marchYear + floorDivide(marchYear, 4) - floorDivide(marchYear, 100) +
         floorDivide(marchYear, 400) + (153 * marchMonth + 2) / 5 - 719468;
}

}  // namespace

Date Date::fromComponents(const Components& c) {
  const std::int64_t months = std::int64_t{c.month} - 1;
  const std::int64_t year = c.year + floorDivide(months, 12);
  const std::int64_t days =
      daysToMonth(year, months - 12 * floorDivide(months, 12) + 1) + c.day - 1;
  const std::int64_t seconds =
      days * kSecondsPerDay + std::int64_t{c.hour} * 3600 + std::int64_t{c.minute} * 60 + c.second;
  return Date{static_cast<double>(seconds)};
}

Date::Components Date::components() const {
  const double earliest = static_cast<double>(daysToMonth(-kLastYear, 1) * kSecondsPerDay);
  const double latest = static_cast<double>(daysToMonth(kLastYear + 1, 1) * kSecondsPerDay - 1);
  const double whole = std::isnan(secondsSince1970) ? 0.0 : std::floor(secondsSince1970);
  const auto seconds = static_cast<std::int64_t>(std::clamp(whole, earliest, latest));

  const std::int64_t day = floorDivide(seconds, kSecondsPerDay);
  const std::int64_t ofDay = seconds - day * kSecondsPerDay;
  // This estimate is wrong by at most one year; the loops correct it.
  std::int64_t year = 1970 + floorDivide(day * 400, 146097);
  while (daysToMonth(year, 1) > day) --year;
  while (daysToMonth(year + 1, 1) <= day) ++year;
  std::int64_t month = 12;
  while (daysToMonth(year, month) > day) --month;

  const auto number = [](std::int64_t value) { return static_cast<std::int32_t>(value); };
  return {number(year),         number(month),           number(day - daysToMonth(year, month) + 1),
          number(ofDay / 3600), number(ofDay / 60 % 60), number(ofDay % 60)};
}

std::string Date::description() const try {
  const Components c = components();
  return formatText("%04d-%02d-%02d %02d:%02d:%02d +0000", c.year, c.month, c.day, c.hour, c.minute,
                    c.second);
} catch (const std::bad_alloc&) {
  setMemoryReason();
  return {};
}

}  // namespace krosac
