#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace orvane::cli {

class Session;

enum class Colour : std::uint8_t { plain, green, yellow, red, bold };

struct Cell {
  std::string text;
  Colour colour = Colour::plain;
};

enum class Alignment : std::uint8_t { left, right };

// Aligned columns for people.
class Table {
 public:
  struct Column {
    std::string title;
    Alignment alignment = Alignment::left;
  };
  explicit Table(std::vector<Column> columns);

  // As many cells as there are columns.
  void addRow(std::vector<Cell> cells);
  // A rule between the rows before and those after.
  void addRule();
  void print(Session& session) const;

 private:
  struct Row {
    std::vector<Cell> cells;  // none for a rule
  };
  [[nodiscard]] std::vector<int> widths() const;
  [[nodiscard]] std::string lineOf(const std::vector<Cell>& cells, const std::vector<int>& widths,
                                   bool usesColour) const;

  std::vector<Column> m_columns;
  std::vector<Row> m_rows;
};

}  // namespace orvane::cli
