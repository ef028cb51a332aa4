#include "krosac/collections/SeismogramArray.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <new>
#include <system_error>

#include "krosac/platform/LastReason.h"
#include "krosac/platform/internal/Reason.h"
#include "krosac/platform/internal/Text.h"

namespace krosac {
namespace {

namespace fs = std::filesystem;

bool isListed(const std::string& name, const std::vector<std::string>* list) {
  return list && std::ranges::find(*list, name) != list->end();
}

// The entries of a folder in the order of their names, as far as it can be read.
std::vector<fs::directory_entry> sortedEntries(const std::string& folder, std::error_code& error) {
  std::vector<fs::directory_entry> entries;
  for (fs::directory_iterator at(folder.empty() ? "." : folder, error), end; !error && at != end;
       at.increment(error)) {
    entries.push_back(*at);
  }
  std::ranges::sort(entries, {}, [](const fs::directory_entry& e) -> const std::string& {
    return e.path().native();
  });
  return entries;
}

// Loads the files below a folder, given relative to the working directory; empty for that itself.
// `refused` takes the reason of the last file or folder that cannot be read.
void loadFolder(const std::string& folder, SeismogramArray& array, std::string& refused) {
  std::error_code unread;
  for (const fs::directory_entry& entry : sortedEntries(folder, unread)) {
    const std::string path = joinedPath(folder, entry.path().filename().native());
    std::error_code error;
    if (entry.is_directory(error)) {
      // Links to folders could form cycles.
      if (!entry.is_symlink(error)) loadFolder(path, array, refused);
    } else if (entry.exists(error)) {
      const auto s = make<SacObject>();
      if (!s || !s->loadFromPath(path)) {
        refused = *lastReason() ? lastReason() : path + ": cannot be loaded";
      } else if (array.screenSeismogram(*s)) {
        array.theSeismograms().push_back(s);
      }
    }
  }
  if (unread) refused = (folder.empty() ? "." : folder) + ": " + unread.message();
}

}  // namespace

Ref<Object> SeismogramArray::init() {
  gcarcScreen_ = qualityScreen_ = networkScreen_ = channelScreen_ = false;
  minGCarc_ = -1e9f;
  maxGCarc_ = 1e9f;
  minQuality_ = kSacUndefinedInt;
  theSeismograms_.clear();
  networks_ = channels_ = nullptr;
  return Object::init();
}

bool SeismogramArray::screenSeismogram(const SacObject& s) const {
  if (qualityScreen_ && s.iqual() < minQuality_) return false;
  if (gcarcScreen_) {
    const float arc = s.gcarc();
    if (arc == kSacUndefinedFloat || arc < minGCarc_ || arc > maxGCarc_) return false;
  }
  if (networkScreen_ && !isListed(s.knetwk(), networks_)) return false;
  return !channelScreen_ || isListed(s.kcmpnm(), channels_);
}

void SeismogramArray::loadSeismogramsFromPath(const std::string& path) try {
  clearReason();
  std::error_code error;
  const bool isFolder = fs::is_directory(path, error);
  if (isFolder) fs::current_path(path, error);
  if (!isFolder || error) {
    setReason("%s: %s", path.c_str(), error ? error.message().c_str() : "is not a folder");
    return;
  }
  std::string refused;
  loadFolder("", *this, refused);
  clearReason();
  if (!refused.empty()) setReason("%s", refused.c_str());
} catch (const std::bad_alloc&) {
  setMemoryReason();
}

void SeismogramArray::filterSeismograms() {
  // Removes the accepted seismograms; this is intended.
  std::erase_if(theSeismograms_, [this](const auto& s) { return s && screenSeismogram(*s); });
}

void SeismogramArray::equalizeTimeRange() {
  float latestBegin = -1e20f, earliestEnd = 1e20f;
  for (const auto& s : theSeismograms_) {
    if (s && s->b() > latestBegin) latestBegin = s->b();
    if (s && s->e() < earliestEnd) earliestEnd = s->e();
  }
  bool isShort = false;
  clearReason();
  for (const auto& s : theSeismograms_) {
    if (s) s->ChopFromStart_END(latestBegin, earliestEnd);
    isShort = isShort || *lastReason();
  }
  if (isShort) setMemoryReason();
}

template <typename Low, typename High>
std::pair<double, double> SeismogramArray::range(Low low, High high) const {
  double least = 1e9, greatest = -1e9;
  for (const auto& s : theSeismograms_) {
    if (!s) continue;
    if (low(*s) < least) least = low(*s);
    if (high(*s) > greatest) greatest = high(*s);
  }
  return {least, greatest};
}

std::pair<double, double> SeismogramArray::relativeTimeRange() const {
  return range([](const SacObject& s) { return s.b(); }, [](const SacObject& s) { return s.e(); });
}

std::pair<double, double> SeismogramArray::gcarcRange() const {
  const auto gcarc = [](const SacObject& s) { return s.gcarc(); };
  return range(gcarc, gcarc);
}

std::pair<double, double> SeismogramArray::azRange() const {
  const auto azimuth = [](const SacObject& s) { return s.azimuth(); };
  return range(azimuth, azimuth);
}

std::pair<double, double> SeismogramArray::backazRange() const {
  const auto backazimuth = [](const SacObject& s) { return s.backazimuth(); };
  return range(backazimuth, backazimuth);
}

std::pair<double, double> SeismogramArray::gammaRangeForAzimuth_slownessKey(
    float azimuth, std::int32_t key) const {
  constexpr double kDegree = 0.017453292;  // pi / 180 to eight digits; this is intended
  const auto gamma = [&](const SacObject& s) {
    return static_cast<float>(s.userValue(key) * std::cos((s.azimuth() - azimuth) * kDegree));
  };
  return range(gamma, gamma);
}

}  // namespace krosac
