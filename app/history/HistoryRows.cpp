#include "app/history/HistoryRows.h"

#include "core/base/text/CaselessSearch.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <utility>

namespace orvane {
namespace {

constexpr std::array<std::string_view, 8> keysOfKinds{"history.all_kinds", "nav.cleanup",        "nav.duplicates",
                                                      "nav.apps",          "nav.organize",       "nav.rules",
                                                      "nav.agent",         "history.other_kinds"};
constexpr std::size_t otherKinds = keysOfKinds.size() - 1;
// In the order of TaskKind.
constexpr std::array<std::size_t, 9> kindsOfTasks{1, otherKinds, 6, 5, 2, 4, 4, 3, otherKinds};
// In the order of RunKind, for runs of which nothing tells who had them done.
constexpr std::array<std::size_t, 5> kindsOfRuns{1, 2, 4, 4, otherKinds};

std::size_t kindOf(const RecordedRun& run) {
  return run.origin ? kindsOfTasks.at(static_cast<std::size_t>(run.origin->kind))
                    : kindsOfRuns.at(static_cast<std::size_t>(run.kind));
}

}  // namespace

HistoryRows::HistoryRows(const TaskServices& services, const History& contents, const Query& query,
                         const std::stop_token& stop) {
  const CaselessSearch search(query.searchText);
  const bool isSearching = !query.searchText.empty();
  const auto isFound = [&](const JournalEntry& entry) { return search.isIn(entry.originalURL.path()); };
  for (const auto& recorded : contents.runs) {
    if (stop.stop_requested()) break;
    if (query.kind != 0 && kindOf(recorded) != query.kind) continue;
    const auto& id = recorded.summary.runId;
    Run run{.run = recorded, .isExpanded = query.unfolded.contains(id)};
    if (isSearching) {
      if (std::ranges::none_of(recordedEntries(services, id), isFound)) continue;
      run.isExpanded = !query.folded.contains(id);
    }
    if (run.isExpanded) {
      run.items = recordedItems(services, id);
      if (isSearching) std::erase_if(run.items, [&](const RecordedItem& item) { return !isFound(item.entry); });
    }
    add(std::move(run));
  }
}

void HistoryRows::add(Run run) {
  for (const auto& item : run.items) {
    if (!item.isCopy) ++run.total;
    if (item.canComeBack()) ++run.restorable;
    if (item.isPlaceTaken) ++run.taken;
  }
  run.chosen = run.restorable;
  run.start = m_count;
  m_count += 1 + static_cast<int>(run.items.size()) + (run.hasFoot() ? 1 : 0);
  m_runs.push_back(std::move(run));
}

const HistoryRows::Run& HistoryRows::runAt(int row) const {
  return *std::prev(std::ranges::upper_bound(m_runs, row, {}, &Run::start));
}

HistoryRows::Line HistoryRows::lineAt(int row) const {
  if (row < 0 || row >= m_count) return {};
  const auto& run = runAt(row);
  if (row == run.start) return {&run};
  const auto at = static_cast<std::size_t>(row - run.start - 1);
  if (at == run.items.size()) return {&run, nullptr, true};
  return {&run, &run.items[at]};
}

bool HistoryRows::isLastOfRun(int row) const {
  return row + 1 >= m_count || runAt(row + 1).start == row + 1;
}

void HistoryRows::leaveOut(const LeftOut& leftOut) {
  for (auto& run : m_runs) {
    run.chosen = run.restorable;
    if (leftOut.empty()) continue;
    for (const auto& item : run.items) {
      if (item.canComeBack() && leftOut.contains(item.entry.id)) --run.chosen;
    }
  }
}

void HistoryRows::countChoice(int row, bool isChosen) {
  auto& chosen = m_runs[static_cast<std::size_t>(&runAt(row) - m_runs.data())].chosen;
  isChosen ? ++chosen : --chosen;
}

std::vector<std::string_view> HistoryRows::kindKeys() {
  return {keysOfKinds.begin(), keysOfKinds.end()};
}

}  // namespace orvane
