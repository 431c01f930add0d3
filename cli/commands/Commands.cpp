#include "cli/commands/Commands.h"

#include <array>

namespace orvane::cli {
namespace {

constexpr std::array commands{
    &scanCommand,         &cleanCommand,
    &trashCommand,        &duplicatesCommand,
    &historyCommand,      &historyShowCommand,
    &restoreCommand,      &summaryCommand,
    &explainCommand,      &askCommand,
    &planValidateCommand, &planPreviewCommand,
    &planRunCommand,      &internalCompletionsCommand,
    &internalManCommand,
};

}  // namespace

std::span<const CommandSpec* const> allCommands() {
  return commands;
}

}  // namespace orvane::cli
