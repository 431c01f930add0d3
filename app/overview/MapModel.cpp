#include "app/overview/MapModel.h"

#include "app/cleanup/CleanupModel.h"
#include "app/common/Places.h"
#include "app/common/ProgressPace.h"
#include "app/common/Text.h"
#include "app/duplicates/DuplicatesModel.h"
#include "app/organize/OrganizeModel.h"
#include "app/shell/AppState.h"
#include "core/base/files/FileDescriptor.h"
#include "core/base/text/Json.h"
#include "core/map/services/SnapshotStore.h"
#include "core/platform/Desktop.h"

#include <QDebug>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <system_error>
#include <utility>

namespace orvane {
namespace {

using Index = StorageMap::Index;

constexpr int areaColorCount = 10;
// The map tells the growth of a week.
constexpr std::chrono::days growthTime{7};
// Of the folders that explain the growth, so many are named.
constexpr std::size_t maxNamed = 3;
// A kind with less of it than this part explains nothing.
constexpr std::int64_t triflePart = 20;

// The first choice of a filter is all; the ages that a file can have end before `unknown`.
constexpr int agesOffered = static_cast<int>(allMapAges.size()) - 1;

template <typename Case>
int placeOfCase(const std::optional<Case>& chosen) noexcept {
  return chosen ? static_cast<int>(*chosen) + 1 : 0;
}
template <typename Case>
std::optional<Case> caseAt(int place, int count) noexcept {
  return place > 0 && place <= count ? std::optional(static_cast<Case>(place - 1)) : std::nullopt;
}

QString keyOf(std::string_view family, std::string_view name) {
  return textFrom(std::string(family) + '.' + std::string(name));
}

template <typename Cases, typename Name>
QStringList keysOf(const QString& all, std::string_view family, const Cases& cases, int count, Name name) {
  QStringList keys{all};
  for (const auto one : cases) {
    if (keys.size() <= count) keys.append(keyOf(family, name(one)));
  }
  return keys;
}

QVariantMap mapFrom(const MapArea& area, int color) {
  QVariantList children;
  for (const auto& part : area.parts) {
    if (part.kind != MapArea::Kind::rest) children.append(mapFrom(part, color));
  }
  const bool isFolder = area.kind == MapArea::Kind::folder;
  return {
      {"label", isFolder || !area.name.empty() ? shownName(area.name) : QString()},
      {"titleKey", area.kind == MapArea::Kind::rest ? QStringLiteral("map.other") : QString()},
      {"folder", area.folder == StorageMap::noFolder ? -1 : static_cast<int>(area.folder)},
      {"canEnter", isFolder && area.state != MapState::unreadable && area.state != MapState::otherFileSystem},
      {"canAct", area.kind != MapArea::Kind::rest},
      {"isReclaimable", area.state == MapState::reclaimable},
      {"bytes", static_cast<double>(area.bytes)},
      {"count", static_cast<double>(area.files)},
      {"colorIndex", color},
      {"stateKey", keyOf("map.state", mapStates[area.state].rawValue)},
      {"hasGrown", area.grownBytes.has_value()},
      {"grown", static_cast<double>(area.grownBytes.value_or(0))},
      {"children", children},
  };
}

}  // namespace

MapModel::MapModel(WindowServices services, Collaborators collaborators, QObject* parent)
    : QObject(parent), m_services(std::move(services)), m_collaborators(collaborators) {
  reloadChoice();
}

MapModel::~MapModel() {
  m_stop.request_stop();
}

// --- the walk

void MapModel::start(const QString& pathOrUrl) {
  auto folder = m_map && m_fileName.isEmpty() ? FileUrl(m_map->map.rootPath()) : m_services.tasks.home;
  if (const auto chosen = placeFrom(pathOrUrl)) folder = *chosen;
  begin(folder, {}, [this, folder](const TaskMonitor& monitor) {
    return mapFolder(m_collaborators.maps, folder, MapDetail::someFiles, ReferenceClock::now() - growthTime, monitor);
  });
}

void MapModel::openFile(const QString& pathOrUrl) {
  const auto file = placeFrom(pathOrUrl);
  if (!file) return;
  begin(*file, shownPath(file->path(), m_services.tasks.home), [this, file](const TaskMonitor& monitor) {
    const auto opened = openRegularFile(file->path());
    auto map = importMap(m_collaborators.maps, [&](std::span<char> place) {
      return monitor.stop.stop_requested() ? 0 : readSome(opened.get(), place);
    });
    return FolderMap{.map = std::move(map), .taken = ReferenceClock::now()};
  });
}

void MapModel::begin(const FileUrl& place, const QString& fileName, Work work) {
  if (m_isMapping) return;
  m_isMapping = true;
  m_filesSoFar = 0;
  m_placeSoFar.clear();
  m_problem.clear();
  m_stop = {};
  Q_EMIT workChanged();
  Q_EMIT progressChanged();
  m_queue.post([this, place, fileName, work = std::move(work), stop = m_stop.get_token()](const std::stop_token&) {
    ProgressPace pace;
    TaskMonitor monitor{.stop = stop};
    monitor.scanning = [&](const ScanProgress& now) {
      if (!pace.isDue(0, 1)) return;
      callOn(this, [this, files = static_cast<double>(now.itemsScanned),
                    current = shownPath(now.currentPath, m_services.tasks.home)] {
        m_filesSoFar = files;
        m_placeSoFar = current;
        Q_EMIT progressChanged();
      });
    };
    std::shared_ptr<const FolderMap> result;
    QString problem;
    const auto fail = [&](const std::string& why) {
      problem = shownPath(place.path(), m_services.tasks.home) + QStringLiteral(": ") + shownName(why);
    };
    try {
      if (auto map = work(monitor)) result = std::make_shared<const FolderMap>(*std::move(map));
    } catch (const std::system_error& error) {
      fail(error.code().message());
    } catch (const JsonError& error) {
      if (!stop.stop_requested()) fail(error.what());
    }
    for (const auto& notice : m_collaborators.maps.snapshots.takeNotices()) qWarning("%s", notice.c_str());
    callOn(this, [this, result, fileName, problem] { finish(result, fileName, problem); });
  });
}

void MapModel::cancel() {
  m_stop.request_stop();
}

void MapModel::finish(std::shared_ptr<const FolderMap> map, const QString& fileName, const QString& problem) {
  m_isMapping = false;
  m_problem = problem;
  if (map) {
    // Who maps the same folder again stays where he is in it.
    const auto shown =
        m_map && m_map->map.rootPath() == map->map.rootPath() ? m_map->map.pathOf(m_folder) : map->map.rootPath();
    m_map = std::move(map);
    m_fileName = fileName;
    m_totals = m_map->map.totals(m_filter);
    show(m_map->map.find(shown).value_or(StorageMap::top));
    Q_EMIT mapChanged();
  }
  Q_EMIT workChanged();
}

// --- the view

void MapModel::show(Index folder) {
  m_folder = folder;
  m_areas.clear();
  int color = 0;
  for (const auto& area : mapAreas(m_map->map, m_map->growth, folder, m_totals, m_filter, m_measure)) {
    // Grey, as what has no name of its own.
    const bool isRest = area.kind == MapArea::Kind::rest;
    m_areas.append(mapFrom(area, isRest ? areaColorCount - 2 : color++ % areaColorCount));
  }
  Q_EMIT viewChanged();
}

QString MapModel::shownTop() const {
  const auto& path = m_map->map.rootPath();
  if (!m_fileName.isEmpty()) return shownName(path);
  return path == m_services.tasks.home.path() ? QStringLiteral("~") : shownPath(path, m_services.tasks.home);
}

QVariantList MapModel::trail() const {
  QVariantList trail;
  if (!m_map) return trail;
  for (auto index = m_folder; index != StorageMap::noFolder; index = m_map->map.folder(index).parent) {
    const auto& name = m_map->map.folder(index).name;
    trail.prepend(QVariantMap{{"name", index == StorageMap::top ? shownTop() : shownName(name)},
                              {"folder", static_cast<int>(index)}});
  }
  return trail;
}

double MapModel::shownBytes() const {
  if (!m_map) return 0;
  const auto& sum = m_totals[m_folder];
  return static_cast<double>(m_measure == MapMeasure::disk ? sum.diskBytes : sum.logicalBytes);
}

double MapModel::shownFiles() const {
  return m_map ? static_cast<double>(m_totals[m_folder].files) : 0;
}

double MapModel::unreadable() const {
  return m_map ? static_cast<double>(m_map->map.unreadableCount()) : 0;
}

void MapModel::enter(int folder) {
  if (!m_map || folder < 0 || static_cast<std::size_t>(folder) >= m_map->map.folderCount()) return;
  show(static_cast<Index>(folder));
}

void MapModel::goUp() {
  if (m_map && m_folder != StorageMap::top) show(m_map->map.folder(m_folder).parent);
}

// --- filters

QStringList MapModel::kindKeys() {
  return keysOf(QStringLiteral("map.kind.all"), "map.kind", allMapKinds, static_cast<int>(allMapKinds.size()),
                [](MapKind kind) { return mapKinds[kind].rawValue; });
}

QStringList MapModel::ageKeys() {
  return keysOf(QStringLiteral("map.age.all"), "map.age", allMapAges, agesOffered,
                [](MapAge age) { return mapAges[age].rawValue; });
}

QStringList MapModel::categoryKeys() {
  return keysOf(QStringLiteral("map.category.all"), "category", allScanCategories,
                static_cast<int>(allScanCategories.size()), [](ScanCategory category) { return rawValue(category); });
}

int MapModel::kind() const noexcept {
  return placeOfCase(m_filter.kind);
}
int MapModel::age() const noexcept {
  return placeOfCase(m_filter.age);
}
int MapModel::category() const noexcept {
  return placeOfCase(m_filter.category);
}

void MapModel::setKind(int kind) {
  auto filter = m_filter;
  filter.kind = caseAt<MapKind>(kind, static_cast<int>(allMapKinds.size()));
  changeFilter(filter);
}

void MapModel::setAge(int age) {
  auto filter = m_filter;
  filter.age = caseAt<MapAge>(age, agesOffered);
  changeFilter(filter);
}

void MapModel::setCategory(int category) {
  auto filter = m_filter;
  filter.category = caseAt<ScanCategory>(category, static_cast<int>(allScanCategories.size()));
  changeFilter(filter);
}

void MapModel::changeFilter(const MapFilter& filter) {
  if (filter == m_filter) return;
  m_filter = filter;
  if (!m_map) return Q_EMIT viewChanged();
  m_totals = m_map->map.totals(m_filter);
  show(m_folder);
}

void MapModel::setMeasure(int measure) {
  const auto chosen = measure == 1 ? MapMeasure::length : MapMeasure::disk;
  if (chosen == m_measure) return;
  m_measure = chosen;
  if (m_map) show(m_folder);
}

// --- growth

double MapModel::grownBytes() const {
  return hasGrowth() ? static_cast<double>(m_map->growth->bytes) : 0;
}

double MapModel::grownSince() const {
  return hasGrowth() ? milliseconds(m_map->growth->since) : 0;
}

QVariantMap MapModel::named(Index folder, std::int64_t bytes) const {
  return {{"name", shownPath(m_map->map.pathOf(folder), m_services.tasks.home)},
          {"folder", static_cast<int>(folder)},
          {"bytes", static_cast<double>(bytes)}};
}

QVariantList MapModel::grownFolders() const {
  QVariantList list;
  if (!hasGrowth()) return list;
  for (const auto& grown : m_map->growth->folders) {
    if (static_cast<std::size_t>(list.size()) == maxNamed) break;
    list.append(named(grown.folder, grown.bytes));
  }
  return list;
}

QVariantList MapModel::freeingMost() const {
  QVariantList list;
  if (!m_map) return list;
  for (const auto& [folder, bytes] : m_map->map.mostReclaimable(maxNamed)) list.append(named(folder, bytes));
  return list;
}

QVariantList MapModel::grownKinds() const {
  QVariantList list;
  if (!hasGrowth()) return list;
  for (const auto& grown : m_map->growth->kinds) {
    const bool isTrifle = grown.bytes <= 0 || grown.bytes < m_map->growth->bytes / triflePart;
    if (isTrifle || static_cast<std::size_t>(list.size()) == maxNamed) break;
    list.append(QVariantMap{{"nameKey", keyOf("map.kind", mapKinds[grown.kind].rawValue)},
                            {"bytes", static_cast<double>(grown.bytes)}});
  }
  return list;
}

QVariantList MapModel::line() const {
  QVariantList list;
  if (!m_map) return list;
  const auto add = [&](Date date, std::int64_t bytes) {
    list.append(QVariantMap{{"date", milliseconds(date)}, {"bytes", static_cast<double>(bytes)}});
  };
  for (const auto& moment : m_map->earlier) {
    if (moment.root == m_map->map.rootPath()) add(moment.taken, moment.diskBytes);
  }
  if (!list.isEmpty()) add(m_map->taken, m_map->map.folder(StorageMap::top).total.diskBytes);
  return list;
}

int MapModel::daysUntilFullShown() const {
  const auto days = m_map ? daysUntilFull(*m_map) : std::nullopt;
  return days ? std::max(1, static_cast<int>(std::ceil(*days))) : 0;
}

// --- from the map elsewhere

std::optional<FileUrl> MapModel::urlOf(int folder) const {
  // An item at a path here is not the one that another machine has there.
  if (!m_map || !m_fileName.isEmpty() || folder < 0 || static_cast<std::size_t>(folder) >= m_map->map.folderCount())
    return std::nullopt;
  return FileUrl(m_map->map.pathOf(static_cast<Index>(folder)));
}

void MapModel::openFolder(int folder) {
  const auto url = urlOf(folder);
  if (!url) return;
  m_choiceQueue.post([this, url = url->absoluteString()](const std::stop_token&) {
    if (!m_services.desktop.openUrl(url)) qWarning("No file manager could be started.");
  });
}

void MapModel::organizeFolder(int folder) {
  const auto url = urlOf(folder);
  if (!url) return;
  m_collaborators.organize.chooseFolder(placeText(*url));
  m_collaborators.state.setSelectedNavigation(static_cast<int>(AppNavigationItem::Organize));
}

void MapModel::findDuplicates(int folder) {
  const auto url = urlOf(folder);
  if (!url) return;
  m_collaborators.duplicates.chooseFolder(placeText(*url));
  m_collaborators.state.setSelectedNavigation(static_cast<int>(AppNavigationItem::Duplicates));
}

void MapModel::showInCleanup(int folder) {
  const auto url = urlOf(folder);
  if (!url) return;
  m_collaborators.cleanup.showInside(*url);
  m_collaborators.state.setSelectedNavigation(static_cast<int>(AppNavigationItem::Cleanup));
  if (!m_collaborators.state.hasScanned()) m_collaborators.state.startScan();
}

// --- what is remembered

void MapModel::reloadChoice() {
  m_choiceQueue.post([this](const std::stop_token&) {
    callOn(this, [this, choice = m_collaborators.maps.snapshots.choice()] {
      if (std::exchange(m_choice, choice) != choice) Q_EMIT choiceChanged();
    });
  });
}

void MapModel::changeStored(std::function<void(SnapshotStore&)> change) {
  m_choiceQueue.post([this, change = std::move(change)](const std::stop_token&) {
    try {
      change(m_collaborators.maps.snapshots);
    } catch (const std::system_error& error) {
      qWarning("The preferences cannot be written: %s", error.what());
    }
  });
  reloadChoice();
}

void MapModel::setRemembers(bool remembers) {
  changeStored([remembers](SnapshotStore& store) { store.setOn(remembers); });
}

void MapModel::forget() {
  changeStored([](SnapshotStore& store) { store.clear(); });
}

}  // namespace orvane
