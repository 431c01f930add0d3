#pragma once

#include <QString>

#include <string>

namespace orvane {

// An explanation or a summary of a plan in the language of the window, where it is one of the texts that the planner on
// this machine writes; any other as it is.
[[nodiscard]] QString shownPlanText(const std::string& text);

}  // namespace orvane
