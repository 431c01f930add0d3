#include "core/tasks/PlanTask.h"

#include "core/base/files/CanonicalPath.h"
#include "core/base/files/FileDescriptor.h"
#include "core/base/files/PathSet.h"
#include "core/base/text/Json.h"
#include "core/plans/CleaningPlanSchema.h"
#include "core/plans/PlanDestinations.h"
#include "core/plans/PlanMatcher.h"
#include "core/plans/records/PlanFolder.h"
#include "core/plans/records/PlanMatchResult.h"
#include "core/tasks/Folders.h"
#include "core/tasks/KeptRows.h"
#include "core/tasks/KnownPlaces.h"
#include "core/tasks/PlaceSteps.h"
#include "core/tasks/ScanTask.h"
#include "core/tasks/TaskServices.h"

#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <map>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

namespace orvane {
namespace {

constexpr std::string_view placesFromKey = "placesFrom";

PlanRefused refused(const CleaningPlan& plan, std::string fault) {
  const bool sortsWholeFolder = plan.steps.size() == 1 && plan.steps.front().action == PlannedAction::move &&
                                plan.steps.front().destinationFolder == plan.steps.front().targetFolder;
  return {std::move(fault), sortsWholeFolder};
}

bool namesDeveloperCaches(const CleaningPlan& plan) {
  return std::ranges::any_of(plan.steps, [](const CleaningPlanStep& step) {
    const auto& categories = step.filter.categories;
    return categories && std::ranges::find(*categories, ScanCategory::developerCaches) != categories->end();
  });
}

// The target folders of a plan, judged.
struct Targets {
  std::vector<PlanTarget> scanned;  // each once
  std::vector<bool> mayAct;         // of each step: whether something may be changed in its folder
  std::vector<FolderLeftOut> leftOut;
};

Targets targetsOf(const TaskServices& services, const CleaningPlan& plan, const Boundary& boundary, PlanReach reach) {
  Targets targets;
  std::map<std::string, bool> judged;
  for (const auto& step : plan.steps) {
    const auto folder = planFolder(step.targetFolder);
    if (!folder) {
      targets.leftOut.push_back({FileUrl(step.targetFolder), FolderLeftOut::Why::missing, errorText(EINVAL)});
      targets.mayAct.push_back(false);
      continue;
    }
    PlanTarget target{*folder, canonicalPath(folder->path())};
    const auto [known, isNew] = judged.try_emplace(target.canonical, boundary.contains(target.canonical));
    if (isNew) {
      auto problem = problemWith(services, *folder);
      if (!problem && !known->second) {
        const bool isListed = reach == PlanReach::everyFolder;
        problem = {*folder, isListed ? FolderLeftOut::Why::listedOnly : FolderLeftOut::Why::notGranted};
      }
      known->second = !problem;
      if (!problem || problem->why == FolderLeftOut::Why::listedOnly) targets.scanned.push_back(std::move(target));
      if (problem) targets.leftOut.push_back(*std::move(problem));
    }
    targets.mayAct.push_back(known->second);
  }
  return targets;
}

// Makes rows of the files that steps accept.
class PlanRows {
 public:
  PlanRows(const TaskServices& services, const CleaningPlan& plan, const Boundary& boundary, const PlanScope& scope,
           std::vector<bool> mayAct, ProposalBuilder& builder)
      : m_plan(plan),
        m_scope(scope),
        m_mayAct(std::move(mayAct)),
        m_destinations(services.validator, boundary),
        m_kept(services),
        m_builder(builder) {}

  void add(FileItem item, std::size_t step) {
    if (m_kept.hold(item)) return;
    const auto mark = markOf(item, step);
    if (mark.lock == Lock::inPlace) m_inPlace.rows.add(item.fileSize());
    if (mark.lock == Lock::inTrash) m_inTrash.rows.add(item.fileSize());
    m_builder.add(std::move(item), inScope(mark, step));
  }
  void addPlace(FileItem place, std::size_t step) {
    if (m_kept.hold(place)) return;
    const auto scanned = scannedMark(place);
    m_builder.add(std::move(place), inScope({scanned.choice, scanned.lock, groupOf(step, {})}, step));
  }

  void noteSums() {
    if (m_inPlace.rows.count > 0) m_builder.note(m_inPlace);
    if (m_inTrash.rows.count > 0) m_builder.note(m_inTrash);
    m_kept.noteIn(m_builder);
  }

 private:
  [[nodiscard]] RowMark inScope(RowMark mark, std::size_t step) const {
    if (mark.choice == Choice::selected && step < m_scope.selectsFrom) mark.choice = Choice::unselected;
    return mark;
  }

  RowMark markOf(const FileItem& item, std::size_t index) {
    const auto& step = m_plan.steps[index];
    const auto locked = [&](Lock lock) { return RowMark{Choice::locked, lock, groupOf(index, {})}; };
    if (!m_mayAct[index] || step.action == PlannedAction::review) return locked(Lock::listedOnly);
    if (item.category() == ScanCategory::trash) return locked(Lock::inTrash);
    if (step.action == PlannedAction::move) {
      auto place = m_destinations.destinationFor(item.url(), step.destinationFolder.value_or(""));
      if (!place.refusal.empty()) return {Choice::locked, Lock::refused, groupOf(index, std::move(place))};
      if (!place.folder) return locked(Lock::inPlace);
      return {Choice::selected, Lock::none, groupOf(index, std::move(place))};
    }
    const auto standing = matchStanding(step.action, item.riskLabel());
    if (!standing.canExecute) return locked(Lock::manualLabel);
    return {standing.isSelected ? Choice::selected : Choice::unselected, Lock::none, groupOf(index, {})};
  }

  std::uint32_t groupOf(std::size_t step, PlanDestinations::Destination place) {
    const auto [known, isNew] = m_groups.try_emplace({step, place.folder, place.refusal}, 0);
    if (isNew) {
      known->second = m_builder.addGroup({.destinationFolder = std::move(place.folder),
                                          .refusal = std::move(place.refusal),
                                          .source = static_cast<std::uint32_t>(step)});
    }
    return known->second;
  }

  const CleaningPlan& m_plan;
  const PlanScope& m_scope;
  std::vector<bool> m_mayAct;
  PlanDestinations m_destinations;
  KeptRows m_kept;
  ProposalBuilder& m_builder;
  std::map<std::tuple<std::size_t, std::optional<FileUrl>, std::string>, std::uint32_t> m_groups;
  RowsInPlace m_inPlace;
  RowsInTrash m_inTrash;
};

Json subjectOf(const CleaningPlan& plan, const PlanScope& scope) {
  Json subject = Json::object();
  subject["plan"] = plan.toJson();
  if (scope.placesFrom < plan.steps.size()) {
    subject[placesFromKey] = static_cast<std::int64_t>(scope.placesFrom);
    subject[knownPlacesKey] = true;
  }
  return subject;
}

// The steps that select among what their folders hold.
CleaningPlan givenPart(CleaningPlan plan, const PlanScope& scope) {
  if (scope.placesFrom < plan.steps.size()) plan.steps.resize(scope.placesFrom);
  return plan;
}

std::optional<Proposal> propose(const TaskServices& services, const CleaningPlan& plan, const Boundary& boundary,
                                PlanReach reach, Date now, const TaskMonitor& monitor, Notices said,
                                const PlanScope& scope) {
  const auto fault = CleaningPlanSchema::firstFault(plan);
  auto places = fault ? std::vector<PlaceStepItem>() : placeStepItems(services, plan, scope, boundary, now, monitor);
  if (monitor.stop.stop_requested()) return std::nullopt;
  std::vector<FileItem> known;
  PathSet taken;
  for (const auto& place : places) {
    taken.insert(place.item.url().path());
    if (place.isKnownPlace) known.push_back(place.item);
  }
  ProposalBuilder builder(TaskKind::plan, withKnownPlaces(boundary, known), now);
  builder.setSubject(subjectOf(plan, scope));
  for (auto& notice : said) builder.note(std::move(notice));
  if (fault) {
    builder.note(refused(plan, fault->what()));
    return builder.take();
  }
  const auto given = givenPart(plan, scope);
  auto targets = targetsOf(services, given, boundary, reach);
  for (auto& leftOut : targets.leftOut) builder.note(std::move(leftOut));
  std::vector<FileUrl> folders;
  for (const auto& target : targets.scanned) folders.push_back(target.folder);
  PlanMatcher matcher(given, std::move(targets.scanned), now);
  PlanRows rows(services, plan, boundary, scope, std::move(targets.mayAct), builder);
  if (!folders.empty()) {
    const auto developerCaches = namesDeveloperCaches(given) ? DeveloperCaches::include : DeveloperCaches::leaveOut;
    const auto end = scanItems(services, std::move(folders), developerCaches, monitor, [&](FileItem item) {
      // An item in a place goes with it or not at all.
      if (taken.contains(item.url().path()) || taken.holds(item.url().path())) return;
      if (const auto step = matcher.stepFor(item)) rows.add(std::move(item), *step);
    });
    if (end == ScanEnd::cancelled) return std::nullopt;
  }
  for (auto& place : places) rows.addPlace(std::move(place.item), place.step);
  rows.noteSums();
  return builder.take();
}

// Of a file, which may come from anybody: known places only where the user has them and the boundary is that of the
// grants. Throws JsonError.
PlanScope scopeFrom(const TaskServices& services, const Json& subject, const CleaningPlan& plan,
                    const Boundary& boundary) {
  PlanScope scope;
  if (optionalKey(subject, placesFromKey) == nullptr) return scope;
  const auto from = integerAt(subject, placesFromKey);
  if (from < 0 || static_cast<std::size_t>(from) > plan.steps.size()) {
    throw JsonError(fmt::format("\"{}\" names no step", placesFromKey));
  }
  scope.placesFrom = static_cast<std::size_t>(from);
  const bool isOfGrants = boundary.canonicalPaths() == planBoundary(services).canonicalPaths();
  if (!isOfGrants || !booleanAt(subject, knownPlacesKey)) scope.knownPlaces = KnownPlaces::leaveOut;
  return scope;
}

}  // namespace

Boundary planBoundary(const TaskServices& services) {
  return Boundary(planRoots(grantedFolders(services), services.home.path()));
}

std::variant<CleaningPlan, PlanRefused> planFromDocument(std::string_view document) {
  try {
    auto plan = CleaningPlan::decode(document);
    if (const auto fault = CleaningPlanSchema::firstFault(plan)) return refused(plan, fault->what());
    return plan;
  } catch (const JsonError& error) {
    return PlanRefused{.fault = error.what()};
  }
}

std::optional<Proposal> proposePlan(const TaskServices& services, const CleaningPlan& plan, PlanReach reach, Date now,
                                    const TaskMonitor& monitor, Notices said, const PlanScope& scope) {
  return propose(services, plan, planBoundary(services), reach, now, monitor, std::move(said), scope);
}

std::optional<Proposal> reproposePlan(const TaskServices& services, const Json& subject, const Boundary& boundary,
                                      Date countedTo, const TaskMonitor& monitor) {
  const auto plan = CleaningPlan::fromJson(requiredKey(subject, "plan"));
  const auto scope = scopeFrom(services, subject, plan, boundary);
  return propose(services, plan, boundary, PlanReach::boundary, countedTo, monitor, {}, scope);
}

Json planMatchesJson(const CleaningPlan& plan, const Proposal& proposal) {
  Json json = Json::array();
  proposal.forEach([&](std::size_t, const ProposedRow& row) {
    PlanMatchResult match(stepOf(plan, row), row.item);
    // A step that only lists says how its files would stand.
    if (match.action != PlannedAction::review) {
      match.canExecute = row.lock == Lock::none;
      match.isSelected = row.choice == Choice::selected;
    }
    json.push_back(match.toJson());
  });
  return json;
}

const CleaningPlanStep& stepOf(const CleaningPlan& plan, const ProposedRow& row) {
  return plan.steps.at(row.group->source);
}

}  // namespace orvane
