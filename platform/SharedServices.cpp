// The wiring of the program: each shared instance, made at its first use from those above it.

#include "core/assistant/AgentCoordinator.h"
#include "core/assistant/services/KeychainService.h"
#include "core/base/files/HomeFolder.h"
#include "core/duplicates/DuplicateFinderEngine.h"
#include "core/localization/LocalizationManager.h"
#include "core/localization/ThreadSafeLanguageStore.h"
#include "core/map/services/SnapshotStore.h"
#include "core/organizer/categories/CategoryPreferencesStore.h"
#include "core/organizer/propose/FolderOrganizerEngine.h"
#include "core/organizer/services/AutoOrganizeSettingsStore.h"
#include "core/organizer/tidy/AutoOrganizer.h"
#include "core/organizer/topics/TopicCategorizerFactory.h"
#include "core/plans/PlanExecutor.h"
#include "core/rules/RuleEngine.h"
#include "core/rules/schedule/DailyMap.h"
#include "core/rules/schedule/HeadlessCoordinator.h"
#include "core/rules/schedule/ScheduleCoordinator.h"
#include "core/rules/services/LaunchAgentManager.h"
#include "core/rules/services/UserNotificationService.h"
#include "core/safety/access/FileAccessService.h"
#include "core/safety/access/KeepList.h"
#include "core/safety/journal/UndoJournal.h"
#include "core/safety/rules/PathValidator.h"
#include "core/safety/run/TrashMover.h"
#include "core/safety/services/PermissionsManager.h"
#include "core/scanning/scan/StorageScanner.h"
#include "core/tasks/MapTask.h"
#include "core/tasks/TaskServices.h"
#include "core/uninstaller/AppUninstallerEngine.h"
#include "platform/SystemServices.h"

#include <fmt/format.h>

#include <cstdio>
#include <string_view>
#include <thread>

namespace orvane {
namespace {

void writeToConsole(std::string_view line) {
  fmt::print(stderr, "{}\n", line);
}

}  // namespace

PathValidator& PathValidator::shared() {
  static PathValidator validator(homeFolder(), systemProfile());
  return validator;
}

StorageScanner& StorageScanner::shared() {
  static StorageScanner scanner(PathValidator::shared(), systemFileStatusReader());
  return scanner;
}

TrashMover& TrashMover::shared() {
  static TrashMover mover(systemTrash(), systemFileMover(), PathValidator::shared());
  return mover;
}

UndoJournal& UndoJournal::shared() {
  static UndoJournal journal(systemTrash(), systemFileMover(), PathValidator::shared(), defaultStorageDirectory());
  return journal;
}

PlanExecutor& PlanExecutor::shared() {
  static PlanExecutor executor(TrashMover::shared(), PathValidator::shared());
  return executor;
}

DuplicateFinderEngine& DuplicateFinderEngine::shared() {
  static DuplicateFinderEngine engine(PathValidator::shared(), systemFileStatusReader());
  return engine;
}

CategoryPreferencesStore& CategoryPreferencesStore::shared() {
  static CategoryPreferencesStore store(systemPreferences());
  return store;
}

AppUninstallerEngine& AppUninstallerEngine::shared() {
  static AppUninstallerEngine engine(PathValidator::shared(), FileUrl(homeFolder()), systemApplications());
  return engine;
}

FolderOrganizerEngine& FolderOrganizerEngine::shared() {
  static FolderOrganizerEngine engine(CategoryPreferencesStore::shared(), TrashMover::shared(), PathValidator::shared(),
                                      systemProfile());
  return engine;
}

ThreadSafeLanguageStore& ThreadSafeLanguageStore::shared() {
  static ThreadSafeLanguageStore store(systemProfile());
  return store;
}

LocalizationManager& LocalizationManager::shared() {
  static LocalizationManager manager(systemPreferences(), ThreadSafeLanguageStore::shared(), environmentLocale());
  return manager;
}

TopicCategorizerFactory& TopicCategorizerFactory::shared() {
  static TopicCategorizerFactory factory(systemTopicModel());
  return factory;
}

AutoOrganizeSettingsStore& AutoOrganizeSettingsStore::shared() {
  static AutoOrganizeSettingsStore store(systemPreferences());
  return store;
}

KeychainService& KeychainService::shared() {
  static KeychainService service(systemSecretStore());
  return service;
}

AgentCoordinator& AgentCoordinator::shared() {
  static AgentCoordinator coordinator(KeychainService::shared(), systemHttpTransport(),
                                      ProviderAddresses::fromEnvironment(), &systemTopicModel());
  return coordinator;
}

AutoOrganizer& AutoOrganizer::shared() {
  static AutoOrganizer organizer(TaskServices::shared());
  return organizer;
}

FileAccessService& FileAccessService::shared() {
  static FileAccessService service(systemPreferences(), systemFolderGrants(), homeFolder());
  return service;
}

KeepList& KeepList::shared() {
  static KeepList list(systemPreferences(), homeFolder());
  return list;
}

PermissionsManager& PermissionsManager::shared() {
  static PermissionsManager manager(systemDesktop(), homeFolder());
  return manager;
}

RuleEngine& RuleEngine::shared() {
  static RuleEngine engine(
      systemPreferences(), TrashMover::shared(), []() -> UndoJournal& { return UndoJournal::shared(); },
      PathValidator::shared());
  return engine;
}

SnapshotStore& SnapshotStore::shared() {
  static SnapshotStore store(systemSnapshotsFile(), systemPreferences());
  return store;
}

UserNotificationService& UserNotificationService::shared() {
  static UserNotificationService service(systemNotificationCenter(), writeToConsole);
  return service;
}

ScheduleCoordinator& ScheduleCoordinator::shared() {
  static ScheduleCoordinator coordinator({.preferences = systemPreferences(),
                                          .tasks = TaskServices::shared(),
                                          .notificationService = UserNotificationService::shared()});
  return coordinator;
}

LaunchAgentManager& LaunchAgentManager::shared() {
  static LaunchAgentManager manager(systemBackgroundScheduler(), homeFolder());
  return manager;
}

HeadlessCoordinator& HeadlessCoordinator::shared() {
  // Without a window, nothing else loads the language of the button on a notification.
  LocalizationManager::shared();
  static HeadlessCoordinator coordinator(
      {.schedule = ScheduleCoordinator::shared(),
       .tidySettings = AutoOrganizeSettingsStore::shared(),
       .autoOrganizer = AutoOrganizer::shared(),
       .notificationCenter = systemNotificationCenter(),
       .volume = systemVolume(),
       .home = FileUrl(homeFolder()),
       .console = writeToConsole,
       .wait = [](std::chrono::seconds time) { std::this_thread::sleep_for(time); },
       .mapIfDue = [] { mapAndWarn(MapServices::shared(), systemNotificationCenter(), becomeIdle); }});
  return coordinator;
}

const TaskServices& TaskServices::shared() {
  static const TaskServices services{
      .validator = PathValidator::shared(),
      .statusReader = systemFileStatusReader(),
      .scanner = StorageScanner::shared(),
      .folders = FileAccessService::shared(),
      .keepList = KeepList::shared(),
      .mover = TrashMover::shared(),
      .rules = RuleEngine::shared(),
      .finder = DuplicateFinderEngine::shared(),
      .organizer = FolderOrganizerEngine::shared(),
      .learned = CategoryPreferencesStore::shared(),
      .topics = TopicCategorizerFactory::shared(),
      .tidySettings = AutoOrganizeSettingsStore::shared(),
      .uninstaller = AppUninstallerEngine::shared(),
      .agent = AgentCoordinator::shared(),
      .home = FileUrl(homeFolder()),
      .journal = []() -> UndoJournal& { return UndoJournal::shared(); },
      .profile = systemProfile(),
  };
  return services;
}

const MapServices& MapServices::shared() {
  static const MapServices services{
      .tasks = TaskServices::shared(), .snapshots = SnapshotStore::shared(), .volume = systemVolume()};
  return services;
}

}  // namespace orvane
