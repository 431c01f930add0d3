#pragma once

#include "core/rules/records/CleanupRule.h"

#include <string_view>

namespace orvane {

// A rule as a person writes it: "id", "description", "isEnabled", "isBuiltIn" and "createdAt" may be left out, and what
// a stored rule would silently be forgiven is an error here that names the key. Throws JsonError.
[[nodiscard]] CleanupRule ruleFromText(std::string_view text);

}  // namespace orvane
