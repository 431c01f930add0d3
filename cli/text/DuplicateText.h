#pragma once

#include "core/duplicates/records/DuplicateProgress.h"
#include "core/tasks/Proposal.h"

#include <string>

namespace orvane::cli {

class Session;

// The groups of a proposal for people: what each group frees, the copy that stays first; and a line for all of them.
void printDuplicateGroups(Session& session, const Proposal& proposal);
// One JSON array of the groups' given form.
void writeDuplicateGroups(Session& session, const Proposal& proposal);

// Which stage a search is in and what is left of it, in one line.
[[nodiscard]] std::string duplicateProgressText(const DuplicateProgress& progress);

}  // namespace orvane::cli
