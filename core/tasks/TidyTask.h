#pragma once

#include "core/base/files/FileLock.h"
#include "core/base/files/FileUrl.h"
#include "core/base/values/Date.h"
#include "core/organizer/records/TopicUse.h"
#include "core/tasks/CategoryGroups.h"
#include "core/tasks/Proposal.h"
#include "core/tasks/ReturnedItems.h"
#include "core/tasks/RunReport.h"
#include "core/tasks/TaskMonitor.h"

#include <cstdint>
#include <optional>
#include <stop_token>
#include <vector>

namespace orvane {

struct AutoOrganizeSettings;
struct TaskServices;

struct TidyOptions {
  std::vector<FileUrl> folders;  // watched
  std::int64_t recentsDays = 3;  // of 86,400 seconds each
  TopicUse topics = TopicUse::never;
  ReturnedUse returned = ReturnedUse::leave;

  [[nodiscard]] static TidyOptions of(const AutoOrganizeSettings& settings);
};

// The moves proposed in one watched folder.
struct TidyProposal {
  FileUrl folder;
  Proposal proposal;
};

// The proposal of tidying, each watched folder by itself.
struct TidyLook {
  std::vector<TidyProposal> proposals;  // of each folder in which there is something to move
  Notices notices;                      // the folders that could not be looked at
};
// Proposes nothing where it was stopped.
[[nodiscard]] TidyLook lookForTidying(const TaskServices& services, const TidyOptions& options, Date now,
                                      const TaskMonitor& monitor = {});

// The right to tidy: no two passes overlap, of this process or of others.
class TidyPass {
 public:
  // Absent while another pass is under way. `services` must outlive the pass. Throws std::system_error when the lock
  // between processes cannot be made.
  [[nodiscard]] static std::optional<TidyPass> begin(const TaskServices& services);

  // Moves what was approved of one folder, as a run of its own.
  [[nodiscard]] RunReport carryOut(const Approval& approval, const RunProgress& progress = {},
                                   const std::stop_token& stop = {}) const;

 private:
  TidyPass(const TaskServices& services, FileLock lock) : m_services(services), m_lock(std::move(lock)) {}

  const TaskServices& m_services;
  FileLock m_lock;
};

// All watched folders as one proposal, to be saved. Absent when it was stopped.
[[nodiscard]] std::optional<Proposal> proposeTidy(const TaskServices& services, const TidyOptions& options, Date now,
                                                  const TaskMonitor& monitor = {});
// Proposes again from the subject of such a proposal, inside another boundary. Topics are those of the subject. Absent
// when it was stopped. Throws JsonError.
[[nodiscard]] std::optional<Proposal> reproposeTidy(const TaskServices& services, const Json& subject,
                                                    const Boundary& boundary, Date countedTo,
                                                    const TaskMonitor& monitor = {});

}  // namespace orvane
