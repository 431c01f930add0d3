#include "core/rules/BuiltInRuleTemplates.h"

#include <array>
#include <cstdint>
#include <string_view>

namespace orvane {
namespace {

using Action = RuleAction::Type;

constexpr std::int64_t oneGibibyte = std::int64_t{1024} * 1024 * 1024;

// Empty texts, and numbers of none, stand for absent fields.
constexpr std::int64_t none = -1;
struct Template {
  std::string_view name;
  std::string_view description;
  std::string_view folderPath;
  std::array<std::string_view, 6> fileExtensions;
  std::optional<ScanCategory> category;
  std::int64_t minimumAgeDays;
  std::int64_t minimumSizeBytes;
  std::string_view namePattern;
  Action action;
  std::string_view destination;
  bool isEnabled;
};

// The descriptions are for people; only the triggers decide.
// clang-format off: a field a line
constexpr std::array<Template, 12> templates{{
    {"Old Screenshots to Trash",
     "Moves screenshots older than 30 days from Desktop and Pictures to Trash.",
     {},
     {},
     ScanCategory::screenshots,
     30,
     none,
     {},
     Action::moveToTrash,
     {},
     true},
    {"Stale Installers in Downloads",
     "Moves disk images (.dmg, .pkg, .iso) older than 7 days in Downloads to Trash.",
     "~/Downloads",
     {"dmg", "pkg", "iso"},
     {},
     7,
     none,
     {},
     Action::moveToTrash,
     {},
     true},
    {"Old Download Archives",
     "Trashes zip, tar, and gz archives older than 14 days in Downloads.",
     "~/Downloads",
     {"zip", "tar", "gz", "tgz", "7z"},
     {},
     14,
     none,
     {},
     Action::moveToTrash,
     {},
     true},
    {"Large Inactive Files",
     "Reviews large files exceeding 1 GB not modified in 90 days.",
     {},
     {},
     {},
     90,
     oneGibibyte,
     {},
     Action::reviewOnly,
     {},
     true},
    {"User Cache Cleanup",
     "Purges temporary application cache directories older than 14 days in ~/Library/Caches.",
     "~/Library/Caches",
     {},
     ScanCategory::caches,
     14,
     none,
     {},
     Action::moveToTrash,
     {},
     true},
    {"Old Log Files Purge",
     "Trashes diagnostic log files (.log) older than 7 days in ~/Library/Logs.",
     "~/Library/Logs",
     {},
     ScanCategory::logs,
     7,
     none,
     {},
     Action::moveToTrash,
     {},
     true},
    {"Sort PDFs from Downloads",
     "Moves PDF documents in Downloads to Documents/PDFs.",
     "~/Downloads",
     {"pdf"},
     {},
     none,
     none,
     {},
     Action::moveToFolder,
     "~/Documents/PDFs",
     false},
    {"Organize Office Documents",
     "Moves docx, xlsx, and pptx files from Downloads to Documents/Work.",
     "~/Downloads",
     {"docx", "doc", "xlsx", "pptx", "key", "pages"},
     {},
     none,
     none,
     {},
     Action::moveToFolder,
     "~/Documents/Work",
     false},
    {"Screen Recordings Cleanup",
     "Trashes video recordings (.mov, .mp4) matching 'Screen Recording' older than 14 days.",
     {},
     {"mov", "mp4"},
     {},
     14,
     none,
     "Screen Recording",
     Action::moveToTrash,
     {},
     true},
    {"Temporary Artifacts & 0-Byte Files",
     "Cleans empty 0-byte files and temporary .tmp artifacts older than 3 days.",
     {},
     {"tmp", "bak", "part"},
     {},
     3,
     none,
     {},
     Action::moveToTrash,
     {},
     true},
    {"Xcode Derived Data Purge",
     "Cleans old Xcode build caches older than 30 days in ~/Library/Developer/Xcode/DerivedData.",
     "~/Library/Developer/Xcode/DerivedData",
     {},
     {},
     30,
     none,
     {},
     Action::moveToTrash,
     {},
     false},
    {"Creative App Scratch Caches",
     "Purges old Adobe and Figma autosaves and media caches older than 30 days.",
     "~/Library/Application Support/Adobe",
     {},
     {},
     30,
     none,
     {},
     Action::moveToTrash,
     {},
     false},
}};
// clang-format on

RuleTrigger triggerOf(const Template& row) {
  RuleTrigger trigger;
  if (!row.folderPath.empty()) trigger.folderPath = row.folderPath;
  for (const auto extension : row.fileExtensions) {
    if (extension.empty()) break;
    if (!trigger.fileExtensions) trigger.fileExtensions.emplace();
    trigger.fileExtensions->emplace_back(extension);
  }
  if (row.category) trigger.categories = {*row.category};
  if (row.minimumAgeDays != none) trigger.minimumAgeDays = row.minimumAgeDays;
  if (row.minimumSizeBytes != none) trigger.minimumSizeBytes = row.minimumSizeBytes;
  if (!row.namePattern.empty()) trigger.namePattern = row.namePattern;
  return trigger;
}

RuleAction actionOf(const Template& row) {
  switch (row.action) {
    case Action::moveToFolder:
      return RuleAction::moveToFolder(std::string(row.destination));
    case Action::moveToTrash:
      return RuleAction::moveToTrash();
    case Action::reviewOnly:
      break;
  }
  return RuleAction::reviewOnly();
}

}  // namespace

std::vector<CleanupRule> BuiltInRuleTemplates::defaultRules() {
  const auto now = ReferenceClock::now();
  std::vector<CleanupRule> rules;
  rules.reserve(templates.size());
  for (const auto& row : templates) {
    rules.push_back({
        .id = Uuid::random(),
        .name = std::string(row.name),
        .description = std::string(row.description),
        .trigger = triggerOf(row),
        .action = actionOf(row),
        .isEnabled = row.isEnabled,
        .isBuiltIn = true,
        .createdAt = now,
    });
  }
  return rules;
}

}  // namespace orvane
