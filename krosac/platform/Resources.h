// The data files that come with the library.
#ifndef KROSAC_PLATFORM_RESOURCES_H
#define KROSAC_PLATFORM_RESOURCES_H

#include <optional>
#include <string>

#include "krosac/platform/Export.h"

namespace krosac {

// The path of the data file `name`.`type` ("jbtables", "txt"): in the folder that $KROSAC_DATA
// names, else in share/krosac/data beside the folder of the loaded library. None when it is in
// neither; the log then names the places tried, once a process, if a log sink or $KROSAC_DEBUG is
// set.
KROSAC_API std::optional<std::string> pathForResource(const std::string& name,
                                                      const std::string& type);

}  // namespace krosac

#endif
