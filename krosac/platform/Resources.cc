#include "krosac/platform/Resources.h"

#include <dlfcn.h>
#include <unistd.h>

#include <atomic>
#include <cstdlib>
#include <vector>

#include "krosac/platform/Log.h"

namespace krosac {
namespace {

// The data folders in the order of the search. KROSAC_DATA_FROM_LIBRARY is the relative path from
// the library's folder to the data in the installed tree; no absolute path is compiled in.
std::vector<std::string> dataFolders() {
  std::vector<std::string> folders;
  if (const char* named = std::getenv("KROSAC_DATA"); named && *named) folders.emplace_back(named);
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

std::optional<std::string> pathForResource(const std::string& name, const std::string& type) {
  std::string tried;
  for (const std::string& folder : dataFolders()) {
    std::string path = folder + "/" + name + "." + type;
    if (::access(path.c_str(), R_OK) == 0) return path;
    tried += " " + path;
  }
  static std::atomic<bool> logged{false};
  if ((hasLogSink() || std::getenv("KROSAC_DEBUG")) && !logged.exchange(true)) {
    log("Data file %s.%s not found; tried:%s", name.c_str(), type.c_str(), tried.c_str());
  }
  return std::nullopt;
}

}  // namespace krosac
