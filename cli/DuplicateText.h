#pragma once

#include "core/duplicates/DuplicateGroup.h"
#include "core/duplicates/DuplicateProgress.h"

#include <span>
#include <string>

namespace orvane::cli {

class Session;

// The groups for people: what each group frees, the copy that stays first; and a line for all of them.
void printDuplicateGroups(Session& session, std::span<const DuplicateGroup> groups);
// One JSON array of the groups' given form.
void writeDuplicateGroups(Session& session, std::span<const DuplicateGroup> groups);

// Which stage a search is in and what is left of it, in one line.
[[nodiscard]] std::string duplicateProgressText(const DuplicateProgress& progress);

// Selected items and their bytes.
struct DuplicateTotals {
  std::int64_t groups = 0;
  std::int64_t selected = 0;
  std::int64_t selectedBytes = 0;
};
[[nodiscard]] DuplicateTotals totalsOf(std::span<const DuplicateGroup> groups);

}  // namespace orvane::cli
