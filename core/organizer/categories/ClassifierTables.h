#pragma once

#include "core/scanning/records/ScanCategory.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

namespace orvane {

// The tables that the classifier of whole paths and its twin for folders share.

struct PathFragmentRow {
  ScanCategory category;
  std::string_view fragment;
};

// A path that contains a fragment, or ends with a trash folder's name, is of its category; the first row decides,
// before every other rule.
inline constexpr std::array pathFragments{
    PathFragmentRow{ScanCategory::trash, "/.Trash/"},
    PathFragmentRow{ScanCategory::developerCaches, "Library/Developer/Xcode/DerivedData"},
    PathFragmentRow{ScanCategory::developerCaches, "Library/Developer/Xcode/Archives"},
    PathFragmentRow{ScanCategory::developerCaches, "Library/Developer/CoreSimulator/Caches"},
    PathFragmentRow{ScanCategory::browserCaches, "Library/Caches/Google"},
    PathFragmentRow{ScanCategory::browserCaches, "Library/Caches/com.apple.Safari"},
    PathFragmentRow{ScanCategory::browserCaches, "Library/Caches/company.thebrowser.Browser"},
    PathFragmentRow{ScanCategory::browserCaches, "Library/Caches/org.mozilla.firefox"},
    PathFragmentRow{ScanCategory::browserCaches, "Library/Caches/com.brave.Browser"},
    PathFragmentRow{ScanCategory::browserCaches, "Library/Caches/BraveSoftware"},
    PathFragmentRow{ScanCategory::browserCaches, "Library/Caches/com.microsoft.edgemac"},
    PathFragmentRow{ScanCategory::messagingMedia, "Library/Caches/com.tinyspeck.slackmacgap"},
    PathFragmentRow{ScanCategory::messagingMedia, "Library/Caches/ru.keepcoder.Telegram"},
    PathFragmentRow{ScanCategory::messagingMedia, "Library/Caches/net.whatsapp.WhatsApp"},
    PathFragmentRow{ScanCategory::messagingMedia, "Library/Caches/com.hnc.Discord"},
    PathFragmentRow{ScanCategory::messagingMedia, "Library/Caches/com.microsoft.teams2"},
    PathFragmentRow{ScanCategory::messagingMedia, "Library/Caches/ms-teams"},
    PathFragmentRow{ScanCategory::caches, "Library/Caches/Adobe"},
    PathFragmentRow{ScanCategory::caches, "Library/Application Support/Adobe/Common/Media Cache Files"},
    PathFragmentRow{ScanCategory::caches, "Library/Caches/com.apple.FinalCut"},
    PathFragmentRow{ScanCategory::caches, "Library/Caches/com.figma.Desktop"},
    PathFragmentRow{ScanCategory::caches, "Library/Caches/com.bohemiancoding.sketch3"},
    PathFragmentRow{ScanCategory::caches, "Library/Caches/blender"},
    PathFragmentRow{ScanCategory::caches, "Library/Caches/com.canva.CanvaDesktop"},
};

inline constexpr std::string_view trashFolderName = ".Trash";
inline constexpr std::string_view trashFolderEnding = "/.Trash";
inline constexpr std::string_view logsFragment = "/Library/Logs/";
inline constexpr std::string_view cachesFragment = "/Library/Caches/";
inline constexpr std::string_view downloadsFragment = "/Downloads/";
inline constexpr std::array<std::string_view, 2> leftoverFragments{"/Library/Application Support/",
                                                                   "/Library/Containers/"};

constexpr std::int64_t largeFileBytes = 104'857'600;

// The category that an extension alone gives a file.
enum class ExtensionKind : std::uint8_t { log, installer, archive, other };
// `extension` is without the dot, in any case.
[[nodiscard]] ExtensionKind extensionKind(std::string_view extension);

// How the names of screenshots begin, in several languages and with two capture tools. Case-sensitive.
[[nodiscard]] bool hasScreenshotPrefix(std::string_view name) noexcept;

// The rules that come after the fragments, for a path whose folder is known.
struct FolderFacts {
  bool inLogs = false;
  bool inCaches = false;
  bool inDownloads = false;
  bool inLeftovers = false;
};
// In the order in which they are asked; the first that fits decides.
enum class NameRule : std::uint8_t {
  logsFolder,
  logExtension,
  cachesFolder,
  screenshotName,
  installerExtension,
  archiveInDownloads,
  leftoversFolder,
  largeFile,
  none,
};
struct NameRuleRow {
  NameRule rule;
  ScanCategory category;
  std::string_view words;  // English
};
inline constexpr std::array nameRules{
    NameRuleRow{NameRule::logsFolder, ScanCategory::logs, "it lies in a folder of logs, Library/Logs"},
    NameRuleRow{NameRule::logExtension, ScanCategory::logs, "its name ends in .log"},
    NameRuleRow{NameRule::cachesFolder, ScanCategory::caches, "it lies in a folder of caches, Library/Caches"},
    NameRuleRow{NameRule::screenshotName, ScanCategory::screenshots, "its name begins as those of screenshots do"},
    NameRuleRow{NameRule::installerExtension, ScanCategory::oldDownloads, "its name ends as those of installers do"},
    NameRuleRow{NameRule::archiveInDownloads, ScanCategory::oldDownloads, "it is an archive in a downloads folder"},
    NameRuleRow{NameRule::leftoversFolder, ScanCategory::appLeftovers, "it lies where applications keep their data"},
    NameRuleRow{NameRule::largeFile, ScanCategory::largeFiles, "it has 100 MiB or more"},
    NameRuleRow{NameRule::none, ScanCategory::manualReview, "no rule knows it"},
};
[[nodiscard]] NameRule nameRuleOf(std::string_view name, std::int64_t fileSize, const FolderFacts& facts);
[[nodiscard]] ScanCategory categoryByName(std::string_view name, std::int64_t fileSize, const FolderFacts& facts);

}  // namespace orvane
