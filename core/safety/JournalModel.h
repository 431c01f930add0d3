#pragma once

#include "core/base/Uuid.h"
#include "core/safety/JournalEntry.h"

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace orvane {

// What the journal file holds: the runs, newest first, and each run's entries in recording order.
class JournalModel {
 public:
  // Reads the file's text. Keys of "entries" that are no UUID are dropped. Throws JsonError.
  static JournalModel decode(std::string_view text);
  // Writes the file's text piece by piece to `sink`: one JSON object with the keys "runs" and "entries".
  template <typename Sink>
  void encode(Sink sink) const;

  [[nodiscard]] const std::vector<CleanupRunSummary>& runs() const noexcept { return m_runs; }
  // Empty when unknown.
  [[nodiscard]] const std::vector<JournalEntry>& entries(const Uuid& runId) const;

  // Adds an entry, or replaces the one with its identifier, and brings its run's figures up to date. A new run comes
  // first in the list.
  void record(JournalEntry entry);
  // The same, unless a later state of the entry is known already.
  void recordUnlessSuperseded(JournalEntry entry);
  void markRestored(const Uuid& runId);

  // Takes what `other` knows and this one does not. Of two states of one entry the later one stays, and of two runs the
  // restored one; the order is this model's, with the other's own runs in front.
  void merge(const JournalModel& other);

 private:
  using Index = std::unordered_map<Uuid, std::size_t>;

  [[nodiscard]] std::vector<Uuid> runOrder() const;
  CleanupRunSummary* findRun(const Uuid& runId);
  // The entry with the identifier and run of `entry`; null where there is none.
  [[nodiscard]] const JournalEntry* find(const JournalEntry& entry) const;

  std::vector<CleanupRunSummary> m_runs;
  std::unordered_map<Uuid, std::vector<JournalEntry>> m_entriesByRun;
  // Where in its run an entry stands.
  Index m_positions;
};

template <typename Sink>
void JournalModel::encode(Sink sink) const {
  const auto write = [&](auto&& list, auto&& text) {
    const char* separator = "";
    for (const auto& element : list) {
      sink(separator);
      text(element);
      separator = ",";
    }
  };
  sink("{\"runs\":[");
  write(m_runs, [&](const CleanupRunSummary& run) { sink(run.jsonText()); });
  sink("],\"entries\":{");
  std::string entryText;
  write(runOrder(), [&](const Uuid& runId) {
    sink("\"" + runId.toString() + "\":[");
    write(entries(runId), [&](const JournalEntry& entry) {
      entryText.clear();
      entry.appendJsonText(entryText);
      sink(entryText);
    });
    sink("]");
  });
  sink("}}");
}

}  // namespace orvane
