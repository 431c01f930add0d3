#pragma once

#include "core/tasks/Notice.h"
#include "core/tasks/Proposal.h"
#include "core/tasks/Selection.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace orvane {

// The groups of identical files as the rows of one list: a header, and below it, where the group is unfolded, its
// copies.
class DuplicateGroups {
 public:
  struct Group {
    // Rows of the proposal that are there, those that stay first; none where there are less than two.
    std::vector<std::uint32_t> copies;
    bool isExpanded = true;
    bool isShown = true;  // the search finds it
    int start = 0;        // its row
  };
  struct Line {
    std::size_t group;
    std::optional<std::uint32_t> copy;  // absent for a header
  };

  // The groups of another proposal, all unfolded.
  void take(const Proposal& proposal, const Selection& selection);
  // Brings groups and rows up to date with what is there.
  void gather(const Proposal& proposal, const Selection& selection);
  // Puts the copies that stay first; no row comes or goes.
  void order(const Selection& selection);
  // Shows the groups with a copy that has the text in its path, ignoring case, and no others.
  void search(std::string text, const Proposal& proposal);
  [[nodiscard]] const std::string& searchText() const noexcept { return m_searchText; }
  void setExpanded(std::size_t group, bool isExpanded);

  [[nodiscard]] std::optional<Line> lineAt(int row) const;
  [[nodiscard]] const Group& group(std::size_t at) const { return m_groups[at]; }
  // The copy of a row, or the first one below a header.
  [[nodiscard]] std::optional<std::uint32_t> copyAt(int row) const;
  [[nodiscard]] int rowCount() const noexcept { return m_rows; }
  // Also of those that the search does not find.
  [[nodiscard]] int groupCount() const noexcept { return m_groupCount; }
  // Of what is selected, only what the search finds.
  [[nodiscard]] Selection shown(const Selection& selection) const;
  [[nodiscard]] RowSum shownSum(const Proposal& proposal, const Selection& selection) const;

 private:
  void find(const Proposal& proposal);
  void layOut();

  std::vector<Group> m_groups;
  int m_groupCount = 0;
  int m_rows = 0;
  std::string m_searchText;
};

}  // namespace orvane
