#pragma once

#include "core/base/files/FileLock.h"
#include "core/base/files/FileUrl.h"
#include "core/base/values/Date.h"
#include "core/organizer/records/TopicUse.h"
#include "core/tasks/CategoryGroups.h"
#include "core/tasks/Proposal.h"
#include "core/tasks/RunReport.h"
#include "core/tasks/TaskMonitor.h"

#include <cstdint>
#include <optional>
#include <stop_token>
#include <vector>

namespace orvane {

struct TaskServices;

struct TidyWish {
  std::vector<FileUrl> folders;  // watched
  std::int64_t recentsDays = 3;  // of 86,400 seconds each
  TopicUse topics = TopicUse::never;
};

// What would be moved in one watched folder.
struct TidyProposal {
  FileUrl folder;
  Proposal proposal;
};

// One look at the watched folders and what is moved after it. No other pass, of this process or another, overlaps it.
class TidyPass {
 public:
  // Looks at each folder; at none where it is stopped. Absent while another pass is under way. `services` must outlive
  // the pass. Throws std::system_error when the lock between processes cannot be made.
  [[nodiscard]] static std::optional<TidyPass> begin(const TaskServices& services, const TidyWish& wish, Date now,
                                                     const TaskMonitor& monitor = {});

  // Of each folder in which there is something to move.
  [[nodiscard]] const std::vector<TidyProposal>& proposals() const noexcept { return m_proposals; }
  // The folders that could not be looked at.
  [[nodiscard]] const Notices& notices() const noexcept { return m_notices; }
  // Moves what was approved of one folder, as a run of its own.
  [[nodiscard]] RunReport carryOut(const Approval& approval, const RunProgress& progress = {},
                                   const std::stop_token& stop = {}) const;

 private:
  TidyPass(const TaskServices& services, FileLock lock) : m_services(services), m_lock(std::move(lock)) {}

  const TaskServices& m_services;
  FileLock m_lock;
  std::vector<TidyProposal> m_proposals;
  Notices m_notices;
};

// What a pass proposes for one folder, from the subject of such a proposal and inside another boundary. Topics are
// those of the subject. Absent when it was stopped. Throws JsonError.
[[nodiscard]] std::optional<Proposal> reproposeTidy(const TaskServices& services, const Json& subject,
                                                    const Boundary& boundary, Date countedTo,
                                                    const TaskMonitor& monitor = {});

}  // namespace orvane
