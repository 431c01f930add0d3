#pragma once

#include "core/base/files/FileUrl.h"
#include "core/platform/SystemProfile.h"

#include <functional>

namespace orvane {

class AgentCoordinator;
class AppUninstallerEngine;
class AutoOrganizeSettingsStore;
class CategoryPreferencesStore;
class DuplicateFinderEngine;
class FileAccessService;
class FileStatusReader;
class FolderOrganizerEngine;
class KeepList;
class PathValidator;
class RuleEngine;
class StorageScanner;
class TopicCategorizerFactory;
class TrashMover;
class UndoJournal;

// The collaborators of the tasks. Front ends hold it and hand it on; the engines behind it are for the tasks alone.
// Everything must outlive its users, and may wait for the disk when it is called.
struct TaskServices {
  const PathValidator& validator;
  const FileStatusReader& statusReader;
  StorageScanner& scanner;
  FileAccessService& folders;
  KeepList& keepList;
  TrashMover& mover;
  RuleEngine& rules;
  DuplicateFinderEngine& finder;
  FolderOrganizerEngine& organizer;
  CategoryPreferencesStore& learned;
  TopicCategorizerFactory& topics;
  AutoOrganizeSettingsStore& tidySettings;
  AppUninstallerEngine& uninstaller;
  AgentCoordinator& agent;
  FileUrl home;
  // Made at the first call, which reads the whole file and settles what runs that died left behind.
  std::function<UndoJournal&()> journal;
  const SystemProfile& profile = SystemProfile::none();

  // The program's own.
  static const TaskServices& shared();
};

}  // namespace orvane
