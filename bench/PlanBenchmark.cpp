// Times the preview of plans over what a scan of FOLDER finds, beside the scan itself: plan_benchmark FOLDER

#include "core/base/text/UnicodeText.h"
#include "core/plans/PlanExecutor.h"
#include "core/plans/records/CleaningPlan.h"
#include "core/safety/rules/PathValidator.h"
#include "core/scanning/scan/StorageScanner.h"
#include "platform/linux/LinuxFileStatusReader.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <string>
#include <variant>
#include <vector>

namespace {

using namespace orvane;

constexpr int rounds = 5;

double secondsOf(const std::function<void()>& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

double medianSeconds(const std::function<void()>& prepare, const std::function<void()>& work) {
  std::vector<double> times;
  for (int round = 0; round < rounds; ++round) {
    prepare();
    times.push_back(secondsOf(work));
  }
  std::ranges::nth_element(times, times.begin() + rounds / 2);
  return times[rounds / 2];
}

std::vector<FileItem> scanned(const std::string& folder) {
  const PathValidator validator("/home/user");
  const LinuxFileStatusReader reader;
  StorageScanner scanner(validator, reader);
  auto stream = scanner.scan({FileUrl(folder)}, DeveloperCaches::leaveOut);
  std::vector<FileItem> items;
  for (auto batch = stream.nextBatch(); !batch.empty(); batch = stream.nextBatch()) {
    for (auto& event : batch) {
      if (auto* item = std::get_if<FileItem>(&event)) items.push_back(std::move(*item));
    }
  }
  return items;
}

CleaningPlan planOf(PlannedAction action, const std::string& folder, CleaningFilter filter) {
  CleaningPlan plan;
  auto& step = plan.steps.emplace_back();
  step.targetFolder = folder;
  step.filter = std::move(filter);
  step.action = action;
  if (action == PlannedAction::move) step.destinationFolder = folder;
  step.explanation = "An explanation as long as they usually are, a sentence for the user.";
  return plan;
}

// The age of the files themselves: the calendar has to be asked about each of them.
std::int64_t ageOf(const std::vector<FileItem>& items) {
  if (items.empty()) return 0;
  return static_cast<std::int64_t>((ReferenceClock::now() - items.front().lastModifiedDate()).count() / 86400);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: plan_benchmark FOLDER\n");
    return 2;
  }
  const std::string folder = argv[1];
  std::vector<FileItem> items;
  const double scan = medianSeconds([] {}, [&] { items = scanned(folder); });
  std::printf("%-44s %8.3f s  (%zu items)\n", "scan", scan, items.size());

  const CleaningFilter everything{.minimumSizeBytes = 0};
  const struct {
    const char* name;
    CleaningPlan plan;
  } rows[] = {
      {"extensions and age, few match",
       planOf(PlannedAction::trash, folder, {.extensions = {{"dmg", "pkg", "iso", "zip"}}, .minimumAgeDays = 7})},
      {"age at the threshold", planOf(PlannedAction::trash, folder, {.minimumAgeDays = ageOf(items) + 1})},
      {"name, few match", planOf(PlannedAction::review, folder, {.nameContains = "résumé"})},
      {"name, ASCII", planOf(PlannedAction::review, folder, {.nameContains = "Invoice"})},
      {"every file matches", planOf(PlannedAction::trash, folder, everything)},
      {"move, files of one folder", planOf(PlannedAction::move, folder, everything)},
  };
  for (const auto& row : rows) {
    std::vector<FileItem> candidates;
    std::size_t matches = 0;
    const double seconds = medianSeconds(
        [&] { candidates = items; }, [&] { matches = PlanExecutor::dryRun(row.plan, std::move(candidates)).size(); });
    std::printf("%-44s %8.3f s  (%.2f of the scan, %zu matches)\n", row.name, seconds, seconds / scan, matches);
  }
  return 0;
}
