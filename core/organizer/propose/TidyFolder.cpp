#include "core/organizer/propose/TidyFolder.h"

#include "core/base/files/DirectoryReader.h"
#include "core/base/files/PathText.h"
#include "core/base/text/UnicodeText.h"
#include "core/platform/FileStatusReader.h"

#include <fcntl.h>

#include <algorithm>
#include <optional>
#include <string>
#include <utility>

namespace orvane {
namespace {

// Folders that `orvanectl organize` makes are the organizer's own, too.
constexpr std::array<std::string_view, 4> ownNames{recentsFolderName, topicsFolderName, keepAsIsFolderName,
                                                   "Organized"};

template <std::size_t Size>
bool isOneOf(std::string_view text, const std::array<std::string_view, Size>& texts) noexcept {
  return std::find(texts.begin(), texts.end(), text) != texts.end();
}

struct SettledItem {
  TidyItem item;
  double age;  // seconds
};

// The entries that have settled, in the order of their names.
std::vector<SettledItem> settledItems(DirectoryReader& reader, const FileUrl& folder, Date now,
                                      const FileStatusReader& statusReader) {
  std::vector<SettledItem> items;
  while (const auto entry = reader.next()) {
    if (entry->name.starts_with('.') || isUnfinished(entry->name)) continue;
    if (entry->type == FileType::symbolicLink || entry->type == FileType::other) continue;
    const auto status = statusReader.read(reader.descriptor(), entry->nameBytes());
    if (!status || (status->type != FileType::regular && status->type != FileType::directory)) continue;
    if (now - status->modified.date() < settleSeconds) continue;
    const auto kind = status->type == FileType::directory ? ItemKind::folder : ItemKind::file;
    items.push_back(
        {{folder.appendingPathComponent(entry->name), kind, ItemIdentity::of(*status)}, itemAge(*status, now)});
  }
  std::sort(items.begin(), items.end(),
            [](const auto& left, const auto& right) { return left.item.url < right.item.url; });
  return items;
}

}  // namespace

bool isUnfinished(std::string_view name) {
  constexpr std::string_view openDocumentStart = "~$";
  return name.starts_with(openDocumentStart) || isOneOf(lowercased(splitName(name).extension), inProgressExtensions);
}

double itemAge(const FileStatus& status, Date now) noexcept {
  auto latest = status.modified.date();
  if (status.created) latest = std::max(latest, status.created->date());
  return (now - latest).count();
}

TidyFolder TidyFolder::read(const FileUrl& folder, std::chrono::duration<double> recentAge, Date now,
                            const FileStatusReader& statusReader) {
  TidyFolder result;
  auto reader = DirectoryReader::open(AT_FDCWD, folder.path().c_str(), DirectoryReader::Links::follow);
  if (!reader) return result;
  for (auto& [item, age] : settledItems(*reader, folder, now, statusReader)) {
    if (isOneOf(item.url.lastPathComponent(), ownNames)) continue;
    if (age < recentAge.count()) {
      result.recent.push_back(std::move(item));
    } else if (item.kind == ItemKind::file) {
      result.older.push_back(std::move(item));
    }
  }
  auto recents = DirectoryReader::open(reader->descriptor(), std::string(recentsFolderName).c_str(),
                                       DirectoryReader::Links::refuse);
  if (!recents) return result;
  for (auto& [item, age] :
       settledItems(*recents, folder.appendingPathComponent(recentsFolderName), now, statusReader)) {
    if (age >= recentAge.count()) result.older.push_back(std::move(item));
  }
  return result;
}

}  // namespace orvane
