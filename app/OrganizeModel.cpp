#include "app/OrganizeModel.h"

#include "app/Places.h"
#include "app/Text.h"
#include "core/base/UnicodeText.h"
#include "core/organizer/CategoryPreferencesStore.h"
#include "core/organizer/FolderOrganizerEngine.h"
#include "core/organizer/TopicCategorizerFactory.h"
#include "core/organizer/TopicGrouping.h"

#include <QDebug>

#include <algorithm>
#include <exception>
#include <set>
#include <utility>

namespace orvane {
namespace {

// How deep the picker looks for subfolders.
constexpr int subfolderDepth = 2;

// "pdf, txt": the kinds of files that a name is remembered for.
std::string kindsIn(const OrganizationCategoryGroup& group) {
  std::set<std::string> kinds;
  for (const auto& move : group.moves) {
    if (!move.isDirectory) kinds.insert(lowercased(move.originalURL.pathExtension()));
  }
  kinds.erase("");
  std::string result;
  for (const auto& kind : kinds) result += (result.empty() ? "" : ", ") + kind;
  return result;
}

int checkStateOf(const OrganizationCategoryGroup& group) {
  const auto selected =
      std::count_if(group.moves.begin(), group.moves.end(), [](const ProposedMove& move) { return move.isSelected; });
  if (selected == 0) return Qt::Unchecked;
  return selected == static_cast<std::ptrdiff_t>(group.moves.size()) ? Qt::Checked : Qt::PartiallyChecked;
}

}  // namespace

OrganizeModel::OrganizeModel(WindowServices services, SectionServices sections, QObject* parent)
    : RunModel(std::move(services), parent), m_sections(std::move(sections)) {
  reloadFolders();
  m_searchQueue.post([this](const std::stop_token&) {
    callOn(this, [this, hasModel = m_sections.topics.isOnDeviceModelAvailable()] {
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
    callOn(this, [this, folders = existingFolders(services().folders)] {
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
  return m_destination ? *m_destination : FolderOrganizerEngine::defaultDestination(*m_folder);
}
QString OrganizeModel::destination() const {
  return m_folder ? placeText(destinationRoot()) : QString();
}
QString OrganizeModel::destinationName() const {
  return m_folder ? shownName(destinationRoot().lastPathComponent()) : QString();
}
QVariantList OrganizeModel::managedFolders() const {
  return folderList(m_managedFolders);
}

void OrganizeModel::invalidate() {
  m_searchStop.request_stop();
  m_hasAnalyzed = false;
  m_learnedKinds.clear();
  setGroups({});
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
    const auto found = m_sections.organizer.discoverSubfolders(folder, subfolderDepth);
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
  m_searchQueue.post([this, folder = *m_folder, root = destinationRoot(), strategy = m_strategy,
                      looked = startLooking(), isByTopic = m_useTopics && topicsAvailable(),
                      subfolders = m_includeSubfolders ? Subfolders::include : Subfolders::keepWhole,
                      stop = m_searchStop.get_token()](const std::stop_token&) {
    const auto found = std::make_shared<std::vector<OrganizationCategoryGroup>>(
        m_sections.organizer.analyzeFolder(folder, root, subfolders, strategy, stop, looked.get()));
    auto* categorizer = isByTopic && !stop.stop_requested() ? m_sections.topics.categorizer() : nullptr;
    if (categorizer != nullptr) {
      callOn(this, [this] {
        m_isNamingTopics = true;
        Q_EMIT progressChanged();
      });
      *found = groupedByTopic(std::move(*found), root, *categorizer, stop);
    }
    callOn(this, [this, found, isStopped = stop.stop_requested()] {
      m_isSearching = false;
      m_isNamingTopics = false;
      stopLooking();
      if (!isStopped) {
        m_hasAnalyzed = true;
        setGroups(std::move(*found));
      }
      Q_EMIT searchChanged();
    });
  });
}

void OrganizeModel::cancel() {
  m_searchStop.request_stop();
  RunModel::cancel();
}

void OrganizeModel::setGroups(std::vector<OrganizationCategoryGroup> groups) {
  beginResetModel();
  m_groups.clear();
  for (auto& group : groups) m_groups.push_back({.group = std::move(group)});
  layOut();
  endResetModel();
  Q_EMIT selectionChanged();
}

std::vector<OrganizationCategoryGroup> OrganizeModel::groups() const {
  std::vector<OrganizationCategoryGroup> result;
  for (const auto& shown : m_groups) result.push_back(shown.group);
  return result;
}

void OrganizeModel::layOut() {
  m_rows = 0;
  m_moveCount = 0;
  m_selectedCount = 0;
  m_selectedBytes = 0;
  for (auto& shown : m_groups) {
    shown.start = m_rows;
    m_rows += 1 + (shown.isExpanded ? static_cast<int>(shown.group.moves.size()) : 0);
    m_moveCount += static_cast<std::int64_t>(shown.group.moves.size());
    m_selectedBytes += shown.group.totalSize();
    m_selectedCount += std::count_if(shown.group.moves.begin(), shown.group.moves.end(),
                                     [](const ProposedMove& move) { return move.isSelected; });
  }
}

// --- rows

OrganizeModel::Place OrganizeModel::placeOf(int row) const {
  if (row < 0 || row >= m_rows) return {};
  const auto after = std::upper_bound(m_groups.begin(), m_groups.end(), row,
                                      [](int value, const Shown& shown) { return value < shown.start; });
  const auto at = std::prev(after);
  const auto group = static_cast<std::size_t>(at - m_groups.begin());
  if (row == at->start) return {group, std::nullopt};
  return {group, static_cast<std::size_t>(row - at->start - 1)};
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
  };
}

QVariant OrganizeModel::data(const QModelIndex& index, int role) const {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
  const auto place = placeOf(index.row());
  const auto& shown = m_groups[*place.group];
  if (role == KindRole) return place.move ? Move : Header;
  return place.move ? moveData(shown.group.moves[*place.move], role) : groupData(shown, role);
}

QVariant OrganizeModel::groupData(const Shown& shown, int role) const {
  switch (role) {
    case Qt::DisplayRole:
    case NameRole:
      return shownName(shown.group.name);
    case BytesRole:
      return static_cast<double>(shown.group.totalSize());
    case CountRole:
      return static_cast<double>(shown.group.moves.size());
    case CheckStateRole:
      return checkStateOf(shown.group);
    case ExpandedRole:
      return shown.isExpanded;
    case IsFolderRole:
      return true;
    case SymbolRole:
      return QStringLiteral("folder");
    case FromRole:
    case ToRole:
      return QString();
    default:
      return {};
  }
}

QVariant OrganizeModel::moveData(const ProposedMove& move, int role) const {
  switch (role) {
    case Qt::DisplayRole:
    case NameRole:
      return shownName(move.originalURL.lastPathComponent());
    case FromRole:
      return shownName(move.sourceRelativePath);
    case ToRole:
      // Below the destination; where the name is taken, the free one.
      return shownName(move.categoryName + "/" + std::string(move.targetURL.lastPathComponent()));
    case BytesRole:
      return static_cast<double>(move.fileSize);
    case CountRole:
      return 1.0;
    case CheckStateRole:
      return static_cast<int>(move.isSelected ? Qt::Checked : Qt::Unchecked);
    case ExpandedRole:
      return false;
    case IsFolderRole:
      return move.isDirectory;
    case SymbolRole:
      return move.isDirectory ? QStringLiteral("folder") : QStringLiteral("file");
    default:
      return {};
  }
}

void OrganizeModel::toggleExpanded(int row) {
  const auto place = placeOf(row);
  if (!place.group || place.move) return;
  auto& shown = m_groups[*place.group];
  const int count = static_cast<int>(shown.group.moves.size());
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

void OrganizeModel::toggle(int row) {
  const auto place = placeOf(row);
  if (!place.group || isWorking()) return;
  auto& shown = m_groups[*place.group];
  if (place.move) {
    auto& move = shown.group.moves[*place.move];
    move.isSelected = !move.isSelected;
  } else {
    const bool isSelected = checkStateOf(shown.group) != Qt::Checked;
    for (auto& move : shown.group.moves) move.isSelected = isSelected;
  }
  layOut();
  const int last = shown.start + (shown.isExpanded ? static_cast<int>(shown.group.moves.size()) : 0);
  Q_EMIT dataChanged(index(shown.start), index(last), {CheckStateRole, BytesRole});
  Q_EMIT selectionChanged();
}

void OrganizeModel::selectAll(bool isSelected) {
  if (isWorking()) return;
  for (auto& shown : m_groups) {
    for (auto& move : shown.group.moves) move.isSelected = isSelected;
  }
  layOut();
  if (m_rows > 0) Q_EMIT dataChanged(index(0), index(m_rows - 1), {CheckStateRole, BytesRole});
  Q_EMIT selectionChanged();
}

void OrganizeModel::renameGroup(int row, const QString& name) {
  const auto place = placeOf(row);
  if (!place.group || place.move || isWorking()) return;
  const auto at = *place.group;
  auto renamed = FolderOrganizerEngine::renamingGroup(at, name.toStdString(), groups(), destinationRoot());
  if (at >= renamed.size() || renamed[at].name == m_groups[at].group.name) return;
  m_learnedKinds = kindsIn(renamed[at]);
  m_learnedName = renamed[at].name;
  m_searchQueue.post([this, group = renamed[at]](const std::stop_token&) {
    try {
      m_sections.organizer.rememberCategory(group);
    } catch (const std::exception& error) {
      qWarning("The name cannot be remembered: %s", error.what());
    }
  });
  m_groups[at].group = std::move(renamed[at]);
  const int last =
      m_groups[at].start + (m_groups[at].isExpanded ? static_cast<int>(m_groups[at].group.moves.size()) : 0);
  Q_EMIT dataChanged(index(row), index(last));
  Q_EMIT learnedChanged();
}

QString OrganizeModel::learned() const {
  if (m_learnedKinds.empty()) return {};
  return localizedText("organize.learned").arg(shownName(m_learnedKinds), shownName(m_learnedName));
}

void OrganizeModel::forgetLearned() {
  m_learnedKinds.clear();
  Q_EMIT learnedChanged();
  m_searchQueue.post([this](const std::stop_token&) {
    try {
      m_sections.learned.reset();
    } catch (const std::exception& error) {
      qWarning("The preferences cannot be written: %s", error.what());
    }
  });
}

// --- carrying out

void OrganizeModel::apply() {
  if (m_selectedCount == 0 || m_isSearching || !m_folder) return;
  startRun(
      m_selectedCount,
      [services = services(), sections = m_sections, groups = groups(), folder = *m_folder, root = destinationRoot()](
          const RunProgress& progress, const std::stop_token& stop) {
        const auto execution =
            sections.organizer.carryOut(groups, services.journal(), Boundary({folder, root}), progress, stop);
        return reportOf(execution.summary.batchId, execution.outcomes);
      },
      [this](const RunReport&) {
        setGroups({});
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
}

}  // namespace orvane
