// Travel times of named phases.
#ifndef KROSAC_TOOLS_RAYTRACING_PHASES_H
#define KROSAC_TOOLS_RAYTRACING_PHASES_H

#include <string>
#include <vector>

#include "raytracing/PhaseCurve.h"

namespace krosac::raytracing {

// Whether a phase ends or diffracts beyond the distance where its ray grazes the core.
enum class Beyond { Ends, Diffracts };

// The parts of a model that rays from one source depth traverse, for both waves.
class Column {
 public:
  Column(const EarthModel& model, double depth);

  // Returns the arrival of a phase at each distance (degrees), with time -1 where it does not
  // exist. The phase is "p", "s", "pcp", "scs", "pcs", "scp", "pp", "ss", "sp", "ps", "sksac",
  // "sksdf", "pkpab", "pkpdf", "pkikp", or "lpp", "lsp", "lss", "lps" for pP, sP, sS, pS. The
  // arrival is the earliest ray, except that "pkpab" is the ray of the greatest ray parameter and
  // "pkikp" is the reflection PKiKP where there is no PKIKP. At depth 0 pP and sP are P, sS and pS
  // are S. Beyond::Diffracts applies only to P, S, PcP and ScS.
  std::vector<Arrival> arrivals(const std::string& phase, const std::vector<double>& degrees,
                                Beyond beyond) const;

 private:
  // For one wave: from the source up, from the source down, and the whole mantle.
  struct Mantle {
    Mantle(const EarthModel& model, Wave wave, double sourceRadius);
    Shells up, down, whole;
  };
  const Mantle& mantle(char wave) const { return wave == 's' ? s_ : p_; }
  std::vector<Leg> legsOf(const std::string& phase) const;

  Mantle p_, s_;
  Shells outerCore_, innerCore_;
};

}  // namespace krosac::raytracing

#endif
