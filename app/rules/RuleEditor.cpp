#include "app/rules/RuleEditor.h"

#include "app/common/Places.h"
#include "app/common/Text.h"

#include <QRegularExpression>

#include <utility>

namespace orvane {
namespace {

QString joinedExtensions(const RuleTrigger& trigger) {
  QStringList result;
  for (const auto& extension : trigger.fileExtensions.value_or(std::vector<std::string>())) {
    result += textFrom(extension);
  }
  return result.join(QStringLiteral(", "));
}

QStringList rawCategories(const RuleTrigger& trigger) {
  QStringList result;
  for (const auto category : trigger.categories.value_or(std::vector<ScanCategory>())) {
    result += textFrom(rawValue(category));
  }
  return result;
}

int actionNumber(RuleAction::Type type) {
  switch (type) {
    case RuleAction::Type::moveToTrash:
      return RuleEditor::Trash;
    case RuleAction::Type::moveToFolder:
      return RuleEditor::Folder;
    case RuleAction::Type::reviewOnly:
      break;
  }
  return RuleEditor::Review;
}

QString pathFrom(const QString& pathOrUrl) {
  if (!pathOrUrl.startsWith(QStringLiteral("file:"))) return pathOrUrl;
  const auto place = placeFrom(pathOrUrl);
  return place ? placeText(*place) : pathOrUrl;
}

std::optional<std::int64_t> limitFrom(double value) {
  return value < 0 ? std::nullopt : std::optional(static_cast<std::int64_t>(value));
}

std::optional<std::string> textOrNone(const QString& text) {
  const auto trimmed = text.trimmed();
  return trimmed.isEmpty() ? std::nullopt : std::optional(trimmed.toStdString());
}

QString fieldOf(RulePart part) {
  switch (part) {
    case RulePart::name:
      return QStringLiteral("name");
    case RulePart::folder:
      return QStringLiteral("folder");
    case RulePart::minimumAge:
      return QStringLiteral("minimumAgeDays");
    case RulePart::minimumSize:
      return QStringLiteral("minimumSizeBytes");
    case RulePart::extensions:
      return QStringLiteral("extensions");
    case RulePart::destination:
      return QStringLiteral("actionPath");
    case RulePart::whole:
      break;
  }
  return QStringLiteral("rule");
}

}  // namespace

QStringList RuleEditor::allCategories() {
  QStringList result;
  for (const auto category : allScanCategories) result += textFrom(rawValue(category));
  return result;
}

void RuleEditor::open(const std::optional<CleanupRule>& rule) {
  m_isNew = !rule;
  m_rule = rule.value_or(CleanupRule{});
  const auto& trigger = m_rule.trigger;
  m_name = textFrom(m_rule.name);
  m_description = textFrom(m_rule.description);
  m_folder = textFrom(trigger.folderPath.value_or(""));
  m_extensions = joinedExtensions(trigger);
  m_categories = rawCategories(trigger);
  m_minimumAgeDays = static_cast<double>(trigger.minimumAgeDays.value_or(-1));
  m_minimumSizeBytes = static_cast<double>(trigger.minimumSizeBytes.value_or(-1));
  m_namePattern = textFrom(trigger.namePattern.value_or(""));
  m_action = m_isNew ? static_cast<int>(Trash) : actionNumber(m_rule.action.type());
  m_actionPath = textFrom(m_rule.action.path());
  m_isOpen = true;
  setChecked(problemsWith(this->rule()), -1, 0);
  Q_EMIT opened();
  Q_EMIT edited();
}

void RuleEditor::close() {
  m_isOpen = false;
  Q_EMIT opened();
}

void RuleEditor::setFolder(const QString& pathOrUrl) {
  if (std::exchange(m_folder, pathFrom(pathOrUrl)) != m_folder) Q_EMIT edited();
}

void RuleEditor::setActionPath(const QString& pathOrUrl) {
  if (std::exchange(m_actionPath, pathFrom(pathOrUrl)) != m_actionPath) Q_EMIT edited();
}

QStringList RuleEditor::extensionList() const {
  static const QRegularExpression separators(QStringLiteral("[,;\\s]+"));
  QStringList result = m_extensions.split(separators, Qt::SkipEmptyParts);
  for (auto& extension : result) {
    if (extension.startsWith(u'.')) extension.remove(0, 1);
  }
  return result;
}

CleanupRule RuleEditor::rule() const {
  auto rule = m_rule;
  rule.name = m_name.trimmed().toStdString();
  rule.description = m_description.trimmed().toStdString();
  rule.trigger = {};
  rule.trigger.folderPath = textOrNone(m_folder);
  if (const auto extensions = extensionList(); !extensions.isEmpty()) {
    auto& list = rule.trigger.fileExtensions.emplace();
    for (const auto& extension : extensions) list.push_back(extension.toStdString());
  }
  if (!m_categories.isEmpty()) {
    auto& list = rule.trigger.categories.emplace();
    for (const auto& name : m_categories) {
      if (const auto category = scanCategoryFromRawValue(name.toStdString())) list.push_back(*category);
    }
  }
  rule.trigger.minimumAgeDays = limitFrom(m_minimumAgeDays);
  rule.trigger.minimumSizeBytes = limitFrom(m_minimumSizeBytes);
  rule.trigger.namePattern = textOrNone(m_namePattern);
  switch (m_action) {
    case Trash:
      rule.action = RuleAction::moveToTrash();
      break;
    case Folder:
      rule.action = RuleAction::moveToFolder(m_actionPath.trimmed().toStdString());
      break;
    default:
      rule.action = RuleAction::reviewOnly();
  }
  return rule;
}

void RuleEditor::setChecked(std::span<const RuleProblem> problems, double matchCount, double matchBytes) {
  m_problems.clear();
  for (const auto& problem : problems) m_problems.insert(fieldOf(problem.part), textFrom(problem.key));
  m_matchCount = matchCount;
  m_matchBytes = matchBytes;
  Q_EMIT checked();
}

}  // namespace orvane
