#pragma once

#include "core/base/files/FileUrl.h"
#include "core/base/values/EnumTable.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace orvane {

// The user's folders that are managed unless the user chooses others.
enum class ManagedFolderType : std::uint8_t { downloads, documents, desktop, pictures, caches };

struct ManagedFolderRow {
  ManagedFolderType value;
  std::string_view rawValue;     // the case name; also the identity
  std::string_view title;        // English
  std::string_view systemImage;  // name of a symbol image, kept as an opaque text
  std::string_view pathInHome;
};

inline constexpr EnumTable managedFolders({
    ManagedFolderRow{ManagedFolderType::downloads, "downloads", "Downloads", "arrow.down.circle.fill", "Downloads"},
    ManagedFolderRow{ManagedFolderType::documents, "documents", "Documents", "doc.fill", "Documents"},
    ManagedFolderRow{ManagedFolderType::desktop, "desktop", "Desktop", "menubar.dock.rectangle", "Desktop"},
    ManagedFolderRow{ManagedFolderType::pictures, "pictures", "Pictures & Screenshots", "photo.fill", "Pictures"},
    ManagedFolderRow{ManagedFolderType::caches, "caches", "User Caches & Logs", "archivebox.fill", "Library/Caches"},
});
inline constexpr auto allManagedFolderTypes = managedFolders.values();

constexpr std::string_view rawValue(ManagedFolderType type) noexcept {
  return managedFolders[type].rawValue;
}
constexpr std::string_view title(ManagedFolderType type) noexcept {
  return managedFolders[type].title;
}
constexpr std::string_view systemImage(ManagedFolderType type) noexcept {
  return managedFolders[type].systemImage;
}
[[nodiscard]] FileUrl defaultURL(ManagedFolderType type, const std::string& homeFolder);

}  // namespace orvane
