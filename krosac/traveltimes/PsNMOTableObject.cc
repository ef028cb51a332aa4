#include "krosac/traveltimes/PsNMOTableObject.h"

#include <algorithm>
#include <limits>

#include "krosac/traveltimes/internal/Tables.h"

namespace krosac {
namespace {

// The four curves around a point: a and b at the shallower source depth, c and d at the deeper one;
// a and c at the shorter distance.
struct Bracket {
  const PsNMO *a, *b, *c, *d;

  // Returns false outside the grid. Its far edges belong to the last bracket.
  bool find(const PsNMO* curves, float srcdepth, float gcarc) {
    const std::int32_t depth = psNMOCurveIndexClosestButShallowerThan(srcdepth);
    const std::int32_t distance = psNMOCurveIndexClosestButLessThan(gcarc);
    if (depth < 0 || distance < 0) return false;
    a = curves + std::min(depth, kPsNMODepths - 2) * kPsNMODistances +
        std::min(distance, kPsNMODistances - 2);
    b = a + 1;
    c = a + kPsNMODistances;
    d = c + 1;
    return true;
  }

  // NaN if one of the curves has no value.
  float bilinear(float (*convert)(float, PsNMO), float value, float srcdepth, float gcarc,
                 float depthStep) const {
    const auto on = [&](const PsNMO* curve) {
      const float converted = convert(value, *curve);
      return isDefined(converted) ? converted : std::numeric_limits<float>::quiet_NaN();
    };
    const float bWeight = (gcarc - a->gcarc) / (b->gcarc - a->gcarc);
    const float aWeight = (b->gcarc - gcarc) / (b->gcarc - a->gcarc);
    const float shallow = on(a) * aWeight + on(b) * bWeight;
    const float deep = on(c) * aWeight + on(d) * bWeight;
    return (c->srcdepth - srcdepth) / depthStep * shallow +
           (srcdepth - a->srcdepth) / depthStep * deep;
  }
};

}  // namespace

Ref<Object> PsNMOTableObject::init() {
  std::int32_t count = 0;
  ReadPsDelayTable("PsNMO", nmos_, &count);
  return Object::init();
}

PsNMO PsNMOTableObject::FetchNMOForSrcDepth_Gcarc(float srcdepth, float gcarc) const {
  const std::int32_t index = psNMOCurveIndexClosestTo(srcdepth, gcarc);
  if (index < 0)
    return {
        kSacUndefinedFloat, kSacUndefinedFloat, kSacUndefinedFloat, kSacUndefinedFloat, {}, {}, {}};
  return nmos_[index];
}

float PsNMOTableObject::bilinearDepthFromTime_SrcDepth_Gcarc(float time, float srcdepth,
                                                             float gcarc) const {
  if (time == 0.0f) return 0.0f;
  Bracket bracket;
  if (!(time > 0.0f) || !bracket.find(nmos_, srcdepth, gcarc)) return kSacUndefinedFloat;
  // Both curves have the same source depth, so the divisor is 0: intended.
  const float depthStep = bracket.b->srcdepth - bracket.a->srcdepth;
  return bracket.bilinear(depthFromTime, time, srcdepth, gcarc, depthStep);
}

float PsNMOTableObject::bilinearTimeFromDepth_SrcDepth_Gcarc(float depth, float srcdepth,
                                                             float gcarc) const {
  if (depth == 0.0f) return 0.0f;
  Bracket bracket;
  if (!(depth > 0.0f) || !bracket.find(nmos_, srcdepth, gcarc)) return kSacUndefinedFloat;
  const float depthStep = bracket.c->srcdepth - bracket.a->srcdepth;
  return finiteOr(bracket.bilinear(timeFromDepth, depth, srcdepth, gcarc, depthStep),
                  kSacUndefinedFloat);
}

}  // namespace krosac
