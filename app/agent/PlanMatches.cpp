#include "app/agent/PlanMatches.h"

#include "app/agent/PlanTexts.h"
#include "app/common/NoticeTexts.h"
#include "app/common/Text.h"
#include "core/base/files/PathText.h"
#include "core/plans/records/PlanFolder.h"
#include "core/tasks/PlanTask.h"

#include <algorithm>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace orvane {
namespace {

// From the home folder, without the tilde.
QString shownMatchFolder(std::string_view path, const FileUrl& home) {
  const auto shown = shownPath(path, home);
  return shown.startsWith(QStringLiteral("~/")) ? shown.mid(2) : shown;
}

std::string folderOfStep(const CleaningPlanStep& step) {
  const auto folder = planFolder(step.targetFolder);
  return folder ? folder->path() : std::string();
}

// The folder that holds an item, or its ancestor right below the step's folder.
std::string_view folderOfMatch(std::string_view path, std::string_view stepFolder) {
  const auto parent = path.substr(0, path.rfind('/'));
  if (!isSameOrInside(parent, stepFolder) || parent.size() == stepFolder.size()) return parent;
  return parent.substr(0, std::min(parent.find('/', stepFolder.size() + 1), parent.size()));
}

std::vector<GroupedRows::Group> matchGroups(const Proposal& proposal, const CleaningPlan& plan) {
  std::vector<std::string> stepFolders;
  for (const auto& step : plan.steps) stepFolders.push_back(folderOfStep(step));
  std::vector<GroupedRows::Group> groups;
  // By the rows' own group, which stands for a step and a destination, and by folder.
  std::unordered_map<const RowGroup*, std::unordered_map<std::string_view, std::size_t>> known;
  proposal.forEach([&](std::size_t index, const ProposedRow& row) {
    const auto folder = folderOfMatch(row.item.url().path(), stepFolders.at(row.group->source));
    const auto [place, isNew] = known[row.group].try_emplace(folder, groups.size());
    if (isNew) groups.emplace_back();
    groups[place->second].rows.push_back(static_cast<std::uint32_t>(index));
  });
  return groups;
}

// Why a row cannot be chosen; empty for one that can, and for one whose label says it.
QString lockText(const ProposedRow& row) {
  switch (row.lock) {
    case Lock::inTrash:
      return localizedText("state.in_trash");
    case Lock::inPlace:
      return localizedText("agent.in_place");
    case Lock::listedOnly:
      return localizedText("agent.listed_only");
    case Lock::refused:
      return shownName(row.group->refusal);
    case Lock::kept:
      return localizedText("keep.kept");
    case Lock::manualLabel:
    case Lock::reference:
    case Lock::none:
      break;
  }
  return {};
}

const FileUrl* destinationOf(const ProposedRow& row) {
  return row.lock == Lock::none ? row.destinationFolder() : nullptr;
}

void addTo(RowSum& sum, const RowSum& more) {
  sum.count += more.count;
  sum.bytes += more.bytes;
}

}  // namespace

QHash<int, QByteArray> PlanMatches::roleNames() {
  return {
      {KindRole, "kind"},     {NameRole, "name"},
      {PlaceRole, "place"},   {ReasonRole, "reason"},
      {RiskRole, "risk"},     {DateRole, "date"},
      {BytesRole, "bytes"},   {CheckStateRole, "checkState"},
      {ActionRole, "action"}, {DestinationRole, "destination"},
      {CountRole, "count"},   {ExpandedRole, "expanded"},
  };
}

PlanMatches::PlanMatches(CleaningPlan plan, Proposal proposal, Selection selection)
    : m_plan(std::move(plan)),
      m_proposal(std::move(proposal)),
      m_selection(std::move(selection)),
      m_rows(matchGroups(m_proposal, m_plan), m_proposal, m_selection) {}

std::int64_t PlanMatches::bytes() const {
  RowSum sum;
  for (const auto& group : m_rows.groups()) addTo(sum, group.all);
  return sum.bytes;
}

QVariant PlanMatches::data(int row, int role, const FileUrl& home) const {
  const auto line = m_rows.lineAt(row);
  if (!line) return {};
  return line->row ? matchData(*line->row, role, home) : headerData(m_rows.groups()[line->group], role, home);
}

// "Downloads", or "Downloads → Downloads/Documents/PDFs" where the group's files move.
QString PlanMatches::titleOf(const GroupedRows::Group& group, const FileUrl& home) const {
  const auto row = m_proposal.row(group.rows.front());
  const auto folder = folderOfMatch(row.item.url().path(), folderOfStep(stepOf(m_plan, row)));
  auto title = shownMatchFolder(folder, home);
  if (const auto* destination = destinationOf(row)) {
    title += QStringLiteral(" → ") + shownMatchFolder(destination->path(), home);
  }
  return title;
}

QVariant PlanMatches::headerData(const GroupedRows::Group& group, int role, const FileUrl& home) const {
  switch (role) {
    case Qt::DisplayRole:
    case NameRole:
      return titleOf(group, home);
    case BytesRole:
      return static_cast<double>(group.all.bytes);
    case CountRole:
      return static_cast<double>(group.all.count);
    case CheckStateRole:
      return GroupedRows::checkState(group.chosen.count, group.selectable);
    case ExpandedRole:
      return group.isExpanded;
    case RiskRole:
      return 0;
    case DateRole:
      return 0.0;
    case PlaceRole:
    case ReasonRole:
    case ActionRole:
    case DestinationRole:
      return QString();
    default:
      return {};
  }
}

QString PlanMatches::remarkOf(const ProposedRow& row) const {
  const auto lock = lockText(row);
  return lock.isEmpty() ? shownPlanText(stepOf(m_plan, row).explanation) : lock;
}

QVariant PlanMatches::matchData(std::uint32_t at, int role, const FileUrl& home) const {
  const auto row = m_proposal.row(at);
  switch (role) {
    case Qt::DisplayRole:
    case NameRole:
      return shownName(row.item.url().lastPathComponent());
    case PlaceRole:
      return shownPlace(row.item.url(), home);
    case ReasonRole:
      return remarkOf(row);
    case RiskRole:
      return static_cast<int>(row.item.riskLabel());
    case DateRole:
      return milliseconds(row.item.lastModifiedDate());
    case BytesRole:
      return static_cast<double>(row.item.fileSize());
    case CheckStateRole:
      if (row.choice == Choice::locked) return GroupedRows::noCheckState;
      return static_cast<int>(m_selection.isSelected(at) ? Qt::Checked : Qt::Unchecked);
    case ActionRole:
      return textFrom(rawValue(stepOf(m_plan, row).action));
    case DestinationRole: {
      const auto* folder = destinationOf(row);
      return folder == nullptr ? QString() : shownMatchFolder(folder->path(), home);
    }
    case CountRole:
      return 1.0;
    case ExpandedRole:
      return false;
    default:
      return {};
  }
}

// --- the selection

void PlanMatches::choose(const std::vector<std::uint32_t>& rows, bool isSelected) {
  for (const auto row : rows) {
    m_selection.set(row, isSelected ? Selection::Whether::selected : Selection::Whether::unselected);
  }
}

std::optional<std::size_t> PlanMatches::toggle(int row) {
  const auto line = m_rows.lineAt(row);
  if (!line) return std::nullopt;
  if (line->row) {
    choose({*line->row}, !m_selection.isSelected(*line->row));
  } else {
    const auto& group = m_rows.groups()[line->group];
    choose(group.rows, group.chosen.count < group.selectable);
  }
  m_rows.recount(line->group, m_proposal, m_selection);
  return line->group;
}

void PlanMatches::selectAll(bool isSelected) {
  if (isSelected) {
    m_selection.selectAll();
  } else {
    m_selection.deselectAll();
  }
  m_rows.recountAll(m_proposal, m_selection);
}

int PlanMatches::allCheckState() const {
  return GroupedRows::checkState(m_selection.count(), m_rows.selectable());
}

QVariantList PlanMatches::moves(const FileUrl& home) const {
  std::vector<std::pair<const FileUrl*, RowSum>> moves;
  RowSum stay;
  for (const auto& group : m_rows.groups()) {
    addTo(stay, {group.all.count - group.chosen.count, group.all.bytes - group.chosen.bytes});
    const auto* destination = destinationOf(m_proposal.row(group.rows.front()));
    if (destination == nullptr || group.chosen.count == 0) continue;
    auto known = std::ranges::find_if(moves, [&](const auto& move) { return *move.first == *destination; });
    if (known == moves.end()) known = moves.insert(known, {destination, RowSum()});
    addTo(known->second, group.chosen);
  }
  if (moves.empty()) return {};
  std::ranges::stable_sort(moves, std::ranges::greater{}, [](const auto& move) { return move.second.count; });
  QVariantList result;
  const auto append = [&result](const QString& text, const RowSum& sum) {
    result.append(QVariantMap{
        {"text", text}, {"count", static_cast<double>(sum.count)}, {"bytes", static_cast<double>(sum.bytes)}});
  };
  for (const auto& move : moves) append(shownMatchFolder(move.first->path(), home), move.second);
  if (stay.count > 0) append({}, stay);
  return result;
}

QString PlanMatches::selectedSums() const {
  RowSum toTrash;
  RowSum toFolders;
  for (const auto& group : m_rows.groups()) {
    if (group.chosen.count == 0) continue;
    addTo(destinationOf(m_proposal.row(group.rows.front())) == nullptr ? toTrash : toFolders, group.chosen);
  }
  return movingSums(toTrash, toFolders);
}

}  // namespace orvane
