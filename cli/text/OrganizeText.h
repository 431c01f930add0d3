#pragma once

#include "core/tasks/Proposal.h"

namespace orvane::cli {

class Session;

// The groups of a proposal as a tree, each with its count and size and the first of its rows.
void printGroups(Session& session, const Proposal& proposal);

}  // namespace orvane::cli
