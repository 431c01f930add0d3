#pragma once

#include "core/tasks/TaskServices.h"

#include <functional>
#include <optional>

namespace orvane {

class Desktop;
class FileAccessService;
class LocalizationManager;
class PermissionsManager;
class Preferences;
class StorageScanner;
class TrashMover;
class UndoJournal;
class Volume;
struct ScheduleSettings;

// What the view-models work with. Everything must outlive them, and but for the localization is called from background
// threads only: it may wait for the disk.
struct WindowServices {
  TaskServices tasks;
  StorageScanner& scanner;
  TrashMover& mover;
  FileAccessService& folders;
  PermissionsManager& permissions;
  Preferences& preferences;
  LocalizationManager& localization;
  const Volume& volume;
  Desktop& desktop;
  FileUrl home;
  // Made at the first call, which reads the whole file and settles what runs that died left behind.
  std::function<UndoJournal&()> journal;
  std::function<ScheduleSettings()> scheduleSettings;
};

// The program's own.
[[nodiscard]] WindowServices systemWindowServices();

}  // namespace orvane
