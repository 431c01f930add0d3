#pragma once

#include "core/base/values/Date.h"
#include "core/base/values/Uuid.h"
#include "core/plans/records/PlanExecutionSummary.h"
#include "core/rules/records/CleanupRule.h"
#include "core/safety/records/Boundary.h"
#include "core/scanning/records/FileItem.h"

#include <functional>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace orvane {

class PathValidator;
class Preferences;
class TrashMover;
class UndoJournal;

// Keeps the cleanup rules and carries them out. Every change is stored at once, and what another process stored is read
// before anything is done. Callable from any thread.
class RuleEngine {
 public:
  // An array of rules.
  static constexpr std::string_view storageKey = "OrvaneCleanupRules";

  // The journal is asked for by the first run: making it reads its whole file.
  using Journal = std::function<UndoJournal&()>;
  RuleEngine(Preferences& preferences, TrashMover& mover, Journal journal, const PathValidator& validator);
  RuleEngine(Preferences& preferences, TrashMover& mover, UndoJournal& journal, const PathValidator& validator);
  static RuleEngine& shared();

  // The stored rules, in their order; the built-in ones where nothing, or nothing that decodes, is stored.
  [[nodiscard]] std::vector<CleanupRule> getRules();
  // Stores the built-in rules where nothing, or nothing that decodes, is stored, so that their identities last. Returns
  // the key under which it set aside what does not decode. Throws std::system_error.
  std::optional<std::string> keepIdentities();

  // These store the whole list. Throw std::system_error.

  // Replaces the rule of the same identity in its place, else appends it.
  void addOrUpdateRule(const CleanupRule& rule);
  // A built-in rule stays.
  void deleteRule(const Uuid& id);
  void toggleRule(const Uuid& id, bool isEnabled);
  // The built-in rules as they came; the user's own go.
  void resetToDefaults();

  // Whether a file meets a trigger; ages count to `relativeTo`. For many files there is RuleMatcher.
  [[nodiscard]] static bool matches(const FileItem& file, const RuleTrigger& trigger, Date relativeTo);

  // Carries out the enabled ones of the rules, in order, on the candidates, in order, as one run. Nothing outside the
  // allowed roots is touched, a destination included. A file that fails stays where it is, later rules may try again,
  // and the others go on.
  PlanExecutionSummary executeRules(std::span<const CleanupRule> rulesToRun, std::span<const FileItem> candidates,
                                    const Boundary& allowedRoots);

 private:
  void change(const std::function<void(std::vector<CleanupRule>&)>& how);
  // Takes over what is stored; the rules in memory stay where nothing is.
  void refresh(const Json* stored);

  Preferences& m_preferences;
  TrashMover& m_mover;
  Journal m_journal;
  const PathValidator& m_validator;
  std::mutex m_mutex;
  std::vector<CleanupRule> m_rules;
};

}  // namespace orvane
