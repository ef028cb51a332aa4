// The data files of the library.
#ifndef KROSAC_PLATFORM_RESOURCES_H
#define KROSAC_PLATFORM_RESOURCES_H

#include <optional>
#include <string>

#include "krosac/platform/Export.h"

namespace krosac {

// The path of the data file `name`.`type` ("jbtables", "txt") in the folder named by $KROSAC_DATA,
// else in share/krosac/data beside the folder of the loaded library. None if it is in neither. Then
// the places tried are logged, once per process, if a log sink or $KROSAC_DEBUG is set.
KROSAC_API std::optional<std::string> pathForResource(const std::string& name,
                                                      const std::string& type);

}  // namespace krosac

#endif
