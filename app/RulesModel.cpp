#include "app/RulesModel.h"

#include "app/Format.h"
#include "app/Places.h"
#include "app/Text.h"
#include "core/base/ByteCount.h"
#include "core/base/FileStatus.h"
#include "core/base/HomeFolder.h"
#include "core/rules/RuleEngine.h"
#include "core/rules/RuleMatcher.h"
#include "core/safety/PathValidator.h"
#include "core/scanning/StorageScanner.h"

#include <fcntl.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <exception>
#include <utility>

namespace orvane {
namespace {

constexpr std::size_t mostPreviewed = 300;
constexpr std::chrono::milliseconds typingPause{250};

// Everything in the granted folders, developer caches left out. Empty when it was stopped. `looked` counts the files.
std::vector<FileItem> scanForRules(const WindowServices& services, const std::stop_token& stop,
                                   std::atomic<std::size_t>* looked = nullptr) {
  std::vector<FileItem> items;
  auto stream = services.scanner.scan(existingFolders(services.folders), DeveloperCaches::leaveOut);
  const std::stop_callback whenStopped(stop, [&stream] { stream.cancel(); });
  for (auto events = stream.nextBatch(); !events.empty(); events = stream.nextBatch()) {
    if (looked != nullptr) looked->store(items.size(), std::memory_order_relaxed);
    for (auto& event : events) {
      if (auto* item = std::get_if<FileItem>(&event)) items.push_back(std::move(*item));
    }
  }
  if (stop.stop_requested()) items.clear();
  return items;
}

struct RuleMatches {
  double count = 0;
  double bytes = 0;
  double movableCount = 0;
  double movableBytes = 0;
  QVariantList rows;
};

bool moves(const CleanupRule& rule) {
  return rule.action.type() != RuleAction::Type::reviewOnly;
}

// Each file once, under the first rule that takes it.
RuleMatches matchesOf(const std::vector<CleanupRule>& rules, const std::vector<FileItem>& items, const FileUrl& home,
                      const std::stop_token& stop) {
  RuleMatches result;
  const auto now = ReferenceClock::now();
  std::vector<RuleMatcher> matchers;
  matchers.reserve(rules.size());
  for (const auto& rule : rules) matchers.emplace_back(rule.trigger, now);
  for (const auto& item : items) {
    if (stop.stop_requested()) break;
    for (std::size_t at = 0; at < matchers.size(); ++at) {
      if (!matchers[at].matches(item)) continue;
      result.count += 1;
      result.bytes += static_cast<double>(item.fileSize());
      // A rule further down may move what this one only shows.
      for (std::size_t mover = at; mover < matchers.size(); ++mover) {
        if (!moves(rules[mover]) || !matchers[mover].matches(item)) continue;
        result.movableCount += 1;
        result.movableBytes += static_cast<double>(item.fileSize());
        break;
      }
      if (static_cast<std::size_t>(result.rows.size()) < mostPreviewed) {
        result.rows.append(QVariantMap{{"name", shownName(item.url().lastPathComponent())},
                                       {"place", shownPlace(item.url(), home)},
                                       {"bytes", static_cast<double>(item.fileSize())},
                                       {"date", milliseconds(item.lastModifiedDate())},
                                       {"risk", static_cast<int>(item.riskLabel())},
                                       {"reason", shownName(rules[at].name)},
                                       {"rule", shownName(rules[at].name)}});
      }
      break;
    }
  }
  return result;
}

QStringList textList(const std::optional<std::vector<std::string>>& texts) {
  QStringList result;
  for (const auto& text : texts.value_or(std::vector<std::string>())) result += textFrom(text);
  return result;
}

}  // namespace

RulesModel::RulesModel(WindowServices services, SectionServices sections, QObject* parent)
    : RunModel(std::move(services), parent), m_sections(std::move(sections)) {
  m_editTimer.setSingleShot(true);
  m_editTimer.setInterval(typingPause);
  connect(&m_editTimer, &QTimer::timeout, this, &RulesModel::checkEditor);
  connect(&m_editor, &RuleEditor::edited, this, [this] {
    m_checkStop.request_stop();
    m_editor.setChecked(m_editor.formalProblems(), -1, 0);
    m_editTimer.start();
  });
  reload();
}

RulesModel::~RulesModel() {
  m_checkStop.request_stop();
  m_previewStop.request_stop();
}

void RulesModel::reload() {
  change([](RuleEngine&) {});
}

void RulesModel::change(std::function<void(RuleEngine&)> how) {
  m_queue.post([this, how = std::move(how)](const std::stop_token&) {
    std::string error;
    auto& engine = services().rules;
    try {
      how(engine);
    } catch (const std::exception& failure) {
      error = failure.what();
    }
    callOn(this, [this, rules = engine.getRules(), error] {
      m_error = textFrom(error);
      show(rules);
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
      {FolderRole, "folder"},
      {ExtensionsRole, "extensions"},
      {CategoriesRole, "categories"},
      {MinimumAgeRole, "minimumAgeDays"},
      {MinimumSizeRole, "minimumSizeBytes"},
      {NamePatternRole, "namePattern"},
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
    case FolderRole:
      return shownName(rule.trigger.folderPath.value_or(""));
    case ExtensionsRole:
      return textList(rule.trigger.fileExtensions).join(QStringLiteral(", "));
    case CategoriesRole: {
      QStringList names;
      for (const auto category : rule.trigger.categories.value_or(std::vector<ScanCategory>())) {
        names += textFrom(rawValue(category));
      }
      return names;
    }
    case MinimumAgeRole:
      return static_cast<double>(rule.trigger.minimumAgeDays.value_or(-1));
    case MinimumSizeRole:
      return static_cast<double>(rule.trigger.minimumSizeBytes.value_or(-1));
    case NamePatternRole:
      return shownName(rule.trigger.namePattern.value_or(""));
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
  change([id = rule.id, isEnabled](RuleEngine& engine) {
    engine.keepIdentities();
    engine.toggleRule(id, isEnabled);
  });
}

void RulesModel::add() {
  m_editor.open(std::nullopt);
}

void RulesModel::edit(int row) {
  if (row >= 0 && row < ruleCount()) m_editor.open(m_rules[static_cast<std::size_t>(row)]);
}

void RulesModel::save() {
  if (!m_editor.isOpen() || !m_editor.canSave()) return;
  change([rule = m_editor.rule()](RuleEngine& engine) {
    engine.keepIdentities();
    engine.addOrUpdateRule(rule);
  });
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
  if (rule) change([rule = *rule](RuleEngine& engine) { engine.deleteRule(rule); });
}

void RulesModel::reset() {
  change([](RuleEngine& engine) { engine.resetToDefaults(); });
}

QVariantMap RulesModel::problemsOnDisk(const CleanupRule& rule, const PathValidator& validator,
                                       const std::vector<FileUrl>& folders) {
  QVariantMap problems;
  if (rule.trigger.folderPath) {
    const auto path = expandedHome(*rule.trigger.folderPath);
    const auto status = path.starts_with('/') ? readFileStatus(AT_FDCWD, path.c_str()) : std::nullopt;
    if (!status) problems["folder"] = QStringLiteral("rules.folder_missing");
  }
  if (rule.action.type() == RuleAction::Type::moveToFolder) {
    const auto path = expandedHome(rule.action.path());
    const bool isAllowed =
        path.starts_with('/') && validator.isPathAllowed(FileUrl(path), PathValidator::canonicalizeRoots(folders));
    if (!isAllowed) problems["actionPath"] = QStringLiteral("rules.destination_refused");
  }
  return problems;
}

void RulesModel::checkEditor() {
  if (!m_editor.isOpen()) return;
  m_checkStop = {};
  m_previewQueue.post([this, rule = m_editor.rule(), formal = m_editor.formalProblems(),
                       stop = m_checkStop.get_token()](const std::stop_token&) {
    if (stop.stop_requested()) return;
    auto problems = problemsOnDisk(rule, m_sections.validator, existingFolders(services().folders));
    problems.insert(formal);
    if (!m_candidates) m_candidates = std::make_shared<const std::vector<FileItem>>(scanForRules(services(), stop));
    const auto matches = matchesOf({rule}, *m_candidates, services().home, stop);
    if (stop.stop_requested()) {
      m_candidates.reset();
      return;
    }
    callOn(this, [this, problems, matches, stop] {
      if (!stop.stop_requested()) m_editor.setChecked(problems, matches.count, matches.bytes);
    });
  });
}

// --- preview and run

std::vector<CleanupRule> RulesModel::meant(int row) const {
  std::vector<CleanupRule> result;
  if (row >= 0 && row < ruleCount()) {
    result.push_back(m_rules[static_cast<std::size_t>(row)]);
    // Whoever runs one by hand wants it run.
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
  m_preview.clear();
  m_previewCount = 0;
  m_previewBytes = 0;
  m_movableCount = 0;
  m_movableBytes = 0;
  m_previewed = meant(row);
  Q_EMIT previewChanged();
  m_previewQueue.post(
      [this, rules = m_previewed, looked = startLooking(), stop = m_previewStop.get_token()](const std::stop_token&) {
        const auto matches = matchesOf(rules, scanForRules(services(), stop, looked.get()), services().home, stop);
        callOn(this, [this, matches, stop] {
          if (stop.stop_requested()) return;
          stopLooking();
          m_isPreviewing = false;
          m_preview = matches.rows;
          m_previewCount = matches.count;
          m_previewBytes = matches.bytes;
          m_movableCount = matches.movableCount;
          m_movableBytes = matches.movableBytes;
          Q_EMIT previewChanged();
        });
      });
}

void RulesModel::closePreview() {
  m_previewStop.request_stop();
  if (m_isPreviewing) stopLooking();
  m_isPreviewing = false;
  m_preview.clear();
  m_previewCount = 0;
  m_movableCount = 0;
  Q_EMIT previewChanged();
}

void RulesModel::runPreviewed() {
  if (m_previewed.empty() || isWorking()) return;
  startRun(0, [services = services(), rules = m_previewed, looked = startLooking()](const RunProgress& progress,
                                                                                    const std::stop_token& stop) {
    const auto folders = existingFolders(services.folders);
    // Without a folder there would be no boundary either.
    if (folders.empty()) return RunReport{};
    const auto items = scanForRules(services, stop, looked.get());
    const auto execution = services.rules.carryOut(rules, items, Boundary(folders), progress, stop);
    return reportOf(execution.summary.batchId, execution.outcomes);
  });
}

void RulesModel::cancel() {
  m_previewStop.request_stop();
  RunModel::cancel();
}

QString RulesModel::movedText(std::int64_t count, std::int64_t bytes) const {
  return countedText("rules.result", count).arg(Format::bytes(static_cast<double>(bytes)));
}

}  // namespace orvane
