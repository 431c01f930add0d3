#pragma once

#include "core/base/files/FileStatus.h"
#include "core/base/files/FileUrl.h"
#include "core/base/values/Date.h"
#include "core/organizer/categories/CategoryChooser.h"

#include <array>
#include <chrono>
#include <string_view>
#include <vector>

namespace orvane {

class FileStatusReader;

// The folders that the automatic organizer keeps inside a watched folder.
inline constexpr std::string_view recentsFolderName = "Recents";
inline constexpr std::string_view keepAsIsFolderName = "Keep As Is";
inline constexpr std::string_view topicsFolderName = "Sorted";

// A file that may still be written is left alone for so long after its last change.
inline constexpr std::chrono::seconds settleSeconds{120};
// Of downloads that are still being written; lower case.
inline constexpr std::array<std::string_view, 6> inProgressExtensions{"crdownload", "download",   "part",
                                                                      "partial",    "opdownload", "tmp"};

// Whether an item of this name is a download in progress, or what an office program keeps beside an open document.
[[nodiscard]] bool isUnfinished(std::string_view name);

struct TidyItem {
  FileUrl url;
  ItemKind kind = ItemKind::file;
  ItemIdentity identity;
};

// The items of a watched folder that may be moved, in order of their paths.
struct TidyFolder {
  std::vector<TidyItem> recent;  // bound for the recents folder
  std::vector<TidyItem> older;   // to be sorted: files, and whatever leaves the recents folder

  // Reads the folder and its recents folder and nothing else; opens no file. An unreadable folder yields nothing.
  // Hidden items, links, what is unfinished and whatever may still be changing are left out, and so are older folders
  // that never were in the recents folder: they stay where they are. `recentAge` is the age from which on an item is
  // older.
  [[nodiscard]] static TidyFolder read(const FileUrl& folder, std::chrono::duration<double> recentAge, Date now,
                                       const FileStatusReader& statusReader);
};

// Seconds since the later of creation and modification; zero where neither can be read.
[[nodiscard]] double itemAge(const FileStatus& status, Date now) noexcept;

}  // namespace orvane
