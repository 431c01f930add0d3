#pragma once

#include "core/base/files/FileStatus.h"
#include "core/base/files/FileUrl.h"
#include "core/base/text/Json.h"
#include "core/base/values/Date.h"
#include "core/tasks/KnownPlaces.h"
#include "core/tasks/Proposal.h"
#include "core/tasks/TaskMonitor.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orvane {

struct TaskServices;

// A proposal as a file keeps it, to be read by a person or a program and carried out later. Everything from such a file
// may have been written by a stranger.
struct SavedProposal {
  // A file that is longer is refused unread.
  static constexpr std::size_t maxBytes = std::size_t{512} * 1024 * 1024;

  struct Row {
    FileUrl item;
    ItemIdentity identity;
    std::optional<FileUrl> destinationFolder;  // the Trash when absent
  };

  TaskKind kind = TaskKind::clean;
  Date countedTo;
  Json subject;
  std::vector<Row> rows;

  // Throws JsonError: for what is no saved proposal, one of another version, and one that breaks its own form.
  static SavedProposal decode(std::string_view text);
};

// Writes what is approved as one JSON document, a row a line. `write` is handed the text piece by piece.
void writeProposal(const Approval& approval, const std::function<void(std::string_view)>& write);

// Proposes again what was saved, inside the boundary alone, and holds the saved rows against it: those that are still
// proposed and still the same items are selected, everything else of the file is locked with the reason. Rows that the
// file does not name are never selected. Known places may be left out, whatever the file asks for. Absent when it was
// stopped. Throws JsonError for a subject that is none.
[[nodiscard]] std::optional<Proposal> proposeSaved(const TaskServices& services, const SavedProposal& saved,
                                                   const Boundary& boundary, const TaskMonitor& monitor = {},
                                                   KnownPlaces knownPlaces = KnownPlaces::include);

}  // namespace orvane
