#include "app/AppsModel.h"

#include "app/Format.h"
#include "app/PictureProvider.h"
#include "app/Places.h"
#include "app/Text.h"
#include "core/base/CaselessSearch.h"
#include "core/uninstaller/AppUninstallerEngine.h"

#include <QDebug>

#include <algorithm>
#include <exception>
#include <numeric>
#include <utility>

namespace orvane {

AppsModel::AppsModel(WindowServices services, SectionServices sections, QObject* parent)
    : RunModel(std::move(services), parent), m_sections(std::move(sections)) {}

AppsModel::~AppsModel() {
  m_listStop.request_stop();
}

void AppsModel::list() {
  if (m_isListing) return;
  m_isListing = true;
  m_listStop = {};
  Q_EMIT listChanged();
  m_listQueue.post([this, stop = m_listStop.get_token()](const std::stop_token&) {
    const auto apps = std::make_shared<std::vector<InstalledApp>>(m_sections.uninstaller.findInstalledApps({}, stop));
    callOn(this, [this, found = *apps] { showFound(found); });
    const auto sizes = m_sections.uninstaller.measureApps(*apps, stop);
    callOn(this, [this, apps, sizes, isStopped = stop.stop_requested()] {
      m_isListing = false;
      m_hasListed = true;
      if (!isStopped) {
        for (std::size_t at = 0; at < apps->size(); ++at) (*apps)[at].appSize = sizes[at];
        m_apps = std::move(*apps);
        m_areMeasured = true;
      }
      arrange();
      Q_EMIT listChanged();
    });
  });
}

void AppsModel::showFound(std::vector<InstalledApp> apps) {
  // A list that is there stays until the new one is whole.
  if (!m_apps.empty()) return;
  m_apps = std::move(apps);
  m_areMeasured = false;
  arrange();
  Q_EMIT listChanged();
}

void AppsModel::cancel() {
  m_listStop.request_stop();
  RunModel::cancel();
}

void AppsModel::arrange() {
  beginResetModel();
  m_shown.clear();
  const CaselessSearch search(m_searchText);
  for (std::size_t at = 0; at < m_apps.size(); ++at) {
    if (search.isIn(m_apps[at].name) || search.isIn(m_apps[at].bundleIdentifier.value_or(""))) m_shown.push_back(at);
  }
  // By name they come from the engine, in the user's language.
  if (m_sort == Size) {
    std::ranges::stable_sort(m_shown, std::greater<>(), [this](std::size_t at) { return m_apps[at].appSize; });
  } else if (m_sort == LastUse) {
    std::ranges::stable_sort(m_shown, std::less<>(),
                             [this](std::size_t at) { return milliseconds(m_apps[at].lastOpenedDate); });
  }
  endResetModel();
}

QString AppsModel::searchText() const {
  return textFrom(m_searchText);
}

void AppsModel::setSearchText(const QString& text) {
  auto wanted = text.trimmed().toStdString();
  if (wanted == m_searchText) return;
  m_searchText = std::move(wanted);
  arrange();
  Q_EMIT queryChanged();
}

void AppsModel::setSort(int sort) {
  if (sort < Name || sort > LastUse || sort == m_sort) return;
  m_sort = sort;
  arrange();
  Q_EMIT queryChanged();
}

// --- rows

int AppsModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(m_shown.size());
}

QHash<int, QByteArray> AppsModel::roleNames() const {
  return {
      {NameRole, "name"},   {IdentifierRole, "identifier"}, {VersionRole, "version"},         {PathRole, "path"},
      {BytesRole, "bytes"}, {LastOpenedRole, "lastOpened"}, {IsProtectedRole, "isProtected"}, {IconRole, "icon"},
  };
}

QVariant AppsModel::data(const QModelIndex& index, int role) const {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
  const auto& app = m_apps[m_shown[static_cast<std::size_t>(index.row())]];
  switch (role) {
    case Qt::DisplayRole:
    case NameRole:
      return shownName(app.name);
    case IdentifierRole:
      return shownName(app.bundleIdentifier.value_or(""));
    case VersionRole:
      return shownName(app.version.value_or(""));
    case PathRole:
      return placeText(app.url);
    case BytesRole:
      return m_areMeasured ? static_cast<double>(app.appSize) : -1.0;
    case LastOpenedRole:
      return milliseconds(app.lastOpenedDate);
    case IsProtectedRole:
      return app.isSystemProtected;
    case IconRole:
      return pictureSource(applicationIconProvider, app.url);
    default:
      return {};
  }
}

// --- review

void AppsModel::review(int row) {
  // What an application weighs is part of what is asked about it.
  if (row < 0 || row >= rowCount() || isWorking() || !m_areMeasured) return;
  const auto& app = m_apps[m_shown[static_cast<std::size_t>(row)]];
  if (app.isSystemProtected) return;
  m_review = AppUninstallBundle{.app = app, .leftovers = {}};
  m_isFindingLeftovers = true;
  Q_EMIT reviewChanged();
  m_listQueue.post([this, app](const std::stop_token&) {
    std::shared_ptr<AppUninstallBundle> bundle;
    try {
      bundle = std::make_shared<AppUninstallBundle>(m_sections.uninstaller.findLeftovers(app));
    } catch (const std::exception& error) {
      qWarning("No leftovers can be found: %s", error.what());
      bundle = std::make_shared<AppUninstallBundle>(AppUninstallBundle{.app = app, .leftovers = {}});
    }
    callOn(this, [this, bundle] {
      if (!m_review || m_review->app.id != bundle->app.id) return;
      m_review = std::move(*bundle);
      m_isFindingLeftovers = false;
      Q_EMIT reviewChanged();
    });
  });
}

void AppsModel::closeReview() {
  m_review.reset();
  m_isFindingLeftovers = false;
  Q_EMIT reviewChanged();
}

QString AppsModel::reviewName() const {
  return m_review ? shownName(m_review->app.name) : QString();
}
QString AppsModel::reviewIdentifier() const {
  return m_review ? shownName(m_review->app.bundleIdentifier.value_or("")) : QString();
}

QVariantList AppsModel::leftovers() const {
  QVariantList result;
  if (!m_review) return result;
  for (const auto& item : m_review->leftovers) {
    result.append(QVariantMap{{"name", shownName(item.url().lastPathComponent())},
                              {"place", shownPlace(item.url(), services().home)},
                              {"path", placeText(item.url())},
                              {"bytes", static_cast<double>(item.fileSize())},
                              {"selected", item.isSelected()}});
  }
  return result;
}

double AppsModel::reviewBytes() const {
  if (!m_review) return 0;
  auto bytes = static_cast<double>(m_review->app.appSize);
  for (const auto& item : m_review->leftovers) {
    if (item.isSelected()) bytes += static_cast<double>(item.fileSize());
  }
  return bytes;
}

double AppsModel::reviewCount() const {
  if (!m_review) return 0;
  const auto& items = m_review->leftovers;
  return 1.0 + static_cast<double>(
                   std::count_if(items.begin(), items.end(), [](const FileItem& item) { return item.isSelected(); }));
}

void AppsModel::toggleLeftover(int index) {
  if (!m_review || index < 0 || index >= static_cast<int>(m_review->leftovers.size())) return;
  auto& item = m_review->leftovers[static_cast<std::size_t>(index)];
  item.setSelected(!item.isSelected());
  Q_EMIT reviewChanged();
}

void AppsModel::selectAllLeftovers(bool isSelected) {
  if (!m_review) return;
  for (auto& item : m_review->leftovers) item.setSelected(isSelected);
  Q_EMIT reviewChanged();
}

// --- uninstalling

void AppsModel::uninstall() {
  if (!m_review || m_isFindingLeftovers) return;
  m_uninstalledName = m_review->app.name;
  startRun(
      static_cast<std::int64_t>(reviewCount()),
      [services = services(), sections = m_sections, bundle = *m_review](const RunProgress& progress,
                                                                         const std::stop_token& stop) {
        const auto result =
            sections.uninstaller.uninstall(bundle, services.mover, services.journal(), std::nullopt, progress, stop);
        return reportOf(result.runId, result.outcomes);
      },
      [this](const RunReport& report) {
        if (report.moved() > 0) list();
      });
  setLookAfterUndo([this]() -> std::function<void()> { return [this] { list(); }; });
}

QString AppsModel::movedText(std::int64_t count, std::int64_t bytes) const {
  if (count == 0) return {};
  const auto name = shownName(m_uninstalledName);
  const auto size = Format::bytes(static_cast<double>(bytes));
  if (count == 1) return localizedText("apps.result_alone").arg(name, size);
  return countedText("apps.result", count - 1).arg(name, size);
}

}  // namespace orvane
