#include "cli/PlanText.h"

#include "cli/FileArguments.h"
#include "cli/RunReport.h"
#include "cli/Session.h"
#include "cli/Table.h"
#include "core/base/ByteCount.h"
#include "core/base/Calendar.h"
#include "core/base/CheckedArithmetic.h"
#include "core/base/UnicodeText.h"
#include "core/plans/PlanFolder.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <array>
#include <string>
#include <vector>

namespace orvane::cli {
namespace {

std::string dayCount(std::int64_t days) {
  return fmt::format("{} {}", formatCount(days), days == 1 ? "day" : "days");
}

std::string shownFolder(const std::string& text) {
  const auto folder = planFolder(text);
  return folder ? shownPath(*folder) : escapedForDisplay(text);
}

// What a filter asks for; empty when it asks for nothing.
std::string criteriaOf(const CleaningFilter& filter) {
  std::vector<std::string> criteria;
  if (filter.categories && !filter.categories->empty()) {
    std::vector<std::string_view> names;
    for (const auto category : *filter.categories) names.push_back(displayName(category));
    criteria.push_back(fmt::format("{}", fmt::join(names, " or ")));
  }
  if (filter.extensions && !filter.extensions->empty()) {
    std::vector<std::string> names;
    for (const auto& extension : *filter.extensions) names.push_back("." + escapedForDisplay(extension));
    criteria.push_back(fmt::format("{}", fmt::join(names, " or ")));
  }
  if (filter.minimumAgeDays) criteria.push_back(dayCount(*filter.minimumAgeDays) + " old or older");
  if (filter.minimumSizeBytes) criteria.push_back(formatByteCount(*filter.minimumSizeBytes) + " or more");
  if (filter.nameContains && !filter.nameContains->empty()) {
    criteria.push_back(fmt::format("named \"{}\"", escapedForDisplay(*filter.nameContains)));
  }
  return fmt::format("{}", fmt::join(criteria, "; "));
}

std::string actionOf(const CleaningPlanStep& step) {
  const auto folder = shownFolder(step.targetFolder);
  switch (step.action) {
    case PlannedAction::trash:
      return fmt::format("move to the Trash from {}", folder);
    case PlannedAction::review:
      return fmt::format("list from {}", folder);
    case PlannedAction::move:
      break;
  }
  const auto destination = shownFolder(step.destinationFolder.value_or(""));
  if (destination == folder) return fmt::format("sort the files of {} into subfolders", folder);
  return fmt::format("move the files of {} to {}", folder, destination);
}

// Why a match is selected or not.
std::string_view reasonOf(const PlanMatchResult& match) {
  if (match.action == PlannedAction::review) return "only listed";
  if (match.action == PlannedAction::move) return "selected: it is only moved";
  switch (match.item.riskLabel()) {
    case RiskLabel::safe:
      return "selected: safe to remove";
    case RiskLabel::review:
      return "not selected: have a look at it first";
    case RiskLabel::manual:
      return "never: protected, sensitive or unknown";
  }
  return {};
}

Cell labelCell(RiskLabel label) {
  constexpr std::array colours{Colour::green, Colour::yellow, Colour::red};
  static_assert(colours.size() == allRiskLabels.size());
  return {std::string(rawValue(label)), colours[static_cast<std::size_t>(label)]};
}

}  // namespace

void printPlan(Session& session, const CleaningPlan& plan) {
  auto& out = session.out();
  out.line(fmt::format("Goal:     {}", escapedForDisplay(plan.userGoal)));
  out.line(fmt::format("Summary:  {}", escapedForDisplay(plan.summary)));
  for (std::size_t i = 0; i < plan.steps.size(); ++i) {
    const auto& step = plan.steps[i];
    const auto number = plan.steps.size() == 1 ? "Step:" : fmt::format("Step {}:", i + 1);
    out.line(fmt::format("{:<10}{}", number, actionOf(step)));
    const auto criteria = criteriaOf(step.filter);
    out.line(fmt::format("{:<10}{}", "", criteria.empty() ? "no criteria" : "files that are: " + criteria));
    if (!step.explanation.empty()) out.line(fmt::format("{:<10}{}", "", escapedForDisplay(step.explanation)));
  }
}

void printMatches(Session& session, std::span<const PlanMatchResult> matches) {
  session.out().line("");
  if (matches.empty()) {
    session.out().line("No file matches.");
    return;
  }
  const Date now = ReferenceClock::now();
  Table table({{"Size", Alignment::right}, {"Age", Alignment::right}, {"Risk"}, {"File"}, {"Why"}});
  std::int64_t selected = 0;
  std::int64_t bytes = 0;
  for (const auto& match : matches) {
    const auto age = std::max<std::int64_t>(0, wholeDaysBetween(match.item.lastModifiedDate(), now));
    table.addRow({{formatByteCount(match.item.fileSize())},
                  {dayCount(age)},
                  labelCell(match.item.riskLabel()),
                  {shownPath(match.item.url())},
                  {std::string(reasonOf(match))}});
    if (!match.isSelected || !match.canExecute || match.action == PlannedAction::review) continue;
    ++selected;
    bytes = checkedAdd(bytes, match.item.fileSize());
  }
  table.print(session);
  session.out().line(fmt::format("{} found, {} selected ({}).", itemCount(static_cast<std::int64_t>(matches.size())),
                                 formatCount(selected), formatByteCount(bytes)));
}

}  // namespace orvane::cli
