#pragma once

#include "core/localization/records/AppLanguage.h"

#include <cstdint>
#include <string>

namespace orvane {

// The category of a count by the language's plural rules, as CLDR names them: "one", "few", "many", "other" and so on.
// From any thread.
[[nodiscard]] std::string pluralCategory(AppLanguage language, std::int64_t count);

}  // namespace orvane
