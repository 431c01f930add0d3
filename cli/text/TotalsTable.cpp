#include "cli/text/TotalsTable.h"

#include "cli/text/Table.h"
#include "core/base/text/ByteCount.h"
#include "core/tasks/ScanTotals.h"

#include <array>
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

void printTotals(Session& session, const ScanTotals& totals) {
  Table table({{"Category", Alignment::left},
               {"Items", Alignment::right},
               {"Size", Alignment::right},
               {"Risk", Alignment::left}});
  for (const auto category : allScanCategories) {
    const auto& sum = totals.of(category);
    if (sum.count == 0) continue;
    table.addRow(
        {{std::string(displayName(category))}, {formatCount(sum.count)}, {formatByteCount(sum.bytes)}, riskCell(sum)});
  }
  table.addRule();
  table.addRow({{"Total"}, {formatCount(totals.all().count)}, {formatByteCount(totals.all().bytes)}, {}});
  table.print(session);
}

}  // namespace orvane::cli
