#pragma once

#include "core/base/FileStatus.h"
#include "core/base/JsonFwd.h"
#include "core/base/Uuid.h"
#include "core/plans/PlannedAction.h"
#include "core/scanning/FileItem.h"

#include <optional>
#include <string>

namespace orvane {

// One proposal of a plan: what is to be done with one file.
struct PlanMatchResult {
  PlanMatchResult(Uuid resultId, FileItem file, PlannedAction plannedAction, std::optional<std::string> destination,
                  std::string why, bool selected);

  Uuid id;
  FileItem item;
  PlannedAction action;
  std::optional<std::string> destinationFolder;
  std::string explanation;
  bool isSelected;         // whether the user wants it carried out
  bool canExecute = true;  // whether it may be carried out at all
  // The file that the user looked at: one that is another by the time of the execution is left alone. Not looked at
  // when absent.
  std::optional<ItemIdentity> identity = {};

  bool operator==(const PlanMatchResult&) const = default;

  // Keys in field order, without the identity; an absent destination is left out.
  [[nodiscard]] Json toJson() const;
};

}  // namespace orvane
