#include "core/tasks/LinksToRows.h"

#include "core/base/files/CanonicalPath.h"
#include "core/base/files/DirectoryReader.h"
#include "core/base/files/FileStatus.h"
#include "core/base/files/PathText.h"
#include "core/tasks/Proposal.h"

#include <fcntl.h>

#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace orvane {
namespace {

// Adds where the links of a folder lead, by canonical paths.
void addLinkTargets(std::vector<std::string>& targets, const std::string& folder, Subfolders subfolders) {
  std::vector<std::string> waiting{folder};
  while (!waiting.empty()) {
    const auto path = std::move(waiting.back());
    waiting.pop_back();
    auto reader = DirectoryReader::open(AT_FDCWD, path.c_str(), DirectoryReader::Links::refuse);
    while (const auto entry = reader ? reader->next() : std::nullopt) {
      auto type = entry->type;
      if (type == FileType::unknown) {
        const auto status = readFileStatus(reader->descriptor(), entry->nameBytes());
        type = status ? status->type : FileType::other;
      }
      if (type == FileType::symbolicLink) targets.push_back(canonicalPath(joinPath(path, entry->name)));
      if (type == FileType::directory && subfolders == Subfolders::include && !entry->name.starts_with('.')) {
        waiting.push_back(joinPath(path, entry->name));
      }
    }
  }
}

}  // namespace

std::int64_t linksToRows(const Proposal& proposal, const FileUrl& folder, Subfolders subfolders,
                         std::span<const FileUrl> others) {
  const auto canonical = canonicalPath(folder.path());
  std::vector<std::string> targets;
  addLinkTargets(targets, canonical, subfolders);
  std::set<std::string> elsewhere;
  for (const auto& other : others) elsewhere.insert(canonicalPath(other.path()));
  for (const auto& other : elsewhere) {
    const bool isLookedAt =
        other == canonical || (subfolders == Subfolders::include && isSameOrInside(other, canonical));
    if (!isLookedAt) addLinkTargets(targets, other, Subfolders::keepWhole);
  }
  // The links that break where an item below the folder moves, by the item's path.
  std::unordered_map<std::string, std::vector<std::size_t>> linksByItem;
  for (std::size_t at = 0; at < targets.size(); ++at) {
    for (std::string_view path = targets[at]; path != canonical && isSameOrInside(path, canonical);
         path = parentPath(path)) {
      linksByItem[std::string(path)].push_back(at);
    }
  }
  if (linksByItem.empty()) return 0;
  std::unordered_set<std::size_t> broken;
  proposal.forEach([&](std::size_t, const ProposedRow& row) {
    const auto found = linksByItem.find(joinPath(canonical, row.item.relativePath()));
    if (found != linksByItem.end()) broken.insert(found->second.begin(), found->second.end());
  });
  return static_cast<std::int64_t>(broken.size());
}

}  // namespace orvane
