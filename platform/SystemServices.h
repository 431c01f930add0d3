#pragma once

namespace orvane {

class Desktop;
class FileMover;
class FileStatusReader;
class FolderGrants;
class HttpTransport;
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
[[nodiscard]] Preferences& systemPreferences();
[[nodiscard]] SecretStore& systemSecretStore();
[[nodiscard]] TopicModel& systemTopicModel();
[[nodiscard]] Trash& systemTrash();
[[nodiscard]] Volume& systemVolume();

}  // namespace orvane
