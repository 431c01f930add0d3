#pragma once

#include "cli/CommandSpec.h"

#include <string>
#include <string_view>

namespace orvane::cli {

constexpr std::string_view programName = "orvanectl";
constexpr std::string_view programSummary = "reclaim disk space without deleting anything";

// What `orvanectl --help` and `orvanectl COMMAND --help` print.
[[nodiscard]] std::string programHelp();
[[nodiscard]] std::string commandHelp(const CommandSpec& command);

// "orvanectl scan [OPTIONS] [FOLDER...]"
[[nodiscard]] std::string usageOf(const CommandSpec& command);
// "--category C"
[[nodiscard]] std::string optionLabel(const OptionSpec& option);

}  // namespace orvane::cli
