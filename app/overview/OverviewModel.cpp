#include "app/overview/OverviewModel.h"

#include "app/cleanup/CleanupModel.h"
#include "app/common/JournalFeed.h"
#include "app/common/Text.h"
#include "app/history/HistoryModel.h"
#include "app/shell/AppState.h"
#include "core/base/values/Calendar.h"
#include "core/tasks/StoredRules.h"

#include <QDebug>

#include <algorithm>
#include <chrono>
#include <utility>

namespace orvane {
namespace {

constexpr std::size_t recentRunCount = 5;
constexpr int categoryColorCount = 10;
// A few times a second the picture follows a scan.
constexpr std::chrono::milliseconds summaryDelay{300};

// A category is named by its key, a folder by its name.
QString titleKeyOf(const OverviewArea& area) {
  if (area.kind == OverviewArea::Kind::folder) return {};
  if (area.kind == OverviewArea::Kind::rest) return QStringLiteral("map.other");
  return "category." + textFrom(rawValue(area.category));
}

QVariantMap mapFrom(const OverviewArea& area, const FileUrl& home) {
  QVariantList children;
  for (const auto& part : area.parts) children.append(mapFrom(part, home));
  const FileUrl folder(area.folder);
  const bool isHome = folder.path() == home.path();
  return {
      {"label", area.folder.empty() ? QString() : shownName(isHome ? "~" : folder.lastPathComponent())},
      {"titleKey", titleKeyOf(area)},
      {"category", textFrom(rawValue(area.category))},
      {"symbol", textFrom(systemImage(area.category))},
      {"colorIndex", static_cast<int>(area.category) % categoryColorCount},
      {"folder", textFrom(area.folder)},
      {"bytes", static_cast<double>(area.bytes)},
      {"count", static_cast<double>(area.count)},
      {"children", children},
  };
}

struct FrequencyText {
  std::string_view operator()(const OnLowDiskSpace& /*frequency*/) const { return "frequency.low_space"; }
  std::string_view operator()(const Daily& /*frequency*/) const { return "frequency.daily"; }
  std::string_view operator()(const Weekly& /*frequency*/) const { return "frequency.weekly"; }
  std::string_view operator()(const Monthly& /*frequency*/) const { return "frequency.monthly"; }
};

// After how many days a run is due again; absent where days play no part.
struct FrequencyDays {
  std::optional<std::int64_t> operator()(const OnLowDiskSpace& /*frequency*/) const { return std::nullopt; }
  std::optional<std::int64_t> operator()(const Daily& /*frequency*/) const { return 1; }
  std::optional<std::int64_t> operator()(const Weekly& /*frequency*/) const { return 7; }
  std::optional<std::int64_t> operator()(const Monthly& /*frequency*/) const { return 30; }
};

}  // namespace

OverviewModel::OverviewModel(WindowServices services, Collaborators collaborators, QObject* parent)
    : QObject(parent), m_services(std::move(services)), m_collaborators(collaborators) {
  m_timer.setSingleShot(true);
  m_timer.setInterval(summaryDelay);
  connect(&m_timer, &QTimer::timeout, this, &OverviewModel::summarize);
  const auto& items = m_collaborators.state.scannedItems();
  connect(&items, &ScannedItems::begun, this, [this] {
    m_isFilling = true;
    forgetSums();
    summarizeSoon();
  });
  connect(&items, &ScannedItems::appended, this, &OverviewModel::summarizeSoon);
  connect(&items, &ScannedItems::presenceChanged, this, [this] {
    forgetSums();
    summarize();
  });
  connect(&m_collaborators.state, &AppState::scanFinished, this, [this] {
    m_isFilling = false;
    summarize();
  });
  connect(&m_collaborators.feed, &JournalFeed::loaded, this, [this] {
    m_collaborators.state.setLifetimeReclaimed(m_collaborators.feed.contents().lifetimeReclaimedBytes);
    Q_EMIT runsChanged();
    reloadTrash();
  });
  reloadSchedule();
}

void OverviewModel::reloadTrash() {
  if (m_isReadingTrash) return;
  m_isReadingTrash = true;
  m_trashQueue.post([this, stop = m_stop.get_token()](const std::stop_token&) {
    const auto trash = m_services.trashUsage.read(stop);
    callOn(this, [this, trash] {
      m_isReadingTrash = false;
      if (m_trash == trash) return;
      m_trash = trash;
      Q_EMIT trashChanged();
    });
  });
}

double OverviewModel::trashOldest() const {
  return milliseconds(m_trash.oldest);
}

OverviewModel::~OverviewModel() {
  m_stop.request_stop();
}

void OverviewModel::summarizeSoon() {
  if (!m_timer.isActive()) m_timer.start();
}

void OverviewModel::forgetSums() {
  m_queue.post([this](const std::stop_token&) { m_sums = {}; });
}

void OverviewModel::summarize() {
  if (m_isSummarizing) return summarizeSoon();
  m_timer.stop();
  m_isSummarizing = true;
  m_queue.post([this, scanned = m_collaborators.state.scannedItems().snapshot(), isFilling = m_isFilling,
                stop = m_stop.get_token()](const std::stop_token&) {
    m_sums.add(scanned, stop);
    // While a scan runs, nothing changes places.
    m_ordered = isFilling ? inShownOrder(m_sums.areas(), m_ordered) : m_sums.areas();
    QVariantList list;
    for (const auto& area : m_ordered) list.append(mapFrom(area, m_services.tasks.home));
    callOn(this, [this, list] {
      m_isSummarizing = false;
      if (m_areas == list) return;
      m_areas = list;
      Q_EMIT areasChanged();
    });
  });
}

QVariantList OverviewModel::recentRuns() const {
  const auto& runs = m_collaborators.feed.contents().runs;
  QVariantList result;
  for (std::size_t at = 0; at < std::min(runs.size(), recentRunCount); ++at) {
    const auto& run = runs[at];
    result.append(QVariantMap{
        {"id", textFrom(run.summary.runId.toString())},
        {"date", milliseconds(run.summary.timestamp)},
        {"kindKey", textFrom(kindKey(run))},
        {"stateKey", textFrom(stateKey(run))},
        {"count", static_cast<double>(run.summary.itemCount)},
        {"bytes", static_cast<double>(run.summary.totalBytes)},
        {"canUndo", run.canBeRestored()},
    });
  }
  return result;
}

int OverviewModel::runCount() const {
  return static_cast<int>(m_collaborators.feed.contents().runs.size());
}

double OverviewModel::firstRunDate() const {
  const auto& runs = m_collaborators.feed.contents().runs;
  return runs.empty() ? 0.0 : milliseconds(runs.back().summary.timestamp);
}

void OverviewModel::reloadSchedule() {
  m_queue.post([this](const std::stop_token&) {
    const auto schedule = m_services.scheduleSettings();
    const auto rules = cleanupRules(m_services.tasks);
    const auto enabled = std::count_if(rules.begin(), rules.end(), [](const auto& rule) { return rule.isEnabled; });
    callOn(this, [this, schedule, enabled] {
      m_schedule = schedule;
      m_enabledRules = static_cast<int>(enabled);
      Q_EMIT scheduleChanged();
    });
  });
}

double OverviewModel::nextScheduledRun() const {
  const auto days = std::visit(FrequencyDays{}, m_schedule.frequency);
  if (!m_schedule.isEnabled || !days) return 0;
  const auto now = ReferenceClock::now();
  return milliseconds(m_schedule.lastRunDate ? std::max(now, addingDays(*m_schedule.lastRunDate, *days)) : now);
}

QString OverviewModel::scheduleFrequencyKey() const {
  return textFrom(m_schedule.isEnabled ? std::visit(FrequencyText{}, m_schedule.frequency) : "frequency.off");
}

int OverviewModel::scheduleThresholdGB() const {
  const auto* frequency = std::get_if<OnLowDiskSpace>(&m_schedule.frequency);
  return frequency != nullptr ? static_cast<int>(frequency->thresholdGB) : 0;
}

void OverviewModel::undo(const QString& runId) {
  m_collaborators.history.restore(runId);
}

void OverviewModel::showArea(const QString& category, const QString& folder) {
  m_collaborators.cleanup.showOnly(category, folder);
  m_collaborators.state.setSelectedNavigation(static_cast<int>(AppNavigationItem::Cleanup));
}

}  // namespace orvane
