#pragma once

#include "core/tasks/History.h"

#include <cstddef>
#include <set>
#include <stop_token>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace orvane {

struct TaskServices;

// The rows of the history: runs, of each that is unfolded its items, and below these a foot where any can come back.
// Items that can come back are chosen to do so until the user takes one out.
class HistoryRows {
 public:
  struct Query {
    std::string searchText;
    // Of kindKeys(); the first stands for all.
    std::size_t kind = 0;
    std::set<Uuid> unfolded;
    std::set<Uuid> folded;  // of those that a search unfolds
  };
  struct Run {
    RecordedRun run;
    bool isExpanded = false;
    std::vector<RecordedItem> items = {};  // when expanded
    int start = 0;                         // its row
    std::size_t total = 0;                 // the items, copies left out
    std::size_t restorable = 0;            // of these, those that can come back
    std::size_t taken = 0;                 // of these, those in whose places something stands
    std::size_t chosen = 0;

    [[nodiscard]] bool hasFoot() const noexcept { return restorable > 0; }
  };
  // A run, one of its items, or its foot.
  struct Line {
    const Run* run = nullptr;
    const RecordedItem* item = nullptr;
    bool isFoot = false;

    [[nodiscard]] bool isRun() const noexcept { return run != nullptr && item == nullptr && !isFoot; }
  };
  using LeftOut = std::unordered_set<Uuid>;

  HistoryRows() = default;
  // Looks at the disk. Once `stop` is requested the rows are not whole.
  HistoryRows(const TaskServices& services, const History& contents, const Query& query, const std::stop_token& stop);

  [[nodiscard]] int count() const noexcept { return m_count; }
  [[nodiscard]] const std::vector<Run>& runs() const noexcept { return m_runs; }
  // Of no run for a row that is not there.
  [[nodiscard]] Line lineAt(int row) const;
  [[nodiscard]] bool isLastOfRun(int row) const;

  // Counts anew what is chosen.
  void leaveOut(const LeftOut& leftOut);
  // Of an item that can come back, which was chosen or not.
  void countChoice(int row, bool isChosen);

  // Of the texts that name the kinds of runs, by the section that acted.
  [[nodiscard]] static std::vector<std::string_view> kindKeys();

 private:
  [[nodiscard]] const Run& runAt(int row) const;
  void add(Run run);

  std::vector<Run> m_runs;
  int m_count = 0;
};

}  // namespace orvane
