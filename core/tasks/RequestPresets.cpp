#include "core/tasks/RequestPresets.h"

#include "core/base/files/CanonicalPath.h"
#include "core/localization/LocalizedStrings.h"
#include "core/plans/PlanMatcher.h"
#include "core/tasks/AskTask.h"
#include "core/tasks/Folders.h"
#include "core/tasks/ScanTask.h"
#include "core/tasks/TaskServices.h"

#include <array>
#include <cstddef>
#include <string>

namespace orvane {
namespace {

constexpr std::array<std::string_view, 8> presetKeys{
    "agent.preset_screenshots", "agent.preset_sort",     "agent.preset_desktop_screenshots",
    "agent.preset_installers",  "agent.preset_pictures", "agent.preset_large",
    "agent.preset_logs",        "agent.preset_caches",
};
// Files of one folder.
constexpr std::size_t maxLookedAt = 20'000;

// Sorting a folder is the organizer's, so any file of it counts.
bool isForOrganizer(const PlannedAnswer& answer) {
  const auto& room = answer.understanding.room;
  return room && room->room == Room::organize;
}

bool takesSomething(const TaskServices& services, const PlannedAnswer& answer, const std::stop_token& stop) {
  const FileUrl folder(answer.plan.steps.front().targetFolder);
  if (problemWith(services, folder, planBoundary(services))) return false;
  PlanMatcher matcher(answer.plan, {{folder, canonicalPath(folder.path())}}, ReferenceClock::now());
  bool isFound = false;
  std::size_t looked = 0;
  std::stop_source enough;
  const std::stop_callback stopped(stop, [&enough] { enough.request_stop(); });
  scanItems(services, {folder}, DeveloperCaches::leaveOut, {.stop = enough.get_token()}, [&](const FileItem& item) {
    if (enough.stop_requested()) return;
    isFound = isForOrganizer(answer) || ++looked > maxLookedAt || matcher.stepFor(item).has_value();
    if (isFound) enough.request_stop();
  });
  return isFound;
}

}  // namespace

std::span<const std::string_view> requestPresets() noexcept {
  return presetKeys;
}

std::vector<std::string_view> usefulPresets(const TaskServices& services, const std::stop_token& stop) {
  std::vector<std::string_view> useful;
  for (const auto key : presetKeys) {
    if (stop.stop_requested()) break;
    const std::string request(LocalizedStrings::lookup(AppLanguage::en, key));
    if (takesSomething(services, askPlanner(services, request, AIProvider::heuristic, stop), stop)) {
      useful.push_back(key);
    }
  }
  return useful;
}

}  // namespace orvane
