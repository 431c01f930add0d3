#pragma once

#include "core/base/files/FileUrl.h"
#include "core/base/values/Date.h"
#include "core/scanning/records/FileItem.h"

#include "core/platform/SystemProfile.h"

#include <span>
#include <stop_token>
#include <vector>

namespace orvane {

// Every regular file below the folders that a scheduled run offers to its rules, classified and labelled: hidden
// entries and what is inside bundles are left out, and nothing else. Links are not followed; what cannot be read adds
// nothing. A folder that lies inside another one is walked once. The creation date of an item is its modification date.
// Empty once a stop is requested.
[[nodiscard]] std::vector<FileItem> scheduleCandidates(std::span<const FileUrl> folders,
                                                       const std::stop_token& stop = {},
                                                       const SystemProfile& profile = SystemProfile::none());

}  // namespace orvane
