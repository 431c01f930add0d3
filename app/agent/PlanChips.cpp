#include "app/agent/PlanChips.h"

#include "app/agent/AgentModel.h"
#include "app/agent/ReadingTexts.h"
#include "app/common/Format.h"
#include "app/common/Places.h"
#include "app/common/Text.h"
#include "core/base/files/HomeFolder.h"
#include "core/rules/records/RuleFields.h"
#include "core/tasks/PlanConditions.h"
#include "core/tasks/ReadEntries.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>
#include <utility>

namespace orvane {
namespace {

struct ConditionRow {
  PlanCondition condition;
  std::string_view field;                  // key of the rule field
  std::string_view nameKey;                // of the chip
  std::array<std::string_view, 6> common;  // values that are offered, as a person writes them
};
// In the order of the chips.
constexpr std::array conditionRows{
    ConditionRow{PlanCondition::folder, "folderPath", "agent.condition_folder", {}},
    ConditionRow{PlanCondition::age, "minimumAgeDays", "agent.condition_age", {"7", "14", "30", "90", "180", "365"}},
    ConditionRow{
        PlanCondition::size, "minimumSizeBytes", "agent.condition_size", {"1", "10", "100", "500", "1000", "5000"}},
    ConditionRow{PlanCondition::extensions, "fileExtensions", "agent.condition_extensions", {}},
};

const RuleField& fieldOf(PlanCondition condition) {
  const auto key = conditionRows[static_cast<std::size_t>(condition)].field;
  return *std::ranges::find(ruleFields(), key, &RuleField::key);
}

bool isSameCondition(PlanCondition condition, const RuleTrigger& one, const RuleTrigger& other) {
  switch (condition) {
    case PlanCondition::folder:
      return one.folderPath == other.folderPath;
    case PlanCondition::age:
      return one.minimumAgeDays == other.minimumAgeDays;
    case PlanCondition::size:
      return one.minimumSizeBytes == other.minimumSizeBytes;
    case PlanCondition::extensions:
      break;
  }
  return one.fileExtensions == other.fileExtensions;
}

// Empty where it places no condition.
QString valueText(PlanCondition condition, const RuleTrigger& trigger, const FileUrl& home) {
  switch (condition) {
    case PlanCondition::folder:
      return shownPath(trigger.folderPath.value_or(""), home);
    case PlanCondition::age:
      return trigger.minimumAgeDays ? countedText("agent.days", *trigger.minimumAgeDays) : QString();
    case PlanCondition::size:
      return trigger.minimumSizeBytes ? Format::bytes(static_cast<double>(*trigger.minimumSizeBytes)) : QString();
    case PlanCondition::extensions:
      break;
  }
  return shownName(fieldOf(condition).words(trigger));
}

std::optional<PlanCondition> conditionOf(const ReadEntry& entry) {
  if (!entry.counts) return std::nullopt;
  if (entry.folder) return PlanCondition::folder;
  if (entry.ageDays) return PlanCondition::age;
  if (entry.sizeBytes) return PlanCondition::size;
  return std::nullopt;
}

class PlanChips {
 public:
  PlanChips(const ReadPlan& plan, const std::vector<FileUrl>& folders, const FileUrl& home)
      : m_plan(plan), m_folders(folders), m_home(home) {
    if (plan.planned.understanding.doubt != Doubt::otherRoom) m_now = conditionsOf(plan.planned);
    m_asked = conditionsOf(plan.asked);
  }

  QVariantList chips() {
    addWords();
    if (m_now) addConditions();
    if (!m_unread.isEmpty()) {
      add({}, localizedText("agent.meant_nothing").arg(m_unread.join(QStringLiteral(" "))), AgentModel::Unread);
    }
    return std::move(m_chips);
  }

 private:
  void addWords() {
    for (auto& entry : readEntries(m_plan.prompt, m_plan.asked)) {
      if (entry.meaning == WordMeaning::none) {
        m_unread.append(shownName(entry.text));
        continue;
      }
      auto condition = m_now ? conditionOf(entry) : std::nullopt;
      if (condition && !canChange(*condition)) condition.reset();
      if (condition && !isSameCondition(*condition, *m_asked, *m_now)) {
        // A word for a kind of files says its folder beside it.
        if (entry.meaning != WordMeaning::caches && entry.meaning != WordMeaning::logs) continue;
        condition.reset();
        entry.folder.reset();
      }
      add(shownName(entry.text), entry.isAssumed() ? assumedText(entry, m_home) : becameText(entry, m_home),
          entry.isAssumed() ? AgentModel::Assumed : AgentModel::Read, condition);
    }
  }

  void addConditions() {
    if (m_plan.asked.provider != AIProvider::heuristic) addFixed();
    for (const auto& row : conditionRows) {
      if (m_isShown[static_cast<std::size_t>(row.condition)] || !canChange(row.condition)) continue;
      const auto value = valueText(row.condition, *m_now, m_home);
      if (value.isEmpty()) {
        add({}, localizedText(row.nameKey), AgentModel::Missing, row.condition);
      } else {
        const bool isSame = isSameCondition(row.condition, *m_asked, *m_now);
        add({}, value, isSame ? AgentModel::Read : AgentModel::Changed, row.condition);
      }
    }
  }

  // A plan for several folders has them in its words alone.
  [[nodiscard]] bool canChange(PlanCondition condition) const {
    return condition != PlanCondition::folder || m_now->folderPath;
  }

  // The conditions of a model's plan that are not changed here.
  void addFixed() {
    for (const auto category : m_now->categories.value_or(std::vector<ScanCategory>())) {
      add({}, localizedText("category." + std::string(rawValue(category))), AgentModel::Read);
    }
    if (const auto& name = m_now->namePattern; name && !name->empty()) {
      add({}, localizedText("rules.name_contains").arg(shownName(*name)), AgentModel::Read);
    }
  }

  void add(const QString& text, const QString& became, AgentModel::ReadKind kind,
           std::optional<PlanCondition> condition = std::nullopt) {
    QVariantMap chip{{"text", text}, {"became", became}, {"kind", kind}, {"condition", -1}};
    if (condition) {
      const auto& row = conditionRows[static_cast<std::size_t>(*condition)];
      const auto& field = fieldOf(*condition);
      m_isShown[static_cast<std::size_t>(*condition)] = true;
      chip["condition"] = static_cast<int>(*condition);
      chip["name"] = localizedText(row.nameKey);
      chip["title"] = localizedText(field.titleKey);
      chip["value"] = textFrom(field.text(*m_now));
      chip["isNumber"] = field.input == RuleField::Input::number || field.input == RuleField::Input::megabytes;
      chip["choices"] = choicesOf(*condition);
    }
    m_chips.append(chip);
  }

  // {text, value, isCurrent} of each.
  [[nodiscard]] QVariantList choicesOf(PlanCondition condition) const {
    QVariantList choices;
    const auto offer = [&](const QString& value) {
      auto wanted = *m_now;
      if (!setCondition(wanted, condition, value.toStdString()).empty()) return;
      choices.append(QVariantMap{{"text", valueText(condition, wanted, m_home)},
                                 {"value", value},
                                 {"isCurrent", isSameCondition(condition, wanted, *m_now)}});
    };
    if (condition == PlanCondition::folder) {
      for (const auto& folder : m_folders) offer(placeText(folder));
    }
    for (const auto value : conditionRows[static_cast<std::size_t>(condition)].common) {
      if (!value.empty()) offer(textFrom(value));
    }
    return choices;
  }

  const ReadPlan& m_plan;
  const std::vector<FileUrl>& m_folders;
  const FileUrl& m_home;
  std::optional<RuleTrigger> m_asked;
  std::optional<RuleTrigger> m_now;
  std::array<bool, conditionRows.size()> m_isShown{};
  QStringList m_unread;
  QVariantList m_chips;
};

}  // namespace

QVariantList planChips(const ReadPlan& plan, const std::vector<FileUrl>& folders, const FileUrl& home) {
  return PlanChips(plan, folders, home).chips();
}

std::string_view setCondition(RuleTrigger& conditions, PlanCondition condition, const std::string& text) {
  const auto& field = fieldOf(condition);
  auto wanted = conditions;
  field.setText(wanted, text);
  if (condition == PlanCondition::folder && !wanted.folderPath) return field.problemKey;
  if (!field.problem(wanted).empty()) return field.problemKey;
  if (wanted.folderPath) wanted.folderPath = expandedHome(*wanted.folderPath);
  conditions = std::move(wanted);
  return {};
}

}  // namespace orvane
