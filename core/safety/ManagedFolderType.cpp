#include "core/safety/ManagedFolderType.h"

#include "core/base/PathText.h"

namespace orvane {
namespace {

struct FolderRow {
  ManagedFolderType type;
  std::string_view rawValue;
  std::string_view title;
  std::string_view systemImage;
  std::string_view pathInHome;
};

constexpr std::array rows{
    FolderRow{ManagedFolderType::downloads, "downloads", "Downloads", "arrow.down.circle.fill", "Downloads"},
    FolderRow{ManagedFolderType::documents, "documents", "Documents", "doc.fill", "Documents"},
    FolderRow{ManagedFolderType::desktop, "desktop", "Desktop", "menubar.dock.rectangle", "Desktop"},
    FolderRow{ManagedFolderType::pictures, "pictures", "Pictures & Screenshots", "photo.fill", "Pictures"},
    FolderRow{ManagedFolderType::caches, "caches", "User Caches & Logs", "archivebox.fill", "Library/Caches"},
};

constexpr bool rowsFollowDeclaration() {
  for (std::size_t i = 0; i < rows.size(); ++i) {
    if (rows[i].type != allManagedFolderTypes[i] || static_cast<std::size_t>(rows[i].type) != i) return false;
  }
  return rows.size() == allManagedFolderTypes.size();
}
static_assert(rowsFollowDeclaration());

constexpr const FolderRow& rowOf(ManagedFolderType type) {
  return rows[static_cast<std::size_t>(type)];
}

}  // namespace

std::string_view rawValue(ManagedFolderType type) noexcept {
  return rowOf(type).rawValue;
}

std::optional<ManagedFolderType> managedFolderTypeFromRawValue(std::string_view text) noexcept {
  for (const auto& row : rows) {
    if (row.rawValue == text) return row.type;
  }
  return std::nullopt;
}

std::string_view title(ManagedFolderType type) noexcept {
  return rowOf(type).title;
}

std::string_view systemImage(ManagedFolderType type) noexcept {
  return rowOf(type).systemImage;
}

FileUrl defaultURL(ManagedFolderType type, const std::string& homeFolder) {
  return FileUrl(joinPath(homeFolder, rowOf(type).pathInHome));
}

}  // namespace orvane
