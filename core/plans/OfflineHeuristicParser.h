#pragma once

#include "core/base/files/FileUrl.h"
#include "core/plans/records/CleaningPlan.h"

#include <optional>
#include <string_view>

namespace orvane {

struct PromptReading;

// Turns a request in plain words into a plan of one step, by keywords and without a network.
class OfflineHeuristicParser {
 public:
  // `defaultManagedFolder` is the folder that is meant when the request names none; the downloads folder when absent.
  // Always answers, also with a plan that validation rejects: the caller validates. A request whose age or size is
  // beyond 64 bits ends the process.
  [[nodiscard]] CleaningPlan parse(std::string_view prompt,
                                   const std::optional<FileUrl>& defaultManagedFolder = std::nullopt) const;
  // The same of a request that was read already; the goal is the prompt as it was typed, whatever words were read.
  [[nodiscard]] CleaningPlan parse(std::string_view prompt, const PromptReading& reading,
                                   const std::optional<FileUrl>& defaultManagedFolder = std::nullopt) const;

  // Adds a step that does in another folder, a path below "~", what the first one does in its own.
  static void addFolder(CleaningPlan& plan, std::string_view folder);
  // Has a plan told by its actions and folders alone: for one whose conditions changed since it was made.
  static void describeByAction(CleaningPlan& plan);
};

}  // namespace orvane
