#include "core/scanning/walk/FolderSize.h"

#include "core/base/files/CanonicalPath.h"
#include "core/base/files/PathText.h"
#include "core/base/values/CheckedArithmetic.h"

#include <string_view>

namespace orvane {
namespace {

// Folders that are read before it pays to start threads.
constexpr std::size_t foldersReadAlone = 32;

}  // namespace

class FolderSize::ReadFolder : public WorkStack::Task {
 public:
  ReadFolder(std::shared_ptr<FolderSize> size, FolderPlace place, HeldFolders& held, const std::atomic<bool>& stopped)
      : m_size(std::move(size)), m_place(std::move(place)), m_held(held), m_stopped(stopped) {}

  void run(WorkStack& stack) override {
    WorkStack::Tasks subfolders;
    if (auto reader = m_place.open()) {
      read(*reader, subfolders);
    }
    m_size->finishFolder(static_cast<int>(subfolders.size()));
    stack.push(subfolders);
  }

 private:
  void read(DirectoryReader& reader, WorkStack::Tasks& subfolders) {
    std::int64_t bytes = 0;
    std::shared_ptr<const HeldFolder> self;
    while (const auto entry = reader.next()) {
      if (m_stopped.load(std::memory_order_relaxed)) break;
      if (!m_size->takes(entry->name)) continue;
      FileType type = entry->type;
      if (type == FileType::regular || type == FileType::unknown) {
        const auto status = readFileStatus(reader.descriptor(), entry->nameBytes());
        type = status ? status->type : FileType::other;
        if (type == FileType::regular && m_size->counts(*status)) bytes = checkedAdd(bytes, status->size);
      }
      if (type != FileType::directory || !m_size->isEntered(entry->name)) continue;
      if (subfolders.empty()) self = m_held.hold(reader.descriptor());
      subfolders.push_back(std::make_unique<ReadFolder>(
          m_size, FolderPlace{self, joinPath(m_place.canonicalPath, entry->name)}, m_held, m_stopped));
    }
    m_size->add(bytes);
  }

  std::shared_ptr<FolderSize> m_size;
  FolderPlace m_place;
  HeldFolders& m_held;
  const std::atomic<bool>& m_stopped;
};

std::unique_ptr<WorkStack::Task> FolderSize::task(std::shared_ptr<FolderSize> size, FolderPlace place,
                                                  HeldFolders& held, const std::atomic<bool>& stopped) {
  return std::make_unique<ReadFolder>(std::move(size), std::move(place), held, stopped);
}

std::int64_t FolderSize::of(const std::string& path, Extent extent) {
  const std::atomic<bool> neverStopped = false;
  HeldFolders held;
  const auto size = std::make_shared<FolderSize>(extent);
  WorkStack work;
  WorkStack::Tasks tasks;
  tasks.push_back(task(size, FolderPlace{nullptr, canonicalPath(path)}, held, neverStopped));
  work.push(tasks);
  work.work(foldersReadAlone);
  if (!work.isEmpty()) {
    work.start(WorkStack::processorCount() - 1);
    work.work();
  }
  return size->bytes();
}

bool FolderSize::takes(std::string_view name) const noexcept {
  return !name.empty() && (m_extent == Extent::everything || name.front() != '.');
}

bool FolderSize::isEntered(std::string_view name) const noexcept {
  return m_extent == Extent::everything ||
         (name != "node_modules" && name != "Pods" && !name.ends_with(".photoslibrary"));
}

bool FolderSize::counts(const FileStatus& file) {
  if (m_extent != Extent::everything || file.linkCount < 2) return true;
  const std::lock_guard lock(m_linkedMutex);
  return m_linked.emplace(file.device, file.inode).second;
}

void FolderSize::add(std::int64_t bytes) {
  auto sum = m_bytes.load(std::memory_order_relaxed);
  while (!m_bytes.compare_exchange_weak(sum, checkedAdd(sum, bytes), std::memory_order_relaxed)) {
  }
}

void FolderSize::finishFolder(int newFolders) {
  if (m_openFolders.fetch_add(newFolders - 1) == 1 - newFolders && m_whenComplete) m_whenComplete();
}

}  // namespace orvane
