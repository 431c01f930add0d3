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
  const auto& steps = answer.plan.steps;
  if (steps.empty() || answer.placesFrom != PlannedAnswer::noStep) return std::nullopt;
  const auto& filter = steps.front().filter;
  if (std::ranges::any_of(steps, [&](const auto& step) { return step.filter != filter; })) return std::nullopt;
  RuleTrigger conditions{.fileExtensions = filter.extensions,
                         .categories = filter.categories,
                         .minimumAgeDays = filter.minimumAgeDays,
                         .minimumSizeBytes = filter.minimumSizeBytes,
                         .namePattern = filter.nameContains};
  if (steps.size() == 1) {
    const auto& target = steps.front().targetFolder;
    const auto folder = planFolder(target);
    conditions.folderPath = folder ? folder->path() : target;
  }
  return conditions;
}

PlannedAnswer withConditions(PlannedAnswer answer, const RuleTrigger& conditions, std::string goal) {
  for (auto& step : answer.plan.steps) {
    if (conditions.folderPath) {
      const bool sortsInPlace =
          step.destinationFolder && planFolder(*step.destinationFolder) == planFolder(step.targetFolder);
      step.targetFolder = expandedHome(*conditions.folderPath);
      if (sortsInPlace) step.destinationFolder = step.targetFolder;
    }
    step.filter = {.categories = conditions.categories,
                   .extensions = conditions.fileExtensions,
                   .minimumAgeDays = conditions.minimumAgeDays,
                   .minimumSizeBytes = conditions.minimumSizeBytes,
                   .nameContains = conditions.namePattern};
  }
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
