#include "app/agent/AgentModel.h"

#include "app/common/NoticeTexts.h"
#include "app/common/Places.h"
#include "app/common/Text.h"
#include "core/tasks/AskTask.h"

#include <algorithm>
#include <utility>
#include <variant>

namespace orvane {

struct AgentModel::Answer {
  PlannedAnswer planned;
  Proposal proposal;
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

}  // namespace

AgentModel::AgentModel(WindowServices services, QObject* parent) : RunModel(std::move(services), parent) {
  reloadProviders();
}

AgentModel::~AgentModel() {
  m_planStop.request_stop();
}

// --- who is asked

void AgentModel::reloadProviders() {
  m_planQueue.post([this](const std::stop_token&) {
    std::array<bool, allAIProviders.size()> hasKey{};
    for (const auto provider : allAIProviders) {
      hasKey[static_cast<std::size_t>(provider)] = orvane::hasKey(services().tasks, provider);
    }
    callOn(this, [this, hasKey] {
      m_hasKey = hasKey;
      Q_EMIT providerChanged();
    });
  });
}

QVariantList AgentModel::providers() const {
  QVariantList result;
  for (const auto provider : allAIProviders) {
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
  m_isPlanning = true;
  Q_EMIT planChanged();
  m_planQueue.post([this, prompt, provider = m_provider, looked = startLooking(),
                    stop = m_planStop.get_token()](const std::stop_token&) {
    const auto answer = tried([&]() -> std::shared_ptr<const Answer> {
      const auto& tasks = services().tasks;
      auto planned = askPlanner(tasks, prompt, provider, stop);
      if (planned.sent) {
        callOn(this, [this, text = textFrom(requestText(*planned.sent)), provider] {
          Q_EMIT requestSent(text, milliseconds(ReferenceClock::now()), textFrom(displayName(provider)));
        });
      }
      if (stop.stop_requested()) return nullptr;
      auto proposal = proposeAnswer(tasks, planned, PlanReach::boundary, ReferenceClock::now(),
                                    {.stop = stop, .looked = looked.get()});
      if (!proposal) return nullptr;
      return std::make_shared<const Answer>(Answer{std::move(planned), *std::move(proposal)});
    });
    callOn(this, [this, answer, stop] {
      stopLooking();
      show(stop.stop_requested() ? nullptr : answer);
    });
  });
}

void AgentModel::show(std::shared_ptr<const Answer> answer) {
  m_isPlanning = false;
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
  return m_answer ? shownName(m_answer->planned.plan.summary) : QString();
}

QVariantList AgentModel::planSteps() const {
  QVariantList result;
  if (!m_answer) return result;
  for (const auto& step : m_answer->planned.plan.steps) {
    auto detail = shownPath(step.targetFolder, services().tasks.home);
    if (step.destinationFolder)
      detail += QStringLiteral(" → ") + shownPath(*step.destinationFolder, services().tasks.home);
    result.append(QVariantMap{{"text", shownName(step.explanation)}, {"detail", detail}});
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
  return lock.isEmpty() ? shownName(stepOf(m_answer->planned.plan, row).explanation) : lock;
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

QString AgentModel::movedText(std::int64_t count, std::int64_t /*bytes*/) const {
  return countedText("agent.result", count);
}

}  // namespace orvane
