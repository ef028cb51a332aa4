#include "krosac/traveltimes/TTTables.h"

#include <cmath>
#include <optional>

#include "krosac/traveltimes/SeismicPhase.h"
#include "krosac/traveltimes/internal/Tables.h"

namespace krosac {
namespace {

constexpr float kDepths[kTTColumns] = {0,   25,  50,  100, 150, 200, 250, 300, 350,
                                       400, 450, 500, 550, 600, 650, 700, 750, 800};

// The nodes around a point, the interpolated time, and the depth bracket.
struct Bracket {
  Corners t;
  float time, upperDepth, lowerDepth;
};

std::optional<Bracket> bracketOf(const float* table, std::int32_t rows, float gcarc, float depth) {
  if (depth <= 0.0f) depth = 0.1f;
  if (depth > 800.0f) depth = 799.5f;
  gcarc = std::fabs(gcarc);
  if (gcarc == 0.0f) gcarc = 0.0001f;
  const std::int32_t row = rowBefore(gcarc, rows);
  if (!table || row + 1 == rows || !std::isfinite(gcarc) || std::isnan(depth)) return std::nullopt;

  const std::size_t column = columnAbove(kDepths, depth);
  const auto t = Corners::of(table, kTTColumns, static_cast<std::size_t>(row), column);
  if (t.nearUpper < 0 || t.nearLower < 0 || t.farUpper < 0 || t.farLower < 0) return std::nullopt;
  const float upperDepth = kDepths[column], lowerDepth = kDepths[column + 1];
  const float upperWeight = (lowerDepth - depth) / (lowerDepth - upperDepth);
  const float farWeight = gcarc - static_cast<float>(row);
  return Bracket{t, t.bilinear(upperWeight, 1.0f - upperWeight, farWeight), upperDepth, lowerDepth};
}

void store(float* output, float value) {
  if (output) *output = finiteOr(value, kSacUndefinedFloat);
}

}  // namespace

void readTTPhase(TableFiles& files, const char* prefix, const char* phase, std::int32_t capacity,
                 float* table, std::int32_t* rows) {
  readPhaseTable(files, prefix, phase, "Sorry, can't open the Travel Time Table file.\n",
                 kTTColumns, capacity, table, rows);
}

void ReadTTTablePhase(const char* prefix, const char* phase, float* table, std::int32_t* rows) {
  TableFiles files;
  readTTPhase(files, prefix, phase, kMaxRows, table, rows);
}

void GetTTTimeSlowness(const char*, const float* table, std::int32_t rows, float* time,
                       float* slowness, float gcarc, float depth) {
  SeismicPhase found{kSacUndefinedFloat, kSacUndefinedFloat};
  if (const auto bracket = bracketOf(table, rows, gcarc, depth)) {
    const Corners& t = bracket->t;
    found = {bracket->time, static_cast<float>((t.farLower - t.nearLower) / kKilometresPerDegree)};
  }
  store(time, found.time);
  store(slowness, found.slowness);
}

void GetTTTimeSlownesses(const char*, const float* table, std::int32_t rows, float* time,
                         float* slowness, float* depthDerivative, float gcarc, float depth) {
  SeismicPhaseTimeSlowness found{kSacUndefinedFloat, kSacUndefinedFloat, kSacUndefinedFloat};
  if (const auto bracket = bracketOf(table, rows, gcarc, depth)) {
    const Corners& t = bracket->t;
    const double alongDistance = (t.farUpper - t.nearUpper) + (t.farLower - t.nearLower);
    const double nearUpper = t.nearUpper, farUpper = t.farUpper;
    const double alongDepth = (nearUpper - t.nearLower) + (farUpper - t.farLower);
    const double depthStep = bracket->upperDepth - bracket->lowerDepth;
    found = {bracket->time, static_cast<float>(alongDistance * 0.5 / kKilometresPerDegree),
             static_cast<float>(alongDepth * 0.5 / depthStep)};
  }
  store(time, found.time);
  store(slowness, found.slowness);
  store(depthDerivative, found.depthDerivative);
}

}  // namespace krosac
