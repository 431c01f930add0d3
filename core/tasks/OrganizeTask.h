#pragma once

#include "core/base/files/FileUrl.h"
#include "core/base/values/Date.h"
#include "core/organizer/records/OrganizationStrategy.h"
#include "core/organizer/records/Subfolders.h"
#include "core/organizer/records/TopicUse.h"
#include "core/tasks/CategoryGroups.h"
#include "core/tasks/Proposal.h"
#include "core/tasks/RunReport.h"
#include "core/tasks/TaskMonitor.h"

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orvane {

struct TaskServices;

struct OrganizeOptions {
  FileUrl folder;
  // Where the category folders are made. Only one that is named may lie, or lead, outside the folder.
  std::optional<FileUrl> destination = std::nullopt;
  Subfolders subfolders = Subfolders::keepWhole;
  OrganizationStrategy strategy = OrganizationStrategy::byCategory;
  TopicUse topics = TopicUse::never;  // for documents that are organized by category
};

// Whether documents of a folder of this name can be sorted by topic.
[[nodiscard]] bool canHaveTopics(const FileUrl& folder, OrganizationStrategy strategy);
// Where the category folders are made when no destination is named.
[[nodiscard]] FileUrl defaultDestination(const FileUrl& folder);
// The folders below a folder that could be organized on their own, `maxDepth` levels deep.
[[nodiscard]] std::vector<FileUrl> subfoldersOf(const TaskServices& services, const FileUrl& folder, int maxDepth);

// Proposes where the items of a folder would go: a group for each category folder, everything selected. A notice counts
// the items in their place; a folder that cannot be organized yields a notice and no row. Absent when it was
// stopped.
[[nodiscard]] std::optional<Proposal> proposeOrganize(const TaskServices& services, const OrganizeOptions& options,
                                                      Date now, const TaskMonitor& monitor = {});
// The same from a proposal's subject, inside another boundary. Topics are those of the subject. Throws JsonError.
[[nodiscard]] std::optional<Proposal> reproposeOrganize(const TaskServices& services, const Json& subject,
                                                        const Boundary& boundary, Date countedTo,
                                                        const TaskMonitor& monitor = {});

// The proposal with one group under another name, and everything chosen as in the selection. Absent where no folder
// below the destination can have that name. A row that lies there already is locked.
[[nodiscard]] std::optional<Proposal> renameGroup(const TaskServices& services, const Proposal& proposal,
                                                  const Selection& selection, std::size_t group, std::string_view name);
// Those of the groups into which the run moved something, so that their names can be remembered.
[[nodiscard]] std::vector<std::size_t> filledGroups(const Proposal& proposal, const std::vector<std::size_t>& groups,
                                                    const RunReport& report);
// Has the organizer use the groups' names for the kinds of files in them from now on. Throws std::system_error.
void rememberNames(const TaskServices& services, const Proposal& proposal, const std::vector<std::size_t>& groups);
// The kinds of files in a group, as extensions in lower case.
[[nodiscard]] std::vector<std::string> kindsIn(const Proposal& proposal, std::size_t group);
// The names that it uses, by kind of file.
[[nodiscard]] std::map<std::string, std::string> rememberedNames(const TaskServices& services);
// Has it forget every name. Throws std::system_error.
void forgetNames(const TaskServices& services);

}  // namespace orvane
