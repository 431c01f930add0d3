#include "core/tasks/PlanConditions.h"

#include "core/base/files/HomeFolder.h"
#include "core/plans/OfflineHeuristicParser.h"
#include "core/plans/records/PlanFolder.h"

#include <algorithm>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace orvane {
namespace {

// A list that names nothing places no condition.
template <typename List>
bool isNarrowerList(const std::optional<List>& earlier, const std::optional<List>& later) {
  if (!earlier || earlier->empty()) return true;
  if (!later || later->empty()) return false;
  return std::ranges::all_of(*later,
                             [&](const auto& value) { return std::ranges::find(*earlier, value) != earlier->end(); });
}

bool isNarrowerLimit(const std::optional<std::int64_t>& earlier, const std::optional<std::int64_t>& later) {
  return !earlier || (later && *later >= *earlier);
}

}  // namespace

std::optional<RuleTrigger> conditionsOf(const PlannedAnswer& answer) {
  if (answer.plan.steps.size() != 1 || answer.placesFrom != PlannedAnswer::noStep) return std::nullopt;
  const auto& step = answer.plan.steps.front();
  const auto folder = planFolder(step.targetFolder);
  return RuleTrigger{.folderPath = folder ? folder->path() : step.targetFolder,
                     .fileExtensions = step.filter.extensions,
                     .categories = step.filter.categories,
                     .minimumAgeDays = step.filter.minimumAgeDays,
                     .minimumSizeBytes = step.filter.minimumSizeBytes,
                     .namePattern = step.filter.nameContains};
}

PlannedAnswer withConditions(PlannedAnswer answer, const RuleTrigger& conditions, std::string goal) {
  auto& step = answer.plan.steps.front();
  const bool sortsInPlace =
      step.destinationFolder && planFolder(*step.destinationFolder) == planFolder(step.targetFolder);
  step.targetFolder = expandedHome(conditions.folderPath.value_or(""));
  if (sortsInPlace) step.destinationFolder = step.targetFolder;
  step.filter = {.categories = conditions.categories,
                 .extensions = conditions.fileExtensions,
                 .minimumAgeDays = conditions.minimumAgeDays,
                 .minimumSizeBytes = conditions.minimumSizeBytes,
                 .nameContains = conditions.namePattern};
  answer.plan.userGoal = std::move(goal);
  OfflineHeuristicParser::describeByAction(answer.plan);
  return answer;
}

bool onlyNarrows(const RuleTrigger& earlier, const RuleTrigger& later) {
  const bool isSameFolder = planFolder(earlier.folderPath.value_or("")) == planFolder(later.folderPath.value_or(""));
  const bool isSameName = earlier.namePattern.value_or("").empty() || earlier.namePattern == later.namePattern;
  return isSameFolder && isSameName && isNarrowerList(earlier.fileExtensions, later.fileExtensions) &&
         isNarrowerList(earlier.categories, later.categories) &&
         isNarrowerLimit(earlier.minimumAgeDays, later.minimumAgeDays) &&
         isNarrowerLimit(earlier.minimumSizeBytes, later.minimumSizeBytes);
}

Selection keptSelection(const Proposal& earlier, const Selection& chosen, const Proposal& later) {
  std::unordered_map<std::string_view, ItemIdentity> known;
  earlier.forEach([&](std::size_t index, const ProposedRow& row) {
    const auto identity = row.item.identity();
    if (chosen.isSelected(index) && identity) known.emplace(row.item.url().path(), *identity);
  });
  auto kept = later.selection();
  kept.deselectAll();
  later.forEach([&](std::size_t index, const ProposedRow& row) {
    const auto found = known.find(row.item.url().path());
    const auto identity = row.item.identity();
    if (found == known.end() || !identity || !found->second.isStill(*identity)) return;
    kept.set(index, Selection::Whether::selected);
  });
  return kept;
}

}  // namespace orvane
