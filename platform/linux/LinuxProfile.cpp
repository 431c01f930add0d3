#include "platform/linux/LinuxProfile.h"

#include "core/base/files/DirectoryReader.h"
#include "core/base/files/PathText.h"

#include <fcntl.h>

#include <algorithm>
#include <array>
#include <utility>

namespace orvane {
namespace {

constexpr std::array kinds{
    SystemProfile::FileKind{"odt", "Documents/Text & Notes"},
    SystemProfile::FileKind{"epub", "Documents/Text & Notes"},
    SystemProfile::FileKind{"ods", "Documents/Spreadsheets"},
    SystemProfile::FileKind{"odp", "Documents/Presentations"},
    SystemProfile::FileKind{"tif", "Media/Images"},
    SystemProfile::FileKind{"bmp", "Media/Images"},
    SystemProfile::FileKind{"raw", "Media/Images"},
    SystemProfile::FileKind{"dng", "Media/Images"},
    SystemProfile::FileKind{"cr2", "Media/Images"},
    SystemProfile::FileKind{"cr3", "Media/Images"},
    SystemProfile::FileKind{"nef", "Media/Images"},
    SystemProfile::FileKind{"arw", "Media/Images"},
    SystemProfile::FileKind{"orf", "Media/Images"},
    SystemProfile::FileKind{"raf", "Media/Images"},
    SystemProfile::FileKind{"rw2", "Media/Images"},
    SystemProfile::FileKind{"pef", "Media/Images"},
    SystemProfile::FileKind{"srw", "Media/Images"},
    SystemProfile::FileKind{"srt", "Media/Videos"},
    SystemProfile::FileKind{"ogg", "Media/Audio"},
    SystemProfile::FileKind{"opus", "Media/Audio"},
    SystemProfile::FileKind{"xz", "Archives"},
    SystemProfile::FileKind{"zst", "Archives"},
    SystemProfile::FileKind{"deb", "Installers"},
    SystemProfile::FileKind{"rpm", "Installers"},
    SystemProfile::FileKind{"appimage", "Installers"},
    SystemProfile::FileKind{"msi", "Installers"},
    SystemProfile::FileKind{"exe", "Installers"},
};

constexpr std::array<std::string_view, 15> folders{
    "/boot", "/efi",  "/lib", "/lib32",     "/lib64",   "/libx32",  "/lost+found", "/ostree",
    "/proc", "/snap", "/sys", "/var/cache", "/var/lib", "/var/log", "/var/spool",
};

}  // namespace

LinuxProfile::LinuxProfile(XdgFolders folders) : m_folders(std::move(folders)) {}

std::string LinuxProfile::baseFolder(Base base) const {
  switch (base) {
    case Base::root:
      return "/";
    case Base::home:
      return m_folders.home;
    case Base::cache:
      return m_folders.cache;
    case Base::config:
      return m_folders.config;
    case Base::data:
      return m_folders.data;
    case Base::state:
      return m_folders.state;
    case Base::runtime:
      return m_folders.runtime;
  }
  return {};
}

std::span<const SystemProfile::FileKind> LinuxProfile::fileKinds() const noexcept {
  return kinds;
}

std::span<const std::string_view> LinuxProfile::systemFolders() const noexcept {
  return folders;
}

std::vector<std::string> LinuxProfile::itemsInOtherTrashes(const std::stop_token& stop) const {
  std::vector<std::string> items;
  const auto home = joinPath(m_folders.data, "Trash");
  for (const auto& folder : m_trashes.folders(home, stop).folders) {
    if (folder.path == home || folder.isRemote) continue;
    const auto files = joinPath(folder.path, "files");
    auto reader = DirectoryReader::open(AT_FDCWD, files.c_str(), DirectoryReader::Links::refuse);
    while (const auto entry = reader ? reader->next() : std::nullopt) items.push_back(joinPath(files, entry->name));
  }
  std::ranges::sort(items);
  return items;
}

}  // namespace orvane
