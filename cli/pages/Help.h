#pragma once

#include "cli/frame/CommandSpec.h"

#include <string>
#include <string_view>
#include <vector>

namespace orvane::cli {

constexpr std::string_view programName = "orvanectl";
constexpr std::string_view programSummary = "reclaim disk space without deleting anything";

// The texts that `orvanectl --help` and `orvanectl COMMAND --help` print.
[[nodiscard]] std::string programHelp();
[[nodiscard]] std::string commandHelp(const CommandSpec& command);

// The commands of two words that begin with `family`, in the order of the table; none for what begins no command.
[[nodiscard]] std::vector<const CommandSpec*> commandsOfFamily(std::string_view family);
[[nodiscard]] std::string familyHelp(std::string_view family);

// "orvanectl scan [OPTIONS] [FOLDER...]"
[[nodiscard]] std::string usageOf(const CommandSpec& command);
// "--category C"
[[nodiscard]] std::string optionLabel(const OptionSpec& option);

}  // namespace orvane::cli
