#include "app/common/GroupedRows.h"

#include <Qt>

#include <algorithm>
#include <iterator>
#include <utility>

namespace orvane {

GroupedRows::GroupedRows(std::vector<Group> groups, const Proposal& proposal, const Selection& selection)
    : m_groups(std::move(groups)) {
  recountAll(proposal, selection);
  layOut();
}

void GroupedRows::layOut() {
  m_rowCount = 0;
  for (auto& group : m_groups) {
    group.start = m_rowCount;
    m_rowCount = lastRowOf(group) + 1;
  }
}

int GroupedRows::lastRowOf(const Group& group) const {
  return group.start + (group.isExpanded ? static_cast<int>(group.rows.size()) : 0);
}

std::optional<GroupedRows::Line> GroupedRows::lineAt(int row) const {
  if (row < 0 || row >= m_rowCount) return std::nullopt;
  const auto after = std::ranges::upper_bound(m_groups, row, {}, &Group::start);
  const auto at = std::prev(after);
  const auto group = static_cast<std::size_t>(at - m_groups.begin());
  if (row == at->start) return Line{group};
  return Line{group, at->rows[static_cast<std::size_t>(row - at->start - 1)]};
}

std::int64_t GroupedRows::selectable() const {
  std::int64_t count = 0;
  for (const auto& group : m_groups) count += group.selectable;
  return count;
}

void GroupedRows::setExpanded(std::size_t group, bool isExpanded) {
  m_groups[group].isExpanded = isExpanded;
  layOut();
}

void GroupedRows::recount(std::size_t group, const Proposal& proposal, const Selection& selection) {
  auto& counted = m_groups[group];
  counted.all = {};
  counted.chosen = {};
  counted.selectable = 0;
  for (const auto row : counted.rows) {
    const auto bytes = proposal.row(row).item.fileSize();
    counted.all.add(bytes);
    if (selection.isSelectable(row) && selection.isThere(row)) ++counted.selectable;
    if (selection.isSelected(row)) counted.chosen.add(bytes);
  }
}

void GroupedRows::recountAll(const Proposal& proposal, const Selection& selection) {
  for (std::size_t group = 0; group < m_groups.size(); ++group) recount(group, proposal, selection);
}

int GroupedRows::checkState(std::int64_t chosen, std::int64_t selectable) noexcept {
  if (selectable == 0) return noCheckState;
  if (chosen == 0) return Qt::Unchecked;
  return chosen == selectable ? Qt::Checked : Qt::PartiallyChecked;
}

}  // namespace orvane
