#include "core/plans/CleaningPlanSchema.h"

#include "core/base/files/CanonicalPath.h"
#include "core/base/files/PathText.h"
#include "core/base/text/UnicodeText.h"
#include "core/plans/records/CleaningPlan.h"

#include <algorithm>
#include <array>

namespace orvane {
namespace {

using ValidationError = CleaningPlanSchema::ValidationError;

constexpr std::array<std::string_view, 6> prohibitedFolders{"/", "/System", "/Library", "/usr", "/bin", "/private"};

constexpr std::string_view schemaBlock = R"({
  "userGoal": string,
  "summary": string,
  "steps": [
    {
      "targetFolder": string,
      "filter": {
        "categories": ["caches", "logs", "oldDownloads", "screenshots", "largeFiles", "trash", "appLeftovers"],
        "extensions": ["string"],
        "minimumAgeDays": int,
        "minimumSizeBytes": int,
        "nameContains": string
      },
      "action": "trash" | "review" | "move",
      "destinationFolder": string | null,
      "explanation": string
    }
  ]
})";

// A line of the block and the lines that the decoder requires after it.
struct RequiredAfter {
  std::string_view line;
  std::string_view required;
};
constexpr std::array requiredLines{
    RequiredAfter{"{\n", "  \"id\": \"00000000-0000-4000-8000-000000000001\",\n"},
    RequiredAfter{"\n    {\n", "      \"id\": \"00000000-0000-4000-8000-000000000002\",\n"},
    RequiredAfter{"\n  ]", ",\n  \"isDryRun\": true,\n  \"createdAt\": 0"},
};

// Whole texts only: what lies below these folders is the path validator's to judge. The text before links are resolved
// counts too, since a prohibited folder may be a link itself, as /bin is where it was merged into /usr/bin.
bool isProhibited(std::string_view folder) {
  const auto is = [](std::string_view path) {
    return std::ranges::find(prohibitedFolders, path) != prohibitedFolders.end();
  };
  return is(canonicalPath(folder)) || is(standardizedPath(folder));
}

std::optional<ValidationError::Case> faultOf(const CleaningPlanStep& step) {
  const std::string target = trimmed(step.targetFolder);
  if (target.empty()) return ValidationError::MissingTargetFolder{};
  if (isProhibited(target)) return ValidationError::ProtectedTargetFolder{target};
  if (step.action == PlannedAction::move && trimmed(step.destinationFolder.value_or("")).empty()) {
    return ValidationError::InvalidDestinationFolder{};
  }
  if (!step.filter.hasCriteria()) return ValidationError::InvalidFilterCriteria{};
  return std::nullopt;
}

std::optional<ValidationError::Case> faultOf(const CleaningPlan& plan) {
  if (trimmed(plan.userGoal).empty()) return ValidationError::EmptyGoal{};
  if (plan.steps.empty()) return ValidationError::EmptySteps{};
  for (const auto& step : plan.steps) {
    if (auto fault = faultOf(step)) return fault;
  }
  return std::nullopt;
}

}  // namespace

void CleaningPlanSchema::validate(const CleaningPlan& plan) {
  if (auto fault = faultOf(plan)) throw ValidationError(*std::move(fault));
}

std::optional<PlanValidationError> CleaningPlanSchema::firstFault(const CleaningPlan& plan) {
  if (auto fault = faultOf(plan)) return ValidationError(*std::move(fault));
  return std::nullopt;
}

std::string_view CleaningPlanSchema::promptBlock() noexcept {
  return schemaBlock;
}

std::string CleaningPlanSchema::completePromptBlock() {
  std::string block(schemaBlock);
  for (const auto& [line, required] : requiredLines) block.insert(block.find(line) + line.size(), required);
  return block;
}

}  // namespace orvane
