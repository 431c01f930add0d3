#include "app/DuplicatesModel.h"

#include "app/Format.h"
#include "app/PictureProvider.h"
#include "app/Places.h"
#include "app/Text.h"
#include "core/base/UnicodeText.h"
#include "core/duplicates/DuplicateCleaner.h"
#include "core/duplicates/DuplicateFinderEngine.h"
#include "core/platform/Desktop.h"

#include <QDebug>
#include <QUrl>

#include <algorithm>
#include <array>
#include <utility>

namespace orvane {
namespace {

constexpr std::array<std::string_view, 11> pictureExtensions{"bmp", "gif", "heic", "ico",  "jpeg", "jpg",
                                                             "png", "svg", "tif",  "tiff", "webp"};

bool isPicture(const FileUrl& url) {
  const auto extension = lowercased(url.pathExtension());
  return std::find(pictureExtensions.begin(), pictureExtensions.end(), extension) != pictureExtensions.end();
}

// Caches and what developers' tools keep are full of copies that belong there.
constexpr std::array<std::string_view, 2> leftOutParts{"Library/Caches", "Library/Developer"};

std::vector<FileUrl> searchableFolders(FileAccessService& access) {
  auto folders = existingFolders(access);
  std::erase_if(folders, [](const FileUrl& folder) {
    return std::any_of(leftOutParts.begin(), leftOutParts.end(),
                       [&](std::string_view part) { return folder.path().find(part) != std::string::npos; });
  });
  return folders;
}

template <typename Container>
bool has(const Container& container, const typename Container::key_type& key) {
  return container.find(key) != container.end();
}

}  // namespace

DuplicatesModel::DuplicatesModel(WindowServices services, SectionServices sections, QObject* parent)
    : RunModel(std::move(services), parent), m_sections(std::move(sections)) {
  reloadRoots();
}

DuplicatesModel::~DuplicatesModel() {
  m_searchStop.request_stop();
}

void DuplicatesModel::reloadRoots() {
  m_searchQueue.post([this](const std::stop_token&) {
    callOn(this, [this, roots = searchableFolders(services().folders)] {
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
  if (isIncluded) {
    m_leftOut.erase(*root);
  } else {
    m_leftOut.insert(*root);
  }
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
  m_searchQueue.post([this, leftOut = m_leftOut, strategy = m_strategy,
                      stop = m_searchStop.get_token()](const std::stop_token&) {
    auto roots = searchableFolders(services().folders);
    std::erase_if(roots, [&](const FileUrl& root) { return has(leftOut, root); });
    const auto progress = [this](const DuplicateProgress& now) { callOn(this, [this, now] { noteProgress(now); }); };
    const auto groups = std::make_shared<std::vector<DuplicateGroup>>(
        m_sections.finder.findDuplicates(roots, strategy, stop, progress));
    callOn(this, [this, groups, roots, isStopped = stop.stop_requested()] {
      m_isSearching = false;
      if (!isStopped) {
        m_hasSearched = true;
        m_searchedRoots = roots;
        setGroups(std::move(*groups));
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

void DuplicatesModel::setGroups(std::vector<DuplicateGroup> groups) {
  beginResetModel();
  m_groups.clear();
  for (auto& group : groups) {
    // The strategy may have been chosen anew while the search went on.
    group.applyKeepStrategy(m_strategy);
    m_groups.push_back({.group = std::move(group)});
  }
  layOut();
  endResetModel();
  Q_EMIT selectionChanged();
}

void DuplicatesModel::layOut() {
  m_rows = 0;
  m_selectedCount = 0;
  m_selectedBytes = 0;
  for (auto& shown : m_groups) {
    shown.start = m_rows;
    m_rows += 1 + (shown.isExpanded ? static_cast<int>(shown.group.items.size()) : 0);
    m_selectedBytes += shown.group.selectedWastedBytes();
    m_selectedCount += std::count_if(shown.group.items.begin(), shown.group.items.end(),
                                     [](const FileItem& item) { return item.isSelected(); });
  }
}

void DuplicatesModel::setKeepStrategy(int strategy) {
  if (strategy < 0 || strategy >= static_cast<int>(allDuplicateKeepStrategies.size()) || strategy == keepStrategy()) {
    return;
  }
  m_strategy = static_cast<DuplicateKeepStrategy>(strategy);
  for (auto& shown : m_groups) shown.group.applyKeepStrategy(m_strategy);
  layOut();
  if (m_rows > 0) Q_EMIT dataChanged(index(0), index(m_rows - 1));
  Q_EMIT keepStrategyChanged();
  Q_EMIT selectionChanged();
}

// --- rows

DuplicatesModel::Place DuplicatesModel::placeOf(int row) const {
  if (row < 0 || row >= m_rows) return {};
  const auto after = std::upper_bound(m_groups.begin(), m_groups.end(), row,
                                      [](int value, const Shown& shown) { return value < shown.start; });
  const auto at = std::prev(after);
  const auto group = static_cast<std::size_t>(at - m_groups.begin());
  if (row == at->start) return {&*at, nullptr, group};
  return {&*at, &at->group.items[static_cast<std::size_t>(row - at->start - 1)], group};
}

int DuplicatesModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : m_rows;
}

QHash<int, QByteArray> DuplicatesModel::roleNames() const {
  return {
      {KindRole, "kind"},           {NameRole, "name"},
      {PlaceRole, "place"},         {CopiesRole, "copies"},
      {BytesRole, "bytes"},         {FreedRole, "freed"},
      {DateRole, "date"},           {CheckStateRole, "checkState"},
      {IsKeptRole, "isKept"},       {ThumbnailRole, "thumbnail"},
      {SymbolRole, "symbol"},       {ExpandedRole, "expanded"},
      {CanToggleRole, "canToggle"},
  };
}

QVariant DuplicatesModel::data(const QModelIndex& index, int role) const {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
  const auto place = placeOf(index.row());
  if (role == KindRole) return place.item != nullptr ? Copy : Header;
  return place.item != nullptr ? copyData(*place.item, role) : groupData(*place.shown, role);
}

QVariant DuplicatesModel::groupData(const Shown& shown, int role) const {
  const auto& group = shown.group;
  const auto& first = group.items.front().url();
  switch (role) {
    case Qt::DisplayRole:
    case NameRole:
      return shownName(first.lastPathComponent());
    case CopiesRole:
      return static_cast<double>(group.items.size());
    case BytesRole:
      return static_cast<double>(group.fileSize);
    case FreedRole:
      return static_cast<double>(group.selectedWastedBytes());
    case DateRole:
      return 0.0;
    case CheckStateRole:
      return -1;
    case ThumbnailRole:
      return isPicture(first) ? pictureSource(thumbnailProvider, first) : QString();
    case SymbolRole:
      return isPicture(first) ? QStringLiteral("picture") : QStringLiteral("file");
    case ExpandedRole:
      return shown.isExpanded;
    case IsKeptRole:
    case CanToggleRole:
      return false;
    case PlaceRole:
      return QString();
    default:
      return {};
  }
}

QVariant DuplicatesModel::copyData(const FileItem& item, int role) const {
  switch (role) {
    case Qt::DisplayRole:
    case NameRole:
      return shownName(item.url().lastPathComponent());
    case PlaceRole:
      return shownPlace(item.url(), services().home);
    case BytesRole:
      return 0.0;
    case DateRole:
      return milliseconds(item.createdDate());
    case CheckStateRole:
      if (!isSelectable(item.riskLabel())) return -1;
      return static_cast<int>(item.isSelected() ? Qt::Checked : Qt::Unchecked);
    case IsKeptRole:
      return !item.isSelected();
    case SymbolRole:
      return isPicture(item.url()) ? QStringLiteral("picture") : QStringLiteral("file");
    case CanToggleRole:
      return isSelectable(item.riskLabel());
    case CopiesRole:
    case FreedRole:
      return 0.0;
    case ThumbnailRole:
      return QString();
    case ExpandedRole:
      return false;
    default:
      return {};
  }
}

void DuplicatesModel::toggleExpanded(int row) {
  const auto place = placeOf(row);
  if (place.shown == nullptr || place.item != nullptr) return;
  auto& shown = m_groups[place.group];
  const int count = static_cast<int>(shown.group.items.size());
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

// --- selection

void DuplicatesModel::setRefusal(std::string_view key) {
  if (key.empty() && m_refusalKey.empty()) return;
  m_refusalKey = key;
  Q_EMIT refusalChanged();
}

QString DuplicatesModel::refusal() const {
  return m_refusalKey.empty() ? QString() : localizedText(m_refusalKey);
}

void DuplicatesModel::toggle(int row) {
  const auto place = placeOf(row);
  if (place.item == nullptr || isWorking()) return;
  const auto id = place.item->id();
  const bool isWanted = !place.item->isSelected();
  if (!isSelectable(place.item->riskLabel())) return setRefusal("duplicates.protected");
  auto& group = m_groups[place.group].group;
  group.setSelection(id, isWanted);
  layOut();
  const auto& shown = m_groups[place.group];
  Q_EMIT dataChanged(index(shown.start), index(shown.start + static_cast<int>(group.items.size())));
  Q_EMIT selectionChanged();
  // The group itself decides; whether it did shows in the item.
  const auto isNow = placeOf(row).item->isSelected();
  setRefusal(isNow == isWanted ? "" : "duplicates.keep_one");
}

void DuplicatesModel::openContainingFolder(int row) {
  const auto place = placeOf(row);
  if (place.shown == nullptr) return;
  const auto& item = place.item != nullptr ? *place.item : place.shown->group.items.front();
  postWork([services = services(), url = item.url()](const std::stop_token&) {
    if (!services.desktop.reveal(url)) qWarning("No file manager could be started.");
  });
}

// --- cleaning

void DuplicatesModel::cleanSelected() {
  if (m_selectedCount == 0 || m_isSearching || m_searchedRoots.empty()) return;
  std::vector<DuplicateGroup> groups;
  for (const auto& shown : m_groups) groups.push_back(shown.group);
  const auto moved = std::make_shared<std::set<Uuid>>();
  startRun(
      m_selectedCount,
      [sections = m_sections, groups = std::move(groups), roots = m_searchedRoots, moved](const RunProgress& progress,
                                                                                          const std::stop_token& stop) {
        const auto cleanup = sections.duplicateCleaner().clean(groups, Boundary(roots), progress, stop);
        auto report = reportOf(cleanup.runId.value_or(Uuid()), cleanup.outcomes);
        std::set<FileUrl> places;
        for (const auto& outcome : cleanup.outcomes) {
          if (outcome.result == MoveResult::moved) places.insert(outcome.source);
        }
        for (const auto& group : groups) {
          for (const auto& item : group.items) {
            if (places.contains(item.url())) moved->insert(item.id());
          }
        }
        return report;
      },
      [this, moved](const RunReport&) { removeMoved(*moved); });
}

void DuplicatesModel::removeMoved(const std::set<Uuid>& moved) {
  if (moved.empty()) return;
  auto before = std::make_shared<std::vector<Shown>>(m_groups);
  beginResetModel();
  for (auto& shown : m_groups) {
    std::erase_if(shown.group.items, [&](const FileItem& item) { return moved.contains(item.id()); });
  }
  // What has no second copy is no duplicate any more.
  std::erase_if(m_groups, [](const Shown& shown) { return shown.group.items.size() < 2; });
  layOut();
  endResetModel();
  Q_EMIT selectionChanged();
  setLookAfterUndo([this, before]() -> std::function<void()> {
    return [this, before] {
      beginResetModel();
      m_groups = *before;
      layOut();
      endResetModel();
      Q_EMIT selectionChanged();
    };
  });
}

QString DuplicatesModel::movedText(std::int64_t count, std::int64_t bytes) const {
  return countedText("duplicates.result", count).arg(Format::bytes(static_cast<double>(bytes)));
}

QString DuplicatesModel::failureText(const MoveOutcome& failure) const {
  if (failure.source.path().empty()) return RunModel::failureText(failure);
  return localizedText("duplicates.failed_item")
      .arg(shownName(failure.source.lastPathComponent()), textFrom(failure.error));
}

void DuplicatesModel::languageChanged() {
  RunModel::languageChanged();
  Q_EMIT refusalChanged();
}

}  // namespace orvane
