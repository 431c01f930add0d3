#pragma once

#include "core/platform/TrashUsage.h"
#include "core/tasks/TaskServices.h"

#include <functional>

namespace orvane {

class Desktop;
class LocalizationManager;
class PermissionsManager;
class Preferences;
class Volume;
struct ScheduleSettings;

// The collaborators of the view-models. Everything must outlive them, and but for the localization is called from
// background threads only: it may wait for the disk.
struct WindowServices {
  TaskServices tasks;
  PermissionsManager& permissions;
  Preferences& preferences;
  LocalizationManager& localization;
  const Volume& volume;
  Desktop& desktop;
  std::function<ScheduleSettings()> scheduleSettings;
  const TrashUsage& trashUsage = TrashUsage::none();
};

// The program's own.
[[nodiscard]] WindowServices systemWindowServices();

}  // namespace orvane
