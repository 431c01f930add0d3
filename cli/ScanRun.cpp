#include "cli/ScanRun.h"

#include "cli/ProgressLine.h"
#include "cli/Session.h"
#include "core/base/ByteCount.h"
#include "core/base/UnicodeText.h"

#include <fmt/format.h>

#include <functional>
#include <stop_token>
#include <utility>

namespace orvane::cli {

ScanEnd runScan(Session& session, std::vector<FileUrl> folders, DeveloperCaches developerCaches,
                const std::function<void(std::vector<ScanEvent>&)>& take) {
  const auto stop = session.stop();
  auto stream = StorageScanner::shared().scan(std::move(folders), developerCaches);
  const std::stop_callback cancelOnStop(stop, [&] { stream.cancel(); });
  ProgressLine line(session);
  auto end = ScanEnd::cancelled;
  while (true) {
    auto batch = stream.nextBatch();
    if (batch.empty()) return end;
    for (const auto& event : batch) {
      if (const auto* progress = std::get_if<ScanProgress>(&event)) {
        line.update([&] {
          return fmt::format("Scanning ({} entries, {} found): {}", formatCount(progress->itemsScanned),
                             formatByteCount(progress->bytesFound), escapedForDisplay(progress->currentPath));
        });
      } else if (std::holds_alternative<ScanCompleted>(event)) {
        end = ScanEnd::completed;
      }
    }
    if (std::holds_alternative<ScanCompleted>(batch.back())) line.clear();
    take(batch);
  }
}

}  // namespace orvane::cli
