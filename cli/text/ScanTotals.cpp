#include "cli/text/ScanTotals.h"

#include "cli/text/Table.h"
#include "core/base/text/ByteCount.h"
#include "core/base/values/CheckedArithmetic.h"

#include <string>

namespace orvane::cli {
namespace {

// The labels that occur, and the colour of the one that needs most care.
Cell riskCell(const ScanTotals::CategorySum& sum) {
  constexpr std::array colours{Colour::green, Colour::yellow, Colour::red};
  static_assert(colours.size() == allRiskLabels.size());
  Cell cell;
  for (const auto label : allRiskLabels) {
    const auto index = static_cast<std::size_t>(label);
    if (!sum.labels[index]) continue;
    if (!cell.text.empty()) cell.text += ", ";
    cell.text += rawValue(label);
    cell.colour = colours[index];
  }
  return cell;
}

}  // namespace

void ScanTotals::Sum::add(std::int64_t size) {
  ++count;
  bytes = checkedAdd(bytes, size);
}

void ScanTotals::add(const FileItem& item, std::int64_t size) {
  auto& sum = m_categories[static_cast<std::size_t>(item.category())];
  sum.add(size);
  sum.labels[static_cast<std::size_t>(item.riskLabel())] = true;
  m_all.add(size);
  if (item.isSelected() && item.category() != ScanCategory::trash) m_recommended.add(size);
}

const ScanTotals::CategorySum& ScanTotals::of(ScanCategory category) const {
  return m_categories[static_cast<std::size_t>(category)];
}

void ScanTotals::printTable(Session& session) const {
  Table table({{"Category", Alignment::left},
               {"Items", Alignment::right},
               {"Size", Alignment::right},
               {"Risk", Alignment::left}});
  for (const auto category : allScanCategories) {
    const auto& sum = of(category);
    if (sum.count == 0) continue;
    table.addRow(
        {{std::string(displayName(category))}, {formatCount(sum.count)}, {formatByteCount(sum.bytes)}, riskCell(sum)});
  }
  table.addRule();
  table.addRow({{"Total"}, {formatCount(m_all.count)}, {formatByteCount(m_all.bytes)}, {}});
  table.print(session);
}

}  // namespace orvane::cli
