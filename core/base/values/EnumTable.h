#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string_view>

namespace orvane {

// The values given for each case of an enum: a row for each, in the order of declaration. A `Row` has at least the case
// as `value` and its text in JSON, settings and arguments as `rawValue`.
template <typename Row, std::size_t count>
class EnumTable {
 public:
  using Enum = decltype(Row::value);

  // Rows in another order do not compile.
  constexpr explicit EnumTable(const Row (&rows)[count]) : m_rows(std::to_array(rows)) {
    for (std::size_t i = 0; i < count; ++i) {
      if (static_cast<std::size_t>(m_rows[i].value) != i) throw "a row is missing or out of order";
    }
  }

  constexpr const Row& operator[](Enum value) const noexcept { return m_rows[static_cast<std::size_t>(value)]; }

  [[nodiscard]] constexpr std::optional<Enum> find(std::string_view rawValue) const noexcept {
    for (const auto& row : m_rows) {
      if (row.rawValue == rawValue) return row.value;
    }
    return std::nullopt;
  }

  // One column.
  [[nodiscard]] constexpr auto values() const { return column(&Row::value); }
  [[nodiscard]] constexpr auto rawValues() const { return column(&Row::rawValue); }

 private:
  template <typename Field>
  constexpr std::array<Field, count> column(Field Row::*field) const {
    std::array<Field, count> result{};
    for (std::size_t i = 0; i < count; ++i) result[i] = m_rows[i].*field;
    return result;
  }

  std::array<Row, count> m_rows;
};

// The row of an enum that has a text and nothing else.
template <typename Enum>
struct RawValueRow {
  Enum value;
  std::string_view rawValue;
};
template <typename Enum>
RawValueRow(Enum, std::string_view) -> RawValueRow<Enum>;

}  // namespace orvane
