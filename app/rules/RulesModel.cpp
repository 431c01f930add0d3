#include "app/rules/RulesModel.h"

#include "app/common/Format.h"
#include "app/common/NoticeTexts.h"
#include "app/common/Places.h"
#include "app/common/Text.h"
#include "core/rules/records/RuleCheck.h"
#include "core/rules/records/RuleFields.h"
#include "core/tasks/Folders.h"
#include "core/tasks/RulesTask.h"
#include "core/tasks/StoredRules.h"

#include <algorithm>
#include <chrono>
#include <exception>
#include <utility>

namespace orvane {
namespace {

constexpr std::size_t maxPreviewed = 300;
constexpr std::chrono::milliseconds typingPause{250};

QString categoryNames(const QString& rawValues) {
  QStringList names;
  for (const auto& name : rawValues.split(QStringLiteral(", "))) {
    names += localizedText("category." + name.toStdString());
  }
  return names.join(QStringLiteral(", "));
}

// A condition in the user's language; empty where the trigger places none.
QString conditionText(const RuleField& field, const RuleTrigger& trigger) {
  const auto text = field.text(trigger);
  if (text.empty()) return {};
  const auto number = field.number(trigger).value_or(0);
  switch (field.input) {
    case RuleField::Input::categories:
      return categoryNames(textFrom(text));
    case RuleField::Input::number:
      return countedText(field.conditionKey, number);
    case RuleField::Input::megabytes:
      return localizedText(field.conditionKey).arg(Format::bytes(static_cast<double>(number)));
    case RuleField::Input::text:
    case RuleField::Input::folder:
      break;
  }
  const auto shown = shownName(text);
  return field.conditionKey.empty() ? shown : localizedText(field.conditionKey).arg(shown);
}

QString conditionsText(const RuleTrigger& trigger) {
  QStringList conditions;
  for (const auto& field : ruleFields()) {
    if (const auto text = conditionText(field, trigger); !text.isEmpty()) conditions += text;
  }
  return conditions.join(QStringLiteral(" · "));
}

}  // namespace

RulesModel::RulesModel(WindowServices services, QObject* parent) : RunModel(std::move(services), parent) {
  m_editTimer.setSingleShot(true);
  m_editTimer.setInterval(typingPause);
  connect(&m_editTimer, &QTimer::timeout, this, &RulesModel::checkEditor);
  connect(&m_editor, &RuleEditor::edited, this, [this] {
    m_checkStop.request_stop();
    m_editor.setChecked(problemsWith(m_editor.rule()), -1, 0);
    m_editTimer.start();
  });
  reload();
}

RulesModel::~RulesModel() {
  m_checkStop.request_stop();
  m_previewStop.request_stop();
}

void RulesModel::reload() {
  change([](const TaskServices&) {});
}

void RulesModel::change(std::function<void(const TaskServices&)> how) {
  m_queue.post([this, how = std::move(how)](const std::stop_token&) {
    std::string error;
    std::optional<std::vector<CleanupRule>> rules;
    const auto& tasks = services().tasks;
    const auto attempt = [&](const std::function<void()>& step) {
      try {
        step();
      } catch (const std::exception& failure) {
        error = failure.what();
      }
    };
    attempt([&] { how(tasks); });
    attempt([&] { rules = cleanupRules(tasks); });
    callOn(this, [this, rules, error] {
      m_error = textFrom(error);
      show(rules.value_or(m_rules));
    });
  });
}

void RulesModel::show(std::vector<CleanupRule> rules) {
  if (rules.size() == m_rules.size()) {
    m_rules = std::move(rules);
    if (!m_rules.empty()) Q_EMIT dataChanged(index(0), index(ruleCount() - 1));
  } else {
    beginResetModel();
    m_rules = std::move(rules);
    endResetModel();
  }
  Q_EMIT rulesChanged();
}

QVariantList RulesModel::suggestions() const {
  QVariantList result;
  for (const auto& [name, rule, isAdded] : suggestedRules(services().tasks, m_rules)) {
    if (isAdded) continue;
    result.append(
        QVariantMap{{"name", textFrom(name)}, {"title", textFrom(rule.name)}, {"note", textFrom(rule.description)}});
  }
  return result;
}

void RulesModel::addSuggested(const QString& name) {
  for (const auto& suggestion : suggestedRules(services().tasks, m_rules)) {
    if (suggestion.isAdded || textFrom(suggestion.name) != name) continue;
    change([rule = suggestion.rule](const TaskServices& tasks) { storeRule(tasks, rule); });
  }
}

// --- rows

int RulesModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : ruleCount();
}

int RulesModel::enabledCount() const {
  return static_cast<int>(
      std::count_if(m_rules.begin(), m_rules.end(), [](const CleanupRule& rule) { return rule.isEnabled; }));
}

QHash<int, QByteArray> RulesModel::roleNames() const {
  return {
      {IdRole, "id"},
      {NameRole, "name"},
      {DescriptionRole, "description"},
      {IsEnabledRole, "isEnabled"},
      {IsBuiltInRole, "isBuiltIn"},
      {ActionRole, "action"},
      {ActionPathRole, "actionPath"},
      {ConditionsRole, "conditions"},
  };
}

QVariant RulesModel::data(const QModelIndex& index, int role) const {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
  const auto& rule = m_rules[static_cast<std::size_t>(index.row())];
  switch (role) {
    case IdRole:
      return textFrom(rule.id.toString());
    case Qt::DisplayRole:
    case NameRole:
      return shownName(rule.name);
    case DescriptionRole:
      return shownName(rule.description);
    case IsEnabledRole:
      return rule.isEnabled;
    case IsBuiltInRole:
      return rule.isBuiltIn;
    case ActionRole:
      return textFrom(rawValue(rule.action.type()));
    case ActionPathRole:
      return shownName(rule.action.path());
    case ConditionsRole:
      return conditionsText(rule.trigger);
    default:
      return {};
  }
}

// --- changing rules

void RulesModel::setEnabled(int row, bool isEnabled) {
  if (row < 0 || row >= ruleCount()) return;
  auto& rule = m_rules[static_cast<std::size_t>(row)];
  if (rule.isEnabled == isEnabled) return;
  rule.isEnabled = isEnabled;
  Q_EMIT dataChanged(index(row), index(row), {IsEnabledRole});
  Q_EMIT rulesChanged();
  change([id = rule.id, isEnabled](const TaskServices& tasks) { switchRule(tasks, id, isEnabled); });
}

void RulesModel::add() {
  m_editor.open(std::nullopt);
}

void RulesModel::compose(const CleanupRule& rule) {
  m_editor.compose(rule);
}

void RulesModel::edit(int row) {
  if (row >= 0 && row < ruleCount()) m_editor.open(m_rules[static_cast<std::size_t>(row)]);
}

void RulesModel::save() {
  if (!m_editor.isOpen() || !m_editor.canSave()) return;
  change([rule = m_editor.rule()](const TaskServices& tasks) { storeRule(tasks, rule); });
  closeEditor();
}

void RulesModel::closeEditor() {
  m_checkStop.request_stop();
  m_editTimer.stop();
  m_editor.close();
  m_previewQueue.post([this](const std::stop_token&) { m_candidates.reset(); });
}

void RulesModel::remove(const QString& id) {
  const auto rule = Uuid::parse(id.toStdString());
  if (rule) change([rule = *rule](const TaskServices& tasks) { deleteRule(tasks, rule); });
}

void RulesModel::reset() {
  change([](const TaskServices& tasks) { resetRules(tasks); });
}

void RulesModel::checkEditor() {
  if (!m_editor.isOpen()) return;
  m_checkStop = {};
  m_previewQueue.post([this, rule = m_editor.rule(), stop = m_checkStop.get_token()](const std::stop_token&) {
    if (stop.stop_requested()) return;
    const auto& tasks = services().tasks;
    RulesOptions options{.rules = {rule}, .boundary = Boundary(grantedFolders(tasks))};
    options.rules.front().isEnabled = true;
    auto problems = problemsWith(rule);
    // A field shows the last of them.
    const auto onDisk = problemsOnDisk(tasks, rule, options.boundary);
    problems.insert(problems.begin(), onDisk.begin(), onDisk.end());
    const TaskMonitor monitor{.stop = stop};
    if (!m_candidates) m_candidates = ruleCandidates(tasks, options.boundary, monitor);
    const auto sum = m_candidates ? countRules(tasks, options, *m_candidates, monitor) : std::nullopt;
    if (!sum) return;
    callOn(this, [this, problems, sum = *sum, stop] {
      if (stop.stop_requested()) return;
      m_editor.setChecked(problems, static_cast<double>(sum.count), static_cast<double>(sum.bytes));
    });
  });
}

// --- preview and run

std::vector<CleanupRule> RulesModel::meant(int row) const {
  std::vector<CleanupRule> result;
  if (row >= 0 && row < ruleCount()) {
    result.push_back(m_rules[static_cast<std::size_t>(row)]);
    // Running one by hand is asking for it.
    result.back().isEnabled = true;
    return result;
  }
  std::copy_if(m_rules.begin(), m_rules.end(), std::back_inserter(result),
               [](const CleanupRule& rule) { return rule.isEnabled; });
  return result;
}

void RulesModel::previewRule(int row) {
  m_previewStop.request_stop();
  m_previewStop = {};
  m_isPreviewing = true;
  show(Preview());
  m_previewQueue.post(
      [this, rules = meant(row), looked = startLooking(), stop = m_previewStop.get_token()](const std::stop_token&) {
        const auto& tasks = services().tasks;
        const auto proposal = tried([&] {
          return proposeRules(tasks, {.rules = rules, .boundary = Boundary(grantedFolders(tasks))},
                              {.stop = stop, .looked = looked.get()});
        });
        Preview preview;
        preview.proposal = proposal.value_or(Proposal());
        preview.proposal.forEach([&](std::size_t, const ProposedRow& proposed) {
          preview.all.add(proposed.item.fileSize());
          if (proposed.choice != Choice::selected) return;
          preview.movable.add(proposed.item.fileSize());
          if (proposed.destinationFolder() != nullptr) preview.toFolders.add(proposed.item.fileSize());
        });
        callOn(this, [this, preview, stop] {
          if (stop.stop_requested()) return;
          stopLooking();
          m_isPreviewing = false;
          show(preview);
        });
      });
}

void RulesModel::show(Preview preview) {
  m_preview = std::move(preview);
  Q_EMIT previewChanged();
}

void RulesModel::closePreview() {
  m_previewStop.request_stop();
  if (m_isPreviewing) stopLooking();
  m_isPreviewing = false;
  show(Preview());
}

QVariantMap RulesModel::rowOf(const ProposedRow& row) const {
  const auto& item = row.item;
  auto reason = shownName(row.group->name);
  if (row.lock == Lock::listedOnly) reason += QStringLiteral(" · ") + localizedText("rules.review_only");
  return {{"name", shownName(item.url().lastPathComponent())},
          {"place", shownPlace(item.url(), services().tasks.home)},
          {"bytes", static_cast<double>(item.fileSize())},
          {"date", milliseconds(item.lastModifiedDate())},
          {"risk", static_cast<int>(item.riskLabel())},
          {"reason", reason},
          {"warning", row.lock == Lock::refused ? localizedText("rules.destination_refused") : QString()}};
}

QVariantList RulesModel::preview() const {
  QVariantList rows;
  const auto count = std::min(maxPreviewed, m_preview.proposal.size());
  for (std::size_t at = 0; at < count; ++at) rows.append(rowOf(m_preview.proposal.row(at)));
  return rows;
}

QString RulesModel::previewPlace(int row) const {
  const auto at = static_cast<std::size_t>(row);
  return row < 0 || at >= m_preview.proposal.size() ? QString() : placeText(m_preview.proposal.row(at).item.url());
}

QString RulesModel::movableSums() const {
  const auto& [proposal, all, movable, toFolders] = m_preview;
  return movingSums({movable.count - toFolders.count, movable.bytes - toFolders.bytes}, toFolders);
}

QStringList RulesModel::previewRemarks() const {
  return noticeTexts(m_preview.proposal.notices(), services().tasks.home);
}

void RulesModel::runPreviewed() {
  if (m_preview.movable.count == 0 || isWorking()) return;
  startRun(m_preview.movable.count, [proposal = m_preview.proposal] { return proposal.approve(); });
}

void RulesModel::languageChanged() {
  RunModel::languageChanged();
  if (!m_rules.empty()) Q_EMIT dataChanged(index(0), index(ruleCount() - 1), {ConditionsRole});
  Q_EMIT rulesChanged();
  Q_EMIT previewChanged();
}

void RulesModel::cancel() {
  m_previewStop.request_stop();
  RunModel::cancel();
}

QString RulesModel::movedText(std::int64_t count, std::int64_t bytes) const {
  return countedText("rules.result", count).arg(Format::bytes(static_cast<double>(bytes)));
}

}  // namespace orvane
