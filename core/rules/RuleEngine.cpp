#include "core/rules/RuleEngine.h"

#include "core/base/text/Json.h"
#include "core/base/values/Calendar.h"
#include "core/base/values/CheckedArithmetic.h"
#include "core/platform/Preferences.h"
#include "core/rules/BuiltInRuleTemplates.h"
#include "core/rules/RuleDestination.h"
#include "core/rules/RuleMatcher.h"
#include "core/safety/rules/FolderLookups.h"
#include "core/safety/run/CleanupRun.h"

#include <fmt/format.h>

#include <algorithm>
#include <optional>
#include <utility>

namespace orvane {
namespace {

// Absent when it is no array of rules.
std::optional<std::vector<CleanupRule>> decoded(const Json& stored) {
  if (!stored.is_array()) return std::nullopt;
  std::vector<CleanupRule> rules;
  rules.reserve(stored.size());
  try {
    for (const auto& rule : stored) rules.push_back(CleanupRule::fromJson(rule));
  } catch (const JsonError&) {
    return std::nullopt;
  }
  return rules;
}

Json encoded(std::span<const CleanupRule> rules) {
  Json json = Json::array();
  for (const auto& rule : rules) json.push_back(rule.toJson());
  return json;
}

// One run of several rules over the same candidates.
class RulesRun {
 public:
  RulesRun(CleanupRun& run, std::span<const FileItem> candidates)
      : m_run(run), m_candidates(candidates), m_hasMoved(candidates.size(), false) {
    m_summary.batchId = run.id();
  }

  void carryOut(const CleanupRule& rule, const RuleDestination& destination) {
    std::vector<MoveRequest> requests;
    std::vector<std::size_t> indexes;
    RuleMatcher matcher(rule.trigger, m_now);
    for (std::size_t i = 0; i < m_candidates.size(); ++i) {
      const auto& file = m_candidates[i];
      if (m_hasMoved[i] || !matcher.matches(file) || destination.holds(file, m_folders)) continue;
      auto& request = requests.emplace_back();
      request.source = file.url();
      request.fileSize = file.fileSize();
      request.destinationFolder = destination.folder();
      request.expectedIdentity = file.identity();
      indexes.push_back(i);
    }
    const auto outcomes = m_run.carryOut(requests);
    for (std::size_t i = 0; i < outcomes.size(); ++i) {
      if (outcomes[i].result != MoveResult::moved) continue;
      m_hasMoved[indexes[i]] = true;
      m_summary.itemsProcessed = checkedAdd<std::int64_t>(m_summary.itemsProcessed, 1);
      if (destination.folder()) continue;
      m_summary.bytesReclaimed = checkedAdd(m_summary.bytesReclaimed, requests[i].fileSize);
    }
  }
  [[nodiscard]] const PlanExecutionSummary& summary() const noexcept { return m_summary; }

 private:
  CleanupRun& m_run;
  std::span<const FileItem> m_candidates;
  std::vector<bool> m_hasMoved;
  FolderLookups m_folders;
  Date m_now = ReferenceClock::now();
  PlanExecutionSummary m_summary;
};

}  // namespace

RuleEngine::RuleEngine(Preferences& preferences, TrashMover& mover, Journal journal, const PathValidator& validator)
    : m_preferences(preferences),
      m_mover(mover),
      m_journal(std::move(journal)),
      m_validator(validator),
      m_rules(BuiltInRuleTemplates::defaultRules()) {}

RuleEngine::RuleEngine(Preferences& preferences, TrashMover& mover, UndoJournal& journal,
                       const PathValidator& validator)
    : RuleEngine(
          preferences, mover, [&journal]() -> UndoJournal& { return journal; }, validator) {}

void RuleEngine::refresh(const Json* stored) {
  if (stored == nullptr) return;
  if (auto rules = decoded(*stored)) m_rules = *std::move(rules);
}

std::vector<CleanupRule> RuleEngine::getRules() {
  const std::lock_guard lock(m_mutex);
  const auto stored = m_preferences.value(storageKey);
  refresh(stored ? &*stored : nullptr);
  return m_rules;
}

std::optional<std::string> RuleEngine::keepIdentities() {
  const std::lock_guard lock(m_mutex);
  const auto before = m_preferences.value(storageKey);
  if (before && decoded(*before)) return std::nullopt;
  std::optional<std::string> asideKey;
  if (before) {
    asideKey = fmt::format("{}.damaged-{}", storageKey, localTimestamp(ReferenceClock::now()));
    m_preferences.setValue(*asideKey, *before);
  }
  m_preferences.update(storageKey, [&](const Json* stored) {
    const bool isUsable = stored != nullptr && decoded(*stored);
    refresh(stored);
    return isUsable ? *stored : encoded(m_rules);
  });
  return asideKey;
}

void RuleEngine::change(const std::function<void(std::vector<CleanupRule>&)>& how) {
  const std::lock_guard lock(m_mutex);
  m_preferences.update(storageKey, [&](const Json* stored) {
    refresh(stored);
    how(m_rules);
    return encoded(m_rules);
  });
}

void RuleEngine::addOrUpdateRule(const CleanupRule& rule) {
  change([&](std::vector<CleanupRule>& rules) {
    const auto found = std::ranges::find(rules, rule.id, &CleanupRule::id);
    if (found == rules.end()) {
      rules.push_back(rule);
    } else {
      *found = rule;
    }
  });
}

void RuleEngine::deleteRule(const Uuid& id) {
  change([&](std::vector<CleanupRule>& rules) {
    std::erase_if(rules, [&](const CleanupRule& rule) { return rule.id == id && !rule.isBuiltIn; });
  });
}

void RuleEngine::toggleRule(const Uuid& id, bool isEnabled) {
  change([&](std::vector<CleanupRule>& rules) {
    const auto found = std::ranges::find(rules, id, &CleanupRule::id);
    if (found != rules.end()) found->isEnabled = isEnabled;
  });
}

void RuleEngine::resetToDefaults() {
  change([](std::vector<CleanupRule>& rules) { rules = BuiltInRuleTemplates::defaultRules(); });
}

bool RuleEngine::matches(const FileItem& file, const RuleTrigger& trigger, Date relativeTo) {
  return RuleMatcher(trigger, relativeTo).matches(file);
}

PlanExecutionSummary RuleEngine::executeRules(std::span<const CleanupRule> rulesToRun,
                                              std::span<const FileItem> candidates, const Boundary& allowedRoots) {
  CleanupRun run(m_mover, m_journal(), allowedRoots);
  RulesRun rulesRun(run, candidates);
  for (const auto& rule : rulesToRun) {
    if (!rule.isEnabled || rule.action.type() == RuleAction::Type::reviewOnly) continue;
    const RuleDestination destination(rule.action, m_validator, allowedRoots);
    if (destination.refusal().empty()) rulesRun.carryOut(rule, destination);
  }
  return rulesRun.summary();
}

}  // namespace orvane
