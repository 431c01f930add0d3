#include "cli/frame/Program.h"

#include "cli/commands/Commands.h"
#include "cli/frame/Arguments.h"
#include "cli/frame/Session.h"
#include "cli/frame/UsageError.h"
#include "cli/pages/Help.h"
#include "core/base/files/HomeFolder.h"
#include "core/base/text/UnicodeText.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <fmt/ranges.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <exception>
#include <stdexcept>
#include <vector>

namespace orvane::cli {
namespace {

// A descriptor that is closed at the start would be given to the next file that is opened, and the output would be
// written into that file. Where output is expected the stand-in refuses to be written to, so that its loss is noticed.
void fillStandardDescriptors() {
  for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (::fcntl(descriptor, F_GETFD) >= 0 || errno != EBADF) continue;
    static_cast<void>(::open("/dev/null", descriptor == STDERR_FILENO ? O_WRONLY : O_RDONLY));
  }
}

struct Invocation {
  const CommandSpec* command;
  std::vector<std::string> words;
};

bool isCommonSwitch(const std::string& word) {
  const auto options = Arguments::commonOptions();
  return word == "-h" ||
         std::any_of(options.begin(), options.end(), [&](const OptionSpec& option) { return option.name == word; });
}

bool asksForHelp(std::span<const std::string> words) {
  return std::any_of(words.begin(), words.end(), [](const auto& word) { return word == "--help" || word == "-h"; });
}

bool isCommand(std::string_view word) {
  const auto commands = allCommands();
  return std::any_of(commands.begin(), commands.end(), [&](const auto* command) { return command->name == word; });
}

std::string unknownCommand(std::span<const std::string> words) {
  const auto family = commandsOfFamily(words[0]);
  if (family.empty()) return fmt::format("there is no command '{}'", escapedForDisplay(words[0]));
  std::vector<std::string_view> names;
  names.reserve(family.size());
  for (const auto* command : family) names.push_back(command->name.substr(words[0].size() + 1));
  return fmt::format("'{}' takes a second word: {}", words[0], fmt::join(names, ", "));
}

// The command is the first word, or the first two, that are no options; options that every command takes may come
// before it. Throws UsageError.
Invocation commandIn(std::span<const std::string> words) {
  std::vector<std::string> before;
  while (!words.empty() && isCommonSwitch(words.front())) {
    before.push_back(words.front());
    words = words.subspan(1);
  }
  if (words.empty()) throw UsageError("a command is missing");
  const CommandSpec* found = nullptr;
  std::size_t length = 0;
  for (const auto* command : allCommands()) {
    const bool isTwoWords = words.size() > 1 && command->name == words[0] + " " + words[1];
    if (!isTwoWords && (command->name != words[0] || length > 0)) continue;
    found = command;
    length = isTwoWords ? 2 : 1;
  }
  if (found == nullptr) throw UsageError(unknownCommand(words));
  Invocation invocation{found, std::move(before)};
  words = words.subspan(length);
  invocation.words.insert(invocation.words.end(), words.begin(), words.end());
  return invocation;
}

ExitStatus printed(std::string_view text) {
  Output out(STDOUT_FILENO);
  out.write(text);
  out.flush();
  return ExitStatus::done;
}

ExitStatus usageFailure(const UsageError& error, const CommandSpec* command) {
  Session::report(fmt::format("{} (see '{}{}{} --help')", error.what(), programName, command == nullptr ? "" : " ",
                              command == nullptr ? "" : command->name));
  return ExitStatus::usage;
}

ExitStatus runCommand(const Invocation& invocation) {
  try {
    const Arguments arguments(*invocation.command, invocation.words);
    if (arguments.has("--help")) return printed(commandHelp(*invocation.command));
    Session session(arguments);
    const auto status = invocation.command->run(session, arguments);
    session.out().flush();
    return status;
  } catch (const UsageError& error) {
    return usageFailure(error, invocation.command);
  }
}

ExitStatus run(std::span<const std::string> words) {
  const auto optionsEnd = std::find(words.begin(), words.end(), "--");
  if (std::find(words.begin(), optionsEnd, "--version") != optionsEnd) return printed("orvanectl " ORVANE_VERSION "\n");
  if (asksForHelp(words)) {
    const auto isPlain = [](const auto& word) { return !isCommonSwitch(word); };
    const auto plain = std::find_if(words.begin(), words.end(), isPlain);
    if (plain == words.end()) return printed(programHelp());
    const bool isAlone = std::none_of(plain + 1, words.end(), isPlain);
    if (isAlone && !commandsOfFamily(*plain).empty() && !isCommand(*plain)) return printed(familyHelp(*plain));
  }
  try {
    const auto invocation = commandIn(words);
    if (const auto problem = problemWithHome()) throw std::runtime_error(*problem);
    return runCommand(invocation);
  } catch (const UsageError& error) {
    return usageFailure(error, nullptr);
  }
}

// As a program ends that knows nothing of the signal: without a word.
[[noreturn]] void endAsBrokenPipe() {
  std::signal(SIGPIPE, SIG_DFL);
  std::raise(SIGPIPE);
  std::_Exit(128 + SIGPIPE);
}

}  // namespace

int runProgram(std::span<const std::string> words) {
  fillStandardDescriptors();
  // A reader that goes away must not cut a run short.
  std::signal(SIGPIPE, SIG_IGN);
  try {
    return static_cast<int>(run(words));
  } catch (const OutputError& error) {
    if (error.isClosedPipe()) endAsBrokenPipe();
    Session::report(error.what());
  } catch (const std::exception& error) {
    Session::report(escapedForDisplay(error.what()));
  }
  return static_cast<int>(ExitStatus::failed);
}

}  // namespace orvane::cli
