#pragma once

#include "cli/ScanTotals.h"
#include "core/safety/CleanupRun.h"
#include "core/scanning/FileItem.h"

#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <unordered_set>
#include <vector>

namespace orvane::cli {

enum class ReviewItems : std::uint8_t { leaveOut, include };

// Which found items a cleanup takes.
struct CleanWish {
  std::vector<ScanCategory> categories;  // all where empty
  ReviewItems reviewItems = ReviewItems::leaveOut;

  // What is selected from the start, and on demand the review items of the categories named. What is in a Trash already
  // is never taken.
  [[nodiscard]] bool takes(const FileItem& item) const;
};

// The chosen items of a scan, as they stand on the disk when they are chosen.
class CleanSelection {
 public:
  explicit CleanSelection(CleanWish wish) : m_wish(std::move(wish)) {}

  // Items that are gone again are passed over, and so is what was met before.
  void consider(const FileItem& item);

  [[nodiscard]] const ScanTotals& totals() const noexcept { return m_totals; }
  [[nodiscard]] const std::vector<FileItem>& items() const noexcept { return m_items; }
  // In the order of items(). A file that changes after it was chosen is left alone.
  [[nodiscard]] const std::vector<MoveRequest>& requests() const noexcept { return m_requests; }
  // What was found in a Trash.
  [[nodiscard]] const ScanTotals::Sum& inTrash() const noexcept { return m_inTrash; }
  // One line for each cloud service that keeps some of the items in sync.
  [[nodiscard]] std::vector<std::string> cloudWarnings() const;

 private:
  CleanWish m_wish;
  ScanTotals m_totals;
  ScanTotals::Sum m_inTrash;
  std::vector<FileItem> m_items;
  std::vector<MoveRequest> m_requests;
  std::unordered_set<std::string> m_paths;
};

// The request to move what stands at a place. A folder is only told by its name: what is inside it may change at any
// time. Absent when nothing stands there.
[[nodiscard]] std::optional<MoveRequest> moveRequestFor(const FileUrl& place, std::int64_t folderSize);
// What to tell the user before places in synced folders leave them: a line for each cloud service.
[[nodiscard]] std::vector<std::string> cloudWarnings(std::span<const MoveRequest> requests);

}  // namespace orvane::cli
