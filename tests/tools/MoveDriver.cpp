// Carries out one action in a given home and ends: the process that a test interrupts.
//
//   move-driver HOME trash      everything directly in HOME/Downloads goes to the Trash
//   move-driver HOME move       everything directly in HOME/Downloads goes to HOME/Sorted
//   move-driver HOME restore    every run comes back

#include "core/base/files/DirectoryReader.h"
#include "core/safety/journal/UndoJournal.h"
#include "core/safety/rules/PathValidator.h"
#include "core/safety/run/CleanupRun.h"
#include "core/safety/run/TrashMover.h"
#include "platform/linux/LinuxFileMover.h"
#include "platform/linux/LinuxTrash.h"

#include <fcntl.h>

#include <algorithm>
#include <cstdio>
#include <string_view>

namespace orvane {
namespace {

std::vector<MoveRequest> everythingIn(const std::string& folder) {
  std::vector<MoveRequest> requests;
  auto reader = DirectoryReader::open(AT_FDCWD, folder.c_str(), DirectoryReader::Links::refuse);
  while (reader) {
    const auto entry = reader->next();
    if (!entry) break;
    MoveRequest request;
    request.source = FileUrl(folder + "/" + std::string(entry->name));
    requests.push_back(std::move(request));
  }
  std::sort(requests.begin(), requests.end(),
            [](const MoveRequest& left, const MoveRequest& right) { return left.source < right.source; });
  return requests;
}

int run(const std::string& home, std::string_view action) {
  const PathValidator validator(home);
  LinuxTrash trash(home + "/.local/share/Trash");
  LinuxFileMover fileMover;
  TrashMover mover(trash, fileMover, validator);
  UndoJournal journal(trash, fileMover, validator, FileUrl(home + "/State"));
  if (action == "restore") {
    for (const auto& summary : journal.getRuns()) static_cast<void>(journal.restoreRun(summary.runId));
    return 0;
  }
  auto requests = everythingIn(home + "/Downloads");
  if (action == "move") {
    for (auto& request : requests) request.destinationFolder = FileUrl(home + "/Sorted");
  }
  CleanupRun cleanup(mover, journal, Boundary({FileUrl(home + "/Downloads"), FileUrl(home + "/Sorted")}));
  const auto outcomes = cleanup.carryOut(requests);
  return std::all_of(outcomes.begin(), outcomes.end(),
                     [](const MoveOutcome& outcome) { return outcome.result == MoveResult::moved; })
             ? 0
             : 1;
}

}  // namespace
}  // namespace orvane

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fprintf(stderr, "usage: move-driver HOME trash|move|restore\n");
    return 2;
  }
  return orvane::run(argv[1], argv[2]);
}
