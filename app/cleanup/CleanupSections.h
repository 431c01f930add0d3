#pragma once

#include "app/cleanup/CleanupArrangement.h"
#include "core/tasks/Notice.h"
#include "core/tasks/Selection.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

namespace orvane {

// The categories of the cleanup with what is shown of each, as the rows of one list: a header, and below it, where it
// is unfolded, its items.
class CleanupSections {
 public:
  struct Section {
    ArrangedSection shown;
    std::int64_t selectable = 0;
    RowSum selected;
    bool isExpanded = true;
  };
  struct Line {
    ScanCategory category;
    std::optional<std::uint32_t> item;  // absent for a header
  };

  [[nodiscard]] Section& of(ScanCategory category) { return m_sections[indexOf(category)]; }
  [[nodiscard]] const Section& of(ScanCategory category) const { return m_sections[indexOf(category)]; }
  [[nodiscard]] static std::size_t indexOf(ScanCategory category) { return static_cast<std::size_t>(category); }

  [[nodiscard]] std::optional<Line> lineAt(int row) const;
  [[nodiscard]] int headerRow(ScanCategory category) const;
  // The rows that there will be once it is taken.
  [[nodiscard]] int rowsWith(const CleanupArrangement& arrangement) const;
  void take(CleanupArrangement arrangement);

  // Counts anew what is selected of what is shown.
  void recount(const Selection& selection, const ItemList& items);
  // The same for one item that was turned over.
  void countToggled(ScanCategory category, bool isSelected, std::int64_t size);
  [[nodiscard]] const RowSum& selected() const noexcept { return m_selected; }
  [[nodiscard]] std::int64_t shownCount() const noexcept { return m_shownCount; }

  // Calls `visit(item)` for each item that is shown, folded or not.
  template <typename Visit>
  void forEachItem(Visit visit) const {
    for (const auto& section : m_sections) {
      for (const auto item : section.shown.items) visit(item);
    }
  }

 private:
  [[nodiscard]] static int rowsOf(const Section& section);

  std::array<Section, allScanCategories.size()> m_sections;
  RowSum m_selected;
  std::int64_t m_shownCount = 0;
};

}  // namespace orvane
