#include "app/history/HistoryModel.h"

#include "app/common/Format.h"
#include "app/common/Places.h"
#include "app/common/Text.h"
#include "core/base/text/CaselessSearch.h"
#include "core/platform/Desktop.h"
#include "core/safety/records/UndoError.h"
#include "core/tasks/RestoreSwap.h"

#include <QDateTime>
#include <QDebug>

#include <algorithm>
#include <array>
#include <utility>

namespace orvane {
namespace {

// In the order of ItemState.
constexpr std::array<std::string_view, 4> stateKeys{"state.restored", "state.in_trash", "state.moved", "state.gone"};

// In the order of TaskKind.
constexpr std::array<std::string_view, 9> actorSymbols{"cleanup",  "trash",    "agent", "rules",  "duplicates",
                                                       "organize", "organize", "apps",  "history"};

std::string_view actorSymbol(const RecordedRun& run) {
  return run.origin ? actorSymbols.at(static_cast<std::size_t>(run.origin->kind)) : "history";
}

QString dayOf(const RecordedRun& run) {
  const auto time = static_cast<qint64>(milliseconds(run.summary.timestamp));
  return QDateTime::fromMSecsSinceEpoch(time).date().toString(Qt::ISODate);
}

const FileUrl& presentPlace(const JournalEntry& entry) {
  return entry.action == JournalAction::restored ? entry.originalURL : entry.trashedURL;
}

}  // namespace

HistoryModel::HistoryModel(WindowServices services, JournalFeed& feed, QObject* parent)
    : RunModel(std::move(services), parent), m_feed(feed), m_figures(this->services(), feed) {
  connect(&m_feed, &JournalFeed::loaded, this, &HistoryModel::rebuild);
  connect(&m_feed, &JournalFeed::noticed, this, &HistoryModel::addWarnings);
  connect(this, &RunModel::undone, &m_feed, &JournalFeed::reload);
}

HistoryModel::~HistoryModel() {
  m_rebuildStop.request_stop();
}

int HistoryModel::runCount() const {
  return static_cast<int>(m_feed.contents().runs.size());
}

// --- rows

HistoryModel::View HistoryModel::viewOf(const TaskServices& services, const History& contents, const Query& query,
                                        const std::stop_token& stop) {
  View view;
  const CaselessSearch search(query.searchText);
  const bool isSearching = !query.searchText.empty();
  for (const auto& run : contents.runs) {
    if (stop.stop_requested()) break;
    const auto& id = run.summary.runId;
    ShownRun shown{.run = run, .isExpanded = query.unfolded.contains(id), .entries = {}, .start = view.rows};
    const auto isFound = [&](const JournalEntry& entry) { return search.isIn(entry.originalURL.path()); };
    if (isSearching) {
      if (std::ranges::none_of(recordedEntries(services, id), isFound)) continue;
      shown.isExpanded = !query.folded.contains(id);
    }
    if (shown.isExpanded) {
      shown.entries = recordedItems(services, id);
      if (isSearching) std::erase_if(shown.entries, [&](const RecordedItem& item) { return !isFound(item.entry); });
    }
    view.rows += 1 + static_cast<int>(shown.entries.size());
    view.runs.push_back(std::move(shown));
  }
  return view;
}

void HistoryModel::rebuild() {
  m_rebuildStop.request_stop();
  m_rebuildStop = {};
  m_viewQueue.post(
      [this, contents = m_feed.contents(), query = m_query, stop = m_rebuildStop.get_token()](const std::stop_token&) {
        if (stop.stop_requested()) return;
        auto view = std::make_shared<const View>(viewOf(services().tasks, contents, query, stop));
        if (stop.stop_requested()) return;
        callOn(this, [this, view = std::move(view), stop] {
          if (!stop.stop_requested()) show(view);
        });
      });
}

// The list keeps its position and reads anew what it shows.
void HistoryModel::show(std::shared_ptr<const View> view) {
  const int before = m_view->rows;
  const int rows = view->rows;
  if (rows > before) beginInsertRows({}, before, rows - 1);
  if (rows < before) beginRemoveRows({}, rows, before - 1);
  m_view = std::move(view);
  if (rows > before) endInsertRows();
  if (rows < before) endRemoveRows();
  if (const int both = std::min(rows, before); both > 0) Q_EMIT dataChanged(index(0), index(both - 1));
  m_isLoaded = true;
  Q_EMIT countsChanged();
}

HistoryModel::Place HistoryModel::placeOf(int row) const {
  if (row < 0 || row >= m_view->rows) return {};
  const auto& runs = m_view->runs;
  const auto after =
      std::upper_bound(runs.begin(), runs.end(), row, [](int value, const ShownRun& run) { return value < run.start; });
  const auto& run = *std::prev(after);
  if (row == run.start) return {&run, nullptr};
  return {&run, &run.entries[static_cast<std::size_t>(row - run.start - 1)]};
}

int HistoryModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : m_view->rows;
}

QHash<int, QByteArray> HistoryModel::roleNames() const {
  return {
      {KindRole, "kind"},
      {IdRole, "id"},
      {DateRole, "date"},
      {TitleKeyRole, "titleKey"},
      {NameRole, "name"},
      {PlaceRole, "place"},
      {DestinationRole, "destination"},
      {CountRole, "count"},
      {BytesRole, "bytes"},
      {StateKeyRole, "stateKey"},
      {CanRestoreRole, "canRestore"},
      {ExpandedRole, "expanded"},
      {OriginRole, "origin"},
      {ActorSymbolRole, "actorSymbol"},
      {DayRole, "day"},
      {IsLastRole, "isLast"},
  };
}

QVariant HistoryModel::data(const QModelIndex& index, int role) const {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
  const auto [run, entry] = placeOf(index.row());
  if (role == KindRole) return entry != nullptr ? Entry : Run;
  if (role == DayRole) return dayOf(run->run);
  if (role == IsLastRole) return run->entries.empty() || entry == &run->entries.back();
  return entry != nullptr ? entryData(*entry, role) : runData(*run, role);
}

void HistoryModel::languageChanged() {
  RunModel::languageChanged();
  // With the language the day changes on which weeks begin.
  m_figures.reload();
  if (const auto rows = rowCount(); rows > 0) Q_EMIT dataChanged(index(0), index(rows - 1), {OriginRole});
}

QVariant HistoryModel::runData(const ShownRun& shown, int role) {
  const auto& run = shown.run;
  switch (role) {
    case IdRole:
      return textFrom(run.summary.runId.toString());
    case DateRole:
      return milliseconds(run.summary.timestamp);
    case TitleKeyRole:
      return textFrom(kindKey(run));
    case CountRole:
      return static_cast<double>(run.summary.itemCount);
    case BytesRole:
      return static_cast<double>(run.summary.totalBytes);
    case StateKeyRole:
      return textFrom(stateKey(run));
    case CanRestoreRole:
      return run.canBeRestored();
    case ExpandedRole:
      return shown.isExpanded;
    case OriginRole:
      return originText(run);
    case ActorSymbolRole:
      return textFrom(actorSymbol(run));
    case Qt::DisplayRole:
    case NameRole:
    case PlaceRole:
    case DestinationRole:
      return QString();
    default:
      return {};
  }
}

QVariant HistoryModel::entryData(const RecordedItem& item, int role) const {
  const auto& entry = item.entry;
  switch (role) {
    case IdRole:
      return textFrom(entry.id.toString());
    case DateRole:
      return milliseconds(entry.timestamp);
    case Qt::DisplayRole:
    case NameRole:
      return shownName(entry.originalURL.lastPathComponent());
    case PlaceRole:
      return shownPlace(entry.originalURL, services().tasks.home);
    case DestinationRole:
      return shownPlace(entry.trashedURL, services().tasks.home);
    case CountRole:
      return 1.0;
    case BytesRole:
      return static_cast<double>(entry.fileSize);
    case TitleKeyRole:
    case StateKeyRole:
      return textFrom(stateKeys.at(static_cast<std::size_t>(item.state)));
    case CanRestoreRole:
      return item.state == ItemState::inTrash || item.state == ItemState::moved;
    case ExpandedRole:
      return false;
    case OriginRole:
    case ActorSymbolRole:
      return QString();
    default:
      return {};
  }
}

QString HistoryModel::searchText() const {
  return textFrom(m_query.searchText);
}

void HistoryModel::setSearchText(const QString& text) {
  auto wanted = text.trimmed().toStdString();
  if (wanted == m_query.searchText) return;
  m_query.searchText = std::move(wanted);
  m_query.folded.clear();
  Q_EMIT searchTextChanged();
  rebuild();
}

void HistoryModel::toggleExpanded(int row) {
  const auto [run, entry] = placeOf(row);
  if (run == nullptr || entry != nullptr) return;
  const auto& id = run->run.summary.runId;
  auto& chosen = m_query.searchText.empty() ? m_query.unfolded : m_query.folded;
  if (chosen.erase(id) == 0) chosen.insert(id);
  rebuild();
}

// --- restoring

void HistoryModel::restoreRun(int row) {
  const auto [run, entry] = placeOf(row);
  if (run != nullptr && entry == nullptr) restore(textFrom(run->run.summary.runId.toString()));
}

void HistoryModel::restoreEntry(int row) {
  const auto [run, entry] = placeOf(row);
  if (entry != nullptr) askOrRestore({run->run.summary.runId, {entry->entry.id}});
}

void HistoryModel::restore(const QString& runId) {
  if (const auto id = Uuid::parse(runId.toStdString())) askOrRestore({*id});
}

void HistoryModel::askOrRestore(RestoreWish wish) {
  const auto question = std::make_shared<std::optional<Question>>();
  startRestore(
      0,
      [tasks = services().tasks, wish = std::move(wish), question](
          const RunProgress& progress, const std::stop_token& stop) -> std::optional<Restored> {
        try {
          auto restore = proposeRestore(tasks, wish).approve();
          if (auto room = proposeMakingRoom(tasks, restore).approve(); !room.empty()) {
            question->emplace(Question{wish, std::move(restore), std::move(room)});
            return std::nullopt;
          }
        } catch (const UndoError&) {
          // The restore itself says so.
        }
        return restoreNow(tasks, wish, progress, stop);
      },
      [this, question] {
        if (!*question) return;
        m_question = *std::move(*question);
        Q_EMIT placesTaken();
      });
}

void HistoryModel::swapPlaces() {
  if (!m_question || isWorking()) return;
  startRestore(0, [tasks = services().tasks, question = *std::exchange(m_question, std::nullopt)](
                      const RunProgress& progress, const std::stop_token& stop) {
    return std::optional(orvane::swapPlaces(tasks, question.restore, question.room, progress, stop));
  });
}

void HistoryModel::restoreBeside() {
  if (!m_question || isWorking()) return;
  const auto question = *std::exchange(m_question, std::nullopt);
  startRestore(question.wish, static_cast<std::int64_t>(question.restore.rows().size()));
}

QStringList HistoryModel::takenPlaces() const {
  QStringList result;
  if (!m_question) return result;
  const auto& room = m_question->room;
  for (const auto index : room.rows()) {
    const auto& item = room.proposal().row(index).item;
    result += QStringLiteral("%1 (%2)").arg(shownPath(item.url().path(), services().tasks.home),
                                            Format::bytes(static_cast<double>(item.fileSize())));
  }
  return result;
}

bool HistoryModel::areFoldersTaken() const {
  if (!m_question) return false;
  const auto& room = m_question->room;
  return std::ranges::any_of(room.rows(),
                             [&](std::uint32_t index) { return room.proposal().row(index).item.isFolder(); });
}

void HistoryModel::reload() {
  m_feed.reload();
}

void HistoryModel::clearResult() {
  forgetResult();
}

QString HistoryModel::placeAt(int row) const {
  const auto [run, entry] = placeOf(row);
  return entry == nullptr ? QString() : placeText(presentPlace(entry->entry));
}

void HistoryModel::openContainingFolder(int row) {
  const auto [run, entry] = placeOf(row);
  if (entry == nullptr) return;
  postWork([this, place = presentPlace(entry->entry)](const std::stop_token&) {
    if (!services().desktop.reveal(place)) qWarning("No file manager could be started.");
  });
}

}  // namespace orvane
