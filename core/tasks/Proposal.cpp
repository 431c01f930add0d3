#include "core/tasks/Proposal.h"

#include "core/base/text/ByteCount.h"
#include "core/base/text/Json.h"
#include "core/base/values/CheckedArithmetic.h"
#include "core/organizer/records/CloudFolderDetector.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <iterator>
#include <map>
#include <utility>

namespace orvane {
namespace {

constexpr std::size_t itemsPerPiece = 4096;

constexpr std::array<std::string_view, 9> kindNames{"clean",    "trash", "plan",      "rules",  "duplicates",
                                                    "organize", "tidy",  "uninstall", "restore"};

const std::shared_ptr<const Json>& noSubject() {
  static const auto subject = std::make_shared<const Json>(Json::object());
  return subject;
}

}  // namespace

std::string_view rawValue(TaskKind kind) noexcept {
  return kindNames[static_cast<std::size_t>(kind)];
}

std::optional<TaskKind> taskKindFromRawValue(std::string_view text) noexcept {
  const auto* const found = std::find(kindNames.begin(), kindNames.end(), text);
  if (found == kindNames.end()) return std::nullopt;
  return static_cast<TaskKind>(std::distance(kindNames.begin(), found));
}

void RowSum::add(std::int64_t size) {
  ++count;
  bytes = checkedAdd(bytes, size);
}

RowMark scannedMark(const FileItem& item) noexcept {
  if (item.category() == ScanCategory::trash) return {Choice::locked, Lock::inTrash};
  if (!isSelectable(item.riskLabel())) return {Choice::locked, Lock::manualLabel};
  return {item.isSelected() ? Choice::selected : Choice::unselected, Lock::none};
}

// --- proposals

Proposal::Proposal() {
  static const auto nothing = [] {
    auto data = std::make_shared<Data>();
    data->subject = noSubject();
    return std::shared_ptr<const Data>(std::move(data));
  }();
  m_data = nothing;
}

ProposedRow Proposal::rowOf(std::size_t index, const FileItem& item) const {
  const auto& data = *m_data;
  const auto mark = data.marks.empty() ? scannedMark(item) : data.marks[index];
  const auto* group = mark.group == RowMark::noGroup ? nullptr : &data.groups[mark.group];
  std::string_view newName;
  if (!data.newNames.empty()) {
    const auto found = data.newNames.find(static_cast<std::uint32_t>(index));
    if (found != data.newNames.end()) newName = found->second;
  }
  return {item, mark.choice, mark.lock, group, newName};
}

Selection Proposal::selection() const {
  Selection result;
  forEach([&](std::size_t, const ProposedRow& row) { result.append(row.choice, row.item.fileSize()); });
  return result;
}

Approval Proposal::approve(const Selection& selection) const {
  std::vector<std::uint32_t> rows;
  // Of each group that keeps one: whether a row of it stays, and which of the kept rows is its first.
  struct Keeping {
    bool hasStaying = false;
    std::optional<std::uint32_t> firstKept;
  };
  std::unordered_map<const RowGroup*, Keeping> keeping;
  forEach([&](std::size_t index, const ProposedRow& row) {
    const auto at = static_cast<std::uint32_t>(index);
    const bool isKept = row.choice != Choice::locked && index < selection.size() && selection.isSelected(index);
    if (isKept) rows.push_back(at);
    if (row.group == nullptr || !row.group->keepsOne) return;
    auto& group = keeping[row.group];
    if (!isKept) {
      group.hasStaying |= index >= selection.size() || selection.isThere(index);
    } else if (!group.firstKept) {
      group.firstKept = at;
    }
  });
  for (const auto& [group, kept] : keeping) {
    if (kept.hasStaying || !kept.firstKept) continue;
    rows.erase(std::lower_bound(rows.begin(), rows.end(), *kept.firstKept));
  }
  return {*this, std::move(rows)};
}

Approval Proposal::approve() const {
  return approve(selection());
}

Approval::Approval(Proposal proposal, std::vector<std::uint32_t> rows)
    : m_proposal(std::move(proposal)), m_rows(std::move(rows)) {
  for (const auto index : m_rows) {
    const auto row = m_proposal.row(index);
    (row.destinationFolder() != nullptr ? m_toFolders : m_toTrash).add(row.item.fileSize());
  }
}

std::vector<SyncedRows> syncedRows(const Approval& approval) {
  std::map<CloudProvider, SyncedRows> found;
  for (const auto index : approval.rows()) {
    const auto& item = approval.proposal().row(index).item;
    const auto provider = CloudFolderDetector::detectProvider(item.url());
    if (!provider) continue;
    found.try_emplace(*provider, SyncedRows{*provider, {}, item.url()}).first->second.rows.add(item.fileSize());
  }
  std::vector<SyncedRows> result;
  result.reserve(found.size());
  for (auto& [provider, rows] : found) result.push_back(std::move(rows));
  return result;
}

std::string syncWarning(const SyncedRows& synced) {
  if (synced.rows.count == 1) return CloudFolderDetector::syncWarning(synced.first).value_or("");
  return fmt::format(
      "Warning: {} items are synced via {}. Deleting them will also remove them from your other connected devices.",
      formatCount(synced.rows.count), rawValue(synced.provider));
}

// --- building

ProposalBuilder::ProposalBuilder(TaskKind kind, Boundary boundary, Date countedTo)
    : m_data(std::make_shared<Proposal::Data>()) {
  m_data->kind = kind;
  m_data->boundary = std::move(boundary);
  m_data->countedTo = countedTo;
  m_data->subject = noSubject();
}

std::uint32_t ProposalBuilder::addGroup(RowGroup group) {
  m_data->groups.push_back(std::move(group));
  return static_cast<std::uint32_t>(m_data->groups.size() - 1);
}

void ProposalBuilder::add(FileItem item, RowMark mark, std::string newName) {
  if (!newName.empty()) m_data->newNames.emplace(static_cast<std::uint32_t>(m_count), std::move(newName));
  ++m_count;
  m_data->marks.push_back(mark);
  m_piece.push_back(std::move(item));
  if (m_piece.size() >= itemsPerPiece) flush();
}

void ProposalBuilder::change(std::uint32_t row, RowMark mark, std::string newName) {
  m_data->marks[row] = mark;
  if (newName.empty()) {
    m_data->newNames.erase(row);
  } else {
    m_data->newNames.insert_or_assign(row, std::move(newName));
  }
}

void ProposalBuilder::flush() {
  if (m_piece.empty()) return;
  m_piece.shrink_to_fit();
  m_data->items.append(std::make_shared<const ItemPiece>(std::exchange(m_piece, {})));
}

void ProposalBuilder::setSubject(Json subject) {
  m_data->subject = std::make_shared<const Json>(std::move(subject));
}

Proposal ProposalBuilder::take() {
  flush();
  return Proposal(std::move(m_data));
}

}  // namespace orvane
