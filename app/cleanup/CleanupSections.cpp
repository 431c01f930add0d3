#include "app/cleanup/CleanupSections.h"

#include <utility>

namespace orvane {

int CleanupSections::rowsOf(const Section& section) {
  if (section.shown.items.empty()) return 0;
  return 1 + (section.isExpanded ? static_cast<int>(section.shown.items.size()) : 0);
}

int CleanupSections::headerRow(ScanCategory category) const {
  int row = 0;
  for (std::size_t before = 0; before < indexOf(category); ++before) row += rowsOf(m_sections[before]);
  return row;
}

std::optional<CleanupSections::Line> CleanupSections::lineAt(int row) const {
  if (row < 0) return std::nullopt;
  for (const auto category : allScanCategories) {
    const auto& section = of(category);
    const int rows = rowsOf(section);
    if (row >= rows) {
      row -= rows;
      continue;
    }
    if (row == 0) return Line{category, std::nullopt};
    return Line{category, section.shown.items[static_cast<std::size_t>(row - 1)]};
  }
  return std::nullopt;
}

int CleanupSections::rowsWith(const CleanupArrangement& arrangement) const {
  int rows = 0;
  for (std::size_t at = 0; at < m_sections.size(); ++at) {
    const auto count = arrangement.sections[at].items.size();
    if (count > 0) rows += 1 + (m_sections[at].isExpanded ? static_cast<int>(count) : 0);
  }
  return rows;
}

void CleanupSections::take(CleanupArrangement arrangement) {
  m_shownCount = 0;
  for (std::size_t at = 0; at < m_sections.size(); ++at) {
    m_sections[at].shown = std::move(arrangement.sections[at]);
    m_shownCount += static_cast<std::int64_t>(m_sections[at].shown.items.size());
  }
}

void CleanupSections::recount(const Selection& selection, const ItemList& items) {
  m_selected = {};
  for (auto& section : m_sections) {
    section.selectable = 0;
    section.selected = {};
    for (const auto index : section.shown.items) {
      section.selectable += selection.isSelectable(index) ? 1 : 0;
      if (selection.isSelected(index)) section.selected.add(items.item(index).fileSize());
    }
    m_selected.count += section.selected.count;
    m_selected.bytes += section.selected.bytes;
  }
}

void CleanupSections::countToggled(ScanCategory category, bool isSelected, std::int64_t size) {
  for (auto* sum : {&of(category).selected, &m_selected}) {
    sum->count += isSelected ? 1 : -1;
    sum->bytes += isSelected ? size : -size;
  }
}

}  // namespace orvane
