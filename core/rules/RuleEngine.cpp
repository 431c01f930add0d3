#include "core/rules/RuleEngine.h"

#include "core/base/CanonicalPath.h"
#include "core/base/CheckedArithmetic.h"
#include "core/base/HomeFolder.h"
#include "core/base/Json.h"
#include "core/base/PathText.h"
#include "core/platform/Preferences.h"
#include "core/rules/BuiltInRuleTemplates.h"
#include "core/rules/RuleMatcher.h"
#include "core/safety/FolderLookups.h"
#include "core/safety/PathValidator.h"

#include <algorithm>
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

// The requests of one rule, and which candidate each is for.
struct Requests {
  std::vector<MoveRequest> requests;
  std::vector<std::size_t> candidates;
};

// One run of several rules over the same candidates.
class RulesRun {
 public:
  RulesRun(CleanupRun& run, PlanExecution& execution, std::span<const FileItem> candidates, Date relativeTo)
      : m_run(run),
        m_execution(execution),
        m_candidates(candidates),
        m_relativeTo(relativeTo),
        m_hasMoved(candidates.size(), false) {}

  void carryOut(const CleanupRule& rule, const std::string& refusal, const CleanupRun::Progress& progress,
                const std::stop_token& stop) {
    const auto requests = requestsOf(rule);
    if (requests.requests.empty()) return;
    if (!refusal.empty()) {
      for (const auto& request : requests.requests) {
        m_execution.outcomes.push_back({request.source, MoveResult::refused, {}, request.fileSize, refusal});
      }
      return;
    }
    auto outcomes = m_run.carryOut(requests.requests, sum(progress), stop);
    m_settled += requests.requests.size();
    for (std::size_t i = 0; i < outcomes.size(); ++i) {
      if (outcomes[i].result == MoveResult::moved) note(requests, i);
      m_execution.outcomes.push_back(std::move(outcomes[i]));
    }
  }

 private:
  [[nodiscard]] Requests requestsOf(const CleanupRule& rule) {
    Requests result;
    RuleMatcher matcher(rule.trigger, m_relativeTo);
    std::optional<FileUrl> destination;
    std::string canonicalDestination;
    if (rule.action.type() == RuleAction::Type::moveToFolder) {
      destination = FileUrl(expandedHome(rule.action.path()));
      canonicalDestination = canonicalPath(destination->path());
    }
    for (std::size_t i = 0; i < m_candidates.size(); ++i) {
      if (m_hasMoved[i] || !matcher.matches(m_candidates[i])) continue;
      const auto& url = m_candidates[i].url();
      // It would get another number with every run.
      if (destination && m_folders.canonical(parentPath(url.path())) == canonicalDestination) continue;
      auto& request = result.requests.emplace_back();
      request.source = url;
      request.fileSize = m_candidates[i].fileSize();
      request.destinationFolder = destination;
      result.candidates.push_back(i);
    }
    return result;
  }

  void note(const Requests& requests, std::size_t index) {
    m_hasMoved[requests.candidates[index]] = true;
    const auto& request = requests.requests[index];
    auto& summary = m_execution.summary;
    summary.itemsProcessed = checkedAdd<std::int64_t>(summary.itemsProcessed, 1);
    if (!request.destinationFolder) summary.bytesReclaimed = checkedAdd(summary.bytesReclaimed, request.fileSize);
  }

  // Of all rules so far: how many later ones will find is not known yet.
  [[nodiscard]] CleanupRun::Progress sum(const CleanupRun::Progress& progress) const {
    if (!progress) return {};
    return [&progress, before = m_settled](std::size_t done, std::size_t total) {
      progress(before + done, before + total);
    };
  }

  CleanupRun& m_run;
  PlanExecution& m_execution;
  std::span<const FileItem> m_candidates;
  Date m_relativeTo;
  std::vector<bool> m_hasMoved;
  FolderLookups m_folders;
  std::size_t m_settled = 0;
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

void RuleEngine::keepIdentities() {
  const std::lock_guard lock(m_mutex);
  if (m_preferences.value(storageKey)) return;
  m_preferences.update(storageKey, [&](const Json* stored) {
    refresh(stored);
    return stored != nullptr ? *stored : encoded(m_rules);
  });
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

PlanExecution RuleEngine::carryOut(std::span<const CleanupRule> rulesToRun, std::span<const FileItem> candidates,
                                   const Boundary& allowedRoots, const CleanupRun::Progress& progress,
                                   const std::stop_token& stop, Date relativeTo) {
  CleanupRun run(m_mover, m_journal(), allowedRoots);
  PlanExecution execution;
  execution.summary.batchId = run.id();
  RulesRun rulesRun(run, execution, candidates, relativeTo);
  for (const auto& rule : rulesToRun) {
    if (stop.stop_requested()) break;
    if (!rule.isEnabled || rule.action.type() == RuleAction::Type::reviewOnly) continue;
    std::string refusal;
    if (rule.action.type() == RuleAction::Type::moveToFolder) {
      refusal = m_validator.refusalText(FileUrl(expandedHome(rule.action.path())), allowedRoots);
    }
    rulesRun.carryOut(rule, refusal, progress, stop);
  }
  return execution;
}

PlanExecutionSummary RuleEngine::executeRules(std::span<const CleanupRule> rulesToRun,
                                              std::span<const FileItem> candidates, const Boundary& allowedRoots) {
  return carryOut(rulesToRun, candidates, allowedRoots).summary;
}

}  // namespace orvane
