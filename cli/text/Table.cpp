#include "cli/text/Table.h"

#include "cli/frame/Session.h"
#include "core/base/text/UnicodeText.h"

#include <algorithm>
#include <numeric>
#include <string_view>

namespace orvane::cli {
namespace {

constexpr std::string_view gap = "  ";

// Select Graphic Rendition sequences of ECMA-48.
std::string_view startOf(Colour colour) {
  switch (colour) {
    case Colour::green:
      return "\x1b[32m";
    case Colour::yellow:
      return "\x1b[33m";
    case Colour::red:
      return "\x1b[31m";
    case Colour::bold:
      return "\x1b[1m";
    case Colour::plain:
      break;
  }
  return {};
}

std::string spaces(int count) {
  return std::string(static_cast<std::size_t>(std::max(count, 0)), ' ');
}

}  // namespace

Table::Table(std::vector<Column> columns) : m_columns(std::move(columns)) {}

void Table::addRow(std::vector<Cell> cells) {
  m_rows.push_back({std::move(cells)});
}

void Table::addRule() {
  m_rows.emplace_back();
}

std::vector<int> Table::widths() const {
  std::vector<int> result;
  for (std::size_t column = 0; column < m_columns.size(); ++column) {
    int width = displayWidth(m_columns[column].title);
    for (const auto& row : m_rows) {
      if (!row.cells.empty()) width = std::max(width, displayWidth(row.cells[column].text));
    }
    result.push_back(width);
  }
  return result;
}

std::string Table::lineOf(const std::vector<Cell>& cells, const std::vector<int>& widths, bool usesColour) const {
  std::string line;
  for (std::size_t column = 0; column < cells.size(); ++column) {
    const auto& [text, colour] = cells[column];
    const auto padding = spaces(widths[column] - displayWidth(text));
    const bool painted = usesColour && colour != Colour::plain;
    if (column > 0) line += gap;
    if (m_columns[column].alignment == Alignment::right) line += padding;
    if (painted) line += startOf(colour);
    line += text;
    if (painted) line += "\x1b[0m";
    if (m_columns[column].alignment == Alignment::left) line += padding;
  }
  line.erase(line.find_last_not_of(' ') + 1);
  return line;
}

void Table::print(Session& session) const {
  const auto columnWidths = widths();
  const int whole = std::accumulate(columnWidths.begin(), columnWidths.end(), 0) +
                    static_cast<int>(gap.size() * (m_columns.size() - 1));
  std::vector<Cell> titles;
  for (const auto& column : m_columns) titles.push_back({column.title, Colour::bold});
  session.out().line(lineOf(titles, columnWidths, session.usesColour()));
  for (const auto& row : m_rows) {
    session.out().line(row.cells.empty() ? std::string(static_cast<std::size_t>(whole), '-')
                                         : lineOf(row.cells, columnWidths, session.usesColour()));
  }
}

}  // namespace orvane::cli
