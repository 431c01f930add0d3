#include "core/safety/journal/JournalModel.h"

#include "core/base/files/PathText.h"
#include "core/base/values/CheckedArithmetic.h"

#include <algorithm>
#include <array>
#include <unordered_set>
#include <utility>

namespace orvane {
namespace {

// Tells of an entry of the run whether it is that of a copy whose original is back.
auto copyLeftAmong(const std::vector<JournalEntry>& run) {
  std::unordered_set<FileUrl> restored;
  for (const auto& entry : run) {
    if (entry.action == JournalAction::restored) restored.insert(entry.originalURL);
  }
  return [restored = std::move(restored)](const JournalEntry& entry) {
    return entry.action == JournalAction::moved && restored.contains(entry.originalURL);
  };
}

}  // namespace

class JournalModel::Decoder : public JournalVisitor {
 public:
  explicit Decoder(JournalModel& model) : m_model(model) {}

  void takeRun(const CleanupRunSummary& summary) override {
    if (const auto* known = m_model.find(summary.runId); known == nullptr || !known->isListed) m_model.list(summary);
  }
  void takeEntry(const Uuid& runId, JournalEntry entry) override {
    const auto number = m_model.m_entries.add(entry);
    if (!number) return;
    if (m_run == nullptr || m_run->summary.runId != runId) m_run = &m_model.run(runId);
    m_run->entries.push_back(*number);
  }
  // The file's runs come newest first.
  void finish() { std::reverse(m_model.m_listed.begin(), m_model.m_listed.end()); }

 private:
  JournalModel& m_model;
  Run* m_run = nullptr;
};

JournalModel JournalModel::decode(JournalParser::Source source) {
  JournalModel model;
  Decoder decoder(model);
  JournalParser(std::move(source)).parse(decoder);
  decoder.finish();
  return model;
}

JournalModel JournalModel::decode(std::string_view text) {
  return decode([text](char* place, std::size_t room) mutable {
    const auto count = std::min(room, text.size());
    text.copy(place, count);
    text.remove_prefix(count);
    return count;
  });
}

std::vector<CleanupRunSummary> JournalModel::runs() const {
  std::vector<CleanupRunSummary> result;
  result.reserve(m_listed.size());
  for (auto position = m_listed.rbegin(); position != m_listed.rend(); ++position) {
    result.push_back(m_runs[*position].summary);
  }
  return result;
}

std::vector<JournalEntry> JournalModel::entries(const Uuid& runId) const {
  std::vector<JournalEntry> result;
  if (const auto* known = find(runId)) {
    result.reserve(known->entries.size());
    for (const auto number : known->entries) result.push_back(m_entries.at(number));
  }
  return result;
}

std::int64_t JournalModel::remainingCount(const Uuid& runId) const {
  const auto* known = find(runId);
  if (known == nullptr) return 0;
  std::array<std::int64_t, 3> counts{};
  for (const auto number : known->entries) ++counts[static_cast<std::size_t>(m_entries.actionOf(number))];
  const auto [trashed, restored, moved] = counts;
  // Only where copies stayed while originals came back do the entries have to be looked at.
  if (moved > 0 && restored > 0) return static_cast<std::int64_t>(remainingEntries(runId).size());
  return trashed + moved;
}

std::vector<JournalEntry> JournalModel::remainingEntries(const Uuid& runId) const {
  auto result = entries(runId);
  const auto isCopyLeft = copyLeftAmong(result);
  std::erase_if(
      result, [&](const JournalEntry& entry) { return entry.action == JournalAction::restored || isCopyLeft(entry); });
  return result;
}

std::vector<JournalEntry> JournalModel::copiesLeft(const Uuid& runId) const {
  auto result = entries(runId);
  const auto isCopyLeft = copyLeftAmong(result);
  std::erase_if(result, [&](const JournalEntry& entry) { return !isCopyLeft(entry); });
  return result;
}

bool JournalModel::isRestored(const Uuid& runId) const {
  const auto* known = find(runId);
  return known != nullptr && known->summary.isRestored;
}

void JournalModel::forEachAway(const AwayVisit& visit) const {
  for (PackedEntries::Number number = 0; number < m_entries.size(); ++number) {
    if (m_entries.actionOf(number) == JournalAction::restored) continue;
    auto entry = m_entries.at(number);
    visit(entry.id, std::move(entry.originalURL), entry.trashedURL);
  }
}

bool JournalModel::isEntryRestored(const Uuid& entry) const {
  const auto number = m_entries.find(entry);
  return number && m_entries.actionOf(*number) == JournalAction::restored;
}

std::vector<JournalEntry> JournalModel::restoredInto(std::string_view folder) const {
  std::vector<JournalEntry> result;
  for (PackedEntries::Number number = 0; number < m_entries.size(); ++number) {
    if (m_entries.actionOf(number) != JournalAction::restored) continue;
    auto entry = m_entries.at(number);
    if (parentPath(entry.originalURL.path()) == folder) result.push_back(std::move(entry));
  }
  return result;
}

const JournalModel::Run* JournalModel::find(const Uuid& runId) const {
  const auto found = m_positions.find(runId);
  return found == m_positions.end() ? nullptr : &m_runs[found->second];
}

JournalModel::Run& JournalModel::run(const Uuid& runId) {
  const auto [position, isNew] = m_positions.emplace(runId, m_runs.size());
  if (isNew) m_runs.emplace_back().summary.runId = runId;
  return m_runs[position->second];
}

void JournalModel::list(const CleanupRunSummary& summary) {
  auto& listed = run(summary.runId);
  listed.summary = summary;
  listed.isListed = true;
  m_listed.push_back(m_positions.at(summary.runId));
}

void JournalModel::record(const JournalEntry& entry) {
  const auto number = m_entries.add(entry);
  if (!number) {
    m_entries.replace(*m_entries.find(entry.id), entry);
    return;
  }
  auto& known = run(entry.runId);
  auto& summary = known.summary;
  if (!known.isListed) {
    list({entry.runId, entry.timestamp, 1, entry.fileSize, false});
  } else {
    // The figures follow the entries, also where the file that was loaded told otherwise.
    if (summary.itemCount != static_cast<std::int64_t>(known.entries.size())) {
      summary.totalBytes = 0;
      for (const auto present : known.entries) {
        summary.totalBytes = checkedAdd(summary.totalBytes, m_entries.fileSizeOf(present));
      }
    }
    summary.itemCount = static_cast<std::int64_t>(known.entries.size()) + 1;
    summary.totalBytes = checkedAdd(summary.totalBytes, entry.fileSize);
  }
  known.entries.push_back(*number);
}

void JournalModel::markRestored(const Uuid& runId) {
  if (const auto* known = find(runId); known != nullptr && known->isListed) run(runId).summary.isRestored = true;
}

void JournalModel::merge(const JournalModel& other) {
  // From the oldest on, so that the other's newest run ends up first.
  for (const auto position : other.m_listed) {
    const auto& summary = other.m_runs[position].summary;
    auto& known = run(summary.runId);
    if (known.isListed) {
      known.summary.isRestored = known.summary.isRestored || summary.isRestored;
    } else {
      list(summary);
    }
  }
  for (const auto& known : other.m_runs) {
    for (const auto number : known.entries) recordUnlessSuperseded(other.m_entries.at(number));
  }
}

void JournalModel::recordUnlessSuperseded(const JournalEntry& entry) {
  // A restored item never leaves again under the same entry. Clocks can be set back, so they decide only between
  // equals.
  const auto order = [](JournalAction action, Date timestamp) {
    return std::pair(action == JournalAction::restored, timestamp);
  };
  const auto number = m_entries.find(entry.id);
  if (number &&
      order(entry.action, entry.timestamp) <= order(m_entries.actionOf(*number), m_entries.timestampOf(*number))) {
    return;
  }
  record(entry);
}

std::vector<const JournalModel::Run*> JournalModel::runsWithEntries() const {
  std::vector<const Run*> result;
  for (auto position = m_listed.rbegin(); position != m_listed.rend(); ++position) {
    result.push_back(&m_runs[*position]);
  }
  // Entries whose run is not listed stay, in a steady order.
  const auto listed = static_cast<std::ptrdiff_t>(result.size());
  for (const auto& known : m_runs) {
    if (!known.isListed) result.push_back(&known);
  }
  std::ranges::sort(result.begin() + listed, result.end(), {}, [](const Run* known) { return known->summary.runId; });
  std::erase_if(result, [](const Run* known) { return known->entries.empty(); });
  return result;
}

}  // namespace orvane
