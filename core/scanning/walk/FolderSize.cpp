#include "core/scanning/walk/FolderSize.h"

#include "core/base/files/CanonicalPath.h"
#include "core/base/values/CheckedArithmetic.h"
#include "core/scanning/walk/FolderVisit.h"

#include <optional>

namespace orvane {
namespace {

// Folders that are read before it pays to start threads.
constexpr std::size_t foldersReadAlone = 32;

}  // namespace

class FolderSize::ReadFolder : public FolderVisit<ReadFolder> {
 public:
  ReadFolder(std::shared_ptr<FolderSize> size, UnreadFolder unread, TreeWalk& walk)
      : FolderVisit(walk, std::move(unread)), m_size(std::move(size)) {}

  // Nothing is decided from the path.
  [[nodiscard]] static constexpr std::size_t maxPathBytes() noexcept { return std::string::npos; }
  ReadFolder(ReadFolder& parent, std::string_view /*name*/, UnreadFolder unread)
      : ReadFolder(parent.m_size, std::move(unread), parent.m_walk) {}

  // The bytes of the folder's own files.
  [[nodiscard]] static std::optional<std::int64_t> enter() { return 0; }
  [[nodiscard]] bool takes(std::string_view name) const noexcept { return m_size->takes(name); }
  void file(std::int64_t& bytes, const Entry& /*entry*/, const std::optional<FileStatus>& status) {
    if (!status || status->type != FileType::regular || !m_size->counts(*status)) return;
    bytes = checkedAdd(bytes, status->size);
  }
  [[nodiscard]] Descent folder(std::int64_t /*bytes*/, std::string_view name) const noexcept {
    return {m_size->isEntered(name) ? Descent::Kind::descend : Descent::Kind::skip};
  }
  void leave(std::int64_t bytes) { m_size->add(bytes); }
  void finish() { m_size->finishFolder(static_cast<int>(m_tasks.size())); }

 private:
  std::shared_ptr<FolderSize> m_size;
};

std::unique_ptr<WorkStack::Task> FolderSize::task(std::shared_ptr<FolderSize> size, UnreadFolder unread,
                                                  TreeWalk& walk) {
  return std::make_unique<ReadFolder>(std::move(size), std::move(unread), walk);
}

std::int64_t FolderSize::of(const std::string& path, Extent extent) {
  const auto size = std::make_shared<FolderSize>(extent);
  TreeWalk walk;
  WorkStack::Tasks tasks;
  tasks.push_back(task(size, UnreadFolder{nullptr, canonicalPath(path)}, walk));
  walk.run(std::move(tasks), foldersReadAlone);
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
