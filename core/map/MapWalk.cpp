#include "core/map/MapWalk.h"

#include "core/base/files/CanonicalPath.h"
#include "core/base/files/FileDescriptor.h"
#include "core/map/FileKinds.h"
#include "core/organizer/categories/FolderClassifier.h"
#include "core/safety/rules/FolderRules.h"
#include "core/scanning/scan/FolderRisk.h"
#include "core/scanning/walk/FolderVisit.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <deque>
#include <mutex>
#include <string_view>
#include <thread>
#include <tuple>
#include <unordered_set>
#include <utility>
#include <vector>

namespace orvane {
namespace {

using Folder = StorageMap::Folder;
using Index = StorageMap::Index;

// Folders that are read before it pays to start threads.
constexpr std::size_t foldersReadAlone = 32;
constexpr std::int64_t blockBytes = 512;  // unit of st_blocks
// Of a file with several names, whose name is kept wherever it will count.
constexpr std::int64_t worthNaming = 65536;

struct LinkedFile {
  std::uint64_t inode;
  Index folder;
  MapTraits traits;
  MapSum sum;
  std::string name;
};

struct Shared {
  Shared(const PathValidator& rules, const SystemProfile& systemProfile, const MapWalk::Options& given, double seconds)
      : validator(rules), profile(systemProfile), options(given), now(seconds), namedFiles(systemProfile) {}

  // Absent where the folder was reached before, by another mount.
  std::pair<Index, Folder*> add(Index parent, std::string_view name, std::uint64_t inode) {
    const std::lock_guard lock(mutex);
    const bool isNew = seen.insert(inode).second;
    auto& folder = folders.emplace_back();
    folder.parent = parent;
    folder.name = name;
    if (!isNew) folder.state = MapState::otherFileSystem;
    return {static_cast<Index>(folders.size() - 1), &folder};
  }

  const PathValidator& validator;
  const SystemProfile& profile;
  const MapWalk::Options& options;
  double now;  // seconds since 1970
  NamedFiles namedFiles;
  Boundary boundary;
  std::uint64_t device = 0;
  std::thread::id caller = std::this_thread::get_id();
  std::atomic<std::int64_t> files = 0;
  std::atomic<std::int64_t> diskBytes = 0;

  std::mutex mutex;
  std::deque<Folder> folders;  // grows under the mutex; each is written by its visit alone
  std::unordered_set<std::uint64_t> seen;
  std::vector<LinkedFile> linked;

  TreeWalk walk;
};

struct Status {
  FileStatus file;
  std::int64_t diskBytes;
};

std::optional<Status> statusOf(int folder, const char* name) noexcept {
  struct stat status {};
  if (::fstatat(folder, name, &status, AT_SYMLINK_NOFOLLOW) != 0) return std::nullopt;
  return Status{fileStatusFrom(status), static_cast<std::int64_t>(status.st_blocks) * blockBytes};
}

class ReadFolder : public FolderVisit<ReadFolder> {
 public:
  ReadFolder(Shared& shared, Index index, Folder& folder, UnreadFolder unread, MapState state)
      : FolderVisit(shared.walk, std::move(unread)),
        m_shared(shared),
        m_index(index),
        m_folder(folder),
        m_isProtected(state == MapState::protectedPlace) {}
  ReadFolder(ReadFolder& parent, std::string_view name, UnreadFolder unread)
      : ReadFolder(parent.m_shared, parent.m_child.first, *parent.m_child.second, std::move(unread),
                   parent.m_child.second->state) {
    m_isHidden = parent.m_isHidden || name.starts_with('.');
    m_known = parent.m_known;
  }

  // Totals are of everything, however deep it lies.
  [[nodiscard]] static constexpr std::size_t maxPathBytes() noexcept { return std::string::npos; }

  // Everything that a folder's path decides for its entries.
  struct Rules {
    Rules(const ReadFolder& visit, const std::string& path, std::string_view prefix)
        : allowed(visit.m_shared.validator, path, path, visit.m_shared.boundary),
          classifier(prefix, visit.m_shared.namedFiles),
          risk(prefix),
          kinds(visit.m_shared.profile) {}
    FolderRules allowed;
    FolderClassifier classifier;
    FolderRisk risk;
    FileKinds kinds;
  };

  [[nodiscard]] std::optional<Rules> enter() {
    auto prefix = canonicalPath();
    if (!prefix.ends_with('/')) prefix += '/';
    std::optional<Rules> rules(std::in_place, *this, canonicalPath(), prefix);
    m_isProtected = m_isProtected || rules->allowed.refusesAllBelow();
    if (m_known == nullptr) m_known = knownHere();
    if (m_known != nullptr) m_isProtected = false;
    m_folder.state = m_isProtected ? MapState::protectedPlace : MapState::yours;
    errno = 0;
    return rules;
  }

  [[nodiscard]] static bool takes(std::string_view /*name*/) noexcept { return true; }
  [[nodiscard]] static bool needsStatus(const Rules& /*rules*/, const Entry& /*entry*/) noexcept { return true; }
  [[nodiscard]] std::optional<FileStatus> readStatus(const char* name) noexcept {
    m_status = statusOf(descriptor(), name);
    if (!m_status) return std::nullopt;
    return m_status->file;
  }

  void file(Rules& rules, const Entry& entry, const std::optional<FileStatus>& asked) {
    const bool isThere = asked || readStatus(entry.nameBytes());
    if (!isThere || m_status->file.type == FileType::directory || m_status->file.device != m_shared.device) return;
    const auto& status = m_status->file;
    const MapSum sum{m_status->diskBytes, status.size, 1};
    const auto traits = traitsOf(rules, entry.name, status);
    m_files += 1;
    m_diskBytes += sum.diskBytes;
    if (status.linkCount < 2) return m_folder.addFile(entry.name, traits, sum, m_shared.options.filesKept);
    std::string name(sum.diskBytes >= worthNaming || m_shared.options.filesKept == MapWalk::everyFile ? entry.name
                                                                                                      : "");
    const std::lock_guard lock(m_shared.mutex);
    m_shared.linked.push_back({status.inode, m_index, traits, sum, std::move(name)});
  }

  [[nodiscard]] Descent folder(const Rules& rules, std::string_view name) {
    // The name ends with a NUL byte, as that of every entry.
    if (!readStatus(name.data()) || m_status->file.type != FileType::directory) return {};
    const bool isElsewhere = m_status->file.device != m_shared.device;
    m_child = m_shared.add(m_index, name, isElsewhere ? 0 : m_status->file.inode);
    auto& child = *m_child.second;
    if (isElsewhere || child.state == MapState::otherFileSystem) {
      child.state = MapState::otherFileSystem;
      return {};
    }
    child.ownDiskBytes = m_status->diskBytes;
    child.ownLogicalBytes = m_status->file.size;
    m_diskBytes += child.ownDiskBytes;
    if (isProtected(rules, name)) child.state = MapState::protectedPlace;
    return {Descent::Kind::descend};
  }

  void leave(const Rules& /*rules*/) {
    m_isRead = true;
    m_folder.slices.shrink_to_fit();
    m_folder.files.shrink_to_fit();
    m_folder.fileNames.shrink_to_fit();
  }

  void finish() {
    if (!m_isRead && errno == ENOENT) {
      m_folder.ownDiskBytes = m_folder.ownLogicalBytes = 0;
    } else if (!m_isRead) {
      m_folder.state = MapState::unreadable;
    }
    const auto files = m_shared.files.fetch_add(m_files) + m_files;
    const auto bytes = m_shared.diskBytes.fetch_add(m_diskBytes) + m_diskBytes;
    if (m_shared.options.progress && std::this_thread::get_id() == m_shared.caller) {
      m_shared.options.progress({bytes, 0, files}, canonicalPath());
    }
  }

 private:
  // The known place that the folder is, also where it lies in a protected one.
  [[nodiscard]] const KnownPlaceTable::Row* knownHere() {
    const auto* row = m_shared.validator.knownPlaces().rowOf(canonicalPath());
    if (row == nullptr || !m_isProtected) return row;
    const FileUrl place(canonicalPath());
    return m_shared.validator.isPathAllowed(place, Boundary({place})) ? row : nullptr;
  }
  // A known place goes whole, whatever is in it.
  [[nodiscard]] bool isProtected(const Rules& rules, std::string_view name) const {
    return m_known == nullptr && (m_isProtected || !rules.allowed.admits(name));
  }

  // As a scan has it, which passes over hidden entries and what may not be touched but in folders that are known
  // places.
  [[nodiscard]] MapTraits traitsOf(Rules& rules, std::string_view name, const FileStatus& status) const {
    MapTraits traits;
    traits.kind = rules.kinds.kindOf(name);
    traits.age = ageAfter((m_shared.now - static_cast<double>(status.modified.seconds)) / secondsOfADay);
    if (isProtected(rules, name)) return traits;
    if (m_known != nullptr) {
      traits.category = m_known->category;
      traits.isReclaimable = m_known->label != RiskLabel::manual && m_known->category != ScanCategory::trash;
      return traits;
    }
    if (status.type != FileType::regular || m_isHidden || name.starts_with('.')) return traits;
    traits.category = rules.classifier.classify(name, status.size);
    traits.isReclaimable = rules.risk.evaluate(traits.category, name, status.modified.date()) != RiskLabel::manual;
    return traits;
  }

  Shared& m_shared;
  Index m_index;
  Folder& m_folder;
  std::pair<Index, Folder*> m_child{};
  std::optional<Status> m_status;  // of the entry that was asked last
  std::int64_t m_files = 0;
  std::int64_t m_diskBytes = 0;
  bool m_isProtected;
  bool m_isHidden = false;
  const KnownPlaceTable::Row* m_known = nullptr;  // of this folder or one that holds it
  bool m_isRead = false;
};

// Of the folders in which a file has names, it counts in the one that sorts first: the same at every walk. Gives all
// names, by folder, where the map keeps every file.
std::vector<StorageMap::LinkedName> settleLinked(Shared& shared, const std::function<std::string(Index)>& pathOf) {
  auto& linked = shared.linked;
  std::vector<StorageMap::LinkedName> names;
  std::sort(linked.begin(), linked.end(), [](const auto& left, const auto& right) {
    return std::pair(left.inode, left.folder) < std::pair(right.inode, right.folder);
  });
  for (auto file = linked.begin(); file != linked.end();) {
    const auto end = std::find_if(file, linked.end(), [&](const auto& other) { return other.inode != file->inode; });
    auto first = file;
    std::string firstPath;
    for (auto other = std::next(file); other != end; ++other) {
      if (other->folder == first->folder) {
        if (other->name < first->name) first = other;
        continue;
      }
      if (firstPath.empty()) firstPath = pathOf(first->folder);
      if (auto path = pathOf(other->folder); path < firstPath) {
        first = other;
        firstPath = std::move(path);
      }
    }
    const auto filesKept = first->name.empty() ? 0 : shared.options.filesKept;
    shared.folders[first->folder].addFile(first->name, first->traits, first->sum, filesKept);
    if (shared.options.filesKept == MapWalk::everyFile) {
      for (auto name = file; name != end; ++name) {
        names.push_back({name->folder, name->name, name->inode, name->sum});
      }
    }
    file = end;
  }
  std::ranges::sort(names, {}, [](const auto& name) { return std::tie(name.folder, name.name); });
  return names;
}

std::string pathIn(const std::deque<Folder>& folders, Index index) {
  std::string path;
  for (; index != StorageMap::top; index = folders[index].parent) path.insert(0, "/" + folders[index].name);
  return folders.front().name + path;
}

}  // namespace

std::optional<StorageMap> MapWalk::map(const std::string& path, const Options& options) const {
  const auto root = canonicalPath(path);
  const auto status = statusOf(AT_FDCWD, root.c_str());
  if (!status) throwErrno();
  if (status->file.type != FileType::directory) throwErrno(ENOTDIR);
  Shared shared(m_validator, m_profile, options, unixSeconds(m_now));
  shared.boundary = Boundary({FileUrl(root)});
  shared.device = status->file.device;
  const auto [index, folder] = shared.add(StorageMap::noFolder, root, status->file.inode);
  folder->ownDiskBytes = status->diskBytes;
  folder->ownLogicalBytes = status->file.size;
  WorkStack::Tasks tasks;
  tasks.push_back(std::make_unique<ReadFolder>(shared, index, *folder, UnreadFolder{nullptr, root}, MapState::yours));
  shared.walk.run(std::move(tasks), foldersReadAlone, options.stop);
  if (options.stop.stop_requested()) return std::nullopt;
  auto names = settleLinked(shared, [&](Index place) { return pathIn(shared.folders, place); });
  return StorageMap(std::move(shared.folders), std::move(names));
}

}  // namespace orvane
