#include "cli/commands/Commands.h"
#include "cli/frame/Arguments.h"
#include "cli/frame/FileArguments.h"
#include "cli/frame/Session.h"
#include "cli/text/Table.h"
#include "core/base/files/FileDescriptor.h"
#include "core/base/files/HomeFolder.h"
#include "core/base/text/ByteCount.h"
#include "core/base/text/Json.h"
#include "core/base/text/UnicodeText.h"
#include "core/platform/LoginItems.h"
#include "core/platform/Preferences.h"
#include "core/platform/SystemReport.h"
#include "core/platform/Volume.h"
#include "core/rules/services/LaunchAgentManager.h"
#include "core/tasks/Folders.h"
#include "core/tasks/History.h"
#include "core/tasks/TaskServices.h"
#include "platform/SystemServices.h"

#include <fmt/format.h>
#include <unistd.h>

#include <cerrno>
#include <exception>
#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>

namespace orvane::cli {
namespace {

// A heading, a name and what is so: the report is these rows, for people and programs alike.
class Report {
 public:
  void add(std::string_view heading, std::string_view name, Json value) {
    m_sections[std::string(heading)][std::string(name)] = std::move(value);
  }

  void print(Session& session) const {
    if (session.isJson()) return session.out().line(jsonText(m_sections));
    for (const auto& [heading, rows] : m_sections.items()) {
      Table table({{heading}, {""}});
      for (const auto& [name, value] : rows.items()) table.addRow({{"  " + name}, {textOf(value)}});
      table.print(session);
    }
  }

 private:
  static std::string textOf(const Json& value) {
    if (value.is_boolean()) return value.get<bool>() ? "yes" : "no";
    return value.is_string() ? escapedForDisplay(value.get<std::string>()) : jsonText(value);
  }

  Json m_sections = Json::object();
};

// The access that this user has there.
std::string accessTo(const std::string& path) {
  if (::access(path.c_str(), F_OK) != 0) return errno == ENOENT ? "not there yet" : errorText(errno);
  if (::access(path.c_str(), R_OK | W_OK) == 0) return "can be read and written";
  return ::access(path.c_str(), R_OK) == 0 ? "can be read, not written" : "cannot be read";
}

std::string shownWithAccess(const std::string& path) {
  return fmt::format("{}: {}", shownPath(FileUrl(path)), accessTo(path));
}

void addProgram(Report& report) {
  report.add("Program", "version", ORVANE_VERSION);
  report.add("Program", "window", ::access(windowProgram().c_str(), X_OK) == 0 ? "installed" : "not installed");
  report.add("Program", "as root", ::geteuid() == 0);
}

void addSystem(Report& report, const SystemReport& system) {
  report.add("System", "system", system.system);
  report.add("System", "kernel", system.kernel);
  report.add("System", "desktop", system.desktop.empty() ? "none" : system.desktop);
  report.add("System", "file system of ~", system.homeFileSystem);
  const auto disk = systemVolume().capacity(FileUrl(homeFolder()));
  report.add("System", "free there", disk ? formatByteCount(disk->availableBytes) : "unknown");
}

// Only how many: names of folders tell of their owner.
void addFolders(Report& report, const SystemReport& system) {
  std::int64_t usable = 0;
  const auto granted = listedGrants(TaskServices::shared());
  for (const auto& folder : granted) usable += ::access(folder.path().c_str(), R_OK | W_OK | X_OK) == 0 ? 1 : 0;
  report.add("Folders", "granted", granted.size());
  report.add("Folders", "of these usable", usable);
  report.add("Folders", "Trash", shownWithAccess(system.trashFolder));
}

void addSettings(Report& report) {
  const auto file = systemPreferencesFile();
  report.add("Settings", "file", shownWithAccess(file));
  if (::access(file.c_str(), F_OK) != 0) return;
  static_cast<void>(systemPreferences().value(""));
  report.add("Settings", "content", "sound");
}

// Logs of runs and copies of damaged files, by the names that they are given. Before the journal is read, which settles
// what it can.
struct Leftovers {
  std::int64_t logs = 0;
  std::int64_t unclear = 0;
  std::int64_t damaged = 0;
};
Leftovers leftoversIn(const std::string& folder) {
  Leftovers result;
  std::error_code error;
  for (std::filesystem::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
    const auto name = entry->path().filename().string();
    if (name.find(".damaged-") != std::string::npos) ++result.damaged;
    if (name.ends_with(".unclear")) ++result.unclear;
    if (name.ends_with(".log") && name.starts_with("undo_journal.")) ++result.logs;
  }
  return result;
}

void addJournal(Report& report) {
  const auto folder = journalFolder().path();
  const auto left = leftoversIn(folder);
  report.add("Journal", "folder", shownWithAccess(folder));
  report.add("Journal", "logs of unfinished runs", left.logs);
  report.add("Journal", "unclear logs", left.unclear);
  report.add("Journal", "damaged copies", left.damaged);
  // Reading makes the folder.
  if (::access(folder.c_str(), F_OK) != 0) return;
  const auto& services = TaskServices::shared();
  std::int64_t items = 0;
  const auto runs = recordedRuns(services);
  for (const auto& run : runs) items += run.itemCount;
  report.add("Journal", "readable", isHistoryReadable(services));
  report.add("Journal", "runs", runs.size());
  report.add("Journal", "items", items);
  report.add("Journal", "notices", takeJournalNotices(services).size());
}

std::string_view stateText(SystemReport::State state) {
  switch (state) {
    case SystemReport::State::running:
      return "running";
    case SystemReport::State::startable:
      return "starts when needed";
    case SystemReport::State::absent:
      break;
  }
  return "not there";
}

void addServices(Report& report, const SystemReport& system) {
  report.add("Services", "message bus", system.hasMessageBus ? "running" : "not there");
  for (const auto& [name, state] : system.services) report.add("Services", name, stateText(state));
  report.add("Services", "background agent",
             LaunchAgentManager::shared().isInstalled() ? "installed" : "not installed");
  report.add("Services", "start at login", systemLoginItems().isEnabled());
}

// The report is made for broken parts, so each failure is a line of it. The messages of errors name files, so they are
// left out.
template <typename Add>
void addChecked(Report& report, std::string_view heading, Add add) {
  try {
    add();
  } catch (const std::system_error& error) {
    report.add(heading, "problem", error.code().message());
  } catch (const std::exception&) {
    report.add(heading, "problem", "this part of the program failed");
  }
}

ExitStatus runDoctor(Session& session, const Arguments& /*arguments*/) {
  const auto system = systemReport();
  Report report;
  addProgram(report);
  addSystem(report, system);
  addChecked(report, "Folders", [&] { addFolders(report, system); });
  addChecked(report, "Settings", [&] { addSettings(report); });
  addChecked(report, "Journal", [&] { addJournal(report); });
  addChecked(report, "Services", [&] { addServices(report, system); });
  report.print(session);
  return ExitStatus::done;
}

}  // namespace

constexpr CommandSpec doctorCommand{
    .name = "doctor",
    .summary = "Print what a report of a fault should hold",
    .details =
        "Versions, folders and what may be done there, the journal's health, and the services of the desktop. Nothing "
        "in it is personal: no name of a user, a machine or a file of yours, and the home folder shows as ~.",
    .arguments = {},
    .options = {},
    .run = runDoctor,
};

}  // namespace orvane::cli
