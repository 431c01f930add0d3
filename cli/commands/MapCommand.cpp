#include "cli/commands/Commands.h"
#include "cli/frame/Arguments.h"
#include "cli/frame/FileArguments.h"
#include "cli/frame/NewFile.h"
#include "cli/frame/ProgressLine.h"
#include "cli/frame/ProposalRun.h"
#include "cli/frame/Session.h"
#include "cli/frame/UsageError.h"
#include "cli/text/MapText.h"
#include "core/base/files/FileDescriptor.h"
#include "core/base/text/ByteCount.h"
#include "core/base/text/Json.h"
#include "core/base/text/UnicodeText.h"
#include "core/map/services/SnapshotStore.h"
#include "core/tasks/MapTask.h"
#include "core/tasks/TaskServices.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <unistd.h>

#include <array>
#include <charconv>
#include <chrono>
#include <ctime>
#include <system_error>

namespace orvane::cli {
namespace {

constexpr int deepest = 100;

constexpr std::array mapOptions{
    OptionSpec{.name = "--depth",
               .valueName = "N",
               .help = "Show so many levels of folders below FOLDER, from 0 to 100. 1 unless given."},
    OptionSpec{.name = "--since",
               .valueName = "DATE",
               .help = "Show what grew since this day (YYYY-MM-DD), by the last snapshot before it."},
    OptionSpec{.name = "--export",
               .valueName = "FILE",
               .help = "Write every folder and file to a new FILE in ncdu's JSON form instead; - for standard output.",
               .kind = ValueKind::path},
    OptionSpec{.name = "--import",
               .valueName = "FILE",
               .help = "Show the map that ncdu or --export wrote to FILE, such as a server's; - for standard input.",
               .kind = ValueKind::path},
};

int depthFrom(const Arguments& arguments) {
  const auto text = arguments.value("--depth").value_or("1");
  int depth = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), depth);
  if (error != std::errc() || end != text.data() + text.size() || depth < 0 || depth > deepest) {
    throw UsageError(fmt::format("--depth takes a number from 0 to {}, not '{}'", deepest, escapedForDisplay(text)));
  }
  return depth;
}

// The beginning of a day, by the user's time zone.
std::optional<Date> dateFrom(const Arguments& arguments) {
  const auto text = arguments.value("--since");
  if (!text) return std::nullopt;
  std::tm day{};
  const char* end = ::strptime(text->c_str(), "%Y-%m-%d", &day);
  const std::chrono::year_month_day given{std::chrono::year(day.tm_year + 1900),
                                          std::chrono::month(static_cast<unsigned>(day.tm_mon) + 1),
                                          std::chrono::day(static_cast<unsigned>(day.tm_mday))};
  if (end == nullptr || *end != '\0' || !given.ok()) {
    throw UsageError(fmt::format("--since takes a date such as 2026-11-01, not '{}'", escapedForDisplay(*text)));
  }
  day.tm_isdst = -1;
  return dateFromUnix(std::mktime(&day));
}

void tellMapNotices(const MapServices& services) {
  for (const auto& notice : services.snapshots.takeNotices()) Session::report(notice);
}

FolderMap importedFrom(const MapServices& services, const std::string& name) {
  FileDescriptor file;
  if (name != "-") file = openRegularFile(placeFromArgument(name).path());
  const int descriptor = name == "-" ? STDIN_FILENO : file.get();
  auto map = importMap(services, [&](std::span<char> place) { return readSome(descriptor, place); });
  return {.map = std::move(map), .taken = ReferenceClock::now()};
}

FileUrl folderFrom(const MapServices& services, const Arguments& arguments) {
  return arguments.plain().empty() ? services.tasks.home : placeFromArgument(arguments.plain().front());
}

std::optional<FolderMap> walked(Session& session, const MapServices& services, const FileUrl& folder, MapDetail detail,
                                std::optional<Date> since) {
  ProgressLine line(session);
  return mapFolder(services, folder, detail, since, scanMonitor(session, line));
}

void checkTogether(const Arguments& arguments) {
  const bool imports = arguments.has("--import");
  if (imports && !arguments.plain().empty()) throw UsageError("--import takes no FOLDER");
  if (imports && (arguments.has("--since") || arguments.has("--export"))) {
    throw UsageError("--import cannot be used with --since or --export");
  }
}

ExitStatus runMap(Session& session, const Arguments& arguments) {
  checkTogether(arguments);
  const auto& services = MapServices::shared();
  const auto depth = depthFrom(arguments);
  const auto since = dateFrom(arguments);
  const auto exportName = arguments.value("--export");
  std::optional<FolderMap> map;
  if (const auto name = arguments.value("--import")) {
    map = importedFrom(services, *name);
  } else {
    map = walked(session, services, folderFrom(services, arguments),
                 exportName ? MapDetail::everyFile : MapDetail::someFiles, since);
  }
  if (!map) {
    Session::report("interrupted");
    return ExitStatus::interrupted;
  }
  if (exportName) {
    writeNewFile(session, "--export", *exportName, [&](const WriteText& write) { exportMap(map->map, write); });
    return ExitStatus::done;
  }
  const auto& growth = map->growth;
  if (session.isJson()) {
    session.out().line(jsonText(mapJson(*map, depth)));
  } else {
    printMap(session, *map, depth);
  }
  tellMapNotices(services);
  if (!since || growth) return ExitStatus::done;
  Session::report(services.snapshots.isOn()
                      ? "no earlier snapshot holds this folder: the next map can be compared with this one"
                      : "no snapshot holds this folder: 'orvanectl map snapshots on' remembers each map from now on");
  return ExitStatus::failed;
}

void printMoments(Session& session, const MapServices& services) {
  const auto moments = services.snapshots.moments(ReferenceClock::now());
  tellMapNotices(services);
  if (session.isJson()) {
    Json list = Json::array();
    for (const auto& moment : moments) list.push_back(momentJson(moment));
    session.out().line(jsonText(Json{{"enabled", services.snapshots.isOn()}, {"snapshots", std::move(list)}}));
    return;
  }
  printMomentsTable(session, moments);
  const auto count = formatCount(static_cast<std::int64_t>(moments.size()));
  session.out().line(services.snapshots.isOn() ? fmt::format("Snapshots are on; {} remembered.", count)
                                               : fmt::format("Snapshots are off; {} remembered.", count));
}

ExitStatus runSnapshots(Session& session, const Arguments& arguments) {
  const auto& services = MapServices::shared();
  const auto& words = arguments.plain();
  if (!words.empty() && words.front() == "clear") services.snapshots.clear();
  if (!words.empty() && words.front() != "clear") services.snapshots.setOn(words.front() == "on");
  printMoments(session, services);
  return ExitStatus::done;
}

constexpr std::array<std::string_view, 3> snapshotWords{"on", "off", "clear"};

}  // namespace

constexpr CommandSpec mapCommand{
    .name = "map",
    .summary = "Show what fills the disk, and what grew",
    .details =
        "Adds up every folder, hidden ones and those that Orvane never touches included, in bytes on the disk (blocks; "
        "a file with several names once; holes are free) and in lengths. Other file systems are named and not entered. "
        "Only reads.\n\n"
        "States: \"yours\"; \"reclaimable\" where a cleanup would propose most of it; \"protected\" where Orvane "
        "touches nothing; \"unreadable\"; \"otherFileSystem\".\n\n"
        "With --json, folders are nested down to --depth; grownBytes is null where nothing is known.",
    .arguments = {.name = "FOLDER",
                  .help = "The folder to map; the home folder unless given.",
                  .min = 0,
                  .max = 1,
                  .kind = ValueKind::folder},
    .options = mapOptions,
    .run = runMap,
};

constexpr CommandSpec mapSnapshotsCommand{
    .name = "map snapshots",
    .summary = "List the remembered maps; turn remembering on or off; forget them",
    .details =
        "Off until you turn it on: nothing is written before. From then on every map leaves its totals behind, and the "
        "background agent maps the home folder once a day. They are thinned: daily for a month, weekly for a year, "
        "monthly beyond.\n\n"
        "\"off\" keeps what is there; \"clear\" drops it.",
    .arguments = {.name = "on|off|clear",
                  .help = "What to do; the list when nothing is named.",
                  .min = 0,
                  .max = 1,
                  .kind = ValueKind::choice,
                  .choices = snapshotWords},
    .options = {},
    .run = runSnapshots,
};

}  // namespace orvane::cli
