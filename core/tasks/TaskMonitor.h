#pragma once

#include "core/scanning/records/ScanEvent.h"

#include <atomic>
#include <cstddef>
#include <functional>
#include <stop_token>

namespace orvane {

struct DuplicateProgress;
struct RowSum;

// How a task that looks at the disk tells where it is, on the thread that runs it, and how it is stopped. Each field
// may be left out; a task uses those that fit what it does.
struct TaskMonitor {
  std::stop_token stop = {};
  std::function<void(const ScanProgress&)> scanning = {};
  std::function<void(const DuplicateProgress&)> comparing = {};
  std::function<void()> namingTopics = {};           // a model is being asked, which takes its time
  std::function<void(const RowSum&)> keptBack = {};  // at the end of a scan: what the keep list held back
  std::atomic<std::size_t>* looked = nullptr;        // counts the items that were looked at
};

}  // namespace orvane
