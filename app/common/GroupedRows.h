#pragma once

#include "core/tasks/Notice.h"
#include "core/tasks/Proposal.h"
#include "core/tasks/Selection.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace orvane {

// Rows of a proposal as one list: a header for each group and below it, where it is unfolded, its rows.
class GroupedRows {
 public:
  struct Group {
    std::vector<std::uint32_t> rows;  // of the proposal
    RowSum all = {};
    RowSum chosen = {};
    std::int64_t selectable = 0;
    bool isExpanded = true;
    int start = 0;  // row of its header
  };
  struct Line {
    std::size_t group = 0;
    std::optional<std::uint32_t> row = {};  // of the proposal; absent for a header
  };

  GroupedRows() = default;
  // Groups with their rows alone.
  GroupedRows(std::vector<Group> groups, const Proposal& proposal, const Selection& selection);

  [[nodiscard]] const std::vector<Group>& groups() const noexcept { return m_groups; }
  [[nodiscard]] int rowCount() const noexcept { return m_rowCount; }
  [[nodiscard]] std::optional<Line> lineAt(int row) const;
  [[nodiscard]] int lastRowOf(const Group& group) const;
  [[nodiscard]] std::int64_t selectable() const;

  void setExpanded(std::size_t group, bool isExpanded);
  // Counts anew what is chosen of a group.
  void recount(std::size_t group, const Proposal& proposal, const Selection& selection);
  void recountAll(const Proposal& proposal, const Selection& selection);

  // Of a box: as Qt::CheckState counts, or -1 where nothing can be chosen.
  static constexpr int noCheckState = -1;
  [[nodiscard]] static int checkState(std::int64_t chosen, std::int64_t selectable) noexcept;

 private:
  void layOut();

  std::vector<Group> m_groups;
  int m_rowCount = 0;
};

}  // namespace orvane
