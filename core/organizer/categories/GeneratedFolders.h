#pragma once

#include <array>
#include <set>
#include <string>
#include <string_view>

namespace orvane {

// The top folders of the organizer's categories. A walk goes through them without proposing them.
inline constexpr std::array<std::string_view, 7> reservedTopLevelCategories{
    "Documents", "Media", "Archives", "Installers", "Development", "Other", "Organized",
};

// Names of folders that the organizer makes inside those.
inline constexpr std::array<std::string_view, 20> generatedFolderNames{
    "Folders",
    "No Extension",
    "Projects",
    "Source Code",
    "Images",
    "Videos",
    "Audio",
    "Screenshots",
    "AI Generated",
    "Banners & Graphics",
    "Photos & Pictures",
    "Vectors & Icons",
    "GIFs & Animations",
    "PDFs",
    "Text & Notes",
    "Spreadsheets",
    "Presentations",
    "Recents",
    "Keep As Is",
    "Sorted",
};

[[nodiscard]] bool isReservedTopLevelCategory(std::string_view name) noexcept;

// Whether the organizer makes folders of this name: one of the names above, a folder of the strategies by type or by
// date, or one of the learned category roots. Case-sensitive.
[[nodiscard]] bool isGeneratedFolder(std::string_view name, const std::set<std::string>& learnedRoots);

}  // namespace orvane
