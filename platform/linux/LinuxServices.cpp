#include "platform/SystemServices.h"

#include "core/localization/LocalizedStrings.h"
#include "core/localization/ThreadSafeLanguageStore.h"
#include "platform/linux/AutostartEntry.h"
#include "platform/linux/BusNotificationCenter.h"
#include "platform/linux/ConfigurationFolder.h"
#include "platform/linux/CurlTransport.h"
#include "platform/linux/CurlUrlReader.h"
#include "platform/linux/LibSecretStore.h"
#include "platform/linux/LinuxApplications.h"
#include "platform/linux/LinuxDesktop.h"
#include "platform/linux/LinuxFileMover.h"
#include "platform/linux/LinuxFileStatusReader.h"
#include "platform/linux/LinuxFolderGrants.h"
#include "platform/linux/LinuxPreferences.h"
#include "platform/linux/LinuxProfile.h"
#include "platform/linux/LinuxTrash.h"
#include "platform/linux/LinuxTrashUsage.h"
#include "platform/linux/LinuxVolume.h"
#include "platform/linux/LocalTopicModel.h"
#include "platform/linux/SystemdScheduler.h"
#include "platform/linux/XdgFolders.h"
#include "platform/posix/RunTool.h"

#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <filesystem>
#include <string>

namespace orvane {

std::string windowProgram() {
  return (std::filesystem::read_symlink("/proc/self/exe").parent_path() / "orvane").string();
}

void becomeIdle() noexcept {
  // IOPRIO_CLASS_IDLE of ioprio_set(2), which has no header of its own.
  constexpr int ofThisThread = 1;
  constexpr int idleClass = 3 << 13;
  ::setpriority(PRIO_PROCESS, 0, 19);
  ::syscall(SYS_ioprio_set, ofThisThread, 0, idleClass);
}

BackgroundScheduler& systemBackgroundScheduler() {
  static SystemdScheduler scheduler(SystemdScheduler::defaultFolder());
  return scheduler;
}

Desktop& systemDesktop() {
  static LinuxDesktop desktop;
  return desktop;
}

FileMover& systemFileMover() {
  static LinuxFileMover mover;
  return mover;
}

FileStatusReader& systemFileStatusReader() {
  static LinuxFileStatusReader reader;
  return reader;
}

FolderGrants& systemFolderGrants() {
  static LinuxFolderGrants grants;
  return grants;
}

HttpTransport& systemHttpTransport() {
  static CurlTransport transport;
  return transport;
}

const HttpUrlReader& systemHttpUrlReader() {
  static const CurlUrlReader reader;
  return reader;
}

LoginItems& systemLoginItems() {
  static AutostartEntry entry(AutostartEntry::defaultPath(), windowProgram());
  return entry;
}

NotificationCenter& systemNotificationCenter() {
  static BusNotificationCenter center(
      [] {
        startProgram({windowProgram(), "--show", "history"});
      },
      [] {
        const auto language = ThreadSafeLanguageStore::shared().currentLanguage();
        return std::string(LocalizedStrings::lookup(language, "notification.show_history"));
      });
  return center;
}

Preferences& systemPreferences() {
  static LinuxPreferences preferences(LinuxPreferences::defaultPath());
  return preferences;
}

SecretStore& systemSecretStore() {
  static LibSecretStore store;
  return store;
}

TopicModel& systemTopicModel() {
  static LocalTopicModel model(systemPreferences(), systemHttpTransport());
  return model;
}

Trash& systemTrash() {
  static LinuxTrash trash(LinuxTrash::defaultHomeTrash());
  return trash;
}

const TrashUsage& systemTrashUsage() {
  static const LinuxTrashUsage usage(LinuxTrash::defaultHomeTrash());
  return usage;
}

const SystemApplications& systemApplications() {
  static const LinuxApplications applications(LinuxApplications::foldersFromEnvironment());
  return applications;
}

const SystemProfile& systemProfile() {
  static const LinuxProfile profile(XdgFolders::fromEnvironment());
  return profile;
}

Volume& systemVolume() {
  static LinuxVolume volume;
  return volume;
}

std::string systemPreferencesFile() {
  return LinuxPreferences::defaultPath();
}

std::string systemSnapshotsFile() {
  return XdgFolders::fromEnvironment().data + "/orvane/map.db";
}

}  // namespace orvane
