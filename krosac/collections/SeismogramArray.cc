#include "krosac/collections/SeismogramArray.h"

#include <dirent.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <memory>
#include <new>
#include <string_view>

#include "krosac/platform/LastReason.h"
#include "krosac/platform/internal/Reason.h"
#include "krosac/platform/internal/Text.h"

namespace krosac {
namespace {

bool isListed(const std::string& name, const std::vector<std::string>* list) {
  return list && std::ranges::find(*list, name) != list->end();
}

struct FolderCloser {
  void operator()(DIR* folder) const noexcept { ::closedir(folder); }
};

// The sorted names in a folder, as far as it can be read; `error` takes errno, or 0. The iterators
// of std::filesystem would end the process where memory runs out.
std::vector<std::string> sortedNames(const char* folder, int& error) {
  std::vector<std::string> names;
  const std::unique_ptr<DIR, FolderCloser> open(::opendir(folder));
  if (open) errno = 0;
  while (const dirent* entry = open ? ::readdir(open.get()) : nullptr) {
    const std::string_view name = entry->d_name;
    if (name != "." && name != "..") names.emplace_back(name);
    errno = 0;
  }
  error = errno;
  std::ranges::sort(names);
  return names;
}

// Loads the files below a folder, given relative to the working directory; empty for that itself.
// `refused` takes the reason of the last file or folder that cannot be read.
void loadFolder(const std::string& folder, SeismogramArray& array, std::string& refused) {
  const char* const name = folder.empty() ? "." : folder.c_str();
  int error;
  for (const std::string& entry : sortedNames(name, error)) {
    const std::string path = joinedPath(folder, entry);
    struct stat status, link;
    if (::stat(path.c_str(), &status) != 0 || ::lstat(path.c_str(), &link) != 0) continue;
    if (S_ISDIR(status.st_mode)) {
      // Links to folders could form cycles.
      if (!S_ISLNK(link.st_mode)) loadFolder(path, array, refused);
    } else {
      const auto s = make<SacObject>();
      if (!s) throw std::bad_alloc();
      if (!s->loadFromPath(path)) {
        refused = *lastReason() ? lastReason() : path + ": cannot be loaded";
      } else if (array.screenSeismogram(*s)) {
        array.theSeismograms().push_back(s);
      }
    }
  }
  if (error == 0) return;
  errno = error;
  setSystemReason(name);
  refused = lastReason();
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
  struct stat status;
  if (::stat(path.c_str(), &status) == 0 && !S_ISDIR(status.st_mode))
    return setReason("%s: is not a folder", path.c_str());
  if (::chdir(path.c_str()) != 0) return setSystemReason(path.c_str());
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
