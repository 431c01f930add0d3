#include "app/common/JournalFeed.h"

#include "app/common/Text.h"

#include <array>
#include <utility>

namespace orvane {
namespace {

// In the order of RunKind and of RunState.
constexpr std::array<std::string_view, 5> kindKeys{"run.clean", "run.duplicates", "run.tidy", "run.organize",
                                                   "run.other"};
// In the order of TaskKind; a restore has no run of its own.
constexpr std::array<std::string_view, 9> originKeys{"origin.clean", "origin.trash",      "origin.plan",
                                                     "origin.rules", "origin.duplicates", "origin.organize",
                                                     "origin.tidy",  "origin.uninstall",  ""};
constexpr std::array<std::string_view, 3> stateKeys{"state.restored", "state.in_trash", "state.moved"};

}  // namespace

std::string_view kindKey(const RecordedRun& run) {
  return kindKeys.at(static_cast<std::size_t>(run.kind));
}

std::string_view stateKey(const RecordedRun& run) {
  return stateKeys.at(static_cast<std::size_t>(run.state));
}

QString originText(const RecordedRun& run) {
  if (!run.origin) return {};
  const auto key = originKeys.at(static_cast<std::size_t>(run.origin->kind));
  if (key.empty()) return {};
  auto text = localizedText(key);
  const bool isScheduled = run.origin->start == RunOrigin::Start::scheduled;
  return isScheduled ? localizedText("origin.scheduled").arg(text) : text;
}

JournalFeed::JournalFeed(WindowServices services, QObject* parent) : QObject(parent), m_services(std::move(services)) {
  connect(&m_watch, &FileWatch::changed, this, &JournalFeed::reload);
  m_queue.post([this](const std::stop_token&) {
    callOn(this, [this, file = journalFile(m_services.tasks)] { m_watch.watch(file.path()); });
  });
  reload();
}

void JournalFeed::reload() {
  m_queue.post([this](const std::stop_token&) { load(); });
}

void JournalFeed::load() {
  auto contents = std::make_shared<const History>(readHistory(m_services.tasks));
  auto lines = takeJournalNotices(m_services.tasks);
  callOn(this, [this, contents = std::move(contents), lines = std::move(lines)] {
    m_contents = contents;
    Q_EMIT loaded();
    if (!lines.empty()) Q_EMIT noticed(lines);
  });
}

}  // namespace orvane
