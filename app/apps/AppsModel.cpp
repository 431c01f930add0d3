#include "app/apps/AppsModel.h"

#include "app/common/Format.h"
#include "app/common/PictureProvider.h"
#include "app/common/Places.h"
#include "app/common/Text.h"
#include "core/base/text/CaselessSearch.h"
#include "core/tasks/UninstallTask.h"

#include <QClipboard>
#include <QDebug>
#include <QGuiApplication>

#include <algorithm>
#include <exception>
#include <utility>

namespace orvane {

AppsModel::AppsModel(WindowServices services, QObject* parent) : RunModel(std::move(services), parent) {}

AppsModel::~AppsModel() {
  m_listStop.request_stop();
}

void AppsModel::list() {
  if (m_isListing) return;
  m_isListing = true;
  m_listStop = {};
  Q_EMIT listChanged();
  m_listQueue.post([this, stop = m_listStop.get_token()](const std::stop_token&) {
    const auto apps = std::make_shared<std::vector<InstalledApp>>(installedApps(services().tasks, {}, stop));
    callOn(this, [this, found = *apps] { showFound(found); });
    const bool areMeasured = measureApps(services().tasks, *apps, stop);
    callOn(this, [this, apps, areMeasured] {
      m_isListing = false;
      m_hasListed = true;
      if (areMeasured) {
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
  if (m_isReversed) std::ranges::reverse(m_shown);
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

void AppsModel::sortBy(int sort) {
  if (sort < Name || sort > LastUse) return;
  m_isReversed = sort == m_sort && !m_isReversed;
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
      {NameRole, "name"},       {IdentifierRole, "identifier"}, {VersionRole, "version"},         {PathRole, "path"},
      {BytesRole, "bytes"},     {LastOpenedRole, "lastOpened"}, {IsProtectedRole, "isProtected"}, {IconRole, "icon"},
      {KindKeyRole, "kindKey"}, {IsOrphanRole, "isOrphan"},     {CommandRole, "command"},
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
      if (app.system && !app.system->icon.empty()) return pictureSource(thumbnailProvider, FileUrl(app.system->icon));
      return pictureSource(applicationIconProvider, app.url);
    case KindKeyRole:
      return textFrom(app.system ? "apps.kind." + std::string(rawValue(app.system->kind)) : std::string());
    case IsOrphanRole:
      return app.system && app.system->isOrphan;
    case CommandRole:
      return textFrom(app.system ? app.system->removalCommand : std::string());
    default:
      return {};
  }
}

void AppsModel::copyCommand(int row) {
  QGuiApplication::clipboard()->setText(data(index(row), CommandRole).toString());
}

QString AppsModel::placeAt(int row) const {
  return row < 0 || row >= rowCount() ? QString() : placeText(m_apps[m_shown[static_cast<std::size_t>(row)]].url);
}

// --- review

void AppsModel::review(int row) {
  // The size of an application is part of the question.
  if (row < 0 || row >= rowCount() || isWorking() || !m_areMeasured) return;
  const auto& app = m_apps[m_shown[static_cast<std::size_t>(row)]];
  if (app.isSystemProtected) return;
  m_review = app;
  m_isFindingLeftovers = true;
  propose({});
  m_listQueue.post([this, app](const std::stop_token&) {
    Proposal proposal;
    try {
      proposal = proposeUninstall(services().tasks, {app.url});
    } catch (const std::exception& error) {
      qWarning("It cannot be uninstalled: %s", error.what());
    }
    callOn(this, [this, id = app.id, proposal] {
      if (!m_review || m_review->id != id) return;
      m_isFindingLeftovers = false;
      if (proposal.empty()) {
        // It has gone meanwhile, or became one of the system.
        closeReview();
        return list();
      }
      m_review->name = proposal.row(0).group->name;
      propose(proposal);
    });
  });
}

void AppsModel::propose(const Proposal& proposal) {
  m_proposal = proposal;
  m_selection = m_proposal.selection();
  Q_EMIT reviewChanged();
}

void AppsModel::closeReview() {
  m_review.reset();
  m_isFindingLeftovers = false;
  propose({});
}

QString AppsModel::reviewName() const {
  return m_review ? shownName(m_review->name) : QString();
}
QString AppsModel::reviewIdentifier() const {
  return m_review ? shownName(m_review->bundleIdentifier.value_or("")) : QString();
}

QVariantList AppsModel::leftovers() const {
  QVariantList result;
  m_proposal.forEach([&](std::size_t index, const ProposedRow& row) {
    if (index == 0) return;
    result.append(QVariantMap{{"name", shownName(row.item.url().lastPathComponent())},
                              {"place", shownPlace(row.item.url(), services().tasks.home)},
                              {"path", placeText(row.item.url())},
                              {"bytes", static_cast<double>(row.item.fileSize())},
                              {"selected", m_selection.isSelected(index)}});
  });
  return result;
}

double AppsModel::reviewBytes() const {
  if (!m_review) return 0;
  return static_cast<double>(m_isFindingLeftovers ? m_review->appSize : m_selection.bytes());
}

double AppsModel::reviewCount() const {
  if (!m_review) return 0;
  return m_isFindingLeftovers ? 1.0 : static_cast<double>(m_selection.count());
}

void AppsModel::toggleLeftover(int index) {
  const auto row = static_cast<std::size_t>(index) + 1;
  if (index < 0 || row >= m_selection.size()) return;
  m_selection.set(row, m_selection.isSelected(row) ? Selection::Whether::unselected : Selection::Whether::selected);
  Q_EMIT reviewChanged();
}

void AppsModel::selectAllLeftovers(bool isSelected) {
  const auto wanted = isSelected ? Selection::Whether::selected : Selection::Whether::unselected;
  for (std::size_t row = 1; row < m_selection.size(); ++row) m_selection.set(row, wanted);
  Q_EMIT reviewChanged();
}

// --- uninstalling

void AppsModel::uninstall() {
  if (!m_review || m_isFindingLeftovers) return;
  m_uninstalledName = m_review->name;
  startRun(m_proposal.approve(m_selection), [this](const RunReport& report) {
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
