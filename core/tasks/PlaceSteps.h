#pragma once

#include "core/base/values/Date.h"
#include "core/plans/RequestUnderstanding.h"
#include "core/plans/records/CleaningPlan.h"
#include "core/safety/records/Boundary.h"
#include "core/scanning/records/FileItem.h"
#include "core/scanning/records/ScanCategory.h"
#include "core/tasks/KnownPlaces.h"
#include "core/tasks/TaskMonitor.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <stop_token>
#include <string>
#include <vector>

namespace orvane {

struct PromptReading;
struct TaskServices;

// Steps of plans that take known places of the system, or folders that tools build, whole. Such a step takes, inside
// its folder, the known places that its filter admits; one whose filter names a text takes the build folders of exactly
// that name whose project was left alone for as long as the filter asks.

// The names by which a request can mean places and build folders; those of programs that the system profile does not
// name only where they have a place here. None where the user has known places left out.
[[nodiscard]] std::vector<ProgramName> programNames(const TaskServices& services, const std::stop_token& stop);

// A plan over exactly the places of the programs named. One that none has a place of takes nothing.
[[nodiscard]] CleaningPlan planForPrograms(const TaskServices& services, std::string goal, const PromptReading& reading,
                                           std::span<const NamedProgram> programs, const std::stop_token& stop);
// All known places of a category.
[[nodiscard]] CleaningPlanStep stepForPlaces(const TaskServices& services, ScanCategory category);

// How a plan's steps are taken, beside the plan. Steps are named by their index.
struct PlanScope {
  static constexpr std::size_t noStep = SIZE_MAX;

  std::size_t placesFrom = noStep;  // the first that takes places whole; those after it do too
  std::size_t selectsFrom = 0;      // the first whose rows may come selected
  KnownPlaces knownPlaces = KnownPlaces::include;
};

// An item that a step takes whole.
struct PlaceStepItem {
  std::size_t step;
  FileItem item;
  bool isKnownPlace;
};
// The items that the steps take which take places: each once, by the first that does. Build folders lie inside the
// boundary.
[[nodiscard]] std::vector<PlaceStepItem> placeStepItems(const TaskServices& services, const CleaningPlan& plan,
                                                        const PlanScope& scope, const Boundary& boundary, Date now,
                                                        const TaskMonitor& monitor);

}  // namespace orvane
