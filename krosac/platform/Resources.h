// The data files of the library.
#ifndef KROSAC_PLATFORM_RESOURCES_H
#define KROSAC_PLATFORM_RESOURCES_H

#include <optional>
#include <string>

#include "krosac/platform/Export.h"

namespace krosac {

// The path of the data file `name`.`type` ("jbtables", "txt") in the folder named by $KROSAC_DATA,
// or in share/krosac/data beside the folder of the loaded library if the first folder lacks it.
// Only regular files that can be read count. A relative $KROSAC_DATA starts from the working
// directory at the time when its value is first read. None if neither folder has the file:
// lastReason() then names the places tried, which are also logged once per process if a log sink is
// set, and each time if $KROSAC_DEBUG is set. None, with a reason, if memory runs out too.
KROSAC_API std::optional<std::string> pathForResource(const std::string& name,
                                                      const std::string& type);

}  // namespace krosac

#endif
