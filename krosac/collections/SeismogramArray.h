// All seismograms below a folder, screened while they are loaded.
//
//   auto group = krosac::make<krosac::SeismogramArray>();
//   group->init();
//   group->setGCarcScreen(true);
//   group->setMinGCarc(30.0f);
//   group->loadSeismogramsFromPath("2011-070/BHZ");
//   group->equalizeTimeRange();
#ifndef KROSAC_COLLECTIONS_SEISMOGRAMARRAY_H
#define KROSAC_COLLECTIONS_SEISMOGRAMARRAY_H

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "krosac/platform/Export.h"
#include "krosac/platform/Object.h"
#include "krosac/seismogram/SacObject.h"

namespace krosac {

class KROSAC_API SeismogramArray : public Object {
 public:
  // Sets an empty list, all screens off, limits of -1e9 and 1e9 degrees and a minimum quality of
  // -12345.
  Ref<Object> init() override;

  // ---- Screening ----

  // Turn a screen on or off.
  void setGCarcScreen(bool on) { gcarcScreen_ = on; }
  void setQualityScreen(bool on) { qualityScreen_ = on; }
  void setNetworkScreen(bool on) { networkScreen_ = on; }
  void setChannelScreen(bool on) { channelScreen_ = on; }
  // The limits of GCARC in degrees, both inclusive.
  void setMinGCarc(float degrees) { minGCarc_ = degrees; }
  void setMaxGCarc(float degrees) { maxGCarc_ = degrees; }
  // The smallest accepted IQUAL.
  void setMinQuality(std::int32_t quality) { minQuality_ = quality; }
  // The accepted network codes and component names. The caller owns the lists and keeps them alive
  // while the screen is on.
  void setNetworksPointer(const std::vector<std::string>* networks) { networks_ = networks; }
  void setChannelsPointer(const std::vector<std::string>* channels) { channels_ = channels; }

  // Returns true if a seismogram passes every screen that is on: quality, distance (an undefined
  // GCARC fails), network, channel. A network or channel screen without a list accepts nothing.
  bool screenSeismogram(const SacObject& s) const;

  // ---- The group ----

  // The list, which the caller may change.
  std::vector<Ref<SacObject>>& theSeismograms() { return theSeismograms_; }
  const std::vector<Ref<SacObject>>& theSeismograms() const { return theSeismograms_; }

  // Changes the working directory of the process to this folder, permanently, and appends every SAC
  // file below it that passes the screens, with its path relative to the folder. The entries of
  // each folder are sorted by the bytes of their names. Links to files are followed, links to
  // folders are not. Files that are not seismograms are skipped after the loader's messages, and
  // unreadable folders without a message; lastReason() names the last one of either. Does nothing
  // if the path is not a folder or cannot be entered, see lastReason(). If memory runs out, the
  // seismograms loaded before stay in the list, each of them whole.
  void loadSeismogramsFromPath(const std::string& path);

  // Removes the seismograms that pass the screens and keeps the others, which is intended.
  void filterSeismograms();

  // Cuts every seismogram to the window from the latest B to the earliest E (s) with
  // ChopFromStart_END. Where memory runs out a seismogram keeps its length, and lastReason() says
  // so after the others have been cut.
  void equalizeTimeRange();

  // ---- Ranges: (minimum, maximum), or (1e9, -1e9) for an empty list ----

  // The smallest B and the largest E, s.
  std::pair<double, double> relativeTimeRange() const;
  // The ranges of GCARC, AZ and BAZ in degrees, including undefined values.
  std::pair<double, double> gcarcRange() const;
  std::pair<double, double> azRange() const;
  std::pair<double, double> backazRange() const;
  // The range of the slowness times cos(AZ - azimuth), with the slowness in user value `key` (0 to
  // 9) and the azimuth in degrees. The two overloads accept the arguments in either order and are
  // distinguished by type, so a call with two integers is ambiguous: write (3, 45.0f), not (3, 45).
  std::pair<double, double> gammaRangeForAzimuth_slownessKey(float azimuth, std::int32_t key) const;
  std::pair<double, double> gammaRangeForAzimuth_slownessKey(std::int32_t key,
                                                             float azimuth) const {
    return gammaRangeForAzimuth_slownessKey(azimuth, key);
  }

 protected:
  ~SeismogramArray() override = default;

 private:
  template <typename Low, typename High>
  std::pair<double, double> range(Low low, High high) const;

  bool gcarcScreen_ = false;
  float minGCarc_ = 0.0f;
  float maxGCarc_ = 0.0f;
  bool qualityScreen_ = false;
  std::int32_t minQuality_ = 0;
  bool networkScreen_ = false;
  bool channelScreen_ = false;
  std::vector<Ref<SacObject>> theSeismograms_;
  const std::vector<std::string>* networks_ = nullptr;
  const std::vector<std::string>* channels_ = nullptr;
};

}  // namespace krosac

#endif
