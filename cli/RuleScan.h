#pragma once

#include "core/rules/CleanupRule.h"
#include "core/rules/RuleMatcher.h"
#include "core/scanning/FileItem.h"

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace orvane::cli {

class Session;

// What a scan of the granted folders found for some rules. Absent when it was interrupted.
struct RuleCandidates {
  std::vector<FileItem> items;
};
[[nodiscard]] std::optional<RuleCandidates> ruleCandidates(Session& session, const std::vector<FileUrl>& folders);

// What one rule makes of the candidates.
struct RulePreview {
  std::vector<std::size_t> matches;  // indexes of candidates
  std::int64_t bytes = 0;            // of the matches
  std::int64_t keptByLabel = 0;      // would match, were they not labelled manual
  // Of those not taken, by the first condition that they fail, a RuleMismatch.
  std::array<std::int64_t, ruleMismatchCount> notTaken{};
};
[[nodiscard]] RulePreview previewRule(const CleanupRule& rule, std::span<const FileItem> candidates, Date now);

}  // namespace orvane::cli
