#include "app/duplicates/DuplicatesModel.h"

#include "app/common/Format.h"
#include "app/common/PageDrawing.h"
#include "app/common/PictureProvider.h"
#include "app/common/Pictures.h"
#include "app/common/Places.h"
#include "app/common/Text.h"
#include "core/platform/Desktop.h"
#include "core/tasks/Folders.h"

#include <QDebug>
#include <QUrl>

#include <algorithm>
#include <utility>

namespace orvane {
namespace {

template <typename Container>
bool has(const Container& container, const typename Container::key_type& key) {
  return container.find(key) != container.end();
}

}  // namespace

DuplicatesModel::DuplicatesModel(WindowServices services, QObject* parent) : RunModel(std::move(services), parent) {
  reloadRoots();
}

DuplicatesModel::~DuplicatesModel() {
  m_searchStop.request_stop();
}

void DuplicatesModel::chooseFolder(const QString& pathOrUrl) {
  const auto place = placeFrom(pathOrUrl);
  if (!place || m_isSearching || isWorking()) return;
  m_searchQueue.post([this, folder = *place](const std::stop_token&) {
    if (problemWith(services().tasks, folder)) return;
    callOn(this, [this, folder] {
      m_chosen = folder;
      m_roots = {folder};
      m_leftOut.clear();
      Q_EMIT rootsChanged();
    });
  });
}

void DuplicatesModel::reloadRoots() {
  m_searchQueue.post([this](const std::stop_token&) {
    callOn(this, [this, roots = searchableFolders(services().tasks)] {
      if (m_chosen) return;
      m_roots = roots;
      Q_EMIT rootsChanged();
    });
  });
}

QVariantList DuplicatesModel::roots() const {
  QVariantList result;
  for (const auto& root : m_roots) {
    result.append(QVariantMap{
        {"path", placeText(root)}, {"name", shownName(root.lastPathComponent())}, {"included", !has(m_leftOut, root)}});
  }
  return result;
}

void DuplicatesModel::setRootIncluded(const QString& path, bool isIncluded) {
  const auto root = placeFrom(path);
  if (!root) return;
  if (m_chosen == root && !isIncluded) {
    m_chosen.reset();
    return reloadRoots();
  }
  if (isIncluded) {
    m_leftOut.erase(*root);
  } else {
    m_leftOut.insert(*root);
  }
  Q_EMIT rootsChanged();
}

QVariantList DuplicatesModel::references() const {
  QVariantList result;
  for (const auto& folder : m_references) {
    result.append(QVariantMap{{"path", placeText(folder)}, {"name", shownName(folder.lastPathComponent())}});
  }
  return result;
}

void DuplicatesModel::addReference(const QString& url) {
  const auto folder = placeFrom(url);
  if (!folder || std::ranges::find(m_references, *folder) != m_references.end()) return;
  m_references.push_back(*folder);
  Q_EMIT rootsChanged();
}

void DuplicatesModel::removeReference(const QString& path) {
  if (const auto folder = placeFrom(path)) std::erase(m_references, *folder);
  Q_EMIT rootsChanged();
}

// --- the search

void DuplicatesModel::search() {
  if (m_isSearching || isWorking()) return;
  m_isSearching = true;
  m_searchStop = {};
  m_progress = {};
  m_stageFiles = 0;
  forgetResult();
  setRefusal("");
  Q_EMIT stageChanged();
  Q_EMIT searchChanged();
  m_searchQueue.post([this, leftOut = m_leftOut, chosen = m_chosen, references = m_references,
                      stop = m_searchStop.get_token()](const std::stop_token&) {
    TaskMonitor monitor{.stop = stop};
    monitor.comparing = [this](const DuplicateProgress& now) { callOn(this, [this, now] { noteProgress(now); }); };
    const auto proposal = tried([&] {
      auto roots = chosen ? std::vector{*chosen} : searchableFolders(services().tasks);
      std::erase_if(roots, [&](const FileUrl& root) { return has(leftOut, root); });
      return proposeDuplicates(services().tasks, {.folders = std::move(roots), .references = references}, monitor);
    });
    callOn(this, [this, proposal] {
      m_isSearching = false;
      if (proposal) {
        m_hasSearched = true;
        setProposal(*proposal);
      }
      Q_EMIT searchChanged();
    });
  });
}

void DuplicatesModel::noteProgress(const DuplicateProgress& progress) {
  const bool isNewStage = progress.stage != m_progress.stage;
  m_progress = progress;
  if (isNewStage) m_stageFiles = 0;
  m_stageFiles = std::max(m_stageFiles, progress.filesLeft);
  Q_EMIT stageChanged();
}

void DuplicatesModel::cancel() {
  m_searchStop.request_stop();
  RunModel::cancel();
}

void DuplicatesModel::setProposal(Proposal proposal) {
  beginResetModel();
  m_proposal = std::move(proposal);
  ++m_generation;
  m_selection = m_proposal.selection();
  setLookAfterUndo({});
  applyKeepRule(m_proposal, m_keep, m_selection);
  m_groups.take(m_proposal, m_selection);
  endResetModel();
  Q_EMIT selectionChanged();
}

QString DuplicatesModel::searchText() const {
  return textFrom(m_groups.searchText());
}

void DuplicatesModel::setSearchText(const QString& text) {
  auto wanted = text.trimmed().toStdString();
  if (wanted == m_groups.searchText()) return;
  beginResetModel();
  m_groups.search(std::move(wanted), m_proposal);
  endResetModel();
  Q_EMIT queryChanged();
  Q_EMIT selectionChanged();
}

// --- which copy stays

void DuplicatesModel::setKeepStrategy(int strategy) {
  if (strategy < 0 || strategy >= static_cast<int>(KeepRule::By::folder)) return;
  keepBy({static_cast<KeepRule::By>(strategy)});
}

void DuplicatesModel::keepIn(const QString& folder) {
  if (const auto place = placeFrom(folder)) keepBy({KeepRule::By::folder, *place});
}

void DuplicatesModel::keepBy(const KeepRule& rule) {
  if (rule == m_keep || isWorking()) return;
  m_keep = rule;
  applyKeepRule(m_proposal, m_keep, m_selection);
  m_groups.order(m_selection);
  if (m_groups.rowCount() > 0) Q_EMIT dataChanged(index(0), index(m_groups.rowCount() - 1));
  Q_EMIT keepStrategyChanged();
  Q_EMIT selectionChanged();
}

QString DuplicatesModel::keptReason(const Group& group) const {
  std::optional<std::uint32_t> kept;
  for (const auto copy : group.copies) {
    if (m_selection.isSelected(copy)) continue;
    if (!m_selection.isSelectable(copy)) return localizedText(lockKey(copy));
    // More than one stays only where the user says so.
    if (kept) return localizedText("duplicates.why_chosen");
    kept = copy;
  }
  if (!kept) return {};
  const auto created = Format::dateTime(milliseconds(item(*kept).createdDate()));
  switch (m_keep.by) {
    case KeepRule::By::oldest:
      return localizedText("duplicates.why_oldest").arg(created);
    case KeepRule::By::shortestPath:
      return localizedText("duplicates.why_shortest");
    case KeepRule::By::newest:
      return localizedText("duplicates.why_newest").arg(created);
    case KeepRule::By::folder:
      break;
  }
  const bool isInside = (item(*kept).url().path() + "/").starts_with(m_keep.folder.path() + "/");
  return localizedText(isInside ? "duplicates.why_inside" : "duplicates.why_outside")
      .arg(shownName(m_keep.folder.lastPathComponent()), created);
}

// --- rows

int DuplicatesModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : m_groups.rowCount();
}

QHash<int, QByteArray> DuplicatesModel::roleNames() const {
  return {
      {KindRole, "kind"},           {NameRole, "name"},
      {PlaceRole, "place"},         {CopiesRole, "copies"},
      {BytesRole, "bytes"},         {FreedRole, "freed"},
      {DateRole, "date"},           {CheckStateRole, "checkState"},
      {IsKeptRole, "isKept"},       {ThumbnailRole, "thumbnail"},
      {SymbolRole, "symbol"},       {ExpandedRole, "expanded"},
      {CanToggleRole, "canToggle"}, {KeptReasonRole, "keptReason"},
  };
}

QVariant DuplicatesModel::data(const QModelIndex& index, int role) const {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
  const auto line = m_groups.lineAt(index.row());
  if (!line) return {};
  if (role == KindRole) return line->copy ? Copy : Header;
  return line->copy ? copyData(*line->copy, role) : groupData(m_groups.group(line->group), role);
}

QVariant DuplicatesModel::groupData(const Group& group, int role) const {
  const auto& first = item(group.copies.front()).url();
  const auto size = static_cast<double>(item(group.copies.front()).fileSize());
  switch (role) {
    case Qt::DisplayRole:
    case NameRole:
      return shownName(first.lastPathComponent());
    case CopiesRole:
      return static_cast<double>(group.copies.size());
    case BytesRole:
      return size;
    case FreedRole:
      return size * static_cast<double>(std::ranges::count_if(
                        group.copies, [this](std::uint32_t copy) { return m_selection.isSelected(copy); }));
    case DateRole:
      return 0.0;
    case CheckStateRole:
      return -1;
    case ThumbnailRole:
      return isPictureName(first) ? pictureSource(thumbnailProvider, first) : QString();
    case SymbolRole:
      return isPictureName(first) ? QStringLiteral("picture") : QStringLiteral("file");
    case ExpandedRole:
      return group.isExpanded;
    case IsKeptRole:
    case CanToggleRole:
      return false;
    case PlaceRole:
      return QString();
    case KeptReasonRole:
      return keptReason(group);
    default:
      return {};
  }
}

QVariant DuplicatesModel::copyData(std::uint32_t copy, int role) const {
  const auto& copied = item(copy);
  switch (role) {
    case Qt::DisplayRole:
    case NameRole:
      return shownName(copied.url().lastPathComponent());
    case PlaceRole:
      return shownPlace(copied.url(), services().tasks.home);
    case BytesRole:
      return 0.0;
    case DateRole:
      return milliseconds(copied.createdDate());
    case CheckStateRole:
      if (!m_selection.isSelectable(copy)) return -1;
      return static_cast<int>(m_selection.isSelected(copy) ? Qt::Checked : Qt::Unchecked);
    case IsKeptRole:
      return !m_selection.isSelected(copy);
    case SymbolRole:
      return isPictureName(copied.url()) ? QStringLiteral("picture") : QStringLiteral("file");
    case CanToggleRole:
      return m_selection.isSelectable(copy);
    case CopiesRole:
    case FreedRole:
      return 0.0;
    case ThumbnailRole:
    case KeptReasonRole:
      return QString();
    case ExpandedRole:
      return false;
    default:
      return {};
  }
}

void DuplicatesModel::toggleExpanded(int row) {
  const auto line = m_groups.lineAt(row);
  if (!line || line->copy) return;
  const auto& group = m_groups.group(line->group);
  const int count = static_cast<int>(group.copies.size());
  if (group.isExpanded) {
    beginRemoveRows({}, row + 1, row + count);
    m_groups.setExpanded(line->group, false);
    endRemoveRows();
  } else {
    beginInsertRows({}, row + 1, row + count);
    m_groups.setExpanded(line->group, true);
    endInsertRows();
  }
  Q_EMIT dataChanged(index(row), index(row), {ExpandedRole});
}

// --- selection

void DuplicatesModel::setRefusal(std::string_view key) {
  if (key.empty() && m_refusalKey.empty()) return;
  m_refusalKey = key;
  Q_EMIT refusalChanged();
}

QString DuplicatesModel::refusal() const {
  return m_refusalKey.empty() ? QString() : localizedText(m_refusalKey);
}

std::string_view DuplicatesModel::lockKey(std::uint32_t copy) const {
  switch (m_proposal.row(copy).lock) {
    case Lock::kept:
      return "keep.kept";
    case Lock::reference:
      return "keep.stays";
    default:
      return "duplicates.protected";
  }
}

void DuplicatesModel::toggle(int row) {
  const auto line = m_groups.lineAt(row);
  if (!line || !line->copy || isWorking()) return;
  const auto copy = *line->copy;
  if (!m_selection.isSelectable(copy)) return setRefusal(lockKey(copy));
  const bool didChange = setCopySelected(m_proposal, copy, !m_selection.isSelected(copy), m_selection);
  const auto& group = m_groups.group(line->group);
  Q_EMIT dataChanged(index(group.start), index(group.start + static_cast<int>(group.copies.size())));
  Q_EMIT selectionChanged();
  setRefusal(didChange ? "" : "duplicates.keep_one");
}

QString DuplicatesModel::placeAt(int row) const {
  const auto copy = m_groups.copyAt(row);
  return copy ? placeText(item(*copy).url()) : QString();
}

QVariantList DuplicatesModel::copiesAt(int row) const {
  QVariantList result;
  const auto line = m_groups.lineAt(row);
  if (!line) return result;
  for (const auto copy : m_groups.group(line->group).copies) {
    const auto& copied = item(copy);
    const bool canShow = isPictureName(copied.url()) || isPageName(copied.url());
    result.append(QVariantMap{{"name", shownName(copied.url().lastPathComponent())},
                              {"place", shownPlace(copied.url(), services().tasks.home)},
                              {"picture", canShow ? pictureSource(previewProvider, copied.url()) : QString()},
                              {"created", milliseconds(copied.createdDate())},
                              {"modified", milliseconds(copied.lastModifiedDate())},
                              {"isKept", !m_selection.isSelected(copy)}});
  }
  return result;
}

void DuplicatesModel::openContainingFolder(int row) {
  const auto copy = m_groups.copyAt(row);
  if (!copy) return;
  postWork([services = services(), url = item(*copy).url()](const std::stop_token&) {
    if (!services.desktop.reveal(url)) qWarning("No file manager could be started.");
  });
}

void DuplicatesModel::keep(int row) {
  const auto line = m_groups.lineAt(row);
  if (!line || !line->copy || isWorking()) return;
  keepInBackground(item(*line->copy).url(), [this, copy = *line->copy, generation = m_generation] {
    if (generation != m_generation) return;
    beginResetModel();
    m_selection.setThere(copy, false);
    m_groups.gather(m_proposal, m_selection);
    endResetModel();
    Q_EMIT selectionChanged();
  });
}

// --- cleaning

void DuplicatesModel::cleanSelected() {
  clean(m_selection);
}

void DuplicatesModel::cleanShown() {
  clean(m_groups.shown(m_selection));
}

void DuplicatesModel::clean(const Selection& selection) {
  if (selection.count() == 0 || m_isSearching) return;
  setRefusal({});
  startRun(m_proposal.approve(selection), [this](const RunReport& report) { showMoved(report); });
}

void DuplicatesModel::showMoved(const RunReport& report) {
  auto moved = movedRows(report);
  const auto vanished = missingRows(report);
  if (moved.empty() && vanished.empty()) return;
  beginResetModel();
  for (const auto copy : moved) m_selection.setThere(copy, false);
  for (const auto copy : vanished) m_selection.setThere(copy, false);
  m_groups.gather(m_proposal, m_selection);
  endResetModel();
  Q_EMIT selectionChanged();
  setLookAfterUndo([this, proposal = m_proposal, moved = std::move(moved)]() -> std::function<void()> {
    auto back = moved;
    std::erase_if(back, [&](std::uint32_t copy) { return !itemExists(proposal.row(copy).item.url().path().c_str()); });
    return [this, back] { showBack(back); };
  });
}

// Selected, as they were before.
void DuplicatesModel::showBack(const std::vector<std::uint32_t>& back) {
  beginResetModel();
  for (const auto copy : back) {
    m_selection.setThere(copy, true);
    m_selection.set(copy, Selection::Whether::selected);
  }
  m_groups.gather(m_proposal, m_selection);
  endResetModel();
  Q_EMIT selectionChanged();
}

QString DuplicatesModel::movedText(std::int64_t count, std::int64_t bytes) const {
  return countedText("duplicates.result", count).arg(Format::bytes(static_cast<double>(bytes)));
}

QString DuplicatesModel::failureText(const MoveOutcome& failure) const {
  if (failure.source.path().empty()) return RunModel::failureText(failure);
  return localizedText("duplicates.failed_item")
      .arg(shownName(failure.source.lastPathComponent()), failureReason(failure));
}

void DuplicatesModel::languageChanged() {
  RunModel::languageChanged();
  if (m_groups.rowCount() > 0) Q_EMIT dataChanged(index(0), index(m_groups.rowCount() - 1), {KeptReasonRole});
  Q_EMIT refusalChanged();
}

}  // namespace orvane
