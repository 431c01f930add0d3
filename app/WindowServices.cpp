#include "app/WindowServices.h"

#include "core/base/HomeFolder.h"
#include "core/localization/LocalizationManager.h"
#include "core/rules/ScheduleCoordinator.h"
#include "core/safety/FileAccessService.h"
#include "core/safety/PermissionsManager.h"
#include "core/safety/TrashMover.h"
#include "core/safety/UndoJournal.h"
#include "core/scanning/StorageScanner.h"
#include "platform/SystemServices.h"

namespace orvane {

WindowServices systemWindowServices() {
  return {
      .tasks = TaskServices::shared(),
      .scanner = StorageScanner::shared(),
      .mover = TrashMover::shared(),
      .folders = FileAccessService::shared(),
      .permissions = PermissionsManager::shared(),
      .preferences = systemPreferences(),
      .localization = LocalizationManager::shared(),
      .volume = systemVolume(),
      .desktop = systemDesktop(),
      .home = FileUrl(homeFolder()),
      .journal = []() -> UndoJournal& { return UndoJournal::shared(); },
      .scheduleSettings = [] { return ScheduleCoordinator::shared().getSettings(); },
  };
}

}  // namespace orvane
