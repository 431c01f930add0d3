#include "cli/commands/Commands.h"
#include "cli/frame/Arguments.h"
#include "cli/frame/FileArguments.h"
#include "cli/frame/Session.h"
#include "cli/frame/UsageError.h"
#include "core/base/files/FileStatus.h"
#include "core/base/text/Json.h"
#include "core/base/text/UnicodeText.h"
#include "core/tasks/KeepTask.h"
#include "core/tasks/TaskServices.h"

#include <fmt/format.h>

#include <algorithm>
#include <stdexcept>
#include <string>
#include <vector>

namespace orvane::cli {
namespace {

// An argument as a pattern: an item that is there is meant as it is called, stars in its name included.
std::string patternFrom(const std::string& argument) {
  const auto place = placeFromArgument(argument);
  const bool isPattern = argument.find('*') != std::string::npos || argument.starts_with("~/");
  if (isPattern && !itemExists(place.path().c_str())) return argument;
  return keepPatternFor(TaskServices::shared(), place);
}

ExitStatus printKeepList(Session& session) {
  const auto patterns = keptPatterns(TaskServices::shared());
  if (session.isJson()) {
    session.out().line(jsonText(Json(patterns)));
    return ExitStatus::done;
  }
  for (const auto& pattern : patterns) session.out().line(escapedForDisplay(pattern));
  if (patterns.empty()) session.out().line("Nothing is kept: 'orvanectl keep add PATH' keeps something.");
  return ExitStatus::done;
}

ExitStatus runKeepList(Session& session, const Arguments& /*arguments*/) {
  return printKeepList(session);
}

ExitStatus runKeepAdd(Session& session, const Arguments& arguments) {
  std::vector<std::string> patterns;
  for (const auto& argument : arguments.plain()) patterns.push_back(patternFrom(argument));
  try {
    keepPatterns(TaskServices::shared(), patterns);
  } catch (const std::invalid_argument& error) {
    throw UsageError(error.what());
  }
  return printKeepList(session);
}

// A pattern as it is listed, or the place that it means.
std::string listedFor(const std::vector<std::string>& known, const std::string& argument) {
  if (std::ranges::find(known, argument) != known.end()) return argument;
  auto pattern = keepPatternFor(TaskServices::shared(), placeFromArgument(argument));
  return std::ranges::find(known, pattern) != known.end() ? pattern : argument;
}

ExitStatus runKeepRemove(Session& session, const Arguments& arguments) {
  const auto known = keptPatterns(TaskServices::shared());
  std::vector<std::string> patterns;
  for (const auto& argument : arguments.plain()) patterns.push_back(listedFor(known, argument));
  const auto missing = dropPatterns(TaskServices::shared(), patterns);
  for (const auto& pattern : missing) {
    Session::report(fmt::format("{}: is not on the keep list", escapedForDisplay(pattern)));
  }
  return missing.empty() ? printKeepList(session) : ExitStatus::failed;
}

}  // namespace

constexpr CommandSpec keepListCommand{
    .name = "keep list",
    .summary = "List what is never offered",
    .details =
        "Scans, rules, plans, duplicates and everything else that proposes leave these out, unattended runs too, and "
        "say how many items that holds back.",
    .arguments = {},
    .options = {},
    .run = runKeepList,
};

constexpr CommandSpec keepAddCommand{
    .name = "keep add",
    .summary = "Never offer an item, a folder or a pattern again",
    .details =
        "A folder is kept with everything in it, and so is every folder that something kept lies in.\n\n"
        "A pattern begins with / or ~/, and has * for any part of a name and ** for any folders: '~/src/**/*.pem'. "
        "Without a slash it is a name in any folder: '*.psd'. Quote it, so that the shell leaves it alone. A "
        "backslash takes the meaning from a star: '~/a\\*b'.",
    .arguments =
        {.name = "PATH", .help = "A file, a folder or a pattern.", .min = 1, .max = anyNumber, .kind = ValueKind::path},
    .options = {},
    .run = runKeepAdd,
};

constexpr CommandSpec keepRemoveCommand{
    .name = "keep remove",
    .summary = "Take something off the keep list",
    .details = "From then on it may be offered again. Nothing is touched.",
    .arguments = {.name = "PATH",
                  .help = "A path or a pattern as 'orvanectl keep list' shows it.",
                  .min = 1,
                  .max = anyNumber,
                  .kind = ValueKind::path},
    .options = {},
    .run = runKeepRemove,
};

}  // namespace orvane::cli
