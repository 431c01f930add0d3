#pragma once

#include "core/base/text/JsonFwd.h"
#include "core/base/values/Date.h"
#include "core/rules/records/RuleCheck.h"
#include "core/safety/records/Boundary.h"
#include "core/scanning/records/DeveloperCaches.h"
#include "core/tasks/ItemList.h"
#include "core/tasks/KnownPlaces.h"
#include "core/tasks/Proposal.h"
#include "core/tasks/TaskMonitor.h"

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace orvane {

struct TaskServices;

// Which files are offered to rules.
enum class RuleFiles : std::uint8_t {
  scanned,    // as a scan finds them, developer caches left out
  scheduled,  // as a scheduled run walks: all but hidden ones and those inside bundles
};

struct RulesOptions {
  std::vector<CleanupRule> rules;  // in order; those that are off are passed over
  Boundary boundary;               // its folders are looked at, and files go nowhere else
  Date now = ReferenceClock::now();
  RuleFiles files = RuleFiles::scanned;
  KnownPlaces knownPlaces = KnownPlaces::include;  // where the boundary is that of the grants, and they are granted
};

// Proposes each file once, under the first rule that moves it, else as a locked row under the first that lists it. The
// groups are the rules of the options in their order, also those that are refused and take nothing. Files that lie
// where they would go, in a Trash, or are kept by their label, are counted in notices. Absent when it was stopped.
[[nodiscard]] std::optional<Proposal> proposeRules(const TaskServices& services, const RulesOptions& options,
                                                   const TaskMonitor& monitor = {});
// From the subject of a proposal, inside a boundary of this machine. Throws JsonError.
[[nodiscard]] std::optional<Proposal> reproposeRules(const TaskServices& services, const Json& subject,
                                                     const Boundary& boundary, Date countedTo,
                                                     const TaskMonitor& monitor = {});

// Whether one of the rules that are on asks for developer caches, which rules take only where they name them.
[[nodiscard]] DeveloperCaches developerCachesFor(std::span<const CleanupRule> rules);

// Scans the boundary once, developer caches included, for looking at several rules one by one. Absent when it was
// stopped.
[[nodiscard]] std::optional<ItemList> ruleCandidates(const TaskServices& services, const Boundary& boundary,
                                                     const TaskMonitor& monitor = {});
// proposeRules() among candidates that are known already.
[[nodiscard]] Proposal proposeRules(const TaskServices& services, const RulesOptions& options,
                                    const ItemList& candidates);
// The sum of its rows, none of which is kept. Absent when it was stopped.
[[nodiscard]] std::optional<RowSum> countRules(const TaskServices& services, const RulesOptions& options,
                                               const ItemList& candidates, const TaskMonitor& monitor = {});

// Problems of a rule that hang on the disk: a folder that is missing, a destination that is refused.
[[nodiscard]] std::vector<RuleProblem> problemsOnDisk(const TaskServices& services, const CleanupRule& rule,
                                                      const Boundary& boundary);

}  // namespace orvane
