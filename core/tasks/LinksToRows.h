#pragma once

#include "core/base/files/FileUrl.h"
#include "core/organizer/records/Subfolders.h"

#include <cstdint>
#include <span>

namespace orvane {

class Proposal;

// How many symbolic links point to a row of the proposal or into one: links of the folder, of its subfolders where they
// are included, and those that stand right in one of the `others`. Links inside of what moves as a whole are not looked
// at.
[[nodiscard]] std::int64_t linksToRows(const Proposal& proposal, const FileUrl& folder, Subfolders subfolders,
                                       std::span<const FileUrl> others);

}  // namespace orvane
