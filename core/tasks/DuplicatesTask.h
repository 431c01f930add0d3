#pragma once

#include "core/base/files/FileUrl.h"
#include "core/base/text/JsonFwd.h"
#include "core/base/values/Date.h"
#include "core/duplicates/records/DuplicateGroup.h"
#include "core/duplicates/records/DuplicateKeepStrategy.h"
#include "core/safety/records/Boundary.h"
#include "core/safety/records/MoveOutcome.h"
#include "core/tasks/Proposal.h"
#include "core/tasks/RunReport.h"
#include "core/tasks/TaskMonitor.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orvane {

struct TaskServices;

// The granted folders that a search for duplicates looks into.
[[nodiscard]] std::vector<FileUrl> searchableFolders(const TaskServices& services);

struct DuplicatesOptions {
  std::vector<FileUrl> folders;  // also the boundary
  DuplicateKeepStrategy keep = DuplicateKeepStrategy::keepOldest;
  Date now = ReferenceClock::now();
  std::vector<FileUrl> references = {};  // searched too, and never touched: a copy there is the one that stays
};

// Searches, and proposes a group that keeps one for each set of identical files, most wasted bytes first. Its rows
// follow each other and are all its copies: the one that the strategy keeps is unselected, the others are selected.
// Where copies are kept or lie in a reference folder, these stay, locked, and all others are selected; a group of such
// copies alone is none. Folders that are not searched are named in notices. Absent when it was stopped.
[[nodiscard]] std::optional<Proposal> proposeDuplicates(const TaskServices& services, const DuplicatesOptions& options,
                                                        const TaskMonitor& monitor = {});
// From the subject of a proposal, inside a boundary of this machine. Throws JsonError.
[[nodiscard]] std::optional<Proposal> reproposeDuplicates(const TaskServices& services, const Json& subject,
                                                          const Boundary& boundary, Date countedTo,
                                                          const TaskMonitor& monitor = {});

// Of each group of a proposal of duplicates: its first row.
[[nodiscard]] std::vector<std::uint32_t> firstRowsOfGroups(const Proposal& proposal);
// The group that begins with a row, without the copies that are gone, selected as chosen.
[[nodiscard]] DuplicateGroup duplicateGroupAt(const Proposal& proposal, std::uint32_t firstRow,
                                              const Selection& selection);

// Chooses in every group all copies but the one that the strategy keeps.
void applyKeepStrategy(const Proposal& proposal, DuplicateKeepStrategy strategy, Selection& selection);
// More ways to choose the copy that stays than a proposal is made with.
struct KeepRule {
  enum class By : std::uint8_t { oldest, shortestPath, newest, folder };
  By by = By::oldest;
  // By folder: of the copies inside it the oldest stays, and of all where none is.
  FileUrl folder = {};

  bool operator==(const KeepRule&) const = default;
};
void applyKeepRule(const Proposal& proposal, const KeepRule& rule, Selection& selection);

// Selects or unselects one copy, where its group allows it. False where it did not.
[[nodiscard]] bool setCopySelected(const Proposal& proposal, std::uint32_t row, bool isSelected, Selection& selection);

// The message at the end of a cleanup: a title, and a sentence below it.
inline constexpr std::string_view duplicateCleanupTitle = "Duplicate Cleanup";
[[nodiscard]] std::string duplicateCleanupText(const RunReport& report);
// The console's line about a copy that stayed against the user's wish.
[[nodiscard]] std::string duplicateFailureLine(const FileUrl& copy, std::string_view error);

}  // namespace orvane
