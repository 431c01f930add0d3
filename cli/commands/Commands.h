#pragma once

#include "cli/frame/CommandSpec.h"

#include <span>

namespace orvane::cli {

// A new command is a file of its own in this folder that defines its CommandSpec, a line here, and a line in the table
// in Commands.cpp.
extern const CommandSpec agentInstallCommand;
extern const CommandSpec agentShowCommand;
extern const CommandSpec agentStatusCommand;
extern const CommandSpec agentUninstallCommand;
extern const CommandSpec applyCommand;
extern const CommandSpec appsLeftoversCommand;
extern const CommandSpec appsListCommand;
extern const CommandSpec appsUninstallCommand;
extern const CommandSpec askCommand;
extern const CommandSpec cleanCommand;
extern const CommandSpec demoCommand;
extern const CommandSpec doctorCommand;
extern const CommandSpec duplicatesCommand;
extern const CommandSpec explainCommand;
extern const CommandSpec foldersAddCommand;
extern const CommandSpec foldersListCommand;
extern const CommandSpec foldersKnownCommand;
extern const CommandSpec foldersRemoveCommand;
extern const CommandSpec historyCommand;
extern const CommandSpec historyShowCommand;
extern const CommandSpec internalCompletionsCommand;
extern const CommandSpec internalManCommand;
extern const CommandSpec internalWordsCommand;
extern const CommandSpec keysDeleteCommand;
extern const CommandSpec keysSetCommand;
extern const CommandSpec keysStatusCommand;
extern const CommandSpec mapCommand;
extern const CommandSpec mapSnapshotsCommand;
extern const CommandSpec organizeCommand;
extern const CommandSpec planPreviewCommand;
extern const CommandSpec planRunCommand;
extern const CommandSpec planValidateCommand;
extern const CommandSpec restoreCommand;
extern const CommandSpec rulesSuggestCommand;
extern const CommandSpec rulesAddCommand;
extern const CommandSpec rulesDeleteCommand;
extern const CommandSpec rulesDisableCommand;
extern const CommandSpec rulesEnableCommand;
extern const CommandSpec keepListCommand;
extern const CommandSpec keepAddCommand;
extern const CommandSpec keepRemoveCommand;
extern const CommandSpec rulesListCommand;
extern const CommandSpec rulesPreviewCommand;
extern const CommandSpec rulesResetCommand;
extern const CommandSpec rulesRunCommand;
extern const CommandSpec scanCommand;
extern const CommandSpec scheduleDisableCommand;
extern const CommandSpec scheduleDueCommand;
extern const CommandSpec scheduleEnableCommand;
extern const CommandSpec scheduleRunCommand;
extern const CommandSpec scheduleSetCommand;
extern const CommandSpec scheduleShowCommand;
extern const CommandSpec stringsCommand;
extern const CommandSpec summaryCommand;
extern const CommandSpec tidyDisableCommand;
extern const CommandSpec tidyEnableCommand;
extern const CommandSpec tidyRunCommand;
extern const CommandSpec tidySetCommand;
extern const CommandSpec tidyShowCommand;
extern const CommandSpec trashCommand;

// In the order of the help.
[[nodiscard]] std::span<const CommandSpec* const> allCommands();

}  // namespace orvane::cli
