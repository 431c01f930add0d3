#include "core/plans/OfflineHeuristicParser.h"

#include "core/base/files/HomeFolder.h"
#include "core/base/files/PathText.h"
#include "core/base/text/UnicodeText.h"
#include "core/plans/PromptReading.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <string>
#include <string_view>
#include <vector>

namespace orvane {
namespace {

constexpr std::string_view downloadsFolder = "~/Downloads";
constexpr std::int64_t defaultScreenshotAgeDays = 30;
constexpr std::int64_t defaultInstallerAgeDays = 7;
constexpr std::int64_t defaultQuerySize = std::int64_t{200} * 1024 * 1024;

std::vector<std::string> pictureExtensions() {
  return {"png", "jpg", "jpeg"};
}

struct StepAndSummary {
  CleaningPlanStep step;
  std::string summary;
};

// A step with what every template takes from the request.
CleaningPlanStep stepIn(std::string folder, const PromptReading& reading, PlannedAction action) {
  CleaningPlanStep step;
  step.targetFolder = std::move(folder);
  step.filter.minimumAgeDays = reading.ageDays;
  step.filter.minimumSizeBytes = reading.sizeBytes;
  step.action = action;
  return step;
}

void describeSorting(CleaningPlanStep& step, std::string& summary) {
  const auto name = lastComponent(step.targetFolder);
  step.explanation = fmt::format("Organize files directly into categorized subfolders inside {}.", name);
  summary = fmt::format("Organize {} into structured categories.", name);
}

void describeSortingOfAll(CleaningPlan& plan) {
  std::vector<std::string_view> names;
  for (const auto& step : plan.steps) names.push_back(lastComponent(step.targetFolder));
  plan.summary = fmt::format("Organize {} into structured categories.", fmt::join(names, ", "));
}

void describeQuery(CleaningPlanStep& step, std::string& summary) {
  if (step.action == PlannedAction::trash) {
    step.explanation = "Trash unneeded files matching query criteria.";
    summary = "Trash unneeded files matching query criteria.";
    return;
  }
  step.explanation = "Review candidate files matching query criteria.";
  summary = "Query candidate files matching criteria for review.";
}

// A request that names nothing to select by yields a filter without criteria, which validation rejects.
StepAndSummary organizeStep(const PromptReading& reading, const std::string& folder) {
  auto step = stepIn(folder, reading, PlannedAction::move);
  if (reading.wantsScreenshots) {
    step.filter.categories = {ScanCategory::screenshots};
    step.filter.extensions = pictureExtensions();
  } else if (reading.wantsInstallers) {
    step.filter.extensions = {"dmg", "pkg", "iso"};
  }
  step.destinationFolder = folder;
  std::string summary;
  describeSorting(step, summary);
  return {std::move(step), std::move(summary)};
}

StepAndSummary screenshotStep(const PromptReading& reading, const std::string& folder) {
  auto step = stepIn(folder, reading, PlannedAction::trash);
  const auto age = reading.ageDays.value_or(defaultScreenshotAgeDays);
  step.filter.categories = {ScanCategory::screenshots};
  step.filter.extensions = pictureExtensions();
  step.filter.minimumAgeDays = age;
  step.explanation = fmt::format("Move screenshots older than {} days to Trash.", age);
  return {std::move(step), "Find and trash old screenshots."};
}

StepAndSummary installerStep(const PromptReading& reading) {
  auto step = stepIn(expandedHome(downloadsFolder), reading, PlannedAction::trash);
  const auto age = reading.ageDays.value_or(defaultInstallerAgeDays);
  step.filter.categories = {ScanCategory::oldDownloads};
  step.filter.extensions = {"dmg", "pkg", "iso", "zip"};
  step.filter.minimumAgeDays = age;
  step.explanation = fmt::format("Clean downloaded installer packages (.dmg, .pkg) older than {} days.", age);
  return {std::move(step), "Clean leftover disk images and installer packages."};
}

StepAndSummary cachesAndLogsStep(const PromptReading& reading, const std::string& folder) {
  auto step = stepIn(folder, reading, PlannedAction::trash);
  auto& categories = step.filter.categories.emplace();
  if (reading.wantsCaches) categories.push_back(ScanCategory::caches);
  if (reading.wantsLogs) categories.push_back(ScanCategory::logs);
  step.explanation = "Remove safe temporary caches and log files to reclaim disk space.";
  return {std::move(step), "Reclaim space from system/user caches and logs."};
}

StepAndSummary queryStep(const PromptReading& reading, const std::string& folder) {
  auto step = stepIn(folder, reading, reading.wantsRemoval ? PlannedAction::trash : PlannedAction::review);
  if (reading.sizeBytes) {
    step.filter.categories = {ScanCategory::largeFiles};
  } else if (!reading.ageDays) {
    step.filter.minimumSizeBytes = defaultQuerySize;
  }
  std::string summary;
  describeQuery(step, summary);
  return {std::move(step), std::move(summary)};
}

// The first rule that applies decides.
StepAndSummary stepFor(const PromptReading& reading, const std::string& folder) {
  if (reading.wantsOrganizing && !reading.wantsRemoval) return organizeStep(reading, folder);
  if (reading.wantsScreenshots) return screenshotStep(reading, folder);
  if (reading.wantsInstallers) return installerStep(reading);
  if (reading.wantsCaches || reading.wantsLogs) return cachesAndLogsStep(reading, folder);
  return queryStep(reading, folder);
}

}  // namespace

CleaningPlan OfflineHeuristicParser::parse(std::string_view prompt,
                                           const std::optional<FileUrl>& defaultManagedFolder) const {
  return parse(prompt, PromptReading::of(prompt), defaultManagedFolder);
}

CleaningPlan OfflineHeuristicParser::parse(std::string_view prompt, const PromptReading& reading,
                                           const std::optional<FileUrl>& defaultManagedFolder) const {
  const bool usesDefault = !reading.folder && defaultManagedFolder;
  const std::string folder =
      usesDefault ? defaultManagedFolder->path() : expandedHome(reading.folder.value_or(downloadsFolder));
  auto [step, summary] = stepFor(reading, folder);

  CleaningPlan plan;
  plan.userGoal = trimmed(prompt);
  plan.steps.push_back(std::move(step));
  plan.summary = std::move(summary);
  return plan;
}

void OfflineHeuristicParser::addFolder(CleaningPlan& plan, std::string_view folder) {
  auto step = plan.steps.front();
  step.id = Uuid::random();
  step.targetFolder = expandedHome(folder);
  const bool sorts = step.action == PlannedAction::move;
  if (sorts) {
    step.destinationFolder = step.targetFolder;
    describeSorting(step, plan.summary);
  }
  plan.steps.push_back(std::move(step));
  if (sorts) describeSortingOfAll(plan);
}

void OfflineHeuristicParser::describeByAction(CleaningPlan& plan) {
  for (auto& step : plan.steps) {
    if (step.action != PlannedAction::move) {
      describeQuery(step, plan.summary);
    } else if (step.destinationFolder == step.targetFolder) {
      describeSorting(step, plan.summary);
      describeSortingOfAll(plan);
    } else {
      step.explanation = fmt::format("Move files that fit to {}.", lastComponent(step.destinationFolder.value_or("")));
      plan.summary = step.explanation;
    }
  }
}

}  // namespace orvane
