// The rays of named phases.
#ifndef KROSAC_TOOLS_RAYTRACING_PHASES_H
#define KROSAC_TOOLS_RAYTRACING_PHASES_H

#include <string>
#include <vector>

#include "raytracing/PhaseCurve.h"

namespace krosac::raytracing {

// What a phase does beyond the distance where it grazes the core.
enum class Beyond { Ends, Diffracts };

// The parts of a model that rays from one source depth cross, for both waves.
class Column {
 public:
  Column(const EarthModel& model, double depth);

  // The arrival of a phase at each distance (degrees); a time of -1 where it does not exist. The
  // phase is one of the tables: "p", "s", "pcp", "scs", "pcs", "scp", "pp", "ss", "sp", "ps",
  // "sksac", "sksdf", "pkpab", "pkpdf", "pkikp", and "lpp", "lsp", "lss", "lps" for pP, sP, sS, pS.
  // Each is its earliest ray, but "pkpab" that of the greatest ray parameter, and "pkikp" the
  // reflection PKiKP where there is no PKIKP. At depth 0 pP and sP are P, sS and pS are S. Only P,
  // S, PcP and ScS can be asked to diffract.
  std::vector<Arrival> arrivals(const std::string& phase, const std::vector<double>& degrees,
                                Beyond beyond) const;

 private:
  // From the source up, from the source down, and the whole mantle, for one wave.
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
