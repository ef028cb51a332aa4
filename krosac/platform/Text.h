// Text that can be absent.
#ifndef KROSAC_PLATFORM_TEXT_H
#define KROSAC_PLATFORM_TEXT_H

#include <optional>
#include <string>

namespace krosac {

// A text, or none, which differs from the empty text.
using OptionalText = std::optional<std::string>;

}  // namespace krosac

#endif
