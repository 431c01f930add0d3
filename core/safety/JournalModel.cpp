#include "core/safety/JournalModel.h"

#include "core/base/CheckedArithmetic.h"
#include "core/base/Json.h"

#include <algorithm>

namespace orvane {
namespace {

// The journal is this program's own file: as long as it must be, but no deeper than its form.
constexpr JsonLimits journalLimits{
    .bytes = static_cast<std::size_t>(-1), .depth = 16, .duplicateKeys = DuplicateKeys::takeFirst};

bool supersedes(const JournalEntry& candidate, const JournalEntry& present) {
  if (candidate.timestamp != present.timestamp) return candidate.timestamp > present.timestamp;
  return candidate.action == JournalAction::restored && present.action != JournalAction::restored;
}

}  // namespace

JournalModel JournalModel::decode(std::string_view text) {
  const Json json = parseJson(text, journalLimits);
  JournalModel model;
  const auto& runs = requiredKey(json, "runs");
  if (!runs.is_array()) throw JsonError("\"runs\" must be an array");
  for (const auto& run : runs) {
    auto summary = CleanupRunSummary::fromJson(run);
    if (model.findRun(summary.runId) == nullptr) model.m_runs.push_back(summary);
  }
  const auto& entries = requiredKey(json, "entries");
  if (!entries.is_object()) throw JsonError("\"entries\" must be an object");
  for (const auto& [key, list] : entries.items()) {
    const auto runId = Uuid::parse(key);
    if (!runId) continue;
    if (!list.is_array()) throw JsonError("each value of \"entries\" must be an array");
    auto& target = model.m_entriesByRun[*runId];
    target.reserve(list.size());
    for (const auto& element : list) {
      auto entry = JournalEntry::fromJson(element);
      if (!model.m_positions.emplace(entry.id, target.size()).second) continue;
      target.push_back(std::move(entry));
    }
  }
  return model;
}

const std::vector<JournalEntry>& JournalModel::entries(const Uuid& runId) const {
  static const std::vector<JournalEntry> none;
  const auto found = m_entriesByRun.find(runId);
  return found == m_entriesByRun.end() ? none : found->second;
}

CleanupRunSummary* JournalModel::findRun(const Uuid& runId) {
  const auto found = std::find_if(m_runs.begin(), m_runs.end(), [&](const auto& run) { return run.runId == runId; });
  return found == m_runs.end() ? nullptr : &*found;
}

void JournalModel::record(JournalEntry entry) {
  auto& list = m_entriesByRun[entry.runId];
  const auto runId = entry.runId;
  auto* run = findRun(runId);
  const auto [position, isNew] = m_positions.emplace(entry.id, list.size());
  if (!isNew && position->second < list.size() && list[position->second].id == entry.id) {
    list[position->second] = std::move(entry);
    return;
  }
  if (run == nullptr) {
    m_runs.insert(m_runs.begin(), CleanupRunSummary{runId, entry.timestamp, 1, entry.fileSize, false});
  } else {
    // The figures follow the entries, also where the file that was loaded told otherwise.
    if (run->itemCount != static_cast<std::int64_t>(list.size())) {
      run->totalBytes = 0;
      for (const auto& present : list) run->totalBytes = checkedAdd(run->totalBytes, present.fileSize);
    }
    run->itemCount = static_cast<std::int64_t>(list.size()) + 1;
    run->totalBytes = checkedAdd(run->totalBytes, entry.fileSize);
  }
  list.push_back(std::move(entry));
}

void JournalModel::markRestored(const Uuid& runId) {
  if (auto* run = findRun(runId)) run->isRestored = true;
}

void JournalModel::merge(const JournalModel& other) {
  // From the oldest on, so that the other's newest run ends up first.
  for (auto run = other.m_runs.rbegin(); run != other.m_runs.rend(); ++run) {
    if (auto* present = findRun(run->runId)) {
      present->isRestored = present->isRestored || run->isRestored;
    } else {
      m_runs.insert(m_runs.begin(), *run);
    }
  }
  for (const auto& [runId, list] : other.m_entriesByRun) {
    for (const auto& entry : list) recordUnlessSuperseded(entry);
  }
}

const JournalEntry* JournalModel::find(const JournalEntry& entry) const {
  const auto position = m_positions.find(entry.id);
  const auto& list = entries(entry.runId);
  if (position == m_positions.end() || position->second >= list.size()) return nullptr;
  const auto& found = list[position->second];
  return found.id == entry.id ? &found : nullptr;
}

void JournalModel::recordUnlessSuperseded(JournalEntry entry) {
  const auto* present = find(entry);
  if (present == nullptr || supersedes(entry, *present)) record(std::move(entry));
}

std::vector<Uuid> JournalModel::runOrder() const {
  std::vector<Uuid> order;
  for (const auto& run : m_runs) {
    if (m_entriesByRun.contains(run.runId)) order.push_back(run.runId);
  }
  // Entries whose run is not listed stay, in a steady order.
  std::vector<Uuid> unlisted;
  for (const auto& [runId, list] : m_entriesByRun) {
    if (std::find(order.begin(), order.end(), runId) == order.end()) unlisted.push_back(runId);
  }
  std::sort(unlisted.begin(), unlisted.end());
  order.insert(order.end(), unlisted.begin(), unlisted.end());
  return order;
}

}  // namespace orvane
