#pragma once

#include "core/base/values/Uuid.h"
#include "core/safety/journal/JournalParser.h"
#include "core/safety/journal/PackedEntries.h"
#include "core/safety/records/JournalEntry.h"

#include <cstdint>
#include <deque>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace orvane {

// The content of the journal file: the runs, newest first, and each run's entries in recording order.
class JournalModel {
 public:
  // Reads the file's text. Keys of "entries" that are no UUID are dropped, and of an entry that is there twice the
  // first counts. Throws JsonError, and what `source` throws.
  static JournalModel decode(JournalParser::Source source);
  static JournalModel decode(std::string_view text);
  // Writes the file's text piece by piece to `sink`: one JSON object with the keys "runs" and "entries".
  template <typename Sink>
  void encode(Sink sink) const;

  [[nodiscard]] std::vector<CleanupRunSummary> runs() const;
  // Empty when unknown.
  [[nodiscard]] std::vector<JournalEntry> entries(const Uuid& runId) const;

  // How many entries of a run have something to bring back: a copy on another volume has not once its original is back.
  [[nodiscard]] std::int64_t remainingCount(const Uuid& runId) const;
  // Those entries.
  [[nodiscard]] std::vector<JournalEntry> remainingEntries(const Uuid& runId) const;
  // The copies on other volumes whose originals are back and that the journal still tells of: whoever brought these
  // back did not come to set the copies aside.
  [[nodiscard]] std::vector<JournalEntry> copiesLeft(const Uuid& runId) const;
  [[nodiscard]] bool isRestored(const Uuid& runId) const;
  // The entries whose items came back right into a folder.
  [[nodiscard]] std::vector<JournalEntry> restoredInto(std::string_view folder) const;
  // Calls back for each item that is not back, with where it came from and where it went.
  using AwayVisit = std::function<void(const Uuid& entry, FileUrl source, const FileUrl& place)>;
  void forEachAway(const AwayVisit& visit) const;
  [[nodiscard]] bool isEntryRestored(const Uuid& entry) const;

  // Adds an entry, or replaces the one with its identifier, and brings its run's figures up to date. A new run comes
  // first in the list.
  void record(const JournalEntry& entry);
  // The same, unless a later state of the entry is known already.
  void recordUnlessSuperseded(const JournalEntry& entry);
  void markRestored(const Uuid& runId);

  // Takes what `other` knows and this one does not. Of two states of one entry the later one stays, and of two runs the
  // restored one; the order is this model's, with the other's own runs in front.
  void merge(const JournalModel& other);

 private:
  class Decoder;
  struct Run {
    CleanupRunSummary summary;
    bool isListed = false;  // among the runs of the file, and not only among the entries
    std::vector<PackedEntries::Number> entries;
  };

  Run& run(const Uuid& runId);
  [[nodiscard]] const Run* find(const Uuid& runId) const;
  void list(const CleanupRunSummary& summary);
  // Runs whose entries are written, in the order of writing.
  [[nodiscard]] std::vector<const Run*> runsWithEntries() const;

  PackedEntries m_entries;
  std::deque<Run> m_runs;  // as they became known
  std::unordered_map<Uuid, std::size_t> m_positions;
  std::vector<std::size_t> m_listed;  // positions in m_runs, oldest first
};

template <typename Sink>
void JournalModel::encode(Sink sink) const {
  const auto write = [&](const auto& list, auto&& text) {
    const char* separator = "";
    for (const auto& element : list) {
      sink(separator);
      text(element);
      separator = ",";
    }
  };
  sink("{\"runs\":[");
  write(runs(), [&](const CleanupRunSummary& summary) { sink(summary.jsonText()); });
  sink("],\"entries\":{");
  std::string entryText;
  write(runsWithEntries(), [&](const Run* run) {
    sink("\"" + run->summary.runId.toString() + "\":[");
    write(run->entries, [&](PackedEntries::Number number) {
      entryText.clear();
      m_entries.at(number).appendJsonText(entryText);
      sink(entryText);
    });
    sink("]");
  });
  sink("}}");
}

}  // namespace orvane
