#include "krosac/platform/Resources.h"

#include <dlfcn.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <mutex>
#include <new>
#include <system_error>
#include <utility>
#include <vector>

#include "krosac/platform/Log.h"
#include "krosac/platform/internal/Reason.h"

namespace krosac {
namespace {

// The absolute path of $KROSAC_DATA, empty if it is not set. A relative one is resolved when its
// value is first read, so that programs may change their working directory later.
std::string namedFolder() {
  static std::mutex mutex;
  static std::string value, folder;
  const char* named = std::getenv("KROSAC_DATA");
  if (!named || !*named) return {};
  const std::scoped_lock lock(mutex);
  if (value != named) {
    std::error_code unknownDirectory;
    std::string newValue = named;
    std::string newFolder = std::filesystem::absolute(named, unknownDirectory).string();
    if (unknownDirectory == std::errc::not_enough_memory) throw std::bad_alloc();
    folder = unknownDirectory ? newValue : std::move(newFolder);
    value = std::move(newValue);
  }
  return folder;
}

bool isReadableFile(const std::string& path) {
  struct stat status;
  return ::stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode) &&
         ::access(path.c_str(), R_OK) == 0;
}

// The data folders in the order of the search. KROSAC_DATA_FROM_LIBRARY is the relative path from
// the library's folder to the data in the installed tree; no absolute path is compiled in.
std::vector<std::string> dataFolders() {
  std::vector<std::string> folders;
  if (const std::string named = namedFolder(); !named.empty()) folders.push_back(named);
  Dl_info library;
  if (dladdr(reinterpret_cast<const void*>(&pathForResource), &library) && library.dli_fname) {
    const std::string path = library.dli_fname;
    const std::size_t slash = path.find_last_of('/');
    const std::string folder = slash == std::string::npos ? "./" : path.substr(0, slash + 1);
    folders.push_back(folder + KROSAC_DATA_FROM_LIBRARY);
    if (folders.back() != folder + "../share/krosac/data")
      folders.push_back(folder + "../share/krosac/data");
  }
  return folders;
}

}  // namespace

std::optional<std::string> pathForResource(const std::string& name, const std::string& type) try {
  clearReason();
  std::string tried;
  for (const std::string& folder : dataFolders()) {
    std::string path = folder + "/" + name + "." + type;
    if (isReadableFile(path)) return path;
    tried += " " + path;
  }
  setReason("Data file %s.%s not found; tried:%s", name.c_str(), type.c_str(), tried.c_str());
  static std::atomic<bool> logged{false};
  // With $KROSAC_DEBUG the reason has just been logged.
  if (hasLogSink() && !std::getenv("KROSAC_DEBUG") && !logged.exchange(true))
    log("Data file %s.%s not found; tried:%s", name.c_str(), type.c_str(), tried.c_str());
  return std::nullopt;
} catch (const std::bad_alloc&) {
  setMemoryReason();
  return std::nullopt;
}

}  // namespace krosac
