#pragma once

namespace orvane {
class Proposal;
struct CleaningPlan;
}  // namespace orvane

namespace orvane::cli {

class Session;

// A plan as a person would read it: the goal, the summary, and what each step does to which files.
void printPlan(Session& session, const CleaningPlan& plan);
// Each row of a plan's proposal with its size, age and label and why it is selected or not, and a line that sums them
// up.
void printRows(Session& session, const Proposal& proposal);

}  // namespace orvane::cli
