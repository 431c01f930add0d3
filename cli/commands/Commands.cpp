#include "cli/commands/Commands.h"

#include <array>

namespace orvane::cli {
namespace {

// One a line, which a formatter would set in columns.
// clang-format off
constexpr std::array commands{
    &scanCommand,
    &cleanCommand,
    &trashCommand,
    &applyCommand,
    &duplicatesCommand,
    &historyCommand,
    &historyShowCommand,
    &restoreCommand,
    &summaryCommand,
    &mapCommand,
    &mapSnapshotsCommand,
    &explainCommand,
    &askCommand,
    &planValidateCommand,
    &planPreviewCommand,
    &planRunCommand,
    &organizeCommand,
    &tidyShowCommand,
    &tidyEnableCommand,
    &tidyDisableCommand,
    &tidySetCommand,
    &tidyRunCommand,
    &appsListCommand,
    &appsLeftoversCommand,
    &appsUninstallCommand,
    &foldersListCommand,
    &foldersKnownCommand,
    &foldersAddCommand,
    &foldersRemoveCommand,
    &keepListCommand,
    &keepAddCommand,
    &keepRemoveCommand,
    &rulesListCommand,
    &rulesSuggestCommand,
    &rulesAddCommand,
    &rulesEnableCommand,
    &rulesDisableCommand,
    &rulesDeleteCommand,
    &rulesResetCommand,
    &rulesPreviewCommand,
    &rulesRunCommand,
    &scheduleShowCommand,
    &scheduleEnableCommand,
    &scheduleDisableCommand,
    &scheduleSetCommand,
    &scheduleDueCommand,
    &scheduleRunCommand,
    &agentShowCommand,
    &agentInstallCommand,
    &agentUninstallCommand,
    &agentStatusCommand,
    &keysSetCommand,
    &keysDeleteCommand,
    &keysStatusCommand,
    &stringsCommand,
    &doctorCommand,
    &demoCommand,
    &internalCompletionsCommand,
    &internalManCommand,
    &internalWordsCommand,
};
// clang-format on

}  // namespace

std::span<const CommandSpec* const> allCommands() {
  return commands;
}

}  // namespace orvane::cli
