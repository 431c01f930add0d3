#pragma once

#include "core/base/files/FileUrl.h"

#include <cstdint>
#include <span>
#include <stop_token>
#include <vector>

namespace orvane {

// The logical bytes of the regular files at each place: of a file, or of a whole folder, hidden files included. Links
// are not followed, a file with several names in one place counts once, and what cannot be read adds nothing. All
// processors work on it. Without meaning once a stop is requested.
[[nodiscard]] std::vector<std::int64_t> contentSizes(std::span<const FileUrl> places, const std::stop_token& stop = {});

}  // namespace orvane
