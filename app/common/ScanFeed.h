#pragma once

#include "app/common/ScannedItems.h"
#include "core/tasks/Notice.h"

#include <cstdint>
#include <functional>
#include <stop_token>
#include <string>
#include <vector>

namespace orvane {

struct TaskServices;

enum class ScanOutcome : std::uint8_t { completed, cancelled, noFolders };

// The reports of a scan, from the thread that carries it out, in pieces that take the main thread a moment each.
struct ScanFeed {
  std::function<void(std::vector<FileUrl> folders)> begun;
  std::function<void(SharedPiece piece, std::int64_t bytes)> found;
  // `place` is the name of the entry that is being examined.
  std::function<void(std::int64_t examined, const std::string& place)> progress;
  // At the end: what the keep list held back.
  std::function<void(const RowSum& kept)> keptBack = {};
};

// Scans the folders named, or the granted ones that exist where none is named, developer caches included, and waits for
// the end. Throws std::runtime_error where one that is named cannot be scanned.
ScanOutcome scanForWindow(const TaskServices& services, const std::vector<FileUrl>& named, const ScanFeed& feed,
                          const std::stop_token& stop);

}  // namespace orvane
