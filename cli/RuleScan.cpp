#include "cli/RuleScan.h"

#include "cli/ScanRun.h"
#include "cli/Session.h"
#include "core/base/CheckedArithmetic.h"

#include <variant>

namespace orvane::cli {

std::optional<RuleCandidates> ruleCandidates(Session& session, const std::vector<FileUrl>& folders) {
  RuleCandidates result;
  const auto end = runScan(session, folders, DeveloperCaches::leaveOut, [&](std::vector<ScanEvent>& batch) {
    for (auto& event : batch) {
      if (auto* item = std::get_if<FileItem>(&event)) result.items.push_back(std::move(*item));
    }
  });
  if (end == ScanEnd::cancelled) return std::nullopt;
  return result;
}

RulePreview previewRule(const CleanupRule& rule, std::span<const FileItem> candidates, Date now) {
  RulePreview preview;
  RuleMatcher matcher(rule.trigger, now);
  for (std::size_t i = 0; i < candidates.size(); ++i) {
    const auto mismatch = matcher.mismatch(candidates[i]);
    if (!mismatch) {
      preview.matches.push_back(i);
      preview.bytes = checkedAdd(preview.bytes, candidates[i].fileSize());
      continue;
    }
    ++preview.notTaken[static_cast<std::size_t>(*mismatch)];
    if (matcher.matchesButForLabel(candidates[i])) ++preview.keptByLabel;
  }
  return preview;
}

}  // namespace orvane::cli
