// Marks the predicted P and S of a seismogram and computes its body-wave synthetic:
// mark_and_synthesize [FILE [STRIKE DIP RAKE]]
//
// Prints the predicted times beside the picked ones and saves NAME.marked and NAME.synthetic in the
// working directory. The input is not changed. Without a file a sample is made. The default
// mechanism is a thrust with strike 203, dip 10 and rake 88.
#include <cstdio>
#include <cstdlib>
#include <string>

#include "Depth.h"
#include "krosac/krosac.h"

namespace {

using krosac::Ref;
using krosac::SacObject;

constexpr float kSourceVelocity = 6.2f, kSourceDensity = 2.67f;  // km/s, g/cm^3
constexpr float kPulse = 4.0f;                                   // s

struct Mechanism {
  float strike = 203.0f, dip = 10.0f, rake = 88.0f;  // degrees
};

// A station 50 degrees from an earthquake, with a P pick by eye.
Ref<SacObject> makeTrace() {
  auto s = krosac::make<SacObject>();
  s->initWithCapacity(24000);
  s->setDelta(0.05f);
  s->fixEndTime();
  s->setReferenceTimeWithNSCalendarDate(krosac::Date::fromComponents({2011, 3, 11, 5, 46, 23}));
  s->setoriginTimeOffset(0.0f);
  s->setPTime(513.6f);
  s->setStationID("MADE");
  s->setEventLocationLat_Lon_Depth(38.3f, 142.4f, 29.0f);
  s->setStationLocationLat_Lon_Elevation(64.9f, -147.9f, 200.0f);
  s->setMyFileName("made");
  return s;
}

void printTime(const char* name, float predicted, float picked) {
  if (!krosac::isDefined(picked)) {
    std::printf("%-14s %10.2f %10s\n", name, static_cast<double>(predicted), "-");
  } else {
    std::printf("%-14s %10.2f %10.2f %10.2f\n", name, static_cast<double>(predicted),
                static_cast<double>(picked), static_cast<double>(predicted - picked));
  }
}

void printPredictions(const SacObject& s, float pickedP, float pickedS) {
  const float arc = s.distance() / static_cast<float>(krosac::kKilometresPerDegree);
  const float depth = depthInKilometres(s);
  auto tables = krosac::make<krosac::TTTableObject>();
  tables->init();
  const krosac::SeismicPhase p = tables->GetTTPhase_GCARC_Depth("p", arc, depth);
  std::printf("%s, %.2f degrees, depth %.1f km; seconds after the reference time\n",
              s.kstnm().c_str(), static_cast<double>(arc), static_cast<double>(depth));
  std::printf("%-14s %10s %10s %10s\n", "", "predicted", "picked", "difference");
  printTime("P (JB)", s.pTime(), pickedP);
  printTime("S (JB)", s.t0(), pickedS);
  printTime("P (IASP91)", p.time + s.o(), pickedP);
  std::printf("P slowness     %10.5f s/km (JB) %10.5f (IASP91)\n\n",
              static_cast<double>(s.userValue(2)), static_cast<double>(p.slowness));
}

// Replaces the samples by P, pP and sP: spikes convolved with a pulse.
void synthesize(SacObject& s, const Mechanism& m) {
  const float depth = depthInKilometres(s);
  float block[13] = {m.strike,        m.dip, m.rake,    depth, s.azimuth(),   s.userValue(2),
                     kSourceVelocity, 0.0f,  s.gcarc(), 0.0f,  kSourceDensity};
  s.ZeroAmplitudes();
  s.computeBWResponse(block);
  s.CosineTimeFunctionFilterDuration(kPulse);
  std::printf(
      "Strike %.0f dip %.0f rake %.0f: P %.3g, pP %.3g after %.2f s, sP %.3g after %.2f s\n",
      static_cast<double>(m.strike), static_cast<double>(m.dip), static_cast<double>(m.rake),
      static_cast<double>(block[0]), static_cast<double>(block[1]), static_cast<double>(block[8]),
      static_cast<double>(block[2]), static_cast<double>(block[9]));
}

bool saveAs(SacObject& s, const std::string& path) {
  s.setPath(path);
  const bool saved = s.save();
  if (saved) std::printf("Saved %s\n", path.c_str());
  return saved;
}

}  // namespace

int main(int argc, char** argv) {
  auto s = argc > 1 ? krosac::make<SacObject>() : makeTrace();
  if (argc > 1 && !s->initWithPath(argv[1])) return 1;
  Mechanism mechanism;
  if (argc > 4) {
    mechanism = {std::strtof(argv[2], nullptr), std::strtof(argv[3], nullptr),
                 std::strtof(argv[4], nullptr)};
  }
  const bool hasS = s->pickLabelWithKey(0).starts_with('S');
  const float pickedP = s->pTime(), pickedS = hasS ? s->t0() : krosac::kSacUndefinedFloat;
  s->markJBTimesAndSlowness();
  if (!krosac::isDefined(s->userValue(2)))
    return std::fprintf(stderr, "No predicted times for this trace\n"), 1;
  printPredictions(*s, pickedP, pickedS);
  const std::string name = s->myFileName().value();
  if (!saveAs(*s, name + ".marked")) return 1;
  synthesize(*s, mechanism);
  return saveAs(*s, name + ".synthetic") ? 0 : 1;
}
