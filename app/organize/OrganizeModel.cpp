#include "app/organize/OrganizeModel.h"

#include "app/common/NoticeTexts.h"
#include "app/common/Places.h"
#include "app/common/Text.h"
#include "core/tasks/Folders.h"
#include "core/tasks/NamedTopics.h"

#include <QDebug>

#include <algorithm>
#include <exception>
#include <utility>

namespace orvane {
namespace {

// How deep the picker looks for subfolders.
constexpr int subfolderDepth = 2;
// Of what cannot be chosen.
constexpr int noCheckState = -1;

}  // namespace

OrganizeModel::OrganizeModel(WindowServices services, QObject* parent) : RunModel(std::move(services), parent) {
  reloadFolders();
  m_searchQueue.post([this](const std::stop_token&) {
    callOn(this, [this, hasModel = topicsUnavailableReason(this->services().tasks).empty()] {
      m_hasTopicModel = hasModel;
      Q_EMIT setupChanged();
    });
  });
}

OrganizeModel::~OrganizeModel() {
  m_searchStop.request_stop();
}

void OrganizeModel::reloadFolders() {
  m_searchQueue.post([this](const std::stop_token&) {
    callOn(this, [this, folders = grantedFolders(services().tasks)] {
      m_managedFolders = folders;
      Q_EMIT setupChanged();
    });
  });
}

// --- what is organised, and how

QString OrganizeModel::folder() const {
  return m_folder ? placeText(*m_folder) : QString();
}
QString OrganizeModel::folderName() const {
  return m_folder ? shownName(m_folder->lastPathComponent()) : QString();
}
QVariantList OrganizeModel::subfolders() const {
  return folderList(m_subfolders);
}
FileUrl OrganizeModel::destinationRoot() const {
  return m_destination.value_or(defaultDestination(*m_folder));
}
QString OrganizeModel::destination() const {
  return m_folder ? placeText(destinationRoot()) : QString();
}
QString OrganizeModel::destinationName() const {
  return m_folder ? shownName(destinationRoot().lastPathComponent()) : QString();
}
bool OrganizeModel::topicsAvailable() const {
  return m_hasTopicModel && canHaveTopics(m_folder.value_or(FileUrl()), m_strategy);
}
QVariantList OrganizeModel::managedFolders() const {
  return folderList(m_managedFolders);
}

void OrganizeModel::invalidate() {
  m_searchStop.request_stop();
  m_hasAnalyzed = false;
  m_learnedKinds.clear();
  setProposal({});
  forgetResult();
  Q_EMIT learnedChanged();
  Q_EMIT searchChanged();
  Q_EMIT setupChanged();
}

void OrganizeModel::chooseFolder(const QString& pathOrUrl) {
  const auto place = placeFrom(pathOrUrl);
  if (!place || isWorking()) return;
  m_folder = place;
  m_destination.reset();
  m_subfolders.clear();
  invalidate();
  m_searchQueue.post([this, folder = *place](const std::stop_token&) {
    const auto found = subfoldersOf(services().tasks, folder, subfolderDepth);
    callOn(this, [this, folder, found] {
      if (m_folder != folder) return;
      m_subfolders = found;
      Q_EMIT setupChanged();
    });
  });
}

void OrganizeModel::chooseDestination(const QString& pathOrUrl) {
  const auto place = placeFrom(pathOrUrl);
  if (!place || !m_folder || isWorking()) return;
  m_destination = place;
  invalidate();
}

void OrganizeModel::setStrategy(int strategy) {
  if (strategy < 0 || strategy >= static_cast<int>(allOrganizationStrategies.size()) || strategy == this->strategy()) {
    return;
  }
  m_strategy = static_cast<OrganizationStrategy>(strategy);
  invalidate();
}

void OrganizeModel::setIncludeSubfolders(bool isWanted) {
  if (std::exchange(m_includeSubfolders, isWanted) != isWanted) invalidate();
}

void OrganizeModel::setUseTopics(bool isWanted) {
  if (std::exchange(m_useTopics, isWanted) != isWanted) invalidate();
}

QString OrganizeModel::progressText() const {
  return m_isNamingTopics ? localizedText("organize.naming_topics") : RunModel::progressText();
}

void OrganizeModel::analyze() {
  if (!m_folder || m_isSearching || isWorking()) return;
  m_isSearching = true;
  m_searchStop = {};
  forgetResult();
  Q_EMIT searchChanged();
  const OrganizeOptions options{
      .folder = *m_folder,
      .destination = m_destination,
      .subfolders = m_includeSubfolders ? Subfolders::include : Subfolders::keepWhole,
      .strategy = m_strategy,
      .topics = m_useTopics && topicsAvailable() ? TopicUse::whenAvailable : TopicUse::never,
  };
  m_searchQueue.post([this, options, looked = startLooking(), stop = m_searchStop.get_token()](const std::stop_token&) {
    TaskMonitor monitor{.stop = stop, .looked = looked.get()};
    monitor.namingTopics = [this] {
      callOn(this, [this] {
        m_isNamingTopics = true;
        Q_EMIT progressChanged();
      });
    };
    const auto proposal =
        tried([&] { return proposeOrganize(services().tasks, options, ReferenceClock::now(), monitor); });
    callOn(this, [this, proposal] {
      m_isSearching = false;
      m_isNamingTopics = false;
      stopLooking();
      if (proposal) {
        m_hasAnalyzed = firstNotice<FolderLeftOut>(proposal->notices()) == nullptr;
        setProposal(*proposal);
      }
      Q_EMIT searchChanged();
    });
  });
}

void OrganizeModel::cancel() {
  m_searchStop.request_stop();
  RunModel::cancel();
}

void OrganizeModel::setProposal(Proposal proposal) {
  beginResetModel();
  m_proposal = std::move(proposal);
  ++m_generation;
  m_selection = m_proposal.selection();
  m_groups.clear();
  m_renamed.clear();
  for (const auto& rows : rowsByGroup(m_proposal)) m_groups.push_back({.rows = rows});
  recount();
  layOut();
  endResetModel();
  Q_EMIT selectionChanged();
}

QStringList OrganizeModel::notices() const {
  return noticeTexts(m_proposal.notices(), services().tasks.home);
}

void OrganizeModel::recount() {
  for (auto& shown : m_groups) {
    shown.chosen = {};
    shown.selectable = 0;
    for (auto row = shown.rows.first; row < shown.rows.first + shown.rows.count; ++row) {
      if (m_selection.isSelectable(row) && m_selection.isThere(row)) ++shown.selectable;
      if (m_selection.isSelected(row)) shown.chosen.add(m_proposal.row(row).item.fileSize());
    }
  }
}

void OrganizeModel::layOut() {
  m_rows = 0;
  for (auto& shown : m_groups) {
    shown.start = m_rows;
    m_rows += 1 + (shown.isExpanded ? static_cast<int>(shown.rows.count) : 0);
  }
}

int OrganizeModel::checkStateOf(const Shown& shown) const {
  if (shown.selectable == 0) return noCheckState;
  if (shown.chosen.count == 0) return Qt::Unchecked;
  return shown.chosen.count == shown.selectable ? Qt::Checked : Qt::PartiallyChecked;
}

// --- rows

OrganizeModel::Line OrganizeModel::lineAt(int row) const {
  if (row < 0 || row >= m_rows) return {};
  const auto after = std::upper_bound(m_groups.begin(), m_groups.end(), row,
                                      [](int value, const Shown& shown) { return value < shown.start; });
  const auto at = std::prev(after);
  const auto group = static_cast<std::size_t>(at - m_groups.begin());
  if (row == at->start) return {group, std::nullopt};
  return {group, at->rows.first + static_cast<std::size_t>(row - at->start - 1)};
}

int OrganizeModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : m_rows;
}

QHash<int, QByteArray> OrganizeModel::roleNames() const {
  return {
      {KindRole, "kind"},
      {NameRole, "name"},
      {FromRole, "from"},
      {ToRole, "to"},
      {BytesRole, "bytes"},
      {CountRole, "count"},
      {CheckStateRole, "checkState"},
      {ExpandedRole, "expanded"},
      {IsFolderRole, "isFolder"},
      {SymbolRole, "symbol"},
      {ReasonRole, "reason"},
  };
}

QVariant OrganizeModel::data(const QModelIndex& index, int role) const {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
  const auto line = lineAt(index.row());
  if (role == KindRole) return line.row ? Move : Header;
  return line.row ? rowData(*line.row, role) : groupData(*line.group, role);
}

QVariant OrganizeModel::groupData(std::size_t group, int role) const {
  const auto& shown = m_groups[group];
  switch (role) {
    case Qt::DisplayRole:
    case NameRole:
      return shownName(m_proposal.groups()[group].name);
    case BytesRole:
      return static_cast<double>(shown.chosen.bytes);
    case CountRole:
      return static_cast<double>(shown.rows.count);
    case CheckStateRole:
      return checkStateOf(shown);
    case ExpandedRole:
      return shown.isExpanded;
    case IsFolderRole:
      return true;
    case SymbolRole:
      return QStringLiteral("folder");
    case FromRole:
    case ToRole:
    case ReasonRole:
      return QString();
    default:
      return {};
  }
}

QString OrganizeModel::reasonOf(const ProposedRow& row) const {
  if (row.lock == Lock::refused) return shownName(row.group->refusal);
  return row.lock == Lock::inPlace ? countedText("organize.in_place", 1) : QString();
}

QVariant OrganizeModel::rowData(std::size_t index, int role) const {
  const auto row = m_proposal.row(index);
  const auto name = row.item.url().lastPathComponent();
  switch (role) {
    case Qt::DisplayRole:
    case NameRole:
      return shownName(name);
    case FromRole:
      return shownName(row.item.relativePath());
    case ToRole:
      // Below the destination; where the name is taken, the free one.
      return shownName(row.group->name + "/" + std::string(row.newName.empty() ? name : row.newName));
    case BytesRole:
      return static_cast<double>(row.item.fileSize());
    case CountRole:
      return 1.0;
    case CheckStateRole:
      if (!m_selection.isSelectable(index) || !m_selection.isThere(index)) return noCheckState;
      return static_cast<int>(m_selection.isSelected(index) ? Qt::Checked : Qt::Unchecked);
    case ExpandedRole:
      return false;
    case IsFolderRole:
      return row.item.isFolder();
    case SymbolRole:
      return row.item.isFolder() ? QStringLiteral("folder") : QStringLiteral("file");
    case ReasonRole:
      return m_selection.isThere(index) ? reasonOf(row) : localizedText("keep.kept");
    default:
      return {};
  }
}

void OrganizeModel::toggleExpanded(int row) {
  const auto line = lineAt(row);
  if (!line.group || line.row) return;
  auto& shown = m_groups[*line.group];
  const int count = static_cast<int>(shown.rows.count);
  if (shown.isExpanded) {
    beginRemoveRows({}, row + 1, row + count);
    shown.isExpanded = false;
    layOut();
    endRemoveRows();
  } else {
    beginInsertRows({}, row + 1, row + count);
    shown.isExpanded = true;
    layOut();
    endInsertRows();
  }
  Q_EMIT dataChanged(index(row), index(row), {ExpandedRole});
}

// --- editing

void OrganizeModel::groupChanged(const Shown& shown, const QList<int>& roles) {
  const int last = shown.start + (shown.isExpanded ? static_cast<int>(shown.rows.count) : 0);
  Q_EMIT dataChanged(index(shown.start), index(last), roles);
}

void OrganizeModel::toggle(int row) {
  const auto line = lineAt(row);
  if (!line.group || isWorking()) return;
  const auto& shown = m_groups[*line.group];
  const bool isSelected = line.row ? !m_selection.isSelected(*line.row) : checkStateOf(shown) != Qt::Checked;
  const auto rows = line.row ? GroupRows{*line.row, 1} : shown.rows;
  for (auto at = rows.first; at < rows.first + rows.count; ++at) {
    m_selection.set(at, isSelected ? Selection::Whether::selected : Selection::Whether::unselected);
  }
  recount();
  groupChanged(shown, {CheckStateRole, BytesRole});
  Q_EMIT selectionChanged();
}

void OrganizeModel::selectAll(bool isSelected) {
  if (isWorking()) return;
  if (isSelected) {
    m_selection.selectAll();
  } else {
    m_selection.deselectAll();
  }
  recount();
  if (m_rows > 0) Q_EMIT dataChanged(index(0), index(m_rows - 1), {CheckStateRole, BytesRole});
  Q_EMIT selectionChanged();
}

void OrganizeModel::renameGroup(int row, const QString& name) {
  const auto line = lineAt(row);
  if (!line.group || line.row || isWorking()) return;
  const auto group = *line.group;
  const auto renamed = orvane::renameGroup(services().tasks, m_proposal, m_selection, group, name.toStdString());
  if (!renamed || renamed->groups()[group].name == m_proposal.groups()[group].name) return;
  const auto before = std::exchange(m_selection, renamed->selection());
  m_proposal = *renamed;
  for (std::size_t at = 0; at < m_selection.size(); ++at) {
    if (!before.isThere(at)) m_selection.setThere(at, false);
  }
  recount();
  if (std::ranges::find(m_renamed, group) == m_renamed.end()) m_renamed.push_back(group);
  groupChanged(m_groups[group]);
  Q_EMIT selectionChanged();
}

// A name is remembered once files moved under it.
void OrganizeModel::learn(const Proposal& proposal, const RunReport& report) {
  auto learned = filledGroups(proposal, m_renamed, report);
  if (learned.empty()) return;
  m_learnedName = proposal.groups()[learned.back()].name;
  for (const auto& kind : kindsIn(proposal, learned.back())) {
    m_learnedKinds += (m_learnedKinds.isEmpty() ? QString() : QStringLiteral(", ")) + shownName(kind);
  }
  m_searchQueue.post([this, proposal, learned = std::move(learned)](const std::stop_token&) {
    try {
      rememberNames(services().tasks, proposal, learned);
    } catch (const std::exception& error) {
      qWarning("The name cannot be remembered: %s", error.what());
    }
  });
  Q_EMIT learnedChanged();
}

QString OrganizeModel::learned() const {
  if (m_learnedKinds.isEmpty()) return {};
  return localizedText("organize.learned").arg(m_learnedKinds, shownName(m_learnedName));
}

void OrganizeModel::forgetLearned() {
  m_learnedKinds.clear();
  Q_EMIT learnedChanged();
  m_searchQueue.post([this](const std::stop_token&) {
    try {
      forgetNames(services().tasks);
    } catch (const std::exception& error) {
      qWarning("The preferences cannot be written: %s", error.what());
    }
  });
}

void OrganizeModel::keep(int row) {
  const auto line = lineAt(row);
  if (!line.row || isWorking()) return;
  keepInBackground(m_proposal.row(*line.row).item.url(), [this, at = *line.row, generation = m_generation] {
    if (generation != m_generation) return;
    m_selection.setThere(at, false);
    recount();
    if (m_rows > 0) Q_EMIT dataChanged(index(0), index(m_rows - 1));
    Q_EMIT selectionChanged();
  });
}

QString OrganizeModel::placeAt(int row) const {
  const auto line = lineAt(row);
  return line.row ? placeText(m_proposal.row(*line.row).item.url()) : QString();
}

// --- carrying out

void OrganizeModel::apply() {
  if (m_selection.count() == 0 || m_isSearching) return;
  startRun(m_proposal.approve(m_selection), [this](const RunReport& report) {
    learn(m_proposal, report);
    setProposal({});
    m_hasAnalyzed = false;
    Q_EMIT searchChanged();
  });
}

QString OrganizeModel::movedText(std::int64_t count, std::int64_t /*bytes*/) const {
  return countedText("organize.result", count);
}

void OrganizeModel::languageChanged() {
  RunModel::languageChanged();
  Q_EMIT learnedChanged();
  Q_EMIT searchChanged();
}

}  // namespace orvane
