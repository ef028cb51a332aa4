// A travel-time table in the text layout of the LocSAT locator.
#ifndef KROSAC_TRAVELTIMES_LOCSATTTTABLE_H
#define KROSAC_TRAVELTIMES_LOCSATTTTABLE_H

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "krosac/platform/Object.h"
#include "krosac/platform/Text.h"
#include "krosac/traveltimes/SeismicPhase.h"

namespace krosac {

// One row of LocsatTTTable's list of values: distance (degrees), time (s), slowness and depth
// derivative (s/km).
struct LocsatTTValue {
  // All but gcarc are -1.0 where there is no time.
  float gcarc, time, slowness, depthDerivative;
};

// Travel times of one or more phases at up to 40 depths and 207 distances, and the phase names.
// Look-ups change nothing: threads may share one object after loading.
class KROSAC_API LocsatTTTable : public Object {
 public:
  // The largest numbers of nodes.
  static constexpr std::size_t kDepths = 40, kGcarcs = 207;

  // Clears the phases and hasTimes(). Returns the object.
  Ref<Object> init() override;

  // Reads a table. Its lines are: a title; the number of depths; the depths (km, ascending); the
  // number of distances; the distances (degrees, ascending); then for each depth a comment line and
  // one line per distance that begins with the time (s), negative where there is none. A line of
  // more than 127 characters counts as several. hasTimes() reports success, lastReason() the line
  // of a fault. A file that is missing, malformed, truncated, or has more than 40 depths or 207
  // distances leaves the times unchanged, and so does a lack of memory. Unused nodes are set to 0.
  void loadTimesFromPath(const std::string& path);

  // Returns the time (s), slowness and depth derivative (s/km) at the absolute values of a distance
  // (degrees) and depth (km) by bilinear interpolation. Two oddities are intended: times are
  // addressed with 207 distances per depth even if the file has fewer, and the slowness swaps the
  // weights of the two depths. Each field is -1.0 beyond node 40 in depth or node 207 in distance
  // (both are 0 if the file has fewer), where one of the four times is negative, for NaN, and where
  // it would not be finite, as at the origin of a table with a single depth.
  SeismicPhaseTimeSlowness GetTTimeSlownessesForGCARC_Depth(float gcarc, float depth) const;

  // Returns the values at `from`, from + step, ..., `to` (degrees) for one depth (km). `to` is
  // included if it lies a whole number of steps from `from`, within 0.001 step. Returns no rows for
  // a step that is not positive, for more than a million rows, for arguments that are not
  // finite and, with a reason, if memory runs out.
  std::vector<LocsatTTValue> listValuesForDistanceFrom_To_Step_SrcDepth(float from, float to,
                                                                        float step,
                                                                        float srcdepth) const;

  // Comma-separated names of the phases in the table, set by the caller.
  const OptionalText& phases() const { return phases_; }
  void setPhases(OptionalText phases) { phases_ = std::move(phases); }
  // True after a successful load, unless the caller has set it since.
  bool hasTimes() const { return hasTimes_; }
  void setHasTimes(bool hasTimes) { hasTimes_ = hasTimes; }

  // 40 x 207 times, stored contiguously with the file's own number of distances per depth; 40
  // depths (km); 207 distances (degrees).
  const float* times() const { return nodes_.times; }
  const float* depths() const { return nodes_.depths; }
  const float* gcarcs() const { return nodes_.gcarcs; }

 private:
  struct Nodes {
    float times[kDepths * kGcarcs];
    float depths[kDepths];
    float gcarcs[kGcarcs];
  };
  static bool read(const char* path, Nodes& nodes);

  Nodes nodes_{};
  OptionalText phases_;
  bool hasTimes_ = false;
};

}  // namespace krosac

#endif
