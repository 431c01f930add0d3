#include "cli/text/PlanText.h"

#include "cli/frame/FileArguments.h"
#include "cli/frame/ProposalRun.h"
#include "cli/frame/Session.h"
#include "cli/text/Table.h"
#include "core/base/text/ByteCount.h"
#include "core/base/text/UnicodeText.h"
#include "core/base/values/Calendar.h"
#include "core/plans/records/CleaningPlan.h"
#include "core/plans/records/PlanFolder.h"
#include "core/tasks/Proposal.h"

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

// The conditions of a filter in words; empty when it has none.
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

// Why a row is selected or not.
std::string reasonOf(const ProposedRow& row) {
  switch (row.lock) {
    case Lock::manualLabel:
      return "never: protected, sensitive or unknown";
    case Lock::inTrash:
      return "never: it is in a Trash already";
    case Lock::inPlace:
      return "it is in place already";
    case Lock::listedOnly:
      return "only listed";
    case Lock::refused:
      return "never: " + escapedForDisplay(row.group->refusal);
    case Lock::kept:
      return "never: it is on the keep list";
    case Lock::reference:
    case Lock::none:
      break;
  }
  if (const auto* destination = row.destinationFolder()) return "selected: goes to " + shownPath(*destination);
  return row.choice == Choice::selected ? "selected: safe to remove" : "not selected: have a look at it first";
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

void printRows(Session& session, const Proposal& proposal) {
  session.out().line("");
  if (proposal.empty()) {
    session.out().line("No file matches.");
    return;
  }
  Table table({{"Size", Alignment::right}, {"Age", Alignment::right}, {"Risk"}, {"File"}, {"Why"}});
  proposal.forEach([&](std::size_t, const ProposedRow& row) {
    const auto age = wholeDaysBetween(row.item.lastModifiedDate(), proposal.countedTo());
    table.addRow({{formatByteCount(row.item.fileSize())},
                  {dayCount(std::max<std::int64_t>(0, age))},
                  labelCell(row.item.riskLabel()),
                  {shownPath(row.item.url())},
                  {reasonOf(row)}});
  });
  table.print(session);
  const auto selection = proposal.selection();
  session.out().line(fmt::format("{} found, {} selected ({}).", itemCount(static_cast<std::int64_t>(proposal.size())),
                                 formatCount(selection.count()), formatByteCount(selection.bytes())));
}

}  // namespace orvane::cli
