#include "core/scanning/scan/StorageScanner.h"

#include "core/scanning/scan/ScanWalk.h"
#include "core/scanning/walk/FolderSize.h"

namespace orvane {

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

ScanStream StorageScanner::scan(std::vector<FileUrl> folders, DeveloperCaches developerCaches, ScanDigest digest) {
  return ScanStream(std::make_unique<ScanStream::Walk>(m_validator, m_statusReader, std::move(folders), developerCaches,
                                                       std::move(digest)));
}

std::int64_t StorageScanner::fastFolderSize(const std::string& path) {
  return FolderSize::of(path, FolderSize::Extent::likeScan);
}

}  // namespace orvane
