#include "app/agent/AgentModel.h"

#include "app/agent/PlanTexts.h"
#include "app/common/Format.h"
#include "app/common/NoticeTexts.h"
#include "app/common/Places.h"
#include "app/common/Text.h"
#include "app/shell/AppNavigationItem.h"
#include "core/base/files/HomeFolder.h"
#include "core/tasks/AskTask.h"
#include "core/tasks/ReadEntries.h"
#include "core/tasks/RuleFromPlan.h"

#include <algorithm>
#include <utility>
#include <variant>

namespace orvane {

struct AgentModel::Answer {
  std::string prompt;
  PlannedAnswer planned;
  Proposal proposal;
  std::vector<PlacesBeside> beside;
};

namespace {

// Why a row cannot be chosen; empty for one that can, and for one whose label says it.
QString lockText(const ProposedRow& row) {
  switch (row.lock) {
    case Lock::inTrash:
      return localizedText("state.in_trash");
    case Lock::inPlace:
      return localizedText("agent.in_place");
    case Lock::listedOnly:
      return localizedText("agent.listed_only");
    case Lock::refused:
      return shownName(row.group->refusal);
    case Lock::kept:
      return localizedText("keep.kept");
    case Lock::manualLabel:
    case Lock::reference:
    case Lock::none:
      break;
  }
  return {};
}

// The texts of what a part of a request became.
QString becameText(const ReadEntry& entry, const FileUrl& home) {
  if (!entry.counts) return localizedText("agent.not_followed");
  if (entry.folder) return shownPath(*entry.folder, home);
  if (entry.ageDays) return countedText("count.days", *entry.ageDays);
  if (entry.sizeBytes) return Format::bytes(static_cast<double>(*entry.sizeBytes));
  if (entry.program) return shownName(*entry.program);
  switch (entry.meaning) {
    case WordMeaning::screenshots:
      return localizedText("category.screenshots");
    case WordMeaning::installers:
      return localizedText("category.oldDownloads");
    case WordMeaning::caches:
      return localizedText("category.caches");
    case WordMeaning::logs:
      return localizedText("category.logs");
    case WordMeaning::organizing:
      return localizedText("agent.to_folders");
    case WordMeaning::removal:
      return localizedText("agent.to_trash");
    default:
      return {};
  }
}

QString assumedText(const ReadEntry& entry, const FileUrl& home) {
  const auto value = becameText(entry, home);
  switch (entry.meaning) {
    case WordMeaning::age:
      return localizedText("agent.no_age_named").arg(value);
    case WordMeaning::size:
      return localizedText("agent.no_size_named").arg(value);
    default:
      return localizedText("agent.no_folder_named").arg(value);
  }
}

std::string_view doubtKey(Doubt doubt) {
  switch (doubt) {
    case Doubt::negation:
      return "agent.doubt_negation";
    case Doubt::question:
      return "agent.doubt_question";
    case Doubt::nothing:
      return "agent.doubt_nothing";
    case Doubt::path:
      return "agent.doubt_path";
    case Doubt::unknownWord:
      return "agent.doubt_word";
    case Doubt::leftAside:
      return "agent.doubt_aside";
    case Doubt::comparison:
      return "agent.doubt_comparison";
    case Doubt::noCriterion:
      return "agent.doubt_criterion";
    case Doubt::noVerb:
      return "agent.doubt_verb";
    case Doubt::program:
      return "agent.doubt_program";
    case Doubt::otherRoom:
    case Doubt::none:
      break;
  }
  return {};
}

AppNavigationItem sectionOf(Room room) {
  switch (room) {
    case Room::duplicates:
      return AppNavigationItem::Duplicates;
    case Room::apps:
      return AppNavigationItem::Apps;
    case Room::organize:
      return AppNavigationItem::Organize;
    case Room::schedule:
      return AppNavigationItem::Rules;
    case Room::history:
    case Room::trash:
      return AppNavigationItem::History;
    case Room::map:
      return AppNavigationItem::Overview;
    case Room::privacy:
      return AppNavigationItem::Privacy;
    case Room::cleanup:
      break;
  }
  return AppNavigationItem::Cleanup;
}

std::string_view titleOf(Room room) {
  return navigationRows[static_cast<std::size_t>(sectionOf(room))].titleKey;
}

}  // namespace

AgentModel::AgentModel(WindowServices services, QObject* parent) : RunModel(std::move(services), parent) {}

AgentModel::~AgentModel() {
  m_planStop.request_stop();
}

// --- who is asked

void AgentModel::reloadProviders() {
  m_planQueue.post([this](const std::stop_token&) {
    std::array<bool, allAIProviders.size()> hasKey{};
    const bool hasLocalModel = localModelProblem(services().tasks).empty();
    for (const auto provider : allAIProviders) {
      hasKey[static_cast<std::size_t>(provider)] = orvane::hasKey(services().tasks, provider);
    }
    callOn(this, [this, hasKey, hasLocalModel] {
      m_hasKey = hasKey;
      m_hasLocalModel = hasLocalModel;
      Q_EMIT providerChanged();
    });
  });
}

QVariantList AgentModel::providers() const {
  QVariantList result;
  for (const auto provider : allAIProviders) {
    // The last one, so the others keep their numbers.
    if (provider == AIProvider::localModel && !m_hasLocalModel && m_provider != provider) continue;
    result.append(QVariantMap{{"name", textFrom(displayName(provider))},
                              {"needsKey", !keyAccount(provider).empty()},
                              {"hasKey", m_hasKey[static_cast<std::size_t>(provider)]}});
  }
  return result;
}

void AgentModel::setPrompt(const QString& prompt) {
  if (std::exchange(m_prompt, prompt) != prompt) Q_EMIT promptChanged();
}

void AgentModel::setProvider(int provider) {
  if (provider < 0 || provider >= static_cast<int>(allAIProviders.size()) || provider == this->provider()) return;
  m_provider = static_cast<AIProvider>(provider);
  Q_EMIT providerChanged();
}

bool AgentModel::isOffline() const {
  if (m_answer) return m_answer->planned.provider == AIProvider::heuristic;
  if (m_provider == AIProvider::localModel) return !m_hasLocalModel;
  return m_provider == AIProvider::heuristic || !m_hasKey[static_cast<std::size_t>(m_provider)];
}

void AgentModel::updateRequest() {
  m_planQueue.post([this, prompt = m_prompt.trimmed().toStdString(), provider = m_provider](const std::stop_token&) {
    const auto request = requestToSend(services().tasks, prompt, provider);
    callOn(this, [this, text = textFrom(request ? requestText(*request) : std::string())] {
      m_request = text;
      Q_EMIT requestChanged();
    });
  });
}

// --- the plan

void AgentModel::dryRun() {
  const auto prompt = m_prompt.trimmed().toStdString();
  if (prompt.empty() || m_isPlanning || isWorking()) return;
  m_planStop = {};
  discard();
  plan(prompt, [this, prompt, provider = m_provider](const std::stop_token& stop) {
    auto planned = askPlanner(services().tasks, prompt, provider, stop);
    if (planned.sent) {
      callOn(this, [this, text = textFrom(requestText(*planned.sent)), provider] {
        Q_EMIT requestSent(text, milliseconds(ReferenceClock::now()), textFrom(displayName(provider)));
      });
    }
    return planned;
  });
}

void AgentModel::addPlaces(int category) {
  if (!m_answer || m_isPlanning || isWorking() || category < 0 ||
      category >= static_cast<int>(allScanCategories.size())) {
    return;
  }
  const auto answer = m_answer;
  m_planStop = {};
  discard();
  plan(answer->prompt, [this, answer, category](const std::stop_token&) {
    return withPlaces(services().tasks, answer->planned, static_cast<ScanCategory>(category));
  });
}

void AgentModel::plan(std::string prompt, Planner planner) {
  m_isPlanning = true;
  Q_EMIT planChanged();
  m_planQueue.post([this, prompt = std::move(prompt), planner = std::move(planner), looked = startLooking(),
                    stop = m_planStop.get_token()](const std::stop_token&) {
    const auto answer = tried([&] { return answerOf(prompt, planner, {.stop = stop, .looked = looked.get()}); });
    callOn(this, [this, answer, stop] {
      stopLooking();
      show(stop.stop_requested() ? nullptr : answer);
    });
  });
}

std::shared_ptr<const AgentModel::Answer> AgentModel::answerOf(const std::string& prompt, const Planner& planner,
                                                               const TaskMonitor& monitor) {
  const auto& tasks = services().tasks;
  auto planned = planner(monitor.stop);
  if (monitor.stop.stop_requested()) return nullptr;
  auto proposal = proposeAnswer(tasks, planned, PlanReach::boundary, ReferenceClock::now(), monitor);
  if (!proposal) return nullptr;
  auto beside = placesBeside(tasks, planned, monitor);
  return std::make_shared<const Answer>(Answer{prompt, std::move(planned), *std::move(proposal), std::move(beside)});
}

void AgentModel::show(std::shared_ptr<const Answer> answer) {
  m_isPlanning = false;
  m_ruleProblem.clear();
  beginResetModel();
  m_answer = std::move(answer);
  m_selection = m_answer ? m_answer->proposal.selection() : Selection();
  m_matchBytes = 0;
  if (m_answer) {
    m_answer->proposal.forEach([&](std::size_t, const ProposedRow& row) { m_matchBytes += row.item.fileSize(); });
  }
  endResetModel();
  Q_EMIT planChanged();
  Q_EMIT providerChanged();
  Q_EMIT selectionChanged();
}

void AgentModel::discard() {
  forgetResult();
  show(nullptr);
}

void AgentModel::cancel() {
  m_planStop.request_stop();
  RunModel::cancel();
}

void AgentModel::languageChanged() {
  RunModel::languageChanged();
  Q_EMIT planChanged();
  if (rowCount() > 0) Q_EMIT dataChanged(index(0), index(rowCount() - 1), {ReasonRole});
}

QString AgentModel::planTitle() const {
  return m_answer ? shownPlanText(m_answer->planned.plan.summary) : QString();
}

QVariantList AgentModel::planSteps() const {
  QVariantList result;
  if (!m_answer) return result;
  for (const auto& step : m_answer->planned.plan.steps) {
    auto detail = shownPath(step.targetFolder, services().tasks.home);
    if (step.destinationFolder)
      detail += QStringLiteral(" → ") + shownPath(*step.destinationFolder, services().tasks.home);
    result.append(QVariantMap{{"text", shownPlanText(step.explanation)}, {"detail", detail}});
  }
  return result;
}

QString AgentModel::answeredBy() const {
  return m_answer ? textFrom(displayName(m_answer->planned.provider)) : QString();
}

QString AgentModel::fallbackReason() const {
  return m_answer ? shownName(m_answer->planned.fallbackReason.value_or("")) : QString();
}

bool AgentModel::isRefused() const {
  return m_answer && firstNotice<PlanRefused>(m_answer->proposal.notices()) != nullptr;
}

QString AgentModel::error() const {
  const auto* refused = m_answer ? firstNotice<PlanRefused>(m_answer->proposal.notices()) : nullptr;
  if (refused == nullptr) return {};
  return refused->sortsWholeFolder ? localizedText("agent.use_organize").arg(localizedText("nav.organize"))
                                   : localizedText("agent.not_understood");
}

QString AgentModel::fault() const {
  const auto* refused = m_answer ? firstNotice<PlanRefused>(m_answer->proposal.notices()) : nullptr;
  return refused == nullptr ? QString() : shownName(refused->fault);
}

QStringList AgentModel::notices() const {
  return m_answer ? leftOutFolders(m_answer->proposal.notices(), services().tasks.home) : QStringList();
}

// --- how the request was understood

QVariantList AgentModel::reading() const {
  QVariantList result;
  if (!m_answer) return result;
  QStringList unread;
  for (const auto& entry : readEntries(m_answer->prompt, m_answer->planned)) {
    if (entry.meaning == WordMeaning::none) {
      unread.append(shownName(entry.text));
      continue;
    }
    const auto became =
        entry.isAssumed() ? assumedText(entry, services().tasks.home) : becameText(entry, services().tasks.home);
    result.append(
        QVariantMap{{"text", shownName(entry.text)}, {"became", became}, {"kind", entry.isAssumed() ? Assumed : Read}});
  }
  if (!unread.isEmpty()) {
    result.append(QVariantMap{{"text", QString()},
                              {"became", localizedText("agent.meant_nothing").arg(unread.join(QStringLiteral(" ")))},
                              {"kind", Unread}});
  }
  return result;
}

QString AgentModel::doubt() const {
  if (!m_answer || m_answer->planned.understanding.isSure()) return {};
  const auto doubt = m_answer->planned.understanding.doubt;
  const auto key = doubtKey(doubt);
  if (key.empty()) return {};
  auto text = localizedText(key);
  if (doubt != Doubt::unknownWord) return text;
  return text.arg(shownName(doubtedWords(readEntries(m_answer->prompt, m_answer->planned), doubt)));
}

QString AgentModel::roomText() const {
  const auto* wish = roomWish();
  if (wish == nullptr) return {};
  if (wish->room == Room::trash) return localizedText("agent.room_trash");
  return localizedText("agent.room_text").arg(localizedText(titleOf(wish->room)));
}

QString AgentModel::roomAction() const {
  const auto* wish = roomWish();
  if (wish == nullptr) return {};
  if (wish->room == Room::trash) return localizedText("action.open_trash");
  return localizedText("agent.room_open").arg(localizedText(titleOf(wish->room)));
}

const RoomWish* AgentModel::roomWish() const {
  if (!m_answer || !m_answer->planned.understanding.room) return nullptr;
  return &*m_answer->planned.understanding.room;
}

void AgentModel::openRoom() {
  const auto* wish = roomWish();
  if (wish == nullptr) return;
  if (wish->room == Room::trash) {
    Q_EMIT trashAsked();
    return;
  }
  const auto folder = wish->folder.empty() ? QString() : textFrom(expandedHome(wish->folder));
  const int way = wish->way == "date" ? 1 : wish->way == "type" ? 2 : -1;
  Q_EMIT roomAsked(static_cast<int>(sectionOf(wish->room)), folder, textFrom(wish->name), way);
}

QVariantList AgentModel::beside() const {
  QVariantList result;
  if (!m_answer) return result;
  for (const auto& places : m_answer->beside) {
    const auto name = localizedText("category." + std::string(rawValue(places.category)));
    result.append(QVariantMap{
        {"text", localizedText("agent.beside").arg(name, Format::bytes(static_cast<double>(places.rows.bytes)))},
        {"category", static_cast<int>(places.category)}});
  }
  return result;
}

double AgentModel::matchCount() const noexcept {
  return m_answer ? static_cast<double>(m_answer->proposal.size()) : 0.0;
}

// --- rows

int AgentModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() || !m_answer ? 0 : static_cast<int>(m_answer->proposal.size());
}

QHash<int, QByteArray> AgentModel::roleNames() const {
  return {
      {NameRole, "name"},
      {PlaceRole, "place"},
      {ReasonRole, "reason"},
      {RiskRole, "risk"},
      {DateRole, "date"},
      {BytesRole, "bytes"},
      {CheckStateRole, "checkState"},
      {ActionRole, "action"},
      {DestinationRole, "destination"},
  };
}

QVariant AgentModel::data(const QModelIndex& index, int role) const {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
  const auto at = static_cast<std::size_t>(index.row());
  const auto row = m_answer->proposal.row(at);
  switch (role) {
    case Qt::DisplayRole:
    case NameRole:
      return shownName(row.item.url().lastPathComponent());
    case PlaceRole:
      return shownPlace(row.item.url(), services().tasks.home);
    case ReasonRole:
      return remarkOf(row);
    case RiskRole:
      return static_cast<int>(row.item.riskLabel());
    case DateRole:
      return milliseconds(row.item.lastModifiedDate());
    case BytesRole:
      return static_cast<double>(row.item.fileSize());
    case CheckStateRole:
      if (row.choice == Choice::locked) return -1;
      return static_cast<int>(m_selection.isSelected(at) ? Qt::Checked : Qt::Unchecked);
    case ActionRole:
      return textFrom(rawValue(stepOf(m_answer->planned.plan, row).action));
    case DestinationRole: {
      const auto* folder = row.lock == Lock::none ? row.destinationFolder() : nullptr;
      return folder == nullptr ? QString() : shownPath(folder->path(), services().tasks.home);
    }
    default:
      return {};
  }
}

QString AgentModel::remarkOf(const ProposedRow& row) const {
  const auto lock = lockText(row);
  return lock.isEmpty() ? shownPlanText(stepOf(m_answer->planned.plan, row).explanation) : lock;
}

void AgentModel::toggle(int row) {
  if (row < 0 || row >= rowCount() || isWorking()) return;
  const auto at = static_cast<std::size_t>(row);
  m_selection.set(at, m_selection.isSelected(at) ? Selection::Whether::unselected : Selection::Whether::selected);
  Q_EMIT dataChanged(index(row), index(row), {CheckStateRole});
  Q_EMIT selectionChanged();
}

QString AgentModel::placeAt(int row) const {
  if (row < 0 || row >= rowCount()) return {};
  return placeText(m_answer->proposal.row(static_cast<std::size_t>(row)).item.url());
}

// --- carrying out

void AgentModel::confirm() {
  if (!m_answer || m_selection.count() == 0) return;
  startRun(m_answer->proposal.approve(m_selection), [this](const RunReport&) { show(nullptr); });
}

void AgentModel::saveAsRule() {
  if (!m_answer || isWorking()) return;
  auto made = ruleFromAnswer(m_answer->planned, m_answer->planned.plan.userGoal);
  const auto* problem = std::get_if<RuleProblem>(&made);
  m_ruleProblem = problem != nullptr ? localizedText(problem->key) : QString();
  Q_EMIT planChanged();
  if (problem != nullptr) return;
  auto& rule = std::get<CleanupRule>(made);
  rule.description = shownPlanText(rule.description).toStdString();
  Q_EMIT ruleMade(rule);
}

QString AgentModel::movedText(std::int64_t count, std::int64_t /*bytes*/) const {
  return countedText("agent.result", count);
}

}  // namespace orvane
