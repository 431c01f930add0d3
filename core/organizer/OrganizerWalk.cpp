#include "core/organizer/OrganizerWalk.h"

#include "core/base/OpenFolder.h"
#include "core/base/PathText.h"
#include "core/organizer/GeneratedFolders.h"
#include "core/organizer/OrganizerCategories.h"
#include "core/scanning/BundleNames.h"
#include "core/scanning/FolderPlace.h"
#include "core/scanning/FolderSize.h"
#include "core/scanning/WorkStack.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <deque>
#include <memory>
#include <mutex>
#include <utility>

namespace orvane {
namespace {

// Files whose status one task reads, so that the threads share a huge folder.
constexpr std::size_t filesPerChunk = 2048;
// Folders that are read before it pays to start threads.
constexpr std::size_t foldersReadAlone = 2;

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

// What one folder yields. Tasks fill separate chunks.
struct WalkedFolder {
  std::vector<std::vector<Found>> chunks;
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

class ExamineFiles : public WorkStack::Task {
 public:
  // `prefix` is how the folder is reached from the one that is organised, with a slash at its end unless it is that.
  ExamineFiles(Walk& walk, std::vector<Found>& chunk, std::shared_ptr<const HeldFolder> folder, std::string prefix,
               std::vector<std::string> names)
      : m_walk(walk),
        m_chunk(chunk),
        m_folder(std::move(folder)),
        m_prefix(std::move(prefix)),
        m_names(std::move(names)) {}

  void run(WorkStack& /*stack*/) override { examine(m_folder->descriptor()); }

  void examine(int folder) {
    m_chunk.reserve(m_names.size());
    for (const auto& name : m_names) {
      if (m_walk.isStopped.load(std::memory_order_relaxed)) return;
      const auto status = readFileStatus(folder, name.c_str());
      if (!status || status->type != FileType::regular) continue;
      auto category =
          m_walk.chooser.categoryOf({.name = name, .modified = status->modified, .created = status->created});
      m_chunk.push_back({{m_prefix + name, ItemKind::file, status->size, std::move(category)}, nullptr});
    }
  }

 private:
  Walk& m_walk;
  std::vector<Found>& m_chunk;
  std::shared_ptr<const HeldFolder> m_folder;
  std::string m_prefix;
  std::vector<std::string> m_names;
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
    readEntries(*reader);
    if (m_projectTest == ProjectTest::apply && m_isProject) {
      addWhole(std::string_view(m_prefix).substr(0, m_prefix.size() - 1), std::move(held));
    } else {
      m_self = m_walk.held.hold(reader->descriptor());
      examineFiles(reader->descriptor());
      for (const auto& name : m_folderNames) examineFolder(name);
    }
    stack.push(m_tasks);
  }

 private:
  [[nodiscard]] bool includesSubfolders() const noexcept { return m_walk.scope.subfolders == Subfolders::include; }
  [[nodiscard]] bool isTop() const noexcept { return m_prefix.empty(); }

  void readEntries(DirectoryReader& reader) {
    while (const auto entry = reader.next()) {
      if (m_walk.isStopped.load(std::memory_order_relaxed)) return;
      m_isProject = m_isProject || (m_projectTest == ProjectTest::apply && marksProject(entry->name));
      if (entry->name.starts_with('.')) continue;
      auto type = entry->type;
      if (type == FileType::unknown) {
        const auto status = readFileStatus(reader.descriptor(), entry->nameBytes());
        type = status ? status->type : FileType::other;
      }
      if (type == FileType::regular) m_fileNames.emplace_back(entry->name);
      if (type == FileType::directory) m_folderNames.emplace_back(entry->name);
    }
    std::sort(m_fileNames.begin(), m_fileNames.end());
    std::sort(m_folderNames.begin(), m_folderNames.end());
  }

  void examineFiles(int descriptor) {
    // What lies in a folder of the organizer's own has been organised.
    if (includesSubfolders() && isGeneratedFolder(lastComponent(m_place.canonicalPath), m_walk.scope.learnedRoots)) {
      m_fileNames.clear();
    }
    const auto chunkCount = (m_fileNames.size() + filesPerChunk - 1) / filesPerChunk;
    m_folder.chunks.resize(chunkCount + 1);
    for (std::size_t i = 0; i < chunkCount; ++i) {
      const auto first = m_fileNames.begin() + static_cast<std::ptrdiff_t>(i * filesPerChunk);
      const auto count = std::min(filesPerChunk, m_fileNames.size() - i * filesPerChunk);
      std::vector<std::string> names(std::make_move_iterator(first),
                                     std::make_move_iterator(first + static_cast<std::ptrdiff_t>(count)));
      auto task = std::make_unique<ExamineFiles>(m_walk, m_folder.chunks[i], m_self, m_prefix, std::move(names));
      if (m_self && chunkCount > 1) {
        m_tasks.push_back(std::move(task));
      } else {
        task->examine(descriptor);
      }
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
    if (m_folder.chunks.empty()) m_folder.chunks.resize(1);
    m_folder.chunks.back().push_back(
        {{std::string(relativePath), ItemKind::folder, 0, m_walk.chooser.categoryOf(item)}, size});
    m_tasks.push_back(FolderSize::task(std::move(size), std::move(place), m_walk.held, m_walk.isStopped));
  }

  Walk& m_walk;
  WalkedFolder& m_folder;
  FolderPlace m_place;
  std::string m_prefix;
  ProjectTest m_projectTest;

  bool m_isProject = false;
  std::vector<std::string> m_fileNames;
  std::vector<std::string> m_folderNames;
  std::shared_ptr<const HeldFolder> m_self;
  WorkStack::Tasks m_tasks;
};

std::vector<OrganizerCandidate> flattened(WalkedFolder& top) {
  std::vector<OrganizerCandidate> result;
  std::vector<WalkedFolder*> waiting{&top};
  while (!waiting.empty()) {
    auto& folder = *waiting.back();
    waiting.pop_back();
    waiting.insert(waiting.end(), folder.subfolders.rbegin(), folder.subfolders.rend());
    for (auto& chunk : folder.chunks) {
      for (auto& found : chunk) {
        if (found.size) found.candidate.size = found.size->bytes();
        result.push_back(std::move(found.candidate));
      }
    }
  }
  return result;
}

}  // namespace

std::vector<OrganizerCandidate> organizerCandidates(const OrganizerScope& scope, const CategoryChooser& chooser,
                                                    const std::stop_token& stop) {
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
    work.work(foldersReadAlone);
    if (!work.isEmpty()) {
      work.start(WorkStack::processorCount() - 1);
      work.work();
    }
  }
  return flattened(top);
}

}  // namespace orvane
