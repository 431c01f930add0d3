#pragma once

#include "core/base/files/FileUrl.h"
#include "core/base/values/Date.h"
#include "core/organizer/records/AutoOrganizeResult.h"
#include "core/tasks/RestoreTask.h"
#include "core/tasks/TaskServices.h"
#include "core/tasks/TidyTask.h"

#include <functional>
#include <optional>
#include <span>
#include <stop_token>
#include <vector>

namespace orvane {

struct AutoOrganizeRequest {
  TidyOptions options;
  Date now = ReferenceClock::now();
  // When somebody was shown it already, nothing else is looked for.
  std::optional<TidyLook> shown = {};
  // Asked once with what would be done, when there is anything; a no changes nothing. Without it nobody is asked, and
  // everything proposed is approved.
  std::function<bool(std::span<const TidyProposal>)> approve = {};
  RunProgress progress = {};  // of the folder that is worked on
};

struct AutoOrganizeReport {
  enum class End : std::uint8_t {
    completed,
    declined,  // by whoever was asked
    busy,      // another run is under way, in this process or in another
  };
  // The outcome of one folder's proposal.
  struct Run {
    Proposal proposal;
    RunReport report;
  };
  AutoOrganizeResult result;
  End end = End::completed;
  std::vector<Run> runs = {};
  Notices notices = {};  // the folders that could not be looked at
};

// Keeps watched folders tidy: what arrived lately goes to "Recents", older files to categories or topics below
// "Sorted". Everything is journalled, one run for each folder.
class AutoOrganizer {
 public:
  // The objects that the services refer to must outlive this one.
  explicit AutoOrganizer(TaskServices services) : m_services(std::move(services)) {}
  static AutoOrganizer& shared();

  // Two runs never overlap, also not of two processes: the later one does nothing. A folder that is missing, refused or
  // fails does not stop the next. Throws std::system_error when the lock between processes cannot be made.
  AutoOrganizeReport run(const AutoOrganizeRequest& request, const std::stop_token& stop = {});
  // The proposal that a run would make; changes nothing.
  [[nodiscard]] TidyLook look(const AutoOrganizeRequest& request, const std::stop_token& stop = {}) const;

  // Brings back what runs of it moved.
  [[nodiscard]] Restored undo(std::span<const Uuid> runs) const;

  // Seconds since the later of creation and modification; zero where neither can be read.
  [[nodiscard]] double age(const FileUrl& item, Date now) const;

 private:
  TaskServices m_services;
};

}  // namespace orvane
