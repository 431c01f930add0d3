#include "app/duplicates/DuplicateGroups.h"

#include "core/base/text/CaselessSearch.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace orvane {

void DuplicateGroups::take(const Proposal& proposal, const Selection& selection) {
  m_groups.assign(proposal.groups().size(), {});
  gather(proposal, selection);
}

void DuplicateGroups::gather(const Proposal& proposal, const Selection& selection) {
  for (auto& group : m_groups) group.copies.clear();
  const auto* const first = proposal.groups().data();
  proposal.forEach([&](std::size_t index, const ProposedRow& row) {
    if (!selection.isThere(index)) return;
    m_groups[static_cast<std::size_t>(row.group - first)].copies.push_back(static_cast<std::uint32_t>(index));
  });
  // A file without a second copy is no duplicate any more.
  m_groupCount = 0;
  for (auto& group : m_groups) {
    if (group.copies.size() < 2) group.copies.clear();
    if (!group.copies.empty()) ++m_groupCount;
  }
  order(selection);
  find(proposal);
}

void DuplicateGroups::order(const Selection& selection) {
  for (auto& group : m_groups) {
    std::ranges::sort(group.copies);
    std::stable_partition(group.copies.begin(), group.copies.end(),
                          [&](std::uint32_t copy) { return !selection.isSelected(copy); });
  }
}

void DuplicateGroups::search(std::string text, const Proposal& proposal) {
  m_searchText = std::move(text);
  find(proposal);
}

void DuplicateGroups::find(const Proposal& proposal) {
  const CaselessSearch search(m_searchText);
  const auto isFound = [&](std::uint32_t copy) { return search.isIn(proposal.row(copy).item.url().path()); };
  for (auto& group : m_groups) group.isShown = m_searchText.empty() || std::ranges::any_of(group.copies, isFound);
  layOut();
}

void DuplicateGroups::setExpanded(std::size_t group, bool isExpanded) {
  m_groups[group].isExpanded = isExpanded;
  layOut();
}

void DuplicateGroups::layOut() {
  m_rows = 0;
  for (auto& group : m_groups) {
    group.start = m_rows;
    if (group.copies.empty() || !group.isShown) continue;
    m_rows += 1 + (group.isExpanded ? static_cast<int>(group.copies.size()) : 0);
  }
}

std::optional<DuplicateGroups::Line> DuplicateGroups::lineAt(int row) const {
  if (row < 0 || row >= m_rows) return {};
  const auto after = std::ranges::upper_bound(m_groups, row, {}, &Group::start);
  const auto at = std::prev(after);
  const auto group = static_cast<std::size_t>(at - m_groups.begin());
  if (row == at->start) return Line{group, std::nullopt};
  return Line{group, at->copies[static_cast<std::size_t>(row - at->start - 1)]};
}

std::optional<std::uint32_t> DuplicateGroups::copyAt(int row) const {
  const auto line = lineAt(row);
  if (!line) return {};
  return line->copy.value_or(m_groups[line->group].copies.front());
}

Selection DuplicateGroups::shown(const Selection& selection) const {
  auto result = selection;
  for (const auto& group : m_groups) {
    if (group.isShown) continue;
    for (const auto copy : group.copies) result.set(copy, Selection::Whether::unselected);
  }
  return result;
}

RowSum DuplicateGroups::shownSum(const Proposal& proposal, const Selection& selection) const {
  RowSum sum;
  for (const auto& group : m_groups) {
    if (!group.isShown) continue;
    for (const auto copy : group.copies) {
      if (selection.isSelected(copy)) sum.add(proposal.row(copy).item.fileSize());
    }
  }
  return sum;
}

}  // namespace orvane
