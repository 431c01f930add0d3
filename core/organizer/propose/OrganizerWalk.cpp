#include "core/organizer/propose/OrganizerWalk.h"

#include "core/base/files/PathAccess.h"
#include "core/base/files/PathText.h"
#include "core/organizer/categories/GeneratedFolders.h"
#include "core/organizer/categories/OrganizerCategories.h"
#include "core/scanning/walk/BundleNames.h"
#include "core/scanning/walk/FolderVisit.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <deque>
#include <iterator>
#include <memory>
#include <optional>
#include <utility>

namespace orvane {
namespace {

// Files whose status one task reads, so that the threads share a huge folder.
constexpr std::size_t filesPerChunk = 2048;

constexpr std::string_view defaultRootName = "Organized";
// Folders that the organizer filled or that its user wants left alone, at any depth.
constexpr std::array<std::string_view, 5> closedNames{"Folders", "Projects", "Recents", "Keep As Is", "Sorted"};

bool isClosed(std::string_view name) noexcept {
  return std::find(closedNames.begin(), closedNames.end(), name) != closedNames.end();
}

struct Found {
  OrganizerCandidate candidate;
  std::shared_ptr<const FolderSize> size;  // of a folder
};

// The result of one folder. Tasks fill separate chunks, which never move.
struct WalkedFolder {
  std::deque<std::vector<Found>> chunks;
  std::vector<Found> wholeFolders;
  std::vector<WalkedFolder*> subfolders;
};

struct Search {
  const OrganizerScope& scope;
  const CategoryChooser& chooser;
  SteadyList<WalkedFolder> folders;
  TreeWalk walk;
};

using Names = std::vector<std::string>;

class ExamineFiles : public WorkStack::Task {
 public:
  // `prefix` is how the folder is reached from the one that is organised, with a slash at its end unless it is that.
  ExamineFiles(Search& search, std::vector<Found>& chunk, std::shared_ptr<const HeldFolder> folder, std::string prefix,
               Names names)
      : m_search(search),
        m_chunk(chunk),
        m_folder(std::move(folder)),
        m_prefix(std::move(prefix)),
        m_names(std::move(names)) {}

  void run(WorkStack& /*stack*/) override { examine(m_folder->descriptor()); }

  void examine(int folder) {
    m_chunk.reserve(m_names.size());
    if (m_search.scope.looked != nullptr) m_search.scope.looked->fetch_add(m_names.size(), std::memory_order_relaxed);
    for (auto& name : m_names) {
      if (m_search.walk.isStopped()) return;
      const auto status = readFileStatus(folder, name.c_str());
      if (!status || status->type != FileType::regular) continue;
      auto category =
          m_search.chooser.categoryOf({.name = name, .modified = status->modified, .created = status->created});
      m_chunk.push_back({{m_prefix.empty() ? std::move(name) : m_prefix + name, ItemKind::file, status->size,
                          std::move(category), ItemIdentity::of(*status)},
                         nullptr});
    }
  }

 private:
  Search& m_search;
  std::vector<Found>& m_chunk;
  std::shared_ptr<const HeldFolder> m_folder;
  std::string m_prefix;
  Names m_names;
};

enum class ProjectTest : std::uint8_t { skip, apply };

class ReadFolder : public FolderVisit<ReadFolder> {
 public:
  // Items in a folder of the organizer's own have been organised.
  struct Rules {
    bool takesFiles;
  };

  ReadFolder(Search& search, WalkedFolder& folder, UnreadFolder unread, std::string prefix, ProjectTest projectTest)
      : FolderVisit(search.walk, std::move(unread)),
        m_search(search),
        m_folder(folder),
        m_prefix(std::move(prefix)),
        m_projectTest(projectTest) {}
  ReadFolder(ReadFolder& parent, std::string_view name, UnreadFolder unread)
      : ReadFolder(parent.m_search, parent.m_search.folders.add(), std::move(unread),
                   parent.m_prefix + std::string(name) + "/",
                   isReservedTopLevelCategory(name) ? ProjectTest::skip : ProjectTest::apply) {
    parent.m_folder.subfolders.push_back(&m_folder);
  }

  [[nodiscard]] std::optional<Rules> enter() {
    // A project is read once more, for its size.
    if (m_projectTest == ProjectTest::apply) m_again = unread();
    return Rules{!includesSubfolders() || !isGeneratedFolder(lastComponent(canonicalPath()), scope().learnedRoots)};
  }

  [[nodiscard]] bool takes(std::string_view name) {
    m_isProject = m_isProject || (m_projectTest == ProjectTest::apply && marksProject(name));
    return !name.starts_with('.');
  }
  [[nodiscard]] static bool needsStatus(Rules /*rules*/, const Entry& /*entry*/) noexcept { return false; }

  // Whether a project's files are looked at is known only when all names have been read.
  void file(Rules rules, const Entry& entry, const std::optional<FileStatus>& status) {
    const auto type = status ? status->type : entry.type;
    if (type != FileType::regular || !rules.takesFiles) return;
    m_fileNames.emplace_back(entry.name);
    if (m_projectTest == ProjectTest::skip) examineChunks();
  }
  Descent folder(Rules /*rules*/, std::string_view name) {
    m_folderNames.emplace_back(name);
    return {};
  }

  void leave(Rules /*rules*/) {
    if (m_isProject) {
      auto size = addWhole(std::string_view(m_prefix).substr(0, m_prefix.size() - 1), canonicalPath());
      m_tasks.push_back(FolderSize::task(std::move(size), std::move(m_again), m_walk));
      return;
    }
    examineChunks();
    examineHere(std::move(m_fileNames));
    std::sort(m_folderNames.begin(), m_folderNames.end());
    for (const auto& name : m_folderNames) follow(name, descentTo(name));
  }

 private:
  [[nodiscard]] const OrganizerScope& scope() const noexcept { return m_search.scope; }
  [[nodiscard]] bool includesSubfolders() const noexcept { return scope().subfolders == Subfolders::include; }

  // Hands full chunks of names to whichever thread is free, while this one may read on.
  void examineChunks() {
    while (m_fileNames.size() >= filesPerChunk) {
      const auto first = m_fileNames.end() - static_cast<std::ptrdiff_t>(filesPerChunk);
      Names names(std::make_move_iterator(first), std::make_move_iterator(m_fileNames.end()));
      m_fileNames.erase(first, m_fileNames.end());
      if (!hold()) {
        examineHere(std::move(names));
        continue;
      }
      WorkStack::Tasks tasks;
      tasks.push_back(
          std::make_unique<ExamineFiles>(m_search, m_folder.chunks.emplace_back(), hold(), m_prefix, std::move(names)));
      m_walk.work.push(tasks, *this, WorkStack::Maker::goesOn);
    }
  }

  void examineHere(Names names) {
    if (names.empty()) return;
    ExamineFiles(m_search, m_folder.chunks.emplace_back(), nullptr, m_prefix, std::move(names)).examine(descriptor());
  }

  [[nodiscard]] Descent descentTo(const std::string& name) {
    const auto path = joinPath(canonicalPath(), name);
    if (!includesSubfolders()) {
      if (isOrganizersOwn(name, path)) return {};
      return {Descent::Kind::whole, addWhole(m_prefix + name, path)};
    }
    if (isClosed(name)) return {};
    if (isReservedTopLevelCategory(name) || !isBundleName(name)) return {Descent::Kind::descend};
    return {Descent::Kind::whole, addWhole(m_prefix + name, path)};
  }

  [[nodiscard]] bool isOrganizersOwn(std::string_view name, const std::string& path) const {
    return isGeneratedFolder(name, scope().learnedRoots) || isSameOrInside(scope().destinationRoot, path) ||
           name == defaultRootName || (scope().destinationRoot == scope().folder && isReservedTopLevelCategory(name));
  }

  [[nodiscard]] std::shared_ptr<FolderSize> addWhole(std::string_view relativePath, const std::string& path) {
    const auto name = lastComponent(relativePath);
    const auto status = readPathStatus(path);
    CategoryChooser::Item item{.name = name, .kind = ItemKind::folder, .url = FileUrl(path)};
    if (status) item.modified = status->modified;
    auto size = std::make_shared<FolderSize>(FolderSize::Extent::everything);
    OrganizerCandidate candidate{.relativePath = std::string(relativePath),
                                 .kind = ItemKind::folder,
                                 .category = m_search.chooser.categoryOf(item)};
    if (status) candidate.identity = ItemIdentity::of(*status);
    m_folder.wholeFolders.push_back({std::move(candidate), size});
    return size;
  }

  Search& m_search;
  WalkedFolder& m_folder;
  std::string m_prefix;
  ProjectTest m_projectTest;

  UnreadFolder m_again;
  bool m_isProject = false;
  Names m_fileNames;
  Names m_folderNames;
};

// The next eight bytes as a number that orders as they do. A name holds no zero byte, so a shorter one comes first.
std::uint64_t orderKey(std::string_view text) noexcept {
  constexpr std::size_t width = sizeof(std::uint64_t);
  std::uint64_t key = 0;
  for (std::size_t i = 0; i < width; ++i) {
    key = (key << 8) | (i < text.size() ? static_cast<unsigned char>(text[i]) : 0U);
  }
  return key;
}

std::size_t sharedStart(std::string_view left, std::string_view right) noexcept {
  const auto parting = std::mismatch(left.begin(), left.end(), right.begin(), right.end()).first;
  return static_cast<std::size_t>(parting - left.begin());
}

// Visits what the chunks hold in the order of the names. Names of one folder often begin alike: they are compared from
// where they part, as numbers.
void visitInOrder(std::deque<std::vector<Found>>& chunks, const VisitCandidate& visit) {
  struct Keyed {
    std::uint64_t key;
    OrganizerCandidate* candidate;
  };
  std::vector<Keyed> order;
  std::string_view shared;
  for (auto& chunk : chunks) {
    for (auto& found : chunk) {
      const std::string_view path = found.candidate.relativePath;
      if (order.empty()) shared = path;
      shared = shared.substr(0, sharedStart(shared, path));
      order.push_back({0, &found.candidate});
    }
  }
  for (auto& [key, candidate] : order) {
    key = orderKey(std::string_view(candidate->relativePath).substr(shared.size()));
  }
  std::sort(order.begin(), order.end(), [](const Keyed& left, const Keyed& right) {
    return left.key != right.key ? left.key < right.key : left.candidate->relativePath < right.candidate->relativePath;
  });
  // They lie in memory as the folder listed them, which is any order.
  constexpr std::size_t ahead = 8;
  for (std::size_t i = 0; i < order.size(); ++i) {
    if (i + 2 * ahead < order.size()) __builtin_prefetch(order[i + 2 * ahead].candidate);
    if (i + ahead < order.size()) __builtin_prefetch(order[i + ahead].candidate->relativePath.data());
    visit(std::move(*order[i].candidate));
  }
}

void visitAll(WalkedFolder& top, const VisitCandidate& visit) {
  std::vector<WalkedFolder*> waiting{&top};
  while (!waiting.empty()) {
    auto& folder = *waiting.back();
    waiting.pop_back();
    waiting.insert(waiting.end(), folder.subfolders.rbegin(), folder.subfolders.rend());
    visitInOrder(folder.chunks, visit);
    for (auto& found : folder.wholeFolders) {
      found.candidate.size = found.size->bytes();
      visit(std::move(found.candidate));
    }
  }
}

}  // namespace

void visitOrganizerCandidates(const OrganizerScope& scope, const CategoryChooser& chooser, const std::stop_token& stop,
                              const VisitCandidate& visit) {
  Search search{.scope = scope, .chooser = chooser, .folders = {}, .walk = {}};
  auto& top = search.folders.add();
  WorkStack::Tasks tasks;
  tasks.push_back(
      std::make_unique<ReadFolder>(search, top, UnreadFolder{nullptr, scope.folder}, std::string(), ProjectTest::skip));
  search.walk.run(std::move(tasks), 0, stop);
  visitAll(top, visit);
}

}  // namespace orvane
