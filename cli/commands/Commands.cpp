#include "cli/commands/Commands.h"

#include <array>

namespace orvane::cli {
namespace {

// clang-format off: one command a line
constexpr std::array commands{
    &scanCommand,
    &cleanCommand,
    &trashCommand,
    &historyCommand,
    &historyShowCommand,
    &restoreCommand,
    &summaryCommand,
    &explainCommand,
    &askCommand,
    &planValidateCommand,
    &planPreviewCommand,
    &planRunCommand,
    &organizeCommand,
    &internalCompletionsCommand,
    &internalManCommand,
};
// clang-format on

}  // namespace

std::span<const CommandSpec* const> allCommands() {
  return commands;
}

}  // namespace orvane::cli
