#include "app/agent/AgentModel.h"

#include "app/agent/PlanChips.h"
#include "app/agent/PlanMatches.h"
#include "app/agent/PlanTexts.h"
#include "app/agent/ReadingTexts.h"
#include "app/common/Format.h"
#include "app/common/NoticeTexts.h"
#include "app/common/Places.h"
#include "app/common/Text.h"
#include "app/shell/AppNavigationItem.h"
#include "core/base/files/HomeFolder.h"
#include "core/tasks/AskTask.h"
#include "core/tasks/Folders.h"
#include "core/tasks/PlanConditions.h"
#include "core/tasks/ReadEntries.h"
#include "core/tasks/RequestPresets.h"
#include "core/tasks/RuleFromPlan.h"

#include <algorithm>
#include <utility>
#include <variant>

namespace orvane {

struct AgentModel::Answer : ReadPlan {
  PlanMatches matches;
  std::vector<PlacesBeside> beside;
  bool isChanged = false;  // since it was typed
  bool isWidened = false;  // by the last change
};

// Of the conditions of a plan that is shown.
struct AgentModel::Change {
  std::shared_ptr<const Answer> before;
  Selection chosen;
  bool onlyNarrows = false;
};

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
    callOn(this, [this, hasKey, hasLocalModel, folders = grantedFolders(services().tasks)] {
      m_hasKey = hasKey;
      m_hasLocalModel = hasLocalModel;
      m_folders = folders;
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

void AgentModel::plan(std::string prompt, Planner planner, std::shared_ptr<const Change> change) {
  m_isPlanning = true;
  Q_EMIT planChanged();
  m_planQueue.post([this, prompt = std::move(prompt), planner = std::move(planner), change = std::move(change),
                    looked = startLooking(), stop = m_planStop.get_token()](const std::stop_token&) {
    const auto answer =
        tried([&] { return answerOf(prompt, planner, change.get(), {.stop = stop, .looked = looked.get()}); });
    callOn(this, [this, answer, change, stop] {
      stopLooking();
      m_isPlanning = false;
      const bool isThere = answer && !stop.stop_requested();
      if (change && !isThere) {
        Q_EMIT planChanged();
      } else {
        show(isThere ? answer : nullptr);
      }
    });
  });
}

std::shared_ptr<const AgentModel::Answer> AgentModel::answerOf(const std::string& prompt, const Planner& planner,
                                                               const Change* change, const TaskMonitor& monitor) {
  const auto& tasks = services().tasks;
  const auto answer = std::make_shared<Answer>();
  answer->prompt = prompt;
  answer->planned = planner(monitor.stop);
  answer->asked = change != nullptr ? change->before->asked : answer->planned;
  if (monitor.stop.stop_requested()) return nullptr;
  auto proposal = proposeAnswer(tasks, answer->planned, PlanReach::boundary, ReferenceClock::now(), monitor);
  if (!proposal) return nullptr;
  auto selection = proposal->selection();
  if (change != nullptr) {
    answer->isChanged = true;
    answer->isWidened = !change->onlyNarrows;
    selection.deselectAll();
    if (change->onlyNarrows) selection = keptSelection(change->before->matches.proposal(), change->chosen, *proposal);
  }
  answer->matches = PlanMatches(answer->planned.plan, *std::move(proposal), std::move(selection));
  answer->beside = placesBeside(tasks, answer->planned, monitor);
  return answer;
}

void AgentModel::show(std::shared_ptr<const Answer> answer) {
  m_isPlanning = false;
  m_ruleProblem.clear();
  beginResetModel();
  m_answer = std::move(answer);
  m_matches = m_answer ? m_answer->matches : PlanMatches();
  endResetModel();
  Q_EMIT planChanged();
  Q_EMIT providerChanged();
  Q_EMIT selectionChanged();
}

QString AgentModel::change(int condition, const QString& value) {
  auto conditions = m_answer ? conditionsOf(m_answer->planned) : std::nullopt;
  const bool isKnown = condition >= 0 && condition <= static_cast<int>(PlanCondition::extensions);
  if (!conditions || !isKnown || m_isPlanning || isWorking()) return {};
  const auto before = *conditions;
  const auto which = static_cast<PlanCondition>(condition);
  if (which == PlanCondition::folder && !conditions->folderPath) return {};
  const auto place = which == PlanCondition::folder ? placeFrom(value) : std::nullopt;
  const auto problem = setCondition(*conditions, which, place ? place->path() : value.toStdString());
  if (!problem.empty() || *conditions == before) return textFrom(problem);
  const auto change =
      std::make_shared<Change>(Change{m_answer, m_matches.selection(), onlyNarrows(before, *conditions)});
  const auto goal = localizedText("agent.goal_changed").arg(textFrom(trimmed(m_answer->prompt))).toStdString();
  m_planStop = {};
  forgetResult();
  plan(
      m_answer->prompt,
      [answer = m_answer, conditions = *conditions, goal](const std::stop_token&) {
        return withConditions(answer->planned, conditions, goal);
      },
      change);
  return {};
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
  Q_EMIT presetsChanged();
  Q_EMIT selectionChanged();
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
  return m_answer && firstNotice<PlanRefused>(m_matches.proposal().notices()) != nullptr;
}

QString AgentModel::error() const {
  const auto* refused = m_answer ? firstNotice<PlanRefused>(m_matches.proposal().notices()) : nullptr;
  if (refused == nullptr) return {};
  if (m_answer->isChanged) return localizedText("agent.needs_condition");
  return refused->sortsWholeFolder ? localizedText("agent.use_organize").arg(localizedText("nav.organize"))
                                   : localizedText("agent.not_understood");
}

QString AgentModel::fault() const {
  const auto* refused = m_answer ? firstNotice<PlanRefused>(m_matches.proposal().notices()) : nullptr;
  return refused == nullptr ? QString() : shownName(refused->fault);
}

QStringList AgentModel::notices() const {
  return m_answer ? leftOutFolders(m_matches.proposal().notices(), services().tasks.home) : QStringList();
}

// --- how the request was understood

QVariantList AgentModel::reading() const {
  return m_answer ? planChips(*m_answer, m_folders, services().tasks.home) : QVariantList();
}

QString AgentModel::changeText() const {
  if (!m_answer || !m_answer->isChanged) return {};
  auto text = localizedText("agent.changed");
  if (m_answer->isWidened && !m_matches.proposal().empty()) text += u' ' + localizedText("agent.widened");
  return text;
}

QString AgentModel::doubt() const {
  if (!m_answer || m_answer->planned.understanding.isSure()) return {};
  const auto doubt = m_answer->planned.understanding.doubt;
  const auto key = doubtKey(doubt);
  if (key.empty()) return {};
  auto text = localizedText(key);
  if (doubt != Doubt::unknownWord) return text;
  QStringList words;
  for (const auto& word : doubtedWords(readEntries(m_answer->prompt, m_answer->planned), doubt)) {
    words += localizedText("agent.quoted").arg(shownName(word));
  }
  return text.arg(words.join(QStringLiteral(", ")));
}

QString AgentModel::roomText() const {
  const auto* request = roomRequest();
  if (request == nullptr) return {};
  if (request->room == Room::trash) return localizedText("agent.room_trash");
  return localizedText("agent.room_text").arg(localizedText(titleOf(request->room)));
}

QString AgentModel::roomAction() const {
  const auto* request = roomRequest();
  if (request == nullptr) return {};
  if (request->room == Room::trash) return localizedText("action.open_trash");
  return localizedText("agent.room_open").arg(localizedText(titleOf(request->room)));
}

const RoomRequest* AgentModel::roomRequest() const {
  if (!m_answer || !m_answer->planned.understanding.room) return nullptr;
  return &*m_answer->planned.understanding.room;
}

void AgentModel::openRoom() {
  const auto* request = roomRequest();
  if (request == nullptr) return;
  if (request->room == Room::trash) {
    Q_EMIT trashAsked();
    return;
  }
  const auto folder = request->folder.empty() ? QString() : textFrom(expandedHome(request->folder));
  const int way = request->way == "date" ? 1 : request->way == "type" ? 2 : -1;
  Q_EMIT roomAsked(static_cast<int>(sectionOf(request->room)), folder, textFrom(request->name), way);
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

// --- presets

void AgentModel::reloadPresets() {
  m_planQueue.post([this](const std::stop_token& stop) {
    callOn(this, [this, presets = usefulPresets(services().tasks, stop)] {
      m_presets = presets;
      Q_EMIT presetsChanged();
    });
  });
}

QStringList AgentModel::presets() const {
  QStringList result;
  for (const auto key : m_presets) result.append(localizedText(key));
  return result;
}

void AgentModel::askPreset(int index) {
  if (index < 0 || index >= static_cast<int>(m_presets.size())) return;
  setPrompt(presets().at(index));
  dryRun();
}

// --- rows

int AgentModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : m_matches.rows().rowCount();
}

QVariant AgentModel::data(const QModelIndex& index, int role) const {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
  if (role == KindRole) return m_matches.rows().lineAt(index.row())->row ? Match : Header;
  return m_matches.data(index.row(), role, services().tasks.home);
}

void AgentModel::toggle(int row) {
  if (isWorking() || m_isPlanning) return;
  const auto toggled = m_matches.toggle(row);
  if (!toggled) return;
  const auto& group = m_matches.rows().groups()[*toggled];
  Q_EMIT dataChanged(index(group.start), index(m_matches.rows().lastRowOf(group)), {CheckStateRole});
  Q_EMIT selectionChanged();
}

void AgentModel::selectAll(bool isSelected) {
  if (isWorking() || m_isPlanning || rowCount() == 0) return;
  m_matches.selectAll(isSelected);
  Q_EMIT dataChanged(index(0), index(rowCount() - 1), {CheckStateRole});
  Q_EMIT selectionChanged();
}

void AgentModel::toggleExpanded(int row) {
  const auto line = m_matches.rows().lineAt(row);
  if (!line || line->row) return;
  const auto& group = m_matches.rows().groups()[line->group];
  const int last = row + static_cast<int>(group.rows.size());
  if (group.isExpanded) {
    beginRemoveRows({}, row + 1, last);
    m_matches.setExpanded(line->group, false);
    endRemoveRows();
  } else {
    beginInsertRows({}, row + 1, last);
    m_matches.setExpanded(line->group, true);
    endInsertRows();
  }
  Q_EMIT dataChanged(index(row), index(row), {ExpandedRole});
}

QVariantList AgentModel::moves() const {
  return m_matches.moves(services().tasks.home);
}

QString AgentModel::placeAt(int row) const {
  const auto line = m_matches.rows().lineAt(row);
  return line && line->row ? placeText(m_matches.proposal().row(*line->row).item.url()) : QString();
}

// --- carrying out

void AgentModel::confirm() {
  if (!m_answer || m_isPlanning || m_matches.selection().count() == 0) return;
  startRun(m_matches.proposal().approve(m_matches.selection()), [this](const RunReport&) {
    show(nullptr);
    reloadPresets();
  });
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
