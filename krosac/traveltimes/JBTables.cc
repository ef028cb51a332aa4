#include "krosac/traveltimes/JBTables.h"

#include <cmath>
#include <cstdio>

#include "krosac/traveltimes/SeismicPhase.h"
#include "krosac/traveltimes/internal/Tables.h"
#include "krosac/traveltimes/internal/TravelTimeScanner.h"

namespace krosac {
namespace {

constexpr float kDepths[] = {0, 33, 63, 127, 190, 254, 317, 380, 444, 507, 570, 634, 697, 761};
constexpr float kPhaseDepths[] = {0, 25, 65, 130, 191, 256, 322, 387, 453, 518, 584, 650, 715};
constexpr std::size_t kColumns = std::size(kDepths), kPhaseColumns = std::size(kPhaseDepths);
constexpr std::size_t kLineLength = 79;
constexpr char kCannotOpen[] = "Sorry, can't open the JB Tables file.\n";

bool readBlock(TravelTimeScanner& file, float* table, std::size_t elements) {
  std::size_t read = 0;
  while (read < elements && file.nextFloat(table[read])) ++read;
  return read == elements;
}

// Time and slowness between the four corners.
SeismicPhase interpolate(const Corners& t, float depthWeight, float distanceWeight) {
  return {t.bilinear(1.0f - depthWeight, depthWeight, distanceWeight),
          static_cast<float>((t.farLower - t.nearLower) / kKilometresPerDegree)};
}

}  // namespace

void readJBPhase(const char* phase, std::int32_t capacity, float* table, std::int32_t* rows) {
  readPhaseTable("", phase, kCannotOpen, kPhaseColumns, capacity, table, rows);
}

void ReadJBTables(float* tp, float* ts) {
  TravelTimeScanner file;
  if (!file.openResource("jbtables")) {
    std::fputs(kCannotOpen, stderr);
    return;
  }
  for (int line = 0; line < 4; ++line) file.nextLine(kLineLength);
  if (!readBlock(file, tp, kJBPRows * kColumns)) return;
  // The rest of the last P row's line, and the separator line.
  for (int line = 0; line < 2; ++line) file.nextLine(kLineLength);
  readBlock(file, ts, kJBSRows * kColumns);
}

void ReadJBTablePhase(const char* phase, float* table, std::int32_t* rows) {
  readJBPhase(phase, kMaxRows, table, rows);
}

void GetJBTimes(const float* tp, const float* ts, float* pTime, float* sTime, float* pSlowness,
                float* sSlowness, float gcarc, float depth) {
  SeismicPhase p{kSacUndefinedFloat, kSacUndefinedFloat}, s = p;
  if (std::isfinite(gcarc) && gcarc < 108.0f && !std::isnan(depth)) {
    if (depth <= 0.0f) depth = 0.1f;
    if (depth > 761.0f) depth = 761.0f;
    if (gcarc == 0.0f) gcarc = 0.0001f;
    const bool halfDegrees = gcarc <= 11.0f;
    // The last row whose node is less than the distance.
    const auto row = gcarc <= 0.0f    ? 0
                     : gcarc <= 10.0f ? static_cast<std::size_t>(std::ceil(gcarc * 2.0f)) - 1
                                      : static_cast<std::size_t>(std::ceil(gcarc)) + 9;
    // The cell from 10 to 11 degrees is taken as half a degree wide: intended.
    const float step = halfDegrees ? 0.5f : 1.0f;
    const float node =
        halfDegrees ? static_cast<float>(row) * 0.5f : static_cast<float>(row) - 10.0f;
    const float distanceWeight = (gcarc - node) / step;

    const std::size_t column = columnAbove(kDepths, depth);
    const float depthWeight = (depth - kDepths[column]) / (kDepths[column + 1] - kDepths[column]);
    const auto lookUp = [&](const float* table) {
      auto phase =
          interpolate(Corners::of(table, kColumns, row, column), depthWeight, distanceWeight);
      if (gcarc < 10.0f) phase.slowness *= 2.0f;
      return phase;
    };
    if (row + 1 < kJBPRows) p = lookUp(tp);
    s = lookUp(ts);
  }
  *pTime = p.time;
  *sTime = s.time;
  *pSlowness = p.slowness;
  *sSlowness = s.slowness;
}

void GetJBTimeSlowness(const char*, const float* table, std::int32_t rows, float* time,
                       float* slowness, float gcarc, float depth) {
  if (depth <= 0.0f) depth = 0.1f;
  if (depth > 715.0f) depth = 714.9f;
  if (gcarc == 0.0f) gcarc = 0.0001f;
  if (gcarc == 180.0f) gcarc = 179.9999f;
  SeismicPhase found{kSacUndefinedFloat, kSacUndefinedFloat};
  const std::int32_t row = rowBefore(gcarc, rows);
  if (row + 1 != rows && std::isfinite(gcarc) && !std::isnan(depth)) {
    const std::size_t column = columnAbove(kPhaseDepths, depth);
    const float depthWeight =
        (depth - kPhaseDepths[column]) / (kPhaseDepths[column + 1] - kPhaseDepths[column]);
    found = interpolate(Corners::of(table, kPhaseColumns, static_cast<std::size_t>(row), column),
                        depthWeight, gcarc - static_cast<float>(row));
  }
  *time = found.time;
  *slowness = found.slowness;
}

}  // namespace krosac
