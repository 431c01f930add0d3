#pragma once

#include "core/base/text/JsonFwd.h"
#include "core/base/values/Uuid.h"
#include "core/plans/records/PlannedAction.h"
#include "core/scanning/records/FileItem.h"

#include <optional>
#include <string>

namespace orvane {

struct CleaningPlanStep;

// How a file stands that a step accepts, by what the step does and by the file's label.
struct MatchStanding {
  bool canExecute;
  bool isSelected;
};
[[nodiscard]] MatchStanding matchStanding(PlannedAction action, RiskLabel label) noexcept;

// One proposal of a plan: what is to be done with one file.
struct PlanMatchResult {
  PlanMatchResult(Uuid resultId, FileItem file, PlannedAction plannedAction, std::optional<std::string> destination,
                  std::string why, bool selected);
  // Of a file that the step accepts.
  PlanMatchResult(const CleaningPlanStep& step, FileItem file);

  Uuid id;
  FileItem item;
  PlannedAction action;
  std::optional<std::string> destinationFolder;
  std::string explanation;
  bool isSelected;         // whether the user wants it carried out
  bool canExecute = true;  // whether it may be carried out at all

  bool operator==(const PlanMatchResult&) const = default;

  // Keys in field order; an absent destination is left out.
  [[nodiscard]] Json toJson() const;
};

}  // namespace orvane
