#include "core/scanning/StorageScanner.h"

#include "core/base/CanonicalPath.h"
#include "core/scanning/FolderSize.h"
#include "core/scanning/ScanWalk.h"

#include <atomic>

namespace orvane {
namespace {

// Folders that are read before it pays to start threads.
constexpr std::size_t foldersReadAlone = 32;

}  // namespace

ScanStream::ScanStream(std::unique_ptr<Walk> walk) : m_walk(std::move(walk)) {}
ScanStream::ScanStream(ScanStream&&) noexcept = default;
ScanStream& ScanStream::operator=(ScanStream&&) noexcept = default;
ScanStream::~ScanStream() = default;

std::vector<ScanEvent> ScanStream::nextBatch() {
  return m_walk->nextBatch();
}

void ScanStream::cancel() noexcept {
  m_walk->cancel();
}

StorageScanner::StorageScanner(const PathValidator& validator, const FileStatusReader& statusReader)
    : m_validator(validator), m_statusReader(statusReader) {}

ScanStream StorageScanner::scan(std::vector<FileUrl> folders, DeveloperCaches developerCaches) {
  return ScanStream(
      std::make_unique<ScanStream::Walk>(m_validator, m_statusReader, std::move(folders), developerCaches));
}

std::int64_t StorageScanner::fastFolderSize(const std::string& path) {
  const std::atomic<bool> neverStopped = false;
  HeldFolders held;
  const auto size = std::make_shared<FolderSize>();
  WorkStack work;
  WorkStack::Tasks tasks;
  tasks.push_back(FolderSize::task(size, FolderPlace{nullptr, canonicalPath(path)}, held, neverStopped));
  work.push(tasks);
  work.work(foldersReadAlone);
  if (!work.isEmpty()) {
    work.start(WorkStack::processorCount() - 1);
    work.work();
  }
  return size->bytes();
}

}  // namespace orvane
