#include "cli/commands/Commands.h"
#include "cli/frame/Arguments.h"
#include "cli/frame/FileArguments.h"
#include "cli/frame/Session.h"
#include "core/base/files/FreeName.h"
#include "core/base/files/PathText.h"
#include "core/base/text/ByteCount.h"
#include "core/base/text/Json.h"
#include "core/sample/services/SampleHome.h"
#include "platform/SystemServices.h"

#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <string>
#include <string_view>

namespace orvane::cli {
namespace {

constexpr auto defaultName = "orvane-demo";
constexpr std::array<std::string_view, 5> commandsToTry{
    "scan", "clean", "restore --last", "duplicates", "organize Downloads",
};

std::string folderFor(const Arguments& arguments) {
  if (!arguments.plain().empty()) return placeFromArgument(arguments.plain().front()).path();
  return freeUrl(placeFromArgument(defaultName), NumberingStyle::plain).path();
}

// As it can be typed into a shell.
std::string typed(const std::string& path) {
  constexpr auto isPlain = [](char c) {
    return std::isalnum(static_cast<unsigned char>(c)) != 0 ||
           std::string_view("/~._-").find(c) != std::string_view::npos;
  };
  const auto shown = shownPath(FileUrl(path));
  return std::ranges::all_of(shown, isPlain) ? shown : shellWord(path);
}

ExitStatus runDemo(Session& session, const Arguments& arguments) {
  const auto sample = SampleHome::make(folderFor(arguments));
  const auto window = windowProgram();
  const auto starter = sample.makeStarter(joinPath(parentPath(window), "orvanectl"));
  const bool hasWindow = ::access(window.c_str(), X_OK) == 0;
  const auto windowStarter = hasWindow ? sample.makeStarter(window) : std::string();
  if (session.isJson()) {
    Json json{{"folder", jsonFromUrl(FileUrl(sample.folder))},
              {"home", jsonFromUrl(FileUrl(sample.home()))},
              {"files", sample.files},
              {"bytes", sample.bytes},
              {"commands", Json::array()}};
    for (const auto command : commandsToTry) json["commands"].push_back(starter + " " + std::string(command));
    session.out().line(jsonText(json));
    return ExitStatus::done;
  }
  session.out().line(fmt::format("Made a sample home of {} files ({}). Five commands to try on it:", sample.files,
                                 formatByteCount(sample.bytes)));
  for (const auto command : commandsToTry) session.out().line(fmt::format("  {} {}", typed(starter), command));
  if (hasWindow) session.out().line(fmt::format("The window over it: {}", typed(windowStarter)));
  session.out().line(fmt::format("All that they touch is in {}.", typed(sample.folder)));
  return ExitStatus::done;
}

}  // namespace

constexpr CommandSpec demoCommand{
    .name = "demo",
    .summary = "Make a sample home to try everything on",
    .details =
        "Makes a few hundred files as programs and people leave them, in a new folder, and beside them a script that "
        "starts this program there: with its own settings, history and Trash, and without the message bus, the service "
        "manager and the key ring. The files are sparse and take a few megabytes. Nothing outside the folder is "
        "changed, so that removing it removes everything.",
    .arguments = {.name = "FOLDER",
                  .help = "The new folder; orvane-demo in the current one by default.",
                  .min = 0,
                  .max = 1,
                  .kind = ValueKind::folder},
    .options = {},
    .run = runDemo,
};

}  // namespace orvane::cli
