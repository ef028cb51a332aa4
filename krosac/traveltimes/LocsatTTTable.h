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
  // -1.0 where there is no time.
  float gcarc, time, slowness, depthDerivative;
};

// The times of one or more phases at 40 depths and 207 distances, with the names of the phases.
class KROSAC_API LocsatTTTable : public Object {
 public:
  // The numbers of nodes that a table has room for.
  static constexpr std::size_t kDepths = 40, kGcarcs = 207;

  // A table without phases and times. Gives the object.
  Ref<Object> init() override;

  // Reads a table by its lines, of which only 127 characters at a time count as a line: a free
  // line; the number of depths; the depths (km, ascending); the number of distances; the distances
  // (degrees, ascending); then for each depth a free line and a line for each distance that begins
  // with the time (s), negative where there is none. hasTimes() tells whether it could: a file that
  // is missing, malformed or cut short, or with more than 40 depths or 207 distances, loads nothing
  // and leaves the times as they were. Slots beyond the file's nodes become 0.
  void loadTimesFromPath(const std::string& path);

  // Time (s), slowness and depth derivative (s/km) at a distance (degrees) and depth (km), whose
  // absolute values count, bilinear between the nodes. Times are addressed with 207 distances a
  // depth, whatever number the file has, and the slowness takes the row differences with exchanged
  // depth weights. -1.0 in each field beyond the last of the 40 depths and 207 distances (which are
  // 0 where the file has fewer), where one of the four nodes is negative, and for a NaN.
  SeismicPhaseTimeSlowness GetTTimeSlownessesForGCARC_Depth(float gcarc, float depth) const;

  // The values at `from`, from + step, ... up to `to` (degrees) for one depth (km). An end that is
  // a whole number of steps away, to 1 in 1000 of a step, is included. Empty for a step that is not
  // positive, for more than a million rows and for arguments that are not finite.
  std::vector<LocsatTTValue> listValuesForDistanceFrom_To_Step_SrcDepth(float from, float to,
                                                                        float step,
                                                                        float srcdepth) const;

  // The comma-separated names of the phases that the table serves.
  const OptionalText& phases() const { return phases_; }
  void setPhases(OptionalText phases) { phases_ = std::move(phases); }
  // Whether the last loading succeeded, or what the caller said since.
  bool hasTimes() const { return hasTimes_; }
  void setHasTimes(bool hasTimes) { hasTimes_ = hasTimes; }

  // 40 x 207 times as the file's rows lie one behind the other, 40 depths, 207 distances.
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
