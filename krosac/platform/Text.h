// Text that can be absent.
#ifndef KROSAC_PLATFORM_TEXT_H
#define KROSAC_PLATFORM_TEXT_H

#include <optional>
#include <string>

namespace krosac {

// Text that can be absent; none differs from empty.
using OptionalText = std::optional<std::string>;

}  // namespace krosac

#endif
