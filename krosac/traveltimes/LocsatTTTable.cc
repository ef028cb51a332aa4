#include "krosac/traveltimes/LocsatTTTable.h"

#include <charconv>
#include <cmath>
#include <memory>
#include <new>

#include "krosac/platform/internal/Reason.h"
#include "krosac/platform/internal/Text.h"
#include "krosac/traveltimes/internal/Tables.h"

namespace krosac {
namespace {

constexpr std::size_t kLineLength = 127;

// The number of nodes at the start of a line; 0 if there is none between 1 and `limit`.
std::size_t nodeCount(std::string_view line, std::size_t limit) {
  while (!line.empty() && isWhiteSpace(line.front())) line.remove_prefix(1);
  if (line.starts_with('+')) line.remove_prefix(1);
  std::size_t count = 0;
  const auto read = std::from_chars(line.data(), line.data() + line.size(), count);
  return read.ec == std::errc() && count <= limit ? count : 0;
}

// Reads the number of nodes and the nodes. Returns their number, or 0 on failure.
std::size_t readNodes(TableFiles& files, TravelTimeScanner& file, const char* kind, float* nodes,
                      std::size_t limit) {
  const std::size_t count = nodeCount(file.nextLine(kLineLength), limit);
  if (count == 0) files.reportBadCount(file, kind, limit);
  for (std::size_t i = 0; i < count; ++i) {
    if (file.nextFloat(nodes[i])) continue;
    files.reportDamage(file, kind, count, i);
    return 0;
  }
  file.nextLine(kLineLength);
  return count;
}

bool readTime(TravelTimeScanner& file, float& time) {
  char line[kLineLength + 1];
  const std::string_view text = file.nextLine(kLineLength);
  line[text.copy(line, kLineLength)] = '\0';
  return scanFloat(line, time) != line;
}

// The last index whose node is strictly less than the value, even if the nodes do not ascend; 0 if
// there is none. The value does not exceed the last node, which therefore is never the answer.
template <std::size_t size>
std::size_t lastBefore(const float (&nodes)[size], float value) {
  std::size_t index = size - 2;
  while (index > 0 && !(nodes[index] < value)) --index;
  return index;
}

}  // namespace

Ref<Object> LocsatTTTable::init() {
  phases_.reset();
  hasTimes_ = false;
  return Object::init();
}

bool LocsatTTTable::read(const char* path, Nodes& nodes) {
  TableFiles files;
  TravelTimeScanner file;
  if (!files.open(path, file)) return false;
  file.nextLine(kLineLength);
  const std::size_t depths = readNodes(files, file, "depths", nodes.depths, kDepths);
  if (depths == 0) return false;
  const std::size_t gcarcs = readNodes(files, file, "distances", nodes.gcarcs, kGcarcs);
  if (gcarcs == 0) return false;
  // Rows are stored with the file's number of distances as stride, but looked up with 207:
  // intended.
  for (std::size_t i = 0; i < depths * gcarcs; ++i) {
    if (i % gcarcs == 0) file.nextLine(kLineLength);
    if (readTime(file, nodes.times[i])) continue;
    files.reportDamage(file, "times", depths * gcarcs, i);
    return false;
  }
  return true;
}

void LocsatTTTable::loadTimesFromPath(const std::string& path) {
  hasTimes_ = false;
  const std::unique_ptr<Nodes> nodes(new (std::nothrow) Nodes{});
  if (!nodes) return setMemoryReason();
  if (!read(path.c_str(), *nodes)) return;
  nodes_ = *nodes;
  hasTimes_ = true;
}

SeismicPhaseTimeSlowness LocsatTTTable::GetTTimeSlownessesForGCARC_Depth(float gcarc,
                                                                         float depth) const {
  constexpr SeismicPhaseTimeSlowness kNoTime{-1.0f, -1.0f, -1.0f};
  gcarc = std::fabs(gcarc);
  depth = std::fabs(depth);
  // The last nodes are tested even if the file has fewer: intended.
  const bool inside = gcarc <= nodes_.gcarcs[kGcarcs - 1] && depth <= nodes_.depths[kDepths - 1];
  if (!inside) return kNoTime;
  const std::size_t i = lastBefore(nodes_.depths, depth);
  const std::size_t k = lastBefore(nodes_.gcarcs, gcarc);
  const auto [t00, t01, t10, t11] = Corners::of(nodes_.times, kGcarcs, i, k);
  if (t00 < 0 || t10 < 0 || t01 < 0 || t11 < 0) return kNoTime;

  const double zA = nodes_.depths[i], zB = nodes_.depths[i + 1];
  const double gA = nodes_.gcarcs[k], gB = nodes_.gcarcs[k + 1];
  const double fz = (depth - zA) / (zB - zA), fg = (gcarc - gA) / (gB - gA);
  const double d00 = t00, d01 = t01, d10 = t10, d11 = t11;
  const double time =
      (1 - fz) * (1 - fg) * d00 + fz * (1 - fg) * d10 + fz * fg * d11 + (1 - fz) * fg * d01;
  // Each row's difference has the weight of the other row: intended.
  const double perDegree = ((d01 - d00) * fz + (d11 - d10) * (1 - fz)) / (gB - gA);
  const double perKm = ((d01 - d11) * fg + (d00 - d10) * (1 - fg)) / (zA - zB);
  // Unused nodes divide by 0.
  return {finiteOr(static_cast<float>(time), -1.0f),
          finiteOr(static_cast<float>(static_cast<float>(perDegree) / kKilometresPerDegree), -1.0f),
          finiteOr(static_cast<float>(perKm), -1.0f)};
}

std::vector<LocsatTTValue> LocsatTTTable::listValuesForDistanceFrom_To_Step_SrcDepth(
    float from, float to, float step, float srcdepth) const try {
  const double first = from, interval = step;
  const double steps = std::floor((to - first) / interval + 1e-3);
  const bool good =
      step > 0.0f && std::isfinite(step) && steps >= 0.0 && steps < 1e6 && std::isfinite(srcdepth);
  if (!good) return {};
  std::vector<LocsatTTValue> values;
  values.reserve(static_cast<std::size_t>(steps) + 1);
  for (double i = 0; i <= steps; ++i) {
    const auto gcarc = static_cast<float>(first + i * interval);
    const auto [time, slowness, derivative] = GetTTimeSlownessesForGCARC_Depth(gcarc, srcdepth);
    values.push_back({gcarc, time, slowness, derivative});
  }
  return values;
} catch (const std::bad_alloc&) {
  setMemoryReason();
  return {};
}

}  // namespace krosac
