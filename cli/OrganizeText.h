#pragma once

#include "core/organizer/OrganizationCategoryGroup.h"

#include <cstdint>
#include <span>

namespace orvane::cli {

class Session;

// The groups of a proposal as a tree, each with its count and size and the first of its moves, and a line that sums
// them up.
void printGroups(Session& session, std::span<const OrganizationCategoryGroup> groups);

// How many moves of all groups are selected.
[[nodiscard]] std::int64_t selectedCount(std::span<const OrganizationCategoryGroup> groups);

}  // namespace orvane::cli
