#pragma once

#include "core/base/files/FileUrl.h"
#include "core/scanning/records/DeveloperCaches.h"
#include "core/scanning/records/ScanEvent.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace orvane {

class FileStatusReader;
class PathValidator;

// The events of one running scan. Owns the walk: destroying it stops the walk and waits for it. No event is dropped,
// however slowly it is read. One reader at a time.
class ScanStream {
 public:
  class Walk;
  explicit ScanStream(std::unique_ptr<Walk> walk);
  ScanStream(ScanStream&&) noexcept;
  ScanStream& operator=(ScanStream&&) noexcept;
  ~ScanStream();

  // The next events, waiting for at least one; empty once the stream has ended.
  [[nodiscard]] std::vector<ScanEvent> nextBatch();
  // Asks the walk to stop; the last event is then ScanCancelled. Callable from any thread.
  void cancel() noexcept;

 private:
  std::unique_ptr<Walk> m_walk;
};

// Shown the findings of a folder on the thread that found them, while other threads show theirs, before the stream has
// them: takes out those that need not be handed over. Adding up half a million items takes a fraction of the time that
// handing them to another thread takes. What was taken out counts in ScanCompleted all the same.
using ScanDigest = std::function<void(std::vector<ScanEvent>& findings)>;

// Walks folders and reports what could be reclaimed. Only reads; holds no state between calls.
class StorageScanner {
 public:
  StorageScanner(const PathValidator& validator, const FileStatusReader& statusReader);
  static StorageScanner& shared();

  // Returns at once; the walk runs in the background: root by root, all entries of a folder in the file system's order,
  // then its subfolders one after the other, each with everything below it. Skips folders that are missing,
  // unreadable or refused by the validator without a word.
  // With a `digest`, which has to live as long as the stream, progress is reported once a folder has been read.
  [[nodiscard]] ScanStream scan(std::vector<FileUrl> folders, DeveloperCaches developerCaches, ScanDigest digest = {});

  // Logical bytes of the regular files in a folder tree. Hidden entries, links, "node_modules", "Pods" and photo
  // libraries are left out; what cannot be read adds nothing.
  [[nodiscard]] static std::int64_t fastFolderSize(const std::string& path);

 private:
  const PathValidator& m_validator;
  const FileStatusReader& m_statusReader;
};

}  // namespace orvane
