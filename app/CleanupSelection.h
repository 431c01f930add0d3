#pragma once

#include "core/scanning/FileItem.h"

#include <cstdint>
#include <deque>
#include <vector>

namespace orvane {

// Which of the scanned items are to be cleaned, by index. A few bytes for each, close together: a million are turned
// over in a moment.
class CleanupSelection {
 public:
  enum class Whether : std::uint8_t { unselected, selected };

  // Whether the user may choose it: not what only they can judge, and not what is in a Trash already.
  [[nodiscard]] static bool isSelectable(const FileItem& item) noexcept;

  void clear();
  // The next item, with the selection that the scan proposes.
  void append(const FileItem& item);

  [[nodiscard]] bool isSelectable(std::size_t index) const { return (m_flags[index] & selectableFlag) != 0; }
  [[nodiscard]] bool isSelected(std::size_t index) const { return (m_flags[index] & selectedFlag) != 0; }
  // What may not be selected stays as it is.
  void set(std::size_t index, Whether whether);
  // Exactly what is safe.
  void selectRecommended();
  void deselectAll();
  // An item that has left its place counts no more; one that came back is unselected.
  void setThere(std::size_t index, bool isThere);

  [[nodiscard]] std::int64_t count() const noexcept { return m_count; }
  [[nodiscard]] std::int64_t bytes() const noexcept { return m_bytes; }
  [[nodiscard]] std::vector<std::uint32_t> selected() const;

 private:
  static constexpr std::uint8_t selectableFlag = 1;
  static constexpr std::uint8_t selectedFlag = 2;
  static constexpr std::uint8_t recommendedFlag = 4;
  static constexpr std::uint8_t goneFlag = 8;

  std::vector<std::uint8_t> m_flags;
  std::deque<std::int64_t> m_sizes;  // grows without moving what is there
  std::int64_t m_count = 0;
  std::int64_t m_bytes = 0;
};

}  // namespace orvane
