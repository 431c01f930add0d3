#include "app/cleanup/CleanupModel.h"

#include "app/cleanup/CleanupFilters.h"
#include "app/cleanup/CleanupText.h"
#include "app/common/Places.h"
#include "app/common/Text.h"
#include "app/shell/AppState.h"
#include "core/base/files/FileStatus.h"
#include "core/platform/Desktop.h"
#include "core/scanning/records/RiskEvaluator.h"
#include "core/tasks/CleanTask.h"
#include "core/tasks/History.h"

#include <QDebug>

#include <algorithm>
#include <array>
#include <chrono>
#include <utility>

namespace orvane {
namespace {

constexpr int colorCount = 10;
constexpr std::chrono::milliseconds countInterval{40};

}  // namespace

CleanupModel::CleanupModel(WindowServices services, AppState& state, QObject* parent)
    : RunModel(std::move(services), parent),
      m_state(state),
      m_items(state.scannedItems()),
      m_arranger({.ask = [this]() -> CleanupArranger::Question {
                    return {m_items.snapshot(), m_query};
                  },
                  .isGrowing = [this] { return m_state.isScanning(); },
                  .show = [this](CleanupArrangement arrangement) { show(std::move(arrangement)); }}) {
  m_countTimer.setSingleShot(true);
  connect(&m_countTimer, &QTimer::timeout, this, &CleanupModel::tellCounts);
  connect(&m_items, &ScannedItems::begun, this, [this] {
    m_selection.clear();
    setLookAfterUndo({});
    ++m_generation;
    m_arranger.forget();
    m_scanStart = ReferenceClock::now();
    show({});
  });
  connect(&m_items, &ScannedItems::appended, this, &CleanupModel::takeItems);
  connect(&m_items, &ScannedItems::presenceChanged, &m_arranger, &CleanupArranger::arrange);
  connect(&m_state, &AppState::scanFinished, this, [this] {
    if (m_countTimer.isActive()) tellCounts();
    m_arranger.arrange();
  });
  connect(&m_state, &AppState::summaryChanged, this, &CleanupModel::freeBytesChanged);
  connect(this, &CleanupModel::selectionChanged, this, &CleanupModel::freeBytesChanged);
}

double CleanupModel::itemCount() const {
  return static_cast<double>(m_items.count());
}
double CleanupModel::currentFreeBytes() const {
  return m_state.freeBytes();
}
double CleanupModel::projectedFreeBytes() const {
  return m_state.freeBytes() + selectedBytes();
}

// --- rows

int CleanupModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : m_rows;
}

QHash<int, QByteArray> CleanupModel::roleNames() const {
  return {
      {KindRole, "kind"},
      {NameRole, "name"},
      {PlaceRole, "place"},
      {ReasonRole, "reason"},
      {RiskRole, "risk"},
      {DateRole, "date"},
      {BytesRole, "bytes"},
      {CheckStateRole, "checkState"},
      {ColorIndexRole, "colorIndex"},
      {CountRole, "count"},
      {ExpandedRole, "expanded"},
      {CloudWarningRole, "cloudWarning"},
      {IsFolderRole, "isFolder"},
      {CategoryRole, "category"},
      {LockReasonRole, "lockReason"},
  };
}

QVariant CleanupModel::data(const QModelIndex& index, int role) const {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
  const auto line = m_sections.lineAt(index.row());
  if (!line) return {};
  if (role == KindRole) return line->item ? Item : Header;
  if (role == ColorIndexRole) return static_cast<int>(CleanupSections::indexOf(line->category)) % colorCount;
  if (role == CategoryRole) return textFrom(rawValue(line->category));
  return line->item ? itemData(*line->item, role) : sectionData(line->category, role);
}

QVariant CleanupModel::sectionData(ScanCategory category, int role) const {
  const auto& section = m_sections.of(category);
  switch (role) {
    case Qt::DisplayRole:
    case NameRole:
      return localizedText("category." + std::string(rawValue(category)));
    case RiskRole:
      return static_cast<int>(defaultRisk(category));
    case BytesRole:
      return static_cast<double>(section.shown.bytes);
    case CountRole:
      return static_cast<double>(section.shown.items.size());
    case CheckStateRole:
      return checkStateOf(section);
    case ExpandedRole:
      return section.isExpanded;
    case DateRole:
      return 0.0;
    case IsFolderRole:
      return true;
    case PlaceRole:
    case ReasonRole:
    case CloudWarningRole:
    case LockReasonRole:
      return QString();
    default:
      return {};
  }
}

QVariant CleanupModel::itemData(std::uint32_t index, int role) const {
  const auto& item = m_items.items().item(index);
  switch (role) {
    case Qt::DisplayRole:
    case NameRole:
      return shownName(item.url().lastPathComponent());
    case PlaceRole:
      return shownPlace(item.url(), services().tasks.home);
    case ReasonRole:
      return reasonText(services().tasks, item);
    case RiskRole:
      return static_cast<int>(item.riskLabel());
    case DateRole:
      return milliseconds(item.lastModifiedDate());
    case BytesRole:
      return static_cast<double>(item.fileSize());
    case CountRole:
      return 1.0;
    case CheckStateRole:
      if (!m_selection.isSelectable(index)) return -1;
      return static_cast<int>(m_selection.isSelected(index) ? Qt::Checked : Qt::Unchecked);
    case ExpandedRole:
      return false;
    case CloudWarningRole:
      return cloudText(item, services().tasks.home);
    case IsFolderRole:
      return item.isFolder();
    case LockReasonRole:
      return lockText(item);
    default:
      return {};
  }
}

int CleanupModel::checkStateOf(const Section& section) const {
  if (section.selectable == 0) return -1;
  if (section.selected.count == 0) return Qt::Unchecked;
  return section.selected.count == section.selectable ? Qt::Checked : Qt::PartiallyChecked;
}

QString CleanupModel::explanation(int row) const {
  const auto line = m_sections.lineAt(row);
  if (!line) return {};
  if (!line->item) {
    return localizedText("risk." + std::string(rawValue(defaultRisk(line->category))) + ".desc");
  }
  const auto& item = m_items.items().item(*line->item);
  QStringList lines{reasonText(services().tasks, item), labelText(item)};
  if (const auto cloud = cloudText(item, services().tasks.home); !cloud.isEmpty()) lines += cloud;
  return lines.join(u'\n');
}

// --- search, order and filters

QString CleanupModel::searchText() const {
  return textFrom(m_query.searchText);
}
void CleanupModel::setSearchText(const QString& text) {
  auto query = m_query;
  query.searchText = text.trimmed().toStdString();
  changeQuery(query);
}

CleanupModel::Sort CleanupModel::sort() const noexcept {
  return static_cast<Sort>(m_query.order);
}
void CleanupModel::setSort(Sort sort) {
  auto query = m_query;
  query.order = static_cast<CleanupOrder>(sort);
  changeQuery(query);
}

void CleanupModel::setReversed(bool isReversed) {
  auto query = m_query;
  query.isReversed = isReversed;
  changeQuery(query);
}

void CleanupModel::sortBy(int sort) {
  if (sort < Size || sort > LastUse) return;
  auto query = m_query;
  const auto order = static_cast<CleanupOrder>(sort);
  query.isReversed = query.order == order && !query.isReversed;
  query.order = order;
  changeQuery(query);
}

int CleanupModel::riskFilter() const noexcept {
  return m_query.risk ? static_cast<int>(*m_query.risk) : -1;
}
void CleanupModel::setRiskFilter(int risk) {
  auto query = m_query;
  const bool isRisk = risk >= 0 && risk < static_cast<int>(allRiskLabels.size());
  query.risk = isRisk ? std::optional(static_cast<RiskLabel>(risk)) : std::nullopt;
  changeQuery(query);
}

QString CleanupModel::categoryFilter() const {
  return m_query.category ? textFrom(rawValue(*m_query.category)) : QString();
}
void CleanupModel::setCategoryFilter(const QString& category) {
  auto query = m_query;
  query.category = scanCategoryFromRawValue(category.toStdString());
  changeQuery(query);
}

QString CleanupModel::folderFilter() const {
  return textFrom(m_query.folder);
}
void CleanupModel::setFolderFilter(const QString& folder) {
  auto query = m_query;
  query.folder = folder.toStdString();
  changeQuery(query);
}

QVariantList CleanupModel::filters() const {
  return filterChips(m_query, services().tasks.home);
}

void CleanupModel::removeFilter(Filter filter) {
  changeQuery(withoutFilter(m_query, static_cast<CleanupFilter>(filter)));
}

void CleanupModel::clearFilters() {
  changeQuery(withoutFilters(m_query));
}

void CleanupModel::showOnly(const QString& category, const QString& folder) {
  CleanupQuery query;
  query.order = m_query.order;
  query.category = scanCategoryFromRawValue(category.toStdString());
  query.folder = folder.toStdString();
  if (query.category) m_sections.of(*query.category).isExpanded = true;
  changeQuery(query);
}

void CleanupModel::showInside(const FileUrl& folder) {
  CleanupQuery query;
  query.order = m_query.order;
  query.inside = folder.path();
  for (const auto category : allScanCategories) m_sections.of(category).isExpanded = true;
  changeQuery(query);
}

void CleanupModel::changeQuery(const CleanupQuery& query) {
  if (query == m_query) return;
  m_query = query;
  Q_EMIT queryChanged();
  m_arranger.arrangeAnew();
}

void CleanupModel::takeItems(std::size_t first) {
  m_items.items().forEachFrom(first, [this](std::size_t, const FileItem& item) {
    m_selection.append(scannedMark(item).choice, item.fileSize());
    return true;
  });
  // Everything that shows a count is worked out again then: once a frame will do.
  if (!m_countTimer.isActive()) m_countTimer.start(countInterval);
  m_arranger.arrangeLater();
}

void CleanupModel::tellCounts() {
  m_countTimer.stop();
  Q_EMIT countsChanged();
  Q_EMIT selectionChanged();
}

// Rows are not followed from their old place to their new one: the list keeps its position, and reads anew what it
// shows. Telling a million moves would block it.
void CleanupModel::show(CleanupArrangement arrangement) {
  const int rows = m_sections.rowsWith(arrangement);
  const int before = m_rows;
  if (rows > before) beginInsertRows({}, before, rows - 1);
  if (rows < before) beginRemoveRows({}, rows, before - 1);
  m_sections.take(std::move(arrangement));
  m_sections.recount(m_selection, m_items.items());
  m_rows = rows;
  if (rows > before) endInsertRows();
  if (rows < before) endRemoveRows();
  if (const int both = std::min(rows, before); both > 0) Q_EMIT dataChanged(index(0), index(both - 1));
  Q_EMIT countsChanged();
  Q_EMIT selectionChanged();
}

// --- selection

void CleanupModel::refreshChecks() {
  m_sections.recount(m_selection, m_items.items());
  if (m_rows > 0) Q_EMIT dataChanged(index(0), index(m_rows - 1), {CheckStateRole});
  Q_EMIT selectionChanged();
}

void CleanupModel::toggle(int row) {
  const auto line = m_sections.lineAt(row);
  if (!line || isWorking()) return;
  auto& section = m_sections.of(line->category);
  const auto whether = [](bool isSelected) {
    return isSelected ? Selection::Whether::selected : Selection::Whether::unselected;
  };
  if (!line->item) {
    const bool select = section.selected.count < section.selectable;
    for (const auto index : section.shown.items) m_selection.set(index, whether(select));
    return refreshChecks();
  }
  if (!m_selection.isSelectable(*line->item)) return;
  const bool isSelected = m_selection.isSelected(*line->item);
  m_selection.set(*line->item, whether(!isSelected));
  m_sections.countToggled(line->category, !isSelected, m_items.items().item(*line->item).fileSize());
  Q_EMIT dataChanged(index(row), index(row), {CheckStateRole});
  const auto header = index(m_sections.headerRow(line->category));
  Q_EMIT dataChanged(header, header, {CheckStateRole});
  Q_EMIT selectionChanged();
}

void CleanupModel::toggleExpanded(int row) {
  const auto line = m_sections.lineAt(row);
  if (!line || line->item) return;
  auto& section = m_sections.of(line->category);
  const int count = static_cast<int>(section.shown.items.size());
  if (section.isExpanded) {
    beginRemoveRows({}, row + 1, row + count);
    section.isExpanded = false;
    m_rows -= count;
    endRemoveRows();
  } else {
    beginInsertRows({}, row + 1, row + count);
    section.isExpanded = true;
    m_rows += count;
    endInsertRows();
  }
  Q_EMIT dataChanged(index(row), index(row), {ExpandedRole});
}

void CleanupModel::selectRange(int from, int to) {
  if (isWorking()) return;
  for (int row = std::max(0, std::min(from, to)); row <= std::min(m_rows - 1, std::max(from, to)); ++row) {
    const auto line = m_sections.lineAt(row);
    if (line && line->item) m_selection.set(*line->item, Selection::Whether::selected);
  }
  refreshChecks();
}

void CleanupModel::selectAll() {
  if (isWorking()) return;
  m_sections.forEachItem([this](std::uint32_t index) { m_selection.set(index, Selection::Whether::selected); });
  refreshChecks();
}

void CleanupModel::selectRecommended() {
  if (isWorking()) return;
  m_selection.selectProposed();
  refreshChecks();
}

void CleanupModel::deselectAll() {
  if (isWorking()) return;
  m_selection.deselectAll();
  refreshChecks();
}

// --- cleaning and undoing

void CleanupModel::cleanSelected() {
  clean(m_selection);
}

void CleanupModel::cleanShown() {
  auto shown = m_selection;
  shown.deselectAll();
  m_sections.forEachItem([&](std::uint32_t index) {
    if (m_selection.isSelected(index)) shown.set(index, Selection::Whether::selected);
  });
  clean(shown);
}

void CleanupModel::clean(const Selection& selection) {
  if (isWorking() || selection.count() == 0) return;
  startRun(
      selection.count(),
      [proposal = proposeScanned(services().tasks, m_items.items(), m_items.folders(), m_scanStart), selection] {
        return proposal.approve(selection);
      },
      [this, generation = m_generation](const RunReport& report) { takeOut(report, generation); });
}

void CleanupModel::takeOut(const RunReport& report, int generation) {
  if (generation != m_generation) return;
  const auto moved = movedRows(report);
  auto gone = missingRows(report);
  gone.insert(gone.end(), moved.begin(), moved.end());
  if (gone.empty()) return;
  for (const auto index : gone) m_selection.setThere(index, false);
  m_items.setPresence(gone, ScannedItems::Presence::gone);
  refreshChecks();
  setLookAfterUndo([this, items = m_items.items(), moved, generation]() -> std::function<void()> {
    // One whose place was taken came back under another name; it is found again by the next scan.
    std::vector<std::uint32_t> back;
    std::copy_if(moved.begin(), moved.end(), std::back_inserter(back),
                 [&](std::uint32_t index) { return itemExists(items.item(index).url().path().c_str()); });
    return [this, back = std::move(back), generation] { takeBack(back, generation); };
  });
}

void CleanupModel::followJournal() {
  // The model knows its own moves best.
  if (isWorking() || m_items.items().size() == 0) return;
  m_journalQueue.post([this, services = services(), scanned = m_items.snapshot(), since = m_scanStart,
                       generation = m_generation](const std::stop_token&) {
    const auto moved = movedSince(services.tasks, scanned.items, scanned.gone, since);
    if (moved.gone.empty() && moved.back.empty()) return;
    callOn(this, [this, moved, generation] {
      if (generation != m_generation || isWorking()) return;
      for (const auto index : moved.gone) m_selection.setThere(index, false);
      m_items.setPresence(moved.gone, ScannedItems::Presence::gone);
      takeBack(moved.back, generation);
    });
  });
}

void CleanupModel::takeBack(const std::vector<std::uint32_t>& back, int generation) {
  if (generation != m_generation) return;
  for (const auto index : back) m_selection.setThere(index, true);
  m_items.setPresence(back, ScannedItems::Presence::there);
  refreshChecks();
}

QString CleanupModel::placeAt(int row) const {
  const auto line = m_sections.lineAt(row);
  return line && line->item ? placeText(m_items.items().item(*line->item).url()) : QString();
}

void CleanupModel::openContainingFolder(int row) {
  const auto line = m_sections.lineAt(row);
  if (!line || !line->item) return;
  postWork([services = services(), url = m_items.items().item(*line->item).url()](const std::stop_token&) {
    if (!services.desktop.reveal(url)) qWarning("No file manager could be started.");
  });
}

void CleanupModel::keep(int row) {
  const auto line = m_sections.lineAt(row);
  if (!line || !line->item || isWorking()) return;
  const auto at = *line->item;
  const auto& item = m_items.items().item(at);
  keepInBackground(item.url(), [this, at, bytes = item.fileSize(), generation = m_generation] {
    if (generation != m_generation) return;
    m_selection.setThere(at, false);
    m_items.setPresence(std::array{at}, ScannedItems::Presence::gone);
    m_state.addKept(bytes);
    refreshChecks();
  });
}

void CleanupModel::languageChanged() {
  if (m_rows > 0) {
    Q_EMIT dataChanged(index(0), index(m_rows - 1),
                       {Qt::DisplayRole, NameRole, ReasonRole, CloudWarningRole, LockReasonRole});
  }
  Q_EMIT queryChanged();
  RunModel::languageChanged();
}

}  // namespace orvane
