#include "cli/commands/Commands.h"
#include "cli/frame/Arguments.h"
#include "cli/frame/ProposalRun.h"
#include "cli/frame/Session.h"
#include "cli/text/Table.h"
#include "core/base/files/HomeFolder.h"
#include "core/base/text/ByteCount.h"
#include "core/base/text/Json.h"
#include "core/base/values/Calendar.h"
#include "core/platform/TrashUsage.h"
#include "core/platform/Volume.h"
#include "core/scanning/records/StorageSummary.h"
#include "core/tasks/History.h"
#include "core/tasks/TaskServices.h"
#include "platform/SystemServices.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdint>
#include <stdexcept>
#include <string>

namespace orvane::cli {
namespace {

std::string unansweredText(const TrashUsage::Totals& trash) {
  if (trash.unansweredDisks == 0) return {};
  return fmt::format(" {} {} did not answer and {} not counted.", formatCount(trash.unansweredDisks),
                     trash.unansweredDisks == 1 ? "disk" : "disks", trash.unansweredDisks == 1 ? "is" : "are");
}

std::string trashText(const TrashUsage::Totals& trash) {
  if (trash.count == 0) return "The Trash is empty." + unansweredText(trash);
  auto text = fmt::format("In the Trash: {}", itemsText({trash.count, trash.bytes}));
  if (trash.oldest) {
    const auto days = std::max<std::int64_t>(0, wholeDaysBetween(*trash.oldest, ReferenceClock::now()));
    text += fmt::format(", the oldest for {} {}", formatCount(days), days == 1 ? "day" : "days");
  }
  return text + ". Only emptying it frees the space, which Orvane never does." + unansweredText(trash);
}

ExitStatus runSummary(Session& session, const Arguments&) {
  const FileUrl home(homeFolder());
  const auto disk = systemVolume().capacity(home);
  if (!disk) throw std::runtime_error(fmt::format("the size of the disk that holds {} is unknown", home.path()));
  StorageSummary summary;
  summary.totalDiskBytes = disk->totalBytes;
  summary.freeDiskBytes = disk->availableBytes;
  summary.usedDiskBytes = disk->totalBytes - disk->availableBytes;
  summary.lifetimeReclaimedBytes = readHistory(TaskServices::shared()).lifetimeReclaimedBytes;
  tellJournalNotices();
  if (session.isJson()) {
    session.out().line(jsonText(summary.toJson()));
    return ExitStatus::done;
  }
  Table table({{"Disk"}, {"Size", Alignment::right}});
  table.addRow({{"Total"}, {summary.formattedTotal()}});
  table.addRow({{"Used"}, {summary.formattedUsed()}});
  table.addRow({{"Available"}, {summary.formattedFree()}});
  table.print(session);
  session.out().line("");
  session.out().line(trashText(systemTrashUsage().read(session.stop())));
  session.out().line(
      fmt::format("Moved to the Trash so far: {}. The disk is {:.0f}% full; 'orvanectl scan' shows what can go.",
                  summary.formattedLifetimeReclaimed(), 100 * summary.usedPercentage()));
  return ExitStatus::done;
}

}  // namespace

constexpr CommandSpec summaryCommand{
    .name = "summary",
    .summary = "Show the disk's totals and what was cleaned so far",
    .details =
        "What was cleaned so far counts the items that were moved to the Trash and not brought back. The Trash's "
        "content counts on every disk, whoever put it there; with --json it is left out. With --json, "
        "the reclaimable bytes are 0 and their breakdown is empty: only a scan tells them.",
    .arguments = {},
    .options = {},
    .run = runSummary,
};

}  // namespace orvane::cli
