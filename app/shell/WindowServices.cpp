#include "app/shell/WindowServices.h"

#include "core/localization/LocalizationManager.h"
#include "core/rules/schedule/ScheduleCoordinator.h"
#include "core/safety/services/PermissionsManager.h"
#include "platform/SystemServices.h"

namespace orvane {

WindowServices systemWindowServices() {
  return {
      .tasks = TaskServices::shared(),
      .permissions = PermissionsManager::shared(),
      .preferences = systemPreferences(),
      .localization = LocalizationManager::shared(),
      .volume = systemVolume(),
      .desktop = systemDesktop(),
      .scheduleSettings = [] { return ScheduleCoordinator::shared().getSettings(); },
      .trashUsage = systemTrashUsage(),
  };
}

}  // namespace orvane
