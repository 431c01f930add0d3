#include "cli/commands/Commands.h"
#include "cli/frame/Arguments.h"
#include "cli/frame/Session.h"
#include "cli/pages/ManPage.h"
#include "cli/pages/ShellCompletion.h"

#include <array>

namespace orvane::cli {
namespace {

constexpr std::array<std::string_view, 3> shells{"bash", "zsh", "fish"};

ExitStatus runCompletions(Session& session, const Arguments& arguments) {
  const auto& shell = arguments.plain().front();
  session.out().write(shell == "bash" ? bashCompletion() : shell == "zsh" ? zshCompletion() : fishCompletion());
  return ExitStatus::done;
}

ExitStatus runMan(Session& session, const Arguments&) {
  session.out().write(manPage());
  return ExitStatus::done;
}

}  // namespace

constexpr CommandSpec internalCompletionsCommand{
    .name = "internal-completions",
    .summary = "Print the completion script of a shell",
    .details = "For the package.",
    .arguments =
        {.name = "SHELL", .help = "The shell.", .least = 1, .most = 1, .kind = ValueKind::choice, .choices = shells},
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
