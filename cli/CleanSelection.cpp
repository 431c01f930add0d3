#include "cli/CleanSelection.h"

#include "cli/RunReport.h"
#include "core/base/FileStatus.h"
#include "core/organizer/CloudFolderDetector.h"

#include <fcntl.h>
#include <fmt/format.h>

#include <algorithm>

namespace orvane::cli {

std::optional<MoveRequest> moveRequestFor(const FileUrl& place, std::int64_t folderSize) {
  const auto status = readFileStatus(AT_FDCWD, place.path().c_str());
  if (!status) return std::nullopt;
  MoveRequest request;
  request.source = place;
  if (status->type == FileType::directory) {
    request.fileSize = folderSize;
  } else {
    request.fileSize = status->size;
    request.expectedIdentity = ItemIdentity::of(*status);
  }
  return request;
}

std::vector<std::string> cloudWarnings(std::span<const MoveRequest> requests) {
  std::map<CloudProvider, std::pair<std::int64_t, const FileUrl*>> synced;
  for (const auto& request : requests) {
    const auto provider = CloudFolderDetector::detectProvider(request.source);
    if (!provider) continue;
    auto& [count, first] = synced[*provider];
    if (count++ == 0) first = &request.source;
  }
  std::vector<std::string> result;
  for (const auto& [provider, found] : synced) {
    const auto& [count, first] = found;
    result.push_back(count == 1 ? CloudFolderDetector::syncWarning(*first).value_or("")
                                : fmt::format("Warning: {} are synced via {}. Deleting them will also remove them from "
                                              "your other connected devices.",
                                              itemCount(count), rawValue(provider)));
  }
  return result;
}

}  // namespace orvane::cli
