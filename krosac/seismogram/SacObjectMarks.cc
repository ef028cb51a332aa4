#include <array>
#include <cmath>
#include <limits>

#include "krosac/platform/LastReason.h"
#include "krosac/platform/Log.h"
#include "krosac/platform/Numbers.h"
#include "krosac/platform/internal/Reason.h"
#include "krosac/seismogram/SacObject.h"
#include "krosac/traveltimes/JBTables.h"

namespace krosac {
namespace {

constexpr float kFarthestMark = 100.0f;          // degrees
constexpr float kDeepestInKilometres = 1000.0f;  // greater depths are in metres
constexpr std::size_t kTableOfP = 118 * 14, kTableOfS = 120 * 14;
constexpr int kSKey = 0, kPKey = 10, kPSlownessKey = 2, kSSlownessKey = 3;

bool isTime(float t) {
  return std::isfinite(t) && isDefined(t);
}

void markFromTables(SacObject& s, const char* method, bool withSlowness) {
  // NaN where the tables cannot be read: nothing is marked then.
  constexpr float kUnread = std::numeric_limits<float>::quiet_NaN();
  std::array<float, kTableOfP> tp;
  std::array<float, kTableOfS> ts;
  tp.fill(kUnread);
  ts.fill(kUnread);
  clearReason();
  ReadJBTables(tp.data(), ts.data());

  const float arc = s.distance() / static_cast<float>(kKilometresPerDegree);
  if (arc > kFarthestMark) {
    setReason("DIST is %.1f degrees, and only distances up to 100 are marked",
              static_cast<double>(arc));
    return;
  }
  const float depth = s.evdp() > kDeepestInKilometres ? s.evdp() / 1000.0f : s.evdp();
  float pTime = 0.0f, sTime = 0.0f, pSlowness = 0.0f, sSlowness = 0.0f;
  if (isDefined(s.distance()) && isDefined(s.evdp()) && isDefined(s.o())) {
    GetJBTimes(tp.data(), ts.data(), &pTime, &sTime, &pSlowness, &sSlowness, arc, depth);
    const bool hasP = isTime(pTime), hasS = isTime(sTime);
    if (hasP) {
      pTime += s.o();
      s.setPTime(pTime);
      s.setPickLabelKey_Value(kPKey, "P(JB)");
      if (withSlowness) s.setUserValueKey_Value(kPSlownessKey, pSlowness);
    }
    if (hasS) {
      sTime += s.o();
      s.setTimePickKey_Value(kSKey, sTime);
      s.setPickLabelKey_Value(kSKey, "S(JB)");
      if (withSlowness) s.setUserValueKey_Value(kSSlownessKey, sSlowness);
    }
    if (!(hasP && hasS) && *lastReason() == '\0') {
      setReason("the Jeffreys-Bullen tables hold no %s time at %.1f degrees and %.1f km",
                hasP   ? "S"
                : hasS ? "P"
                       : "P and S",
                static_cast<double>(arc), static_cast<double>(depth));
    }
  } else {
    setReason("%s is undefined", !isDefined(s.distance()) ? "DIST"
                                 : !isDefined(s.o())      ? "O"
                                                          : "EVDP");
  }
  if (s.verbose() > 1) {
    log("From %s: gcarc:%.1f depth:%.1f pTime:%.1f sTime:%.1f\n", method, static_cast<double>(arc),
        static_cast<double>(depth), static_cast<double>(pTime), static_cast<double>(sTime));
  }
}

}  // namespace

void SacObject::markJBTimes() {
  markFromTables(*this, "markJBTimes", false);
}

void SacObject::markJBTimesAndSlowness() {
  markFromTables(*this, "markJBTimesAndSlowness", true);
}

}  // namespace krosac
