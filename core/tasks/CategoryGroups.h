#pragma once

#include "core/organizer/records/OrganizationCategoryGroup.h"
#include "core/tasks/Proposal.h"

#include <cstddef>
#include <string>
#include <vector>

namespace orvane {

class PathValidator;

// Moves into category folders as rows: each folder a group, whose rows stand together, in the order of the groups.

// Adds a category folder with its moves. Its rows are locked where the boundary does not admit the folder.
void addCategoryGroup(ProposalBuilder& builder, const OrganizationCategoryGroup& group, const PathValidator& validator,
                      const Boundary& boundary);

// Where the rows of a group lie.
struct GroupRows {
  std::size_t first = 0;
  std::size_t count = 0;
};
// Of each group.
[[nodiscard]] std::vector<GroupRows> rowsByGroup(const Proposal& proposal);
// The record of each group, as the rows stand.
[[nodiscard]] std::vector<OrganizationCategoryGroup> groupsOf(const Proposal& proposal);

// How the row of a move stands in its group.
[[nodiscard]] RowMark markOf(const ProposedMove& move, std::uint32_t group, bool isRefused);
// The name of an item where it is bound for; empty where it keeps its own.
[[nodiscard]] std::string newNameOf(const ProposedMove& move);

}  // namespace orvane
