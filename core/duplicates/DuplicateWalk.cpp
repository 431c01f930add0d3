#include "core/duplicates/DuplicateWalk.h"

#include "core/base/files/DirectoryReader.h"
#include "core/base/files/PathText.h"
#include "core/duplicates/SearchMonitor.h"
#include "core/platform/FileStatusReader.h"
#include "core/safety/rules/FolderRules.h"
#include "core/safety/rules/PathValidator.h"
#include "core/scanning/walk/BlackHoleNames.h"
#include "core/scanning/walk/BundleNames.h"
#include "core/scanning/walk/FolderPlace.h"
#include "core/scanning/walk/WorkStack.h"

#include <algorithm>
#include <array>
#include <limits>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

namespace orvane {
namespace {

constexpr std::array<std::string_view, 2> skippedRootFragments{"Library/Caches", "Library/Developer"};
constexpr std::string_view photoLibraryEnding = ".photoslibrary";

struct Walk {
  FoundFiles& found;
  const PathValidator& validator;
  const FileStatusReader& statusReader;
  SearchMonitor& monitor;
  Boundary boundary;
  HeldFolders held;
};

class ListFolder : public WorkStack::Task {
 public:
  ListFolder(Walk& walk, FoundFolder& folder, FolderPlace place)
      : m_walk(walk), m_folder(folder), m_place(std::move(place)) {}

  void run(WorkStack& stack) noexcept override {
    std::string path;
    m_folder.pathInto(path);
    if (path.size() > 1) path.pop_back();
    const FolderRules rules(m_walk.validator, path, m_place.canonicalPath, m_walk.boundary);
    auto reader = rules.refusesAllBelow() ? std::nullopt : m_place.open();
    if (!reader) return;
    while (const auto entry = reader->next()) {
      if (m_walk.monitor.isStopped()) return;
      if (!entry->name.starts_with('.')) examine(*entry, *reader, rules);
    }
    m_folder.files.shrink_to_fit();
    m_folder.fileNames.shrink_to_fit();
    m_walk.monitor.addFound(static_cast<std::int64_t>(m_folder.files.size()));
    stack.push(m_tasks);
  }

 private:
  void examine(const DirectoryReader::Entry& entry, const DirectoryReader& reader, const FolderRules& rules) {
    auto type = entry.type;
    std::optional<FileStatus> status;
    if (type == FileType::unknown || (type == FileType::regular && rules.admits(entry.name))) {
      status = m_walk.statusReader.read(reader.descriptor(), entry.nameBytes());
      type = status ? status->type : FileType::other;
    }
    if (type == FileType::directory) return examineFolder(entry.name, reader, rules);
    if (type != FileType::regular || !status || status->size < 1 || !rules.admits(entry.name)) return;
    if (m_folder.fileNames.size() > std::numeric_limits<std::uint32_t>::max()) return;
    m_folder.files.emplace_back(*status, static_cast<std::uint32_t>(m_folder.fileNames.size()));
    m_folder.fileNames.append(entry.name).push_back('\0');
  }

  void examineFolder(std::string_view name, const DirectoryReader& reader, const FolderRules& rules) {
    // A folder that is refused is still entered: what it holds may be allowed.
    if (rules.admits(name) && (isBlackHoleName(name) || name.ends_with(photoLibraryEnding))) return;
    if (isBundleName(name)) return;
    if (m_tasks.empty()) m_self = m_walk.held.hold(reader.descriptor());
    auto& folder = m_walk.found.addFolder(&m_folder, std::string(name));
    m_folder.folders.push_back(&folder);
    m_tasks.push_back(
        std::make_unique<ListFolder>(m_walk, folder, FolderPlace{m_self, joinPath(m_place.canonicalPath, name)}));
  }

  Walk& m_walk;
  FoundFolder& m_folder;
  FolderPlace m_place;
  std::shared_ptr<const HeldFolder> m_self;
  WorkStack::Tasks m_tasks;
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
  Walk walk{found, validator, statusReader, monitor, PathValidator::canonicalizeRoots(folders), {}};
  WorkStack stack;
  WorkStack::Tasks tasks;
  std::vector<FoundFolder*> starts;
  for (std::size_t i = 0; i < folders.size(); ++i) {
    if (!isSearchable(folders[i])) continue;
    auto& folder = found.addFolder(nullptr, folders[i].path());
    starts.push_back(&folder);
    tasks.push_back(
        std::make_unique<ListFolder>(walk, folder, FolderPlace{nullptr, walk.boundary.canonicalPaths()[i]}));
  }
  stack.push(tasks);
  monitor.onAllProcessors([&] { stack.work(); });
  found.settleOrder(starts);
}

}  // namespace orvane
