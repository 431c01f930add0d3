#pragma once

#include "core/base/text/JsonFwd.h"
#include "core/base/values/Uuid.h"
#include "core/plans/records/CleaningFilter.h"
#include "core/plans/records/PlannedAction.h"

#include <optional>
#include <string>

namespace orvane {

// One folder, the files in it that are meant, and what is done with them.
struct CleaningPlanStep {
  Uuid id = Uuid::random();
  std::string targetFolder;  // path of the folder that the step works in; "~" stands for the home folder
  CleaningFilter filter;
  PlannedAction action = PlannedAction::review;
  std::optional<std::string> destinationFolder;  // path; only of a step that moves
  std::string explanation;                       // one sentence for the user

  bool operator==(const CleaningPlanStep&) const = default;

  // Keys in field order; an absent destination is left out.
  [[nodiscard]] Json toJson() const;
  // Every key but "destinationFolder" is required. Throws JsonError.
  static CleaningPlanStep fromJson(const Json& json);
};

}  // namespace orvane
