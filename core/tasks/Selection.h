#pragma once

#include <cstdint>
#include <deque>
#include <vector>

namespace orvane {

// How a row of a proposal stands before the user has chosen.
enum class Choice : std::uint8_t {
  selected,
  unselected,
  locked,  // cannot be chosen; the row tells why
};

// Which rows of a proposal are chosen, by index. Nine bytes for each: a million are turned over in a moment.
class Selection {
 public:
  enum class Whether : std::uint8_t { unselected, selected };

  void clear();
  // The next row, chosen as it was proposed.
  void append(Choice choice, std::int64_t bytes);

  [[nodiscard]] std::size_t size() const noexcept { return m_flags.size(); }
  [[nodiscard]] bool isSelectable(std::size_t index) const { return (m_flags[index] & selectableFlag) != 0; }
  [[nodiscard]] bool isSelected(std::size_t index) const { return (m_flags[index] & selectedFlag) != 0; }
  [[nodiscard]] bool isThere(std::size_t index) const { return (m_flags[index] & goneFlag) == 0; }
  // A locked row and one that is gone stay as they are.
  void set(std::size_t index, Whether whether);
  // Exactly what was proposed as selected.
  void selectProposed();
  void selectAll();
  void deselectAll();
  // A row whose item has left its place counts no more; one whose item came back is unselected.
  void setThere(std::size_t index, bool isThere);

  [[nodiscard]] std::int64_t count() const noexcept { return m_count; }
  [[nodiscard]] std::int64_t bytes() const noexcept { return m_bytes; }
  [[nodiscard]] std::vector<std::uint32_t> selected() const;

 private:
  static constexpr std::uint8_t selectableFlag = 1;
  static constexpr std::uint8_t selectedFlag = 2;
  static constexpr std::uint8_t proposedFlag = 4;
  static constexpr std::uint8_t goneFlag = 8;

  std::vector<std::uint8_t> m_flags;
  std::deque<std::int64_t> m_sizes;  // grows without moving what is there
  std::int64_t m_count = 0;
  std::int64_t m_bytes = 0;
};

}  // namespace orvane
