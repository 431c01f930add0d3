#pragma once

#include <string>

namespace orvane {

class BackgroundScheduler;
class Desktop;
class FileMover;
class FileStatusReader;
class FolderGrants;
class HttpTransport;
class HttpUrlReader;
class LoginItems;
class NotificationCenter;
class Preferences;
class SecretStore;
class SystemApplications;
class SystemProfile;
class TopicModel;
class Trash;
class TrashUsage;
class Volume;
struct SystemReport;

// This system's one instance of each interface, made at its first use. A port defines these functions in its own
// folder.
[[nodiscard]] BackgroundScheduler& systemBackgroundScheduler();
[[nodiscard]] Desktop& systemDesktop();
[[nodiscard]] FileMover& systemFileMover();
[[nodiscard]] FileStatusReader& systemFileStatusReader();
[[nodiscard]] FolderGrants& systemFolderGrants();
[[nodiscard]] HttpTransport& systemHttpTransport();
[[nodiscard]] const HttpUrlReader& systemHttpUrlReader();
[[nodiscard]] LoginItems& systemLoginItems();
[[nodiscard]] NotificationCenter& systemNotificationCenter();
[[nodiscard]] Preferences& systemPreferences();
[[nodiscard]] SecretStore& systemSecretStore();
[[nodiscard]] const SystemApplications& systemApplications();
[[nodiscard]] const SystemProfile& systemProfile();
[[nodiscard]] TopicModel& systemTopicModel();
[[nodiscard]] Trash& systemTrash();
[[nodiscard]] const TrashUsage& systemTrashUsage();
[[nodiscard]] Volume& systemVolume();

// The file whose change tells of new preferences.
[[nodiscard]] std::string systemPreferencesFile();
// The database of earlier maps.
[[nodiscard]] std::string systemSnapshotsFile();

// Answers within seconds, also where the message bus does not.
[[nodiscard]] SystemReport systemReport();

// From now on the calling thread, and those that it starts, use processors and disks only while nobody else wants them.
void becomeIdle() noexcept;

// The absolute path of the program with the window, which lies beside the one that runs. It need not be there.
[[nodiscard]] std::string windowProgram();

}  // namespace orvane
