#pragma once

#include "core/platform/SystemProfile.h"
#include "platform/linux/MountedTrashes.h"
#include "platform/linux/OpenFiles.h"
#include "platform/linux/XdgFolders.h"

#include <chrono>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orvane {

// A Linux home by the folders of the desktop's specifications. The tables stand in a file each.
class LinuxProfile : public SystemProfile {
 public:
  explicit LinuxProfile(XdgFolders folders);

  [[nodiscard]] std::span<const FileKind> fileKinds() const noexcept override;
  // By the Filesystem Hierarchy Standard, but for places that hold homes or users' disks on some systems.
  [[nodiscard]] std::span<const std::string_view> systemFolders() const noexcept override;
  [[nodiscard]] std::string baseFolder(Base base) const override;

  // LinuxProtectedPlaces.cpp
  [[nodiscard]] std::span<const ProtectedPlace> protectedPlaces() const noexcept override;
  [[nodiscard]] std::span<const ProtectedName> protectedNames() const noexcept override;
  // The folder of a Flatpak program that neither the user nor the system has installed.
  [[nodiscard]] bool isLeftOver(const std::string& path) const override;
  // A Wine prefix, a library of Steam's, or the disk of a virtual machine that runs.
  [[nodiscard]] bool isStoreInUse(const std::string& path) const override;

  // LinuxKnownPlaces.cpp
  [[nodiscard]] std::span<const KnownPlace> knownPlaces() const noexcept override;
  [[nodiscard]] std::span<const ProgramTitle> programTitles() const noexcept override;
  [[nodiscard]] std::span<const ProgramAlias> programAliases() const noexcept override;
  [[nodiscard]] std::span<const BuildFolder> buildFolders() const noexcept override;

  // LinuxBusySigns.cpp
  [[nodiscard]] bool isBusySign(const std::string& path, BusySign::Check check,
                                std::string_view program) const override;

  [[nodiscard]] bool hasOpenFiles(const std::string& path) const override;

  [[nodiscard]] std::vector<std::string> itemsInOtherTrashes(const std::stop_token& stop) const override;
  [[nodiscard]] bool isInOtherTrash(std::string_view path) const override { return MountedTrashes::isItem(path); }

  // LinuxNamedFiles.cpp
  [[nodiscard]] std::span<const NamedFile> namedFiles() const noexcept override;
  [[nodiscard]] std::span<const std::string_view> screenshotFolders() const noexcept override;
  // As the kernel names it, "core.PID", of the format and type that elf(5) describes.
  [[nodiscard]] bool isCoreDump(const std::string& path) const override;

 private:
  XdgFolders m_folders;
  MountedTrashes m_trashes;

  // Many places are asked for at once.
  mutable std::mutex m_openPathsMutex;
  mutable OpenPaths m_openPaths;
  mutable std::optional<std::chrono::steady_clock::time_point> m_openPathsRead;

  [[nodiscard]] std::span<const Wording> wordings() const noexcept override;
  [[nodiscard]] std::span<const Phrase> phrases() const noexcept override;
  [[nodiscard]] bool hasFullDiskPermission() const noexcept override { return false; }
  [[nodiscard]] std::string_view sandbox() const override;
  [[nodiscard]] std::span<const SuggestedRule> suggestedRules() const noexcept override;
};

}  // namespace orvane
