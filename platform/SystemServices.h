#pragma once

#include <string>

namespace orvane {

class Desktop;
class FileMover;
class FileStatusReader;
class FolderGrants;
class HttpTransport;
class LoginItems;
class Preferences;
class SecretStore;
class TopicModel;
class Trash;
class Volume;

// This system's one instance of each interface, made at its first use. A port defines these functions in its own
// folder.
[[nodiscard]] Desktop& systemDesktop();
[[nodiscard]] FileMover& systemFileMover();
[[nodiscard]] FileStatusReader& systemFileStatusReader();
[[nodiscard]] FolderGrants& systemFolderGrants();
[[nodiscard]] HttpTransport& systemHttpTransport();
[[nodiscard]] LoginItems& systemLoginItems();
[[nodiscard]] Preferences& systemPreferences();
[[nodiscard]] SecretStore& systemSecretStore();
[[nodiscard]] TopicModel& systemTopicModel();
[[nodiscard]] Trash& systemTrash();
[[nodiscard]] Volume& systemVolume();

// The file whose change tells of new preferences.
[[nodiscard]] std::string systemPreferencesFile();

}  // namespace orvane
