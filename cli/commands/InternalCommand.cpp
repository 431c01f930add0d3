#include "cli/commands/Commands.h"
#include "cli/frame/Arguments.h"
#include "cli/frame/RunReference.h"
#include "cli/frame/Session.h"
#include "cli/pages/ManPage.h"
#include "cli/pages/ShellCompletion.h"
#include "core/base/files/PathAccess.h"
#include "core/base/text/UnicodeText.h"
#include "core/rules/records/CleanupRule.h"
#include "core/tasks/History.h"
#include "core/tasks/StoredRules.h"
#include "core/tasks/TaskServices.h"

#include <fmt/format.h>

#include <array>

namespace orvane::cli {
namespace {

constexpr std::array<std::string_view, 3> shells{"bash", "zsh", "fish"};
constexpr std::array<std::string_view, 2> wordKinds{"rules", "runs"};

ExitStatus runCompletions(Session& session, const Arguments& arguments) {
  const auto& shell = arguments.plain().front();
  session.out().write(shell == "bash" ? bashCompletion() : shell == "zsh" ? zshCompletion() : fishCompletion());
  return ExitStatus::done;
}

ExitStatus runMan(Session& session, const Arguments&) {
  session.out().write(manPage());
  return ExitStatus::done;
}

// A word and what it stands for, with a tabulator between. Control characters would make other lines of them.
void printWord(Session& session, std::string_view word, std::string_view meaning) {
  session.out().line(fmt::format("{}\t{}", escapedForDisplay(word), escapedForDisplay(meaning)));
}

ExitStatus runWords(Session& session, const Arguments& arguments) {
  const auto& services = TaskServices::shared();
  if (arguments.plain().front() == "rules") {
    for (const auto& rule : cleanupRules(services)) {
      printWord(session, rule.name, rule.isEnabled ? "on" : "off");
    }
    return ExitStatus::done;
  }
  // A look at what may be typed makes nothing.
  if (presenceAt(journalFolder().path()) != Presence::there) return ExitStatus::done;
  const auto runs = recordedRuns(services);
  const auto length = distinctPrefixLength(runs);
  for (const auto& run : runs) {
    printWord(session, run.runId.toString().substr(0, length),
              fmt::format("{}, {}", run.formattedDate(), run.formattedSize()));
  }
  return ExitStatus::done;
}

}  // namespace

constexpr CommandSpec internalWordsCommand{
    .name = "internal-words",
    .summary = "Print what a shell can complete, a line each",
    .details = "For the completions.",
    .arguments =
        {.name = "KIND", .help = "Rules or runs.", .min = 1, .max = 1, .kind = ValueKind::choice, .choices = wordKinds},
    .options = {},
    .run = runWords,
    .visibility = Visibility::hidden,
};

constexpr CommandSpec internalCompletionsCommand{
    .name = "internal-completions",
    .summary = "Print the completion script of a shell",
    .details = "For the package.",
    .arguments =
        {.name = "SHELL", .help = "The shell.", .min = 1, .max = 1, .kind = ValueKind::choice, .choices = shells},
    .options = {},
    .run = runCompletions,
    .visibility = Visibility::hidden,
};

constexpr CommandSpec internalManCommand{
    .name = "internal-man",
    .summary = "Print the man page",
    .details = "For the package.",
    .arguments = {},
    .options = {},
    .run = runMan,
    .visibility = Visibility::hidden,
};

}  // namespace orvane::cli
