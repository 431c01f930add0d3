#include "core/duplicates/DuplicateWalk.h"

#include "core/duplicates/SearchMonitor.h"
#include "core/platform/FileStatusReader.h"
#include "core/safety/rules/FolderRules.h"
#include "core/safety/rules/PathValidator.h"
#include "core/scanning/walk/BlackHoleNames.h"
#include "core/scanning/walk/BundleNames.h"
#include "core/scanning/walk/FolderVisit.h"

#include <algorithm>
#include <array>
#include <limits>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>
#include <string_view>
#include <utility>

namespace orvane {
namespace {

constexpr std::array<std::string_view, 2> skippedRootFragments{"Library/Caches", "Library/Developer"};
constexpr std::string_view photoLibraryEnding = ".photoslibrary";

struct Search {
  FoundFiles& found;
  const PathValidator& validator;
  const FileStatusReader& statusReader;
  SearchMonitor& monitor;
  Boundary boundary;
  TreeWalk walk;
};

class ListFolder : public FolderVisit<ListFolder> {
 public:
  ListFolder(Search& search, FoundFolder& folder, UnreadFolder unread)
      : FolderVisit(search.walk, std::move(unread)), m_search(search), m_folder(folder) {}
  ListFolder(ListFolder& parent, std::string_view name, UnreadFolder unread)
      : ListFolder(parent.m_search, parent.m_search.found.addFolder(&parent.m_folder, std::string(name)),
                   std::move(unread)) {
    parent.m_folder.folders.push_back(&m_folder);
  }

  [[nodiscard]] std::optional<FolderRules> enter() const {
    std::string path;
    m_folder.pathInto(path);
    if (path.size() > 1) path.pop_back();
    std::optional<FolderRules> rules(std::in_place, m_search.validator, path, canonicalPath(), m_search.boundary);
    if (rules->refusesAllBelow()) rules.reset();
    return rules;
  }

  [[nodiscard]] static bool needsStatus(const FolderRules& rules, const Entry& entry) noexcept {
    return entry.type == FileType::regular && rules.admits(entry.name);
  }
  [[nodiscard]] std::optional<FileStatus> readStatus(const char* name) const noexcept {
    return m_search.statusReader.read(descriptor(), name);
  }

  void file(const FolderRules& rules, const Entry& entry, const std::optional<FileStatus>& status) {
    if (!status || status->type != FileType::regular || status->size < 1) return;
    if (entry.type == FileType::unknown && !rules.admits(entry.name)) return;
    if (m_folder.fileNames.size() > std::numeric_limits<std::uint32_t>::max()) return;
    m_folder.files.emplace_back(*status, static_cast<std::uint32_t>(m_folder.fileNames.size()));
    m_folder.fileNames.append(entry.name).push_back('\0');
  }

  [[nodiscard]] static Descent folder(const FolderRules& rules, std::string_view name) {
    // A folder that is refused is still entered: what it holds may be allowed.
    const bool isClosed = rules.admits(name) && (isBlackHoleName(name) || name.ends_with(photoLibraryEnding));
    return {isClosed || isBundleName(name) ? Descent::Kind::skip : Descent::Kind::descend};
  }

  void leave(const FolderRules& /*rules*/) {
    m_folder.files.shrink_to_fit();
    m_folder.fileNames.shrink_to_fit();
    m_search.monitor.addFound(static_cast<std::int64_t>(m_folder.files.size()));
  }

 private:
  Search& m_search;
  FoundFolder& m_folder;
};

}  // namespace

bool isSearchable(const FileUrl& folder) noexcept {
  const auto& path = folder.path();
  return !path.empty() &&
         std::none_of(skippedRootFragments.begin(), skippedRootFragments.end(),
                      [&](std::string_view fragment) { return path.find(fragment) != std::string::npos; });
}

void listCandidates(FoundFiles& found, const std::vector<FileUrl>& folders, const PathValidator& validator,
                    const FileStatusReader& statusReader, SearchMonitor& monitor) {
  Search search{found, validator, statusReader, monitor, PathValidator::canonicalizeRoots(folders), {}};
  WorkStack::Tasks tasks;
  std::vector<FoundFolder*> starts;
  for (std::size_t i = 0; i < folders.size(); ++i) {
    if (!isSearchable(folders[i])) continue;
    auto& folder = found.addFolder(nullptr, folders[i].path());
    starts.push_back(&folder);
    tasks.push_back(
        std::make_unique<ListFolder>(search, folder, UnreadFolder{nullptr, search.boundary.canonicalPaths()[i]}));
  }
  search.walk.work.push(tasks);
  const std::stop_callback onStop(monitor.stopToken(), [&] { search.walk.stop(); });
  monitor.onAllProcessors([&] { search.walk.work.work(); });
  found.settleOrder(starts);
}

}  // namespace orvane
