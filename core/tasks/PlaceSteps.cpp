#include "core/tasks/PlaceSteps.h"

#include "core/base/files/PathText.h"
#include "core/base/text/UnicodeText.h"
#include "core/base/values/MinimumAge.h"
#include "core/plans/FilterMatcher.h"
#include "core/plans/PromptReading.h"
#include "core/safety/rules/PathValidator.h"
#include "core/scanning/known/KnownPlaceSearch.h"
#include "core/scanning/walk/WholeFolders.h"
#include "core/tasks/Folders.h"
#include "core/tasks/KnownPlaces.h"
#include "core/tasks/ScanTask.h"
#include "core/tasks/TaskServices.h"
#include "core/tasks/WholeAge.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>
#include <set>
#include <string>
#include <utility>

namespace orvane {
namespace {

using Row = KnownPlaceTable::Row;

KnownPlaceSearch searchOf(const TaskServices& services) {
  return {services.validator, services.statusReader};
}

// The names of programs that a row has of itself; a component with a star names what begins so.
std::vector<std::string> namesIn(const Row& row) {
  if (!row.place->program.empty()) return {std::string(row.place->program)};
  std::vector<std::string> names;
  for (const auto& pattern : row.patterns) {
    auto name = pattern.components().at(row.place->programAt);
    while (name.ends_with('*')) name.pop_back();
    if (!name.empty() && name.find('*') == std::string::npos) names.push_back(std::move(name));
  }
  return names;
}

// Whether a program is the one named, or a variant of it: "google-chrome-beta".
bool isOf(std::string_view program, std::string_view name) {
  const auto lowered = lowercased(program);
  const auto wanted = lowercased(name);
  if (!lowered.starts_with(wanted)) return false;
  return lowered.size() == wanted.size() || lowered[wanted.size()] == '-' || lowered[wanted.size()] == '_';
}

class NameList {
 public:
  void addProgram(const std::string& name) {
    if (!m_known.insert(lowercased(name)).second) return;
    const auto phrase = phraseOf(name);
    const bool isPlace = phrase.find("cache") != std::string::npos;
    m_names.push_back({phrase, {.name = name}, isPlace});
    // Flatpak names programs by domains: "org.example.App".
    if (std::ranges::count(name, '.') < 2) return;
    m_names.push_back({phrase.substr(phrase.find_last_of(' ') + 1), {.name = name}, isPlace});
  }
  void addBuild(std::string_view name) {
    if (name.find('*') != std::string_view::npos) return;
    auto phrase = phraseOf(name);
    // The program's own places are more than what its projects hold.
    if (std::ranges::find(m_names, phrase, &ProgramName::phrase) != m_names.end()) return;
    m_builds.push_back({std::move(phrase), {.name = std::string(name), .isBuild = true}});
  }
  void add(ProgramName name) { m_names.push_back(std::move(name)); }
  [[nodiscard]] std::vector<ProgramName> take() {
    std::ranges::move(m_builds, std::back_inserter(m_names));
    return std::move(m_names);
  }

 private:
  std::vector<ProgramName> m_names;
  std::vector<ProgramName> m_builds;
  std::set<std::string> m_known;
};

// A request for logs alone means the logs of a program, and one for caches no log.
bool isMeant(std::string_view path, ScanCategory category, const PromptReading& reading) {
  if (reading.wantsLogs == reading.wantsCaches) return true;
  const auto name = lastComponent(path);
  const bool areLogs = category == ScanCategory::logs || name == "logs" || name == "log";
  return areLogs == reading.wantsLogs;
}

CleaningPlanStep stepOver(std::string folder, ScanCategory category, std::optional<std::int64_t> ageDays,
                          std::string explanation) {
  CleaningPlanStep step;
  step.targetFolder = std::move(folder);
  step.filter.categories = {category};
  step.filter.minimumAgeDays = ageDays;
  step.action = PlannedAction::trash;
  step.explanation = std::move(explanation);
  return step;
}

std::string explanationOf(const NamedProgram& program) {
  return fmt::format("Move what {} keeps there to the Trash.", program.name);
}

void addPlaceSteps(const TaskServices& services, CleaningPlan& plan, const NamedProgram& program,
                   const PromptReading& reading, const std::stop_token& stop) {
  const auto& table = services.validator.knownPlaces();
  const auto takes = [&](const Row& row, const std::string& path) {
    return row.category != ScanCategory::trash && isOf(table.programOf(row, path), program.name);
  };
  for (const auto& place : searchOf(services).items(takes, stop)) {
    if (!isMeant(place.url().path(), place.category(), reading)) continue;
    plan.steps.push_back(stepOver(place.url().path(), place.category(), reading.ageDays, explanationOf(program)));
  }
}

// Where a program that has no such place would have it.
void addAbsentPlace(const TaskServices& services, CleaningPlan& plan, const NamedProgram& program,
                    const PromptReading& reading) {
  const auto& table = services.validator.knownPlaces();
  for (const auto& row : table.rows()) {
    for (const auto& pattern : row.patterns) {
      auto path = joinPath(table.folder(row.place->base), pattern.text());
      std::erase(path, '*');
      if (!isOf(table.programOf(row, path), program.name) || !isMeant(path, row.category, reading)) continue;
      plan.steps.push_back(stepOver(path, row.category, reading.ageDays, explanationOf(program)));
      return;
    }
  }
}

void addBuildSteps(const TaskServices& services, CleaningPlan& plan, const std::string& name,
                   const PromptReading& reading) {
  for (const auto& folder : grantedFolders(services)) {
    auto step = stepOver(folder.path(), ScanCategory::developerCaches, reading.ageDays,
                         fmt::format("Move folders named {}, which tools build again, to the Trash.", name));
    step.filter.nameContains = name;
    plan.steps.push_back(std::move(step));
  }
}

bool takesBuilds(const CleaningPlanStep& step) {
  return step.action == PlannedAction::trash && step.filter.nameContains && !step.filter.nameContains->empty();
}

// The filter but for the age, which is asked of all that lies in an item.
CleaningFilter withoutAge(CleaningFilter filter) {
  filter.minimumAgeDays.reset();
  return filter;
}

std::vector<PlaceStepItem> knownPlacesFor(const TaskServices& services, const CleaningPlan& plan, std::size_t from,
                                          Date now, const std::stop_token& stop) {
  const auto inside = [](const CleaningPlanStep& step, const std::string& path) {
    return !takesBuilds(step) && step.action == PlannedAction::trash && isSameOrInside(path, step.targetFolder);
  };
  const auto takes = [&](const Row& row, const std::string& path) {
    return row.category != ScanCategory::trash &&
           std::any_of(plan.steps.begin() + static_cast<std::ptrdiff_t>(from), plan.steps.end(),
                       [&](const CleaningPlanStep& step) { return inside(step, path); });
  };
  std::vector<PlaceStepItem> result;
  for (auto& place : searchOf(services).items(takes, stop)) {
    for (auto i = from; i < plan.steps.size(); ++i) {
      const auto& step = plan.steps[i];
      if (!inside(step, place.url().path()) || !FilterMatcher(withoutAge(step.filter), now).matches(place)) continue;
      if (!WholeAge(step.filter.minimumAgeDays, now).admits(place)) continue;
      result.push_back({i, std::move(place), true});
      break;
    }
  }
  return result;
}

bool isBuildFolder(const FileItem& item) {
  return item.isFolder() && item.category() == ScanCategory::developerCaches &&
         !isBelowDeveloperCaches(item.url().path());
}

bool takesBuild(const CleaningPlanStep& step, const FileItem& item, Date now) {
  if (!takesBuilds(step) || item.url().lastPathComponent() != *step.filter.nameContains) return false;
  if (!isSameOrInside(item.url().path(), step.targetFolder)) return false;
  if (!step.filter.minimumAgeDays) return true;
  return item.lastOpenedDate() && MinimumAge(*step.filter.minimumAgeDays, now).isReachedBy(*item.lastOpenedDate());
}

void addBuilds(const TaskServices& services, const CleaningPlan& plan, std::size_t from, const Boundary& boundary,
               Date now, const TaskMonitor& monitor, std::vector<PlaceStepItem>& result) {
  std::vector<FileUrl> folders;
  for (auto i = from; i < plan.steps.size(); ++i) {
    const FileUrl folder(plan.steps[i].targetFolder);
    if (!takesBuilds(plan.steps[i]) || problemWith(services, folder, boundary)) continue;
    if (std::ranges::find(folders, folder) == folders.end()) folders.push_back(folder);
  }
  if (folders.empty()) return;
  scanItems(services, std::move(folders), DeveloperCaches::include, monitor, [&](FileItem item) {
    if (!isBuildFolder(item)) return;
    for (auto i = from; i < plan.steps.size(); ++i) {
      if (!takesBuild(plan.steps[i], item, now)) continue;
      result.push_back({i, std::move(item), false});
      return;
    }
  });
}

}  // namespace

std::vector<ProgramName> programNames(const TaskServices& services, const std::stop_token& stop) {
  if (grantedKnownPlaces(services) == KnownPlaces::leaveOut) return {};
  const auto& table = services.validator.knownPlaces();
  NameList names;
  for (const auto& row : table.rows()) {
    if (row.category == ScanCategory::trash) continue;
    for (const auto& name : namesIn(row)) names.addProgram(name);
  }
  static_cast<void>(searchOf(services).items(
      [&](const Row& row, const std::string& path) {
        if (row.category != ScanCategory::trash) names.addProgram(std::string(table.programOf(row, path)));
        return false;
      },
      stop));
  for (const auto& folder : table.profile().buildFolders()) names.addBuild(folder.name);
  for (const auto& alias : table.profile().programAliases()) {
    names.add({std::string(alias.phrase), {.name = std::string(alias.program)}, alias.isPlace});
  }
  return names.take();
}

CleaningPlan planForPrograms(const TaskServices& services, std::string goal, const PromptReading& reading,
                             std::span<const NamedProgram> programs, const std::stop_token& stop) {
  CleaningPlan plan;
  plan.userGoal = std::move(goal);
  std::string names;
  const auto name = [&](const NamedProgram& program) {
    if (!names.empty()) names += ", ";
    names += program.name;
  };
  for (const auto& program : programs) {
    const auto before = plan.steps.size();
    if (program.isBuild) {
      addBuildSteps(services, plan, program.name, reading);
    } else {
      addPlaceSteps(services, plan, program, reading, stop);
    }
    if (plan.steps.size() > before) name(program);
  }
  if (plan.steps.empty() && !programs.empty()) {
    addAbsentPlace(services, plan, programs.front(), reading);
    name(programs.front());
  }
  plan.summary = fmt::format("Clear what can be had again: {}.", names);
  return plan;
}

CleaningPlanStep stepForPlaces(const TaskServices& services, ScanCategory category) {
  return stepOver(services.validator.knownPlaces().folder(SystemProfile::Base::home), category, std::nullopt,
                  fmt::format("Move what programs keep again by themselves to the Trash: {}.", displayName(category)));
}

std::vector<PlaceStepItem> placeStepItems(const TaskServices& services, const CleaningPlan& plan,
                                          const PlanScope& scope, const Boundary& boundary, Date now,
                                          const TaskMonitor& monitor) {
  const auto from = scope.placesFrom;
  if (from >= plan.steps.size()) return {};
  std::vector<PlaceStepItem> result;
  if (scope.knownPlaces == KnownPlaces::include && grantedKnownPlaces(services) == KnownPlaces::include) {
    result = knownPlacesFor(services, plan, from, now, monitor.stop);
  }
  addBuilds(services, plan, from, boundary, now, monitor, result);
  return result;
}

}  // namespace orvane
