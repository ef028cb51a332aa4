#include "krosac/traveltimes/JBTables.h"

#include <cmath>

#include "krosac/traveltimes/SeismicPhase.h"
#include "krosac/traveltimes/internal/Tables.h"

namespace krosac {
namespace {

constexpr float kDepths[] = {0, 33, 63, 127, 190, 254, 317, 380, 444, 507, 570, 634, 697, 761};
constexpr float kPhaseDepths[] = {0, 25, 65, 130, 191, 256, 322, 387, 453, 518, 584, 650, 715};
constexpr std::size_t kColumns = std::size(kDepths), kPhaseColumns = std::size(kPhaseDepths);
constexpr std::size_t kLineLength = 79;
constexpr char kCannotOpen[] = "Sorry, can't open the JB Tables file.\n";

constexpr SeismicPhase kNoTime{kSacUndefinedFloat, kSacUndefinedFloat};

// Returns false if the file has fewer elements. A null table is skipped.
bool readBlock(TableFiles& files, TravelTimeScanner& file, const char* kind, std::size_t elements,
               float* table) {
  for (std::size_t read = 0; read < elements; ++read) {
    float value = 0.0f;
    if (!file.nextFloat(value)) {
      files.reportDamage(file, kind, elements, read);
      return false;
    }
    if (table) table[read] = value;
  }
  return true;
}

bool isAbsent(float node) {
  return !isDefined(node);
}

// What interpolate returns where a corner is absent or a result is not finite. There is no time if
// a corner of non-zero weight is absent, and no slowness if one of its two corners is.
SeismicPhase present(const Corners& t, float upperWeight, float lowerWeight, float nearWeight,
                     float farWeight, const SeismicPhase& found) {
  const auto needsAbsent = [&](float upper, float lower) {
    return (isAbsent(upper) && upperWeight != 0.0f) || (isAbsent(lower) && lowerWeight != 0.0f);
  };
  if (nearWeight != 0.0f && needsAbsent(t.nearUpper, t.nearLower)) return kNoTime;
  if (farWeight != 0.0f && needsAbsent(t.farUpper, t.farLower)) return kNoTime;
  const bool noSlowness = isAbsent(t.nearLower) || isAbsent(t.farLower);
  return {finiteOr(found.time, kSacUndefinedFloat),
          noSlowness ? kSacUndefinedFloat : finiteOr(found.slowness, kSacUndefinedFloat)};
}

// Time and slowness between the four corners; the slowness is the row difference times
// `slownessFactor`.
inline SeismicPhase interpolate(const Corners& t, float lowerWeight, float farWeight,
                                float slownessFactor) {
  const float upperWeight = 1.0f - lowerWeight;
  const auto slowness = static_cast<float>((t.farLower - t.nearLower) / kKilometresPerDegree);
  const SeismicPhase found{t.bilinear(upperWeight, lowerWeight, farWeight),
                           slowness * slownessFactor};
  const bool anyAbsent = isAbsent(t.nearUpper) || isAbsent(t.nearLower) || isAbsent(t.farUpper) ||
                         isAbsent(t.farLower);
  if (anyAbsent || !std::isfinite(found.time + found.slowness)) [[unlikely]]
    return present(t, upperWeight, lowerWeight, 1.0f - farWeight, farWeight, found);
  return found;
}

void store(float* output, float value) {
  if (output) *output = value;
}

}  // namespace

void readJBPhase(TableFiles& files, const char* phase, std::int32_t capacity, float* table,
                 std::int32_t* rows) {
  readPhaseTable(files, "", phase, kCannotOpen, kPhaseColumns, capacity, table, rows);
}

void readJBTables(TableFiles& files, float* tp, float* ts) {
  TravelTimeScanner file;
  if (!files.openResource("jbtables", kCannotOpen, file)) return;
  for (int line = 0; line < 4; ++line) file.nextLine(kLineLength);
  if (!readBlock(files, file, "P times", kJBPRows * kColumns, tp)) return;
  // The rest of the last P row's line, and the separator line.
  for (int line = 0; line < 2; ++line) file.nextLine(kLineLength);
  readBlock(files, file, "S times", kJBSRows * kColumns, ts);
}

void ReadJBTables(float* tp, float* ts) {
  TableFiles files;
  readJBTables(files, tp, ts);
}

void ReadJBTablePhase(const char* phase, float* table, std::int32_t* rows) {
  TableFiles files;
  readJBPhase(files, phase, kMaxRows, table, rows);
}

void GetJBTimes(const float* tp, const float* ts, float* pTime, float* sTime, float* pSlowness,
                float* sSlowness, float gcarc, float depth) {
  SeismicPhase p = kNoTime, s = kNoTime;
  if (tp && ts && gcarc >= 0.0f && gcarc < 108.0f && !std::isnan(depth)) {
    if (depth <= 0.0f) depth = 0.1f;
    if (depth > 761.0f) depth = 761.0f;
    if (gcarc == 0.0f) gcarc = 0.0001f;
    const bool halfDegrees = gcarc <= 11.0f;
    // The last row whose node is less than the distance.
    const auto row = gcarc <= 10.0f ? static_cast<std::size_t>(std::ceil(gcarc * 2.0f)) - 1
                                    : static_cast<std::size_t>(std::ceil(gcarc)) + 9;
    // The cell from 10 to 11 degrees is taken as half a degree wide: intended.
    const float step = halfDegrees ? 0.5f : 1.0f;
    const float node =
        halfDegrees ? static_cast<float>(row) * 0.5f : static_cast<float>(row) - 10.0f;
    const float distanceWeight = (gcarc - node) / step;

    const std::size_t column = columnAbove(kDepths, depth);
    const float depthWeight = (depth - kDepths[column]) / (kDepths[column + 1] - kDepths[column]);
    // Rows are half a degree apart up to 10 degrees.
    const float slownessFactor = gcarc < 10.0f ? 2.0f : 1.0f;
    const auto lookUp = [&](const float* table) {
      return interpolate(Corners::of(table, kColumns, row, column), depthWeight, distanceWeight,
                         slownessFactor);
    };
    if (row + 1 < kJBPRows) p = lookUp(tp);
    s = lookUp(ts);
  }
  store(pTime, p.time);
  store(sTime, s.time);
  store(pSlowness, p.slowness);
  store(sSlowness, s.slowness);
}

void GetJBTimeSlowness(const char*, const float* table, std::int32_t rows, float* time,
                       float* slowness, float gcarc, float depth) {
  if (depth <= 0.0f) depth = 0.1f;
  if (depth > 715.0f) depth = 714.9f;
  if (gcarc == 0.0f) gcarc = 0.0001f;
  if (gcarc == 180.0f) gcarc = 179.9999f;
  SeismicPhase found = kNoTime;
  const std::int32_t row = rowBefore(gcarc, rows);
  if (table && row + 1 != rows && gcarc >= 0.0f && std::isfinite(gcarc) && !std::isnan(depth)) {
    const std::size_t column = columnAbove(kPhaseDepths, depth);
    const float depthWeight =
        (depth - kPhaseDepths[column]) / (kPhaseDepths[column + 1] - kPhaseDepths[column]);
    found = interpolate(Corners::of(table, kPhaseColumns, static_cast<std::size_t>(row), column),
                        depthWeight, gcarc - static_cast<float>(row), 1.0f);
  }
  store(time, found.time);
  store(slowness, found.slowness);
}

}  // namespace krosac
