#include "app/history/HistoryModel.h"

#include "app/common/Format.h"
#include "app/common/Places.h"
#include "app/common/Text.h"
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
// Of an item that can come back.
constexpr std::string_view placeTakenKey = "state.place_taken";

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

// The rule, the application, or the request as it was typed: a person calls the run by it. Empty where there is none.
QString nameOf(const RecordedRun& run) {
  if (!run.origin || run.origin->detail.empty()) return {};
  const auto name = shownName(run.origin->detail);
  return run.origin->kind == TaskKind::plan ? localizedText("agent.quoted").arg(name) : name;
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

void HistoryModel::rebuild() {
  m_rebuildStop.request_stop();
  m_rebuildStop = {};
  m_viewQueue.post(
      [this, contents = m_feed.contents(), query = m_query, stop = m_rebuildStop.get_token()](const std::stop_token&) {
        if (stop.stop_requested()) return;
        auto rows = std::make_shared<HistoryRows>(services().tasks, contents, query, stop);
        if (stop.stop_requested()) return;
        callOn(this, [this, rows = std::move(rows), stop] {
          if (!stop.stop_requested()) show(rows);
        });
      });
}

// The list keeps its position and reads anew what it shows.
void HistoryModel::show(std::shared_ptr<HistoryRows> rows) {
  rows->leaveOut(m_leftOut);
  const int before = m_rows->count();
  const int after = rows->count();
  if (after > before) beginInsertRows({}, before, after - 1);
  if (after < before) beginRemoveRows({}, after, before - 1);
  m_rows = std::move(rows);
  if (after > before) endInsertRows();
  if (after < before) endRemoveRows();
  if (const int both = std::min(after, before); both > 0) Q_EMIT dataChanged(index(0), index(both - 1));
  m_isLoaded = true;
  Q_EMIT countsChanged();
}

int HistoryModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : m_rows->count();
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
      {ChosenRole, "chosen"},
      {ItemCountRole, "itemCount"},
      {ChosenCountRole, "chosenCount"},
      {RestorableCountRole, "restorableCount"},
      {TakenCountRole, "takenCount"},
  };
}

QVariant HistoryModel::data(const QModelIndex& index, int role) const {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
  const auto line = m_rows->lineAt(index.row());
  if (role == KindRole) return line.isRun() ? Run : line.isFoot ? Foot : Entry;
  if (role == DayRole) return dayOf(line.run->run);
  if (role == IsLastRole) return m_rows->isLastOfRun(index.row());
  return line.item != nullptr ? itemData(*line.item, role) : runData(*line.run, role);
}

void HistoryModel::languageChanged() {
  RunModel::languageChanged();
  // With the language the day changes on which weeks begin.
  m_figures.reload();
  if (const auto rows = rowCount(); rows > 0) Q_EMIT dataChanged(index(0), index(rows - 1), {NameRole, OriginRole});
}

QVariant HistoryModel::runData(const HistoryRows::Run& shown, int role) {
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
      return nameOf(run);
    case PlaceRole:
    case DestinationRole:
      return QString();
    case ChosenRole:
      return false;
    case ItemCountRole:
      return static_cast<double>(shown.total);
    case ChosenCountRole:
      return static_cast<double>(shown.chosen);
    case RestorableCountRole:
      return static_cast<double>(shown.restorable);
    case TakenCountRole:
      return static_cast<double>(shown.taken);
    default:
      return {};
  }
}

QVariant HistoryModel::itemData(const RecordedItem& item, int role) const {
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
      return item.wentToTrash ? QString() : shownPlace(entry.trashedURL, services().tasks.home);
    case CountRole:
      return 1.0;
    case BytesRole:
      return static_cast<double>(entry.fileSize);
    case TitleKeyRole:
    case StateKeyRole:
      return textFrom(item.isPlaceTaken ? placeTakenKey : stateKeys.at(static_cast<std::size_t>(item.state)));
    case CanRestoreRole:
      return item.canComeBack();
    case ChosenRole:
      return item.canComeBack() && !m_leftOut.contains(entry.id);
    case ItemCountRole:
    case ChosenCountRole:
    case RestorableCountRole:
    case TakenCountRole:
      return 0.0;
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

void HistoryModel::setKind(int kind) {
  const auto wanted = static_cast<std::size_t>(kind);
  if (wanted == m_query.kind || wanted >= HistoryRows::kindKeys().size()) return;
  m_query.kind = wanted;
  Q_EMIT kindChanged();
  rebuild();
}

QStringList HistoryModel::kindKeys() {
  QStringList keys;
  for (const auto key : HistoryRows::kindKeys()) keys += textFrom(key);
  return keys;
}

void HistoryModel::toggleExpanded(int row) {
  const auto line = m_rows->lineAt(row);
  if (!line.isRun()) return;
  const auto& id = line.run->run.summary.runId;
  auto& chosen = m_query.searchText.empty() ? m_query.unfolded : m_query.folded;
  if (chosen.erase(id) == 0) chosen.insert(id);
  rebuild();
}

// --- choosing

void HistoryModel::toggleChosen(int row) {
  if (const auto* item = m_rows->lineAt(row).item; item != nullptr) choose(row, m_leftOut.contains(item->entry.id));
}

void HistoryModel::chooseRange(int from, int to) {
  for (int row = std::min(from, to); row <= std::max(from, to); ++row) choose(row, true);
}

void HistoryModel::choose(int row, bool isChosen) {
  const auto line = m_rows->lineAt(row);
  if (line.item == nullptr || !line.item->canComeBack()) return;
  const auto& id = line.item->entry.id;
  const bool isChanged = isChosen ? m_leftOut.erase(id) > 0 : m_leftOut.insert(id).second;
  if (!isChanged) return;
  m_rows->countChoice(row, isChosen);
  Q_EMIT dataChanged(index(row), index(row), {ChosenRole});
  for (const int counting : {line.run->start, line.run->start + static_cast<int>(line.run->items.size()) + 1}) {
    Q_EMIT dataChanged(index(counting), index(counting), {ChosenCountRole});
  }
}

// --- restoring

void HistoryModel::restoreRun(int row) {
  if (const auto line = m_rows->lineAt(row); line.isRun()) {
    restore(textFrom(line.run->run.summary.runId.toString()));
  }
}

void HistoryModel::restoreEntry(int row) {
  const auto line = m_rows->lineAt(row);
  if (line.item != nullptr) askOrRestore({line.run->run.summary.runId, {line.item->entry.id}});
}

void HistoryModel::restoreChosen(int row) {
  const auto* run = m_rows->lineAt(row).run;
  if (run == nullptr || run->chosen == 0) return;
  RestoreOptions options{run->run.summary.runId};
  for (const auto& item : run->items) {
    if (item.canComeBack() && !m_leftOut.contains(item.entry.id)) options.entries.push_back(item.entry.id);
  }
  askOrRestore(std::move(options));
}

void HistoryModel::restore(const QString& runId) {
  if (const auto id = Uuid::parse(runId.toStdString())) askOrRestore({*id});
}

void HistoryModel::askOrRestore(RestoreOptions options) {
  const auto question = std::make_shared<std::optional<Question>>();
  startRestore(
      0,
      [tasks = services().tasks, options = std::move(options), question](
          const RunProgress& progress, const std::stop_token& stop) -> std::optional<Restored> {
        try {
          auto restore = proposeRestore(tasks, options).approve();
          if (auto room = proposeMakingRoom(tasks, restore).approve(); !room.empty()) {
            question->emplace(Question{options, std::move(restore), std::move(room)});
            return std::nullopt;
          }
        } catch (const UndoError&) {
          // The restore itself says so.
        }
        return restoreNow(tasks, options, progress, stop);
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
  startRestore(question.options, static_cast<std::int64_t>(question.restore.rows().size()));
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
  const auto* item = m_rows->lineAt(row).item;
  return item == nullptr ? QString() : placeText(presentPlace(item->entry));
}

void HistoryModel::openContainingFolder(int row) {
  const auto line = m_rows->lineAt(row);
  const auto* item = line.item;
  if (line.isFoot) item = &*std::ranges::find_if(line.run->items, &RecordedItem::canComeBack);
  if (item == nullptr) return;
  postWork([this, present = presentPlace(item->entry)](const std::stop_token&) {
    if (!services().desktop.reveal(present)) qWarning("No file manager could be started.");
  });
}

}  // namespace orvane
