#include "cli/CleanSelection.h"

#include "cli/RunReport.h"
#include "core/base/FileStatus.h"
#include "core/organizer/CloudFolderDetector.h"

#include <fcntl.h>
#include <fmt/format.h>

#include <algorithm>

namespace orvane::cli {

bool CleanWish::takes(const FileItem& item) const {
  const auto category = item.category();
  if (category == ScanCategory::trash) return false;
  const bool isNamed = std::find(categories.begin(), categories.end(), category) != categories.end();
  if (!categories.empty() && !isNamed) return false;
  if (item.isSelected()) return true;
  return isNamed && reviewItems == ReviewItems::include && item.riskLabel() == RiskLabel::review;
}

void CleanSelection::consider(const FileItem& item) {
  if (item.category() == ScanCategory::trash) m_inTrash.add(item.fileSize());
  if (!m_wish.takes(item)) return;
  auto request = moveRequestFor(item.url(), item.fileSize());
  if (!request || !m_paths.insert(item.url().path()).second) return;
  m_totals.add(item, request->fileSize);
  m_requests.push_back(*std::move(request));
  m_items.push_back(item);
  m_items.back().setSelected(true);
}

std::vector<std::string> CleanSelection::cloudWarnings() const {
  return cli::cloudWarnings(m_requests);
}

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
