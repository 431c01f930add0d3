#include "app/rules/RuleEditor.h"

#include "app/common/Places.h"
#include "app/common/Text.h"
#include "core/rules/records/RuleFields.h"

#include <cstddef>
#include <utility>

namespace orvane {
namespace {

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

}  // namespace

QStringList RuleEditor::allCategories() {
  QStringList result;
  for (const auto category : allScanCategories) result += textFrom(rawValue(category));
  return result;
}

void RuleEditor::open(const std::optional<CleanupRule>& rule) {
  m_isNew = !rule;
  auto shown = rule.value_or(CleanupRule{});
  if (m_isNew) shown.action = RuleAction::moveToTrash();
  show(std::move(shown));
}

void RuleEditor::compose(const CleanupRule& rule) {
  m_isNew = true;
  show(rule);
}

void RuleEditor::show(CleanupRule rule) {
  beginResetModel();
  m_rule = std::move(rule);
  m_name = textFrom(m_rule.name);
  m_description = textFrom(m_rule.description);
  m_texts.clear();
  for (const auto& field : ruleFields()) m_texts.push_back(textFrom(field.text(m_rule.trigger)));
  m_action = actionNumber(m_rule.action.type());
  m_actionPath = textFrom(m_rule.action.path());
  m_isOpen = true;
  endResetModel();
  setChecked(problemsWith(this->rule()), -1, 0);
  Q_EMIT opened();
  Q_EMIT edited();
}

void RuleEditor::close() {
  m_isOpen = false;
  Q_EMIT opened();
}

int RuleEditor::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(m_texts.size());
}

QHash<int, QByteArray> RuleEditor::roleNames() const {
  return {{TitleKeyRole, "titleKey"},
          {InputRole, "input"},
          {ExampleRole, "example"},
          {TextRole, "text"},
          {ProblemKeyRole, "problemKey"}};
}

QVariant RuleEditor::data(const QModelIndex& index, int role) const {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
  const auto row = static_cast<std::size_t>(index.row());
  const auto& field = ruleFields()[row];
  switch (role) {
    case TitleKeyRole:
      return textFrom(field.titleKey);
    case InputRole:
      return static_cast<int>(field.input);
    case ExampleRole:
      return textFrom(field.example);
    case Qt::DisplayRole:
    case TextRole:
      return m_texts[row];
    case ProblemKeyRole:
      return m_problems.value(textFrom(field.key), QString());
    default:
      return {};
  }
}

void RuleEditor::edit(int row, const QString& text) {
  if (row < 0 || row >= rowCount()) return;
  const auto& field = ruleFields()[static_cast<std::size_t>(row)];
  auto& known = m_texts[static_cast<std::size_t>(row)];
  const auto wanted = field.input == RuleField::Input::folder ? pathFrom(text) : text;
  if (std::exchange(known, wanted) == wanted) return;
  field.setText(m_rule.trigger, wanted.toStdString());
  Q_EMIT dataChanged(index(row), index(row), {TextRole});
  Q_EMIT edited();
}

void RuleEditor::setActionPath(const QString& pathOrUrl) {
  if (std::exchange(m_actionPath, pathFrom(pathOrUrl)) != m_actionPath) Q_EMIT edited();
}

CleanupRule RuleEditor::rule() const {
  auto rule = m_rule;
  rule.name = m_name.trimmed().toStdString();
  rule.description = m_description.trimmed().toStdString();
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
  for (const auto& problem : problems) m_problems.insert(textFrom(problem.part), textFrom(problem.key));
  m_matchCount = matchCount;
  m_matchBytes = matchBytes;
  if (rowCount() > 0) Q_EMIT dataChanged(index(0), index(rowCount() - 1), {ProblemKeyRole});
  Q_EMIT checked();
}

}  // namespace orvane
