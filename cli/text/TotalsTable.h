#pragma once

namespace orvane {
class ScanTotals;
}

namespace orvane::cli {

class Session;

// A row for each category that has items, in declaration order, and one for all.
void printTotals(Session& session, const ScanTotals& totals);

}  // namespace orvane::cli
