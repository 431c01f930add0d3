#include "core/organizer/propose/OrganizerWalk.h"

#include "core/base/files/PathAccess.h"
#include "core/base/files/PathText.h"
#include "core/organizer/categories/GeneratedFolders.h"
#include "core/organizer/categories/OrganizerCategories.h"
#include "core/scanning/walk/BundleNames.h"
#include "core/scanning/walk/FolderPlace.h"
#include "core/scanning/walk/FolderSize.h"
#include "core/scanning/walk/WorkStack.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <utility>

namespace orvane {
namespace {

// Files whose status one task reads, so that the threads share a huge folder.
constexpr std::size_t filesPerChunk = 2048;

constexpr std::string_view defaultRootName = "Organized";
// What the organizer filled, or what its user wants left alone, at any depth.
constexpr std::array<std::string_view, 5> closedNames{"Folders", "Projects", "Recents", "Keep As Is", "Sorted"};

bool isClosed(std::string_view name) noexcept {
  return std::find(closedNames.begin(), closedNames.end(), name) != closedNames.end();
}

struct Found {
  OrganizerCandidate candidate;
  std::shared_ptr<const FolderSize> size;  // of a folder
};

// What one folder yields. Tasks fill separate chunks, which never move.
struct WalkedFolder {
  std::deque<std::vector<Found>> chunks;
  std::vector<Found> wholeFolders;
  std::vector<WalkedFolder*> subfolders;
};

struct Walk {
  const OrganizerScope& scope;
  const CategoryChooser& chooser;
  HeldFolders held;
  std::atomic<bool> isStopped = false;

  // Folders are added by many threads and never move.
  WalkedFolder& add() {
    const std::lock_guard lock(mutex);
    return folders.emplace_back();
  }

  std::mutex mutex;
  std::deque<WalkedFolder> folders;
};

using Names = std::vector<std::string>;

class ExamineFiles : public WorkStack::Task {
 public:
  // `prefix` is how the folder is reached from the one that is organised, with a slash at its end unless it is that.
  ExamineFiles(Walk& walk, std::vector<Found>& chunk, std::shared_ptr<const HeldFolder> folder, std::string prefix,
               Names names)
      : m_walk(walk),
        m_chunk(chunk),
        m_folder(std::move(folder)),
        m_prefix(std::move(prefix)),
        m_names(std::move(names)) {}

  void run(WorkStack& /*stack*/) override { examine(m_folder->descriptor()); }

  void examine(int folder) {
    m_chunk.reserve(m_names.size());
    if (m_walk.scope.looked != nullptr) m_walk.scope.looked->fetch_add(m_names.size(), std::memory_order_relaxed);
    for (auto& name : m_names) {
      if (m_walk.isStopped.load(std::memory_order_relaxed)) return;
      const auto status = readFileStatus(folder, name.c_str());
      if (!status || status->type != FileType::regular) continue;
      auto category =
          m_walk.chooser.categoryOf({.name = name, .modified = status->modified, .created = status->created});
      m_chunk.push_back({{m_prefix.empty() ? std::move(name) : m_prefix + name, ItemKind::file, status->size,
                          std::move(category), ItemIdentity::of(*status)},
                         nullptr});
    }
  }

 private:
  Walk& m_walk;
  std::vector<Found>& m_chunk;
  std::shared_ptr<const HeldFolder> m_folder;
  std::string m_prefix;
  Names m_names;
};

enum class ProjectTest : std::uint8_t { skip, apply };

class ReadFolder : public WorkStack::Task {
 public:
  ReadFolder(Walk& walk, WalkedFolder& folder, FolderPlace place, std::string prefix, ProjectTest projectTest)
      : m_walk(walk),
        m_folder(folder),
        m_place(std::move(place)),
        m_prefix(std::move(prefix)),
        m_projectTest(projectTest) {}

  void run(WorkStack& stack) override {
    auto held = m_place;
    auto reader = m_place.open();
    if (!reader) return;
    // What lies in a folder of the organizer's own has been organised.
    m_takesFiles =
        !includesSubfolders() || !isGeneratedFolder(lastComponent(m_place.canonicalPath), m_walk.scope.learnedRoots);
    // Whether a project's files are looked at is known only when all names have been read.
    if (m_projectTest == ProjectTest::skip) m_self = m_walk.held.hold(reader->descriptor());
    readEntries(*reader, stack);
    if (m_projectTest == ProjectTest::apply && m_isProject) {
      addWhole(std::string_view(m_prefix).substr(0, m_prefix.size() - 1), std::move(held));
    } else {
      if (!m_self) m_self = m_walk.held.hold(reader->descriptor());
      examineChunks(reader->descriptor(), stack);
      examineHere(reader->descriptor(), std::move(m_fileNames));
      for (const auto& name : m_folderNames) examineFolder(name);
    }
    stack.push(m_tasks);
  }

 private:
  [[nodiscard]] bool includesSubfolders() const noexcept { return m_walk.scope.subfolders == Subfolders::include; }
  [[nodiscard]] bool isTop() const noexcept { return m_prefix.empty(); }

  void readEntries(DirectoryReader& reader, WorkStack& stack) {
    while (const auto entry = reader.next()) {
      if (m_walk.isStopped.load(std::memory_order_relaxed)) return;
      m_isProject = m_isProject || (m_projectTest == ProjectTest::apply && marksProject(entry->name));
      if (entry->name.starts_with('.')) continue;
      auto type = entry->type;
      if (type == FileType::unknown) {
        const auto status = readFileStatus(reader.descriptor(), entry->nameBytes());
        type = status ? status->type : FileType::other;
      }
      if (type == FileType::directory) m_folderNames.emplace_back(entry->name);
      if (type != FileType::regular || !m_takesFiles) continue;
      m_fileNames.emplace_back(entry->name);
      if (m_projectTest == ProjectTest::skip) examineChunks(reader.descriptor(), stack);
    }
    std::sort(m_folderNames.begin(), m_folderNames.end());
  }

  // Hands full chunks of names to whichever thread is free, while this one may read on.
  void examineChunks(int descriptor, WorkStack& stack) {
    while (m_fileNames.size() >= filesPerChunk) {
      const auto first = m_fileNames.end() - static_cast<std::ptrdiff_t>(filesPerChunk);
      Names names(std::make_move_iterator(first), std::make_move_iterator(m_fileNames.end()));
      m_fileNames.erase(first, m_fileNames.end());
      if (!m_self) {
        examineHere(descriptor, std::move(names));
        continue;
      }
      WorkStack::Tasks tasks;
      tasks.push_back(
          std::make_unique<ExamineFiles>(m_walk, m_folder.chunks.emplace_back(), m_self, m_prefix, std::move(names)));
      stack.push(tasks, WorkStack::Pusher::goesOn);
    }
  }

  void examineHere(int descriptor, Names names) {
    if (!names.empty()) {
      ExamineFiles(m_walk, m_folder.chunks.emplace_back(), nullptr, m_prefix, std::move(names)).examine(descriptor);
    }
  }

  void examineFolder(const std::string& name) {
    FolderPlace place{m_self, joinPath(m_place.canonicalPath, name)};
    if (!includesSubfolders()) {
      if (!isOrganizersOwn(name, place.canonicalPath)) addWhole(m_prefix + name, std::move(place));
      return;
    }
    if (isClosed(name)) return;
    const bool isReserved = isReservedTopLevelCategory(name);
    if (!isReserved && isBundleName(name)) return addWhole(m_prefix + name, std::move(place));
    auto& subfolder = m_walk.add();
    m_folder.subfolders.push_back(&subfolder);
    m_tasks.push_back(std::make_unique<ReadFolder>(m_walk, subfolder, std::move(place), m_prefix + name + "/",
                                                   isReserved ? ProjectTest::skip : ProjectTest::apply));
  }

  [[nodiscard]] bool isOrganizersOwn(std::string_view name, const std::string& path) const {
    const auto& scope = m_walk.scope;
    return isGeneratedFolder(name, scope.learnedRoots) || isSameOrInside(scope.destinationRoot, path) ||
           name == defaultRootName || (scope.destinationRoot == scope.folder && isReservedTopLevelCategory(name));
  }

  void addWhole(std::string_view relativePath, FolderPlace place) {
    const auto name = lastComponent(relativePath);
    const auto status = readPathStatus(place.canonicalPath);
    CategoryChooser::Item item{.name = name, .kind = ItemKind::folder, .url = FileUrl(place.canonicalPath)};
    if (status) item.modified = status->modified;
    auto size = std::make_shared<FolderSize>(FolderSize::Extent::everything);
    OrganizerCandidate candidate{.relativePath = std::string(relativePath),
                                 .kind = ItemKind::folder,
                                 .category = m_walk.chooser.categoryOf(item)};
    if (status) candidate.identity = ItemIdentity::of(*status);
    m_folder.wholeFolders.push_back({std::move(candidate), size});
    m_tasks.push_back(FolderSize::task(std::move(size), std::move(place), m_walk.held, m_walk.isStopped));
  }

  Walk& m_walk;
  WalkedFolder& m_folder;
  FolderPlace m_place;
  std::string m_prefix;
  ProjectTest m_projectTest;

  bool m_takesFiles = true;
  bool m_isProject = false;
  Names m_fileNames;
  Names m_folderNames;
  std::shared_ptr<const HeldFolder> m_self;
  WorkStack::Tasks m_tasks;
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
  Walk walk{.scope = scope, .chooser = chooser, .held = {}, .mutex = {}, .folders = {}};
  auto& top = walk.add();
  {
    WorkStack work;
    const std::stop_callback onStop(stop, [&] {
      walk.isStopped = true;
      work.stop();
    });
    WorkStack::Tasks tasks;
    tasks.push_back(
        std::make_unique<ReadFolder>(walk, top, FolderPlace{nullptr, scope.folder}, std::string(), ProjectTest::skip));
    work.push(tasks);
    work.start(WorkStack::processorCount() - 1);
    work.work();
  }
  visitAll(top, visit);
}

}  // namespace orvane
