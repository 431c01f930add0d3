#include "app/AgentModel.h"

#include "app/Places.h"
#include "app/Text.h"
#include "core/assistant/AgentCoordinator.h"
#include "core/assistant/KeychainService.h"
#include "core/base/CanonicalPath.h"
#include "core/base/FileStatus.h"
#include "core/base/PathText.h"
#include "core/base/UnicodeText.h"
#include "core/plans/CleaningPlanSchema.h"
#include "core/plans/PlanExecutor.h"
#include "core/plans/PlanFolder.h"
#include "core/plans/PlanMatcher.h"
#include "core/safety/PathValidator.h"
#include "core/scanning/StorageScanner.h"

#include <fcntl.h>
#include <fmt/format.h>

#include <algorithm>
#include <atomic>
#include <exception>
#include <set>
#include <utility>

namespace orvane {

struct AgentModel::Answer {
  PlannedAnswer planned;
  std::optional<std::string> fault;
  std::vector<PlanMatchResult> matches;
};

namespace {

std::vector<FileUrl> rootsFor(const WindowServices& services) {
  return planRoots(existingFolders(services.folders), services.home.path());
}

// The plan's folders in which it may change something, each once.
std::vector<PlanTarget> targetsOf(const CleaningPlan& plan, const WindowServices& services,
                                  const PathValidator& validator) {
  const auto roots = PathValidator::canonicalizeRoots(rootsFor(services));
  std::vector<PlanTarget> targets;
  std::set<std::string> seen;
  for (const auto& step : plan.steps) {
    const auto folder = planFolder(step.targetFolder);
    if (!folder) continue;
    PlanTarget target{*folder, canonicalPath(folder->path())};
    const bool isInside = roots.contains(target.canonical);
    if (isInside && validator.isPathAllowed(*folder, roots) && seen.insert(target.canonical).second) {
      targets.push_back(std::move(target));
    }
  }
  return targets;
}

std::vector<PlanMatchResult> matchesFor(const CleaningPlan& plan, const WindowServices& services,
                                        const PathValidator& validator, std::atomic<std::size_t>& looked,
                                        const std::stop_token& stop) {
  auto targets = targetsOf(plan, services, validator);
  if (targets.empty()) return {};
  std::vector<FileUrl> folders;
  folders.reserve(targets.size());
  for (const auto& target : targets) folders.push_back(target.folder);
  PlanMatcher matcher(plan, std::move(targets));
  auto stream = services.scanner.scan(std::move(folders), DeveloperCaches::include);
  const std::stop_callback whenStopped(stop, [&stream] { stream.cancel(); });
  for (auto events = stream.nextBatch(); !events.empty(); events = stream.nextBatch()) {
    looked.fetch_add(events.size(), std::memory_order_relaxed);
    for (auto& event : events) {
      if (auto* item = std::get_if<FileItem>(&event)) matcher.take(std::move(*item));
    }
  }
  auto matches = matcher.finish();
  // What is looked at now is what may move later, and nothing else of that name.
  for (auto& match : matches) {
    const auto status = readFileStatus(AT_FDCWD, match.item.url().path().c_str());
    if (status && status->type != FileType::directory) match.identity = ItemIdentity::of(*status);
  }
  return matches;
}

// Why a plan will not do, in words that help on.
QString faultText(const CleaningPlan& plan) {
  const bool sortsWholeFolder = plan.steps.size() == 1 && plan.steps.front().action == PlannedAction::move &&
                                plan.steps.front().destinationFolder == plan.steps.front().targetFolder;
  return sortsWholeFolder ? localizedText("agent.use_organize").arg(localizedText("nav.organize"))
                          : localizedText("agent.not_understood");
}

std::string textOf(const HttpRequest& request) {
  std::string text = fmt::format("POST {}\nContent-Type: application/json\n", request.url);
  for (const auto& header : request.headers) text += fmt::format("{}: {}\n", header.name, header.value);
  return text + "\n" + request.body;
}

}  // namespace

AgentModel::AgentModel(WindowServices services, SectionServices sections, QObject* parent)
    : RunModel(std::move(services), parent), m_sections(std::move(sections)) {
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
      const auto account = keyAccount(provider);
      hasKey[static_cast<std::size_t>(provider)] = !account.empty() && m_sections.keychain.getKey(account).has_value();
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
    const auto request = m_sections.agent.keylessRequest(prompt, provider, {});
    callOn(this, [this, text = textFrom(request ? textOf(*request) : std::string())] {
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
    const bool isSent = !keyAccount(provider).empty() && m_sections.keychain.getKey(keyAccount(provider)).has_value();
    if (isSent) {
      if (const auto request = m_sections.agent.keylessRequest(prompt, provider, {})) {
        callOn(this, [this, text = textFrom(textOf(*request)), provider] {
          Q_EMIT requestSent(text, milliseconds(ReferenceClock::now()), textFrom(displayName(provider)));
        });
      }
    }
    auto answer = std::make_shared<Answer>();
    answer->planned = m_sections.agent.requestAnswer(prompt, provider, {}, stop);
    if (const auto fault = CleaningPlanSchema::firstFault(answer->planned.plan)) {
      answer->fault = fault->what();
    } else if (!stop.stop_requested()) {
      answer->matches = matchesFor(answer->planned.plan, services(), m_sections.validator, *looked, stop);
    }
    callOn(this, [this, answer, isStopped = stop.stop_requested()] {
      stopLooking();
      show(isStopped ? nullptr : answer);
    });
  });
}

void AgentModel::show(std::shared_ptr<Answer> answer) {
  m_isPlanning = false;
  beginResetModel();
  m_error = answer && answer->fault ? faultText(answer->planned.plan) : QString();
  m_answer = m_error.isEmpty() ? std::move(answer) : nullptr;
  sum();
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

QString AgentModel::planTitle() const {
  return m_answer ? shownName(m_answer->planned.plan.summary) : QString();
}

QVariantList AgentModel::planSteps() const {
  QVariantList result;
  if (!m_answer) return result;
  for (const auto& step : m_answer->planned.plan.steps) {
    auto detail = shownPath(step.targetFolder, services().home);
    if (step.destinationFolder) detail += QStringLiteral(" → ") + shownPath(*step.destinationFolder, services().home);
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

double AgentModel::matchCount() const noexcept {
  return m_answer ? static_cast<double>(m_answer->matches.size()) : 0.0;
}

// --- rows

bool AgentModel::canToggle(const PlanMatchResult& match) const {
  return match.canExecute && match.action != PlannedAction::review && isSelectable(match.item.riskLabel());
}

void AgentModel::sum() {
  m_matchBytes = 0;
  m_selectedCount = 0;
  m_selectedBytes = 0;
  if (!m_answer) return;
  for (const auto& match : m_answer->matches) {
    m_matchBytes += match.item.fileSize();
    if (!match.isSelected || !canToggle(match)) continue;
    ++m_selectedCount;
    m_selectedBytes += match.item.fileSize();
  }
}

int AgentModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() || !m_answer ? 0 : static_cast<int>(m_answer->matches.size());
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
  const auto& match = m_answer->matches[static_cast<std::size_t>(index.row())];
  switch (role) {
    case Qt::DisplayRole:
    case NameRole:
      return shownName(match.item.url().lastPathComponent());
    case PlaceRole:
      return shownPlace(match.item.url(), services().home);
    case ReasonRole:
      return shownName(match.explanation);
    case RiskRole:
      return static_cast<int>(match.item.riskLabel());
    case DateRole:
      return milliseconds(match.item.lastModifiedDate());
    case BytesRole:
      return static_cast<double>(match.item.fileSize());
    case CheckStateRole:
      if (!canToggle(match)) return -1;
      return static_cast<int>(match.isSelected ? Qt::Checked : Qt::Unchecked);
    case ActionRole:
      return textFrom(rawValue(match.action));
    case DestinationRole:
      return shownName(match.destinationFolder.value_or(""));
    default:
      return {};
  }
}

void AgentModel::toggle(int row) {
  if (row < 0 || row >= rowCount() || isWorking()) return;
  auto& match = m_answer->matches[static_cast<std::size_t>(row)];
  if (!canToggle(match)) return;
  match.isSelected = !match.isSelected;
  sum();
  Q_EMIT dataChanged(index(row), index(row), {CheckStateRole});
  Q_EMIT selectionChanged();
}

// --- carrying out

void AgentModel::confirm() {
  if (!m_answer || m_selectedCount == 0) return;
  startRun(
      m_selectedCount,
      [services = services(), sections = m_sections, matches = m_answer->matches](const RunProgress& progress,
                                                                                  const std::stop_token& stop) {
        const Boundary roots(rootsFor(services));
        // Without a folder there would be no boundary either.
        if (roots.allowsNothing()) return RunReport{};
        const auto execution = sections.planExecutor.execute(matches, services.journal(), roots, progress, stop);
        return reportOf(execution.summary.batchId, execution.outcomes);
      },
      [this](const RunReport&) { show(nullptr); });
}

QString AgentModel::movedText(std::int64_t count, std::int64_t /*bytes*/) const {
  return countedText("agent.result", count);
}

}  // namespace orvane
