#include "cli/pages/ManPage.h"

#include "cli/commands/Commands.h"
#include "cli/frame/Arguments.h"
#include "cli/pages/Help.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <string_view>

namespace orvane::cli {
namespace {

// Text that roff takes as it stands.
std::string roff(std::string_view text) {
  std::string result;
  bool isLineStart = true;
  for (const char c : text) {
    if (isLineStart && (c == '.' || c == '\'')) result += "\\&";
    isLineStart = c == '\n';
    if (c == '\\') {
      result += "\\e";
    } else if (c == '-') {
      result += "\\-";
    } else {
      result += c;
    }
  }
  return result;
}

std::string paragraphs(std::string_view text) {
  std::string result;
  while (!text.empty()) {
    const auto end = std::min(text.find("\n\n"), text.size());
    result += fmt::format(".PP\n{}\n", roff(text.substr(0, end)));
    text.remove_prefix(std::min(end + 2, text.size()));
  }
  return result;
}

std::string optionEntry(const OptionSpec& option) {
  std::string result = fmt::format(".TP\n.B {}\n{}\n", roff(optionLabel(option)), roff(option.help));
  if (!option.choices.empty()) {
    result += fmt::format("One of {}.\n", fmt::join(option.choices.begin(), option.choices.end(), ", "));
  }
  return result;
}

std::string commandSection(const CommandSpec& command) {
  std::string result = fmt::format(".SS {}\n.B {}\n", roff(command.name), roff(usageOf(command)));
  result += fmt::format(".PP\n{}.\n{}", roff(command.summary), paragraphs(command.details));
  if (!command.arguments.name.empty()) {
    result += fmt::format(".TP\n.I {}\n{}\n", command.arguments.name, roff(command.arguments.help));
  }
  for (const auto& option : command.options) result += optionEntry(option);
  return result;
}

constexpr std::string_view closingSections = R"(.SH EXIT STATUS
.TP
.B 0
Done.
.TP
.B 1
It ran and something failed; what failed is named on standard error.
.TP
.B 2
Wrong usage; nothing was changed.
.TP
.B 130
Interrupted; what was done before is recorded and can be restored.
.SH ENVIRONMENT
.TP
.B HOME
The home folder.
.TP
.B XDG_DATA_HOME
Where the Trash is, below it.
.TP
.B XDG_CONFIG_HOME
Where the settings are, below it.
.TP
.B NO_COLOR
When set and not empty, no colours are used.
.SH FILES
.TP
.I ~/Library/Application Support/Orvane/undo_journal.json
The record of every move.
.TP
.I ~/.config/orvane/preferences.json
The settings.
)";

}  // namespace

std::string manPage() {
  std::string result = fmt::format(".TH ORVANECTL 1 \"\" \"Orvane {}\" \"User Commands\"\n", ORVANE_VERSION);
  result += fmt::format(".SH NAME\n{} \\- {}\n", programName, programSummary);
  result += fmt::format(".SH SYNOPSIS\n.B {}\n.I COMMAND\n[OPTIONS] [ARGUMENTS]\n", programName);
  result += ".SH DESCRIPTION\n";
  result +=
      "Finds what takes space, moves what you approve to the Trash, and records every move so that a whole run\n"
      "can be brought back. Nothing is ever deleted: the space is free once the Trash is emptied.\n"
      ".PP\nData goes to standard output, messages and progress go to standard error. What changes files asks first "
      "on\n"
      "a terminal, and elsewhere needs\n.BR \\-\\-yes .\n"
      ".PP\nA path may also be given as a file:/// URL, as the JSON output writes it. After\n.B \\-\\-\n"
      "every word is a plain argument.\n";
  result += ".SH OPTIONS\nThese may stand anywhere on the line.\n";
  for (const auto& option : Arguments::commonOptions()) result += optionEntry(option);
  result += ".TP\n.B \\-\\-version\nPrint the version.\n.SH COMMANDS\n";
  for (const auto* command : allCommands()) {
    if (command->visibility == Visibility::listed) result += commandSection(*command);
  }
  result += closingSections;
  return result;
}

}  // namespace orvane::cli
