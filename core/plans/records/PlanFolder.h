#pragma once

#include "core/base/files/FileUrl.h"

#include <optional>
#include <string_view>

namespace orvane {

// The folder that a plan means by a path text: white space at its ends dropped, as validation drops it; "~" is the home
// folder; a relative path is taken from the current folder; dots are collapsed and links kept. Absent for a text that
// cannot name a folder: nothing but white space, or one that holds a NUL, where the system would cut it off.
[[nodiscard]] std::optional<FileUrl> planFolder(std::string_view text);

}  // namespace orvane
