#include "krosac/traveltimes/PsNMOTables.h"

#include <cmath>

#include "krosac/traveltimes/internal/Tables.h"

namespace krosac {
namespace {

constexpr int kPoints = 77;

// Interpolates linearly in points of ascending abscissa.
float interpolate(const float (&abscissa)[kPoints], const float (&ordinate)[kPoints], float x) {
  if (x < 0.0f || std::isnan(x)) return kSacUndefinedFloat;
  if (x == 0.0f) return 0.0f;
  int i = 0;
  while (i < kPoints && !(abscissa[i] >= x)) ++i;
  // Extrapolates from the first two points or from the last two.
  const int upper = i == 0 ? 1 : i == kPoints ? kPoints - 1 : i;
  const int from = i == kPoints ? upper : upper - 1;
  // Unused points are zero and divide by 0.
  return finiteOr(ordinate[from] + (x - abscissa[from]) / (abscissa[upper] - abscissa[upper - 1]) *
                                       (ordinate[upper] - ordinate[upper - 1]),
                  kSacUndefinedFloat);
}

std::int32_t nodeBelow(float value, double first, double last, double step, double rounding) {
  if (!(value >= first && value <= last)) return -1;
  return static_cast<std::int32_t>(std::floor((value - first) / step + rounding));
}

std::int32_t depthNode(float srcdepth, double rounding) {
  return nodeBelow(srcdepth, 0.0, 700.0, 50.0, rounding);
}

std::int32_t distanceNode(float gcarc, double rounding) {
  return nodeBelow(gcarc, 30.0, 95.0, 5.0, rounding);
}

bool readFloats(TravelTimeScanner& file, std::initializer_list<float*> values) {
  for (float* value : values) {
    if (!file.nextFloat(*value)) return false;
  }
  return true;
}

}  // namespace

void ReadPsDelayTable(const char* name, PsNMO* curves, std::int32_t* count) {
  TableFiles files;
  TravelTimeScanner file;
  if (!files.openResource(name, "Sorry, can't open the Ps Travel Time Table file.\n", file)) return;
  PsNMO skipped;
  std::int32_t blocks = 0;
  for (; blocks < kPsNMOCurves && file.skipCharacter(); ++blocks) {
    PsNMO& curve = curves ? curves[blocks] : skipped;
    float srcdepth, gcarc, pTime, pRayP, z, t, p;
    if (!readFloats(file, {&srcdepth, &gcarc, &pTime, &pRayP})) break;
    curve.srcdepth = srcdepth;
    curve.gcarc = gcarc;
    curve.pTime = pTime;
    curve.pRayP = pRayP;
    for (int i = 0; i < kPoints && readFloats(file, {&z, &t, &p}); ++i) {
      curve.z[i] = z;
      curve.t[i] = t;
      curve.p[i] = p;
    }
  }
  if (blocks < kPsNMOCurves) {
    files.reportDamage(file, "curves", kPsNMOCurves, static_cast<std::size_t>(blocks));
  }
  if (count) *count = blocks - 1;
}

std::int32_t psNMOCurveIndexClosestTo(float srcdepth, float gcarc) {
  const std::int32_t depth = depthNode(srcdepth, 0.5), distance = distanceNode(gcarc, 0.5);
  return depth < 0 || distance < 0 ? -1 : depth * kPsNMODistances + distance;
}

std::int32_t psNMOCurveIndexClosestButShallowerThan(float srcdepth) {
  return depthNode(srcdepth, 0.0);
}

std::int32_t psNMOCurveIndexClosestButLessThan(float gcarc) {
  return distanceNode(gcarc, 0.0);
}

float depthFromTime(float time, PsNMO curve) {
  return interpolate(curve.t, curve.z, time);
}

float timeFromDepth(float depth, PsNMO curve) {
  return interpolate(curve.z, curve.t, depth);
}

}  // namespace krosac
