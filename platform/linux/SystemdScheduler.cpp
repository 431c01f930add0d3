#include "platform/linux/SystemdScheduler.h"

#include "core/base/files/AtomicFile.h"
#include "core/base/files/FileDescriptor.h"
#include "core/base/files/PathText.h"
#include "core/base/text/UnicodeText.h"
#include "platform/linux/ConfigurationFolder.h"
#include "platform/posix/RunTool.h"

#include <fmt/chrono.h>
#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cmath>
#include <ctime>
#include <utility>

namespace orvane {
namespace {

constexpr std::chrono::hours day{24};
constexpr std::chrono::hours week{7 * 24};
// Dates that a timer is given where no pattern of the calendar repeats with its interval.
constexpr int datesAhead = 122;  // ten years of thirty days

constexpr std::array<std::string_view, 7> weekdays{"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};

// The folder that systemd reads to find what starts with the timers.
std::string wantedPath(const std::string& unitFolder, const std::string& label) {
  return joinPath(unitFolder, "timers.target.wants/" + label + ".timer");
}

// A path within a setting: "%" begins what systemd expands.
std::string withoutSpecifiers(std::string_view path) {
  std::string result;
  for (const char c : path) {
    if (c == '%') result += '%';
    result += c;
  }
  return result;
}

// The path as a word in double quotes (systemd.syntax(7)).
std::string quotedWord(std::string_view path) {
  std::string result = "\"";
  for (const char c : withoutSpecifiers(path)) {
    if (c == '"' || c == '\\') result += '\\';
    result += c;
  }
  return result + '"';
}

// The words that start a program. A path with a quotation mark or a backslash is refused as that of an executable, but
// not as an argument.
std::string commandWords(const std::string& executable) {
  const bool isRefused = executable.find_first_of("\"'\\") != std::string::npos;
  return (isRefused ? R"(/bin/sh -c "exec \"$0\" \"$@\"" )" : "") + quotedWord(executable);
}

// A line of a unit file is UTF-8 and has no way to write a control character in a path.
void requireWritable(const std::string& path) {
  const bool hasControl = std::ranges::any_of(path, [](unsigned char c) { return c < ' ' || c == 0x7f; });
  if (hasControl || !isValidUtf8(path)) throwErrno(EILSEQ);
}

std::tm utc(Date date) {
  return fmt::gmtime(static_cast<std::time_t>(std::floor(unixSeconds(date))));
}

// When a job is started, counted from its installation: every line is one "OnCalendar=". By UTC, which no change to
// summer time shifts.
std::string calendarLines(std::chrono::seconds interval, Date installed) {
  const auto start = utc(installed);
  if (interval == day) return fmt::format("OnCalendar=*-*-* {:%H:%M:%S} UTC\n", start);
  if (interval == week) {
    return fmt::format("OnCalendar={} *-*-* {:%H:%M:%S} UTC\n", weekdays.at(static_cast<std::size_t>(start.tm_wday)),
                       start);
  }
  if (interval < std::chrono::hours(1) && interval % std::chrono::minutes(1) == std::chrono::seconds(0) &&
      std::chrono::hours(1) % interval == std::chrono::seconds(0)) {
    const auto minutes = static_cast<int>(interval / std::chrono::minutes(1));
    return fmt::format("OnCalendar=*-*-* *:{:02}/{}:{:02} UTC\n", start.tm_min % minutes, minutes, start.tm_sec);
  }
  std::string lines;
  for (int i = 1; i <= datesAhead; ++i) {
    lines += fmt::format("OnCalendar={:%Y-%m-%d %H:%M:%S} UTC\n", utc(installed + i * interval));
  }
  return lines;
}

}  // namespace

SystemdScheduler::SystemdScheduler(std::string unitFolder, std::string systemctl)
    : m_unitFolder(std::move(unitFolder)), m_systemctl(std::move(systemctl)) {}

std::string SystemdScheduler::defaultFolder() {
  return joinPath(configurationFolder(), "systemd/user");
}

std::string SystemdScheduler::servicePath(const std::string& label) const {
  return joinPath(m_unitFolder, label + ".service");
}

std::string SystemdScheduler::timerPath(const std::string& label) const {
  return joinPath(m_unitFolder, label + ".timer");
}

std::string SystemdScheduler::serviceText(const BackgroundJob& job) {
  // The program started by a click on the run's notification must outlive it, hence only its own process is killed.
  return fmt::format(
      "[Unit]\n"
      "Description=Scheduled cleanup of Orvane\n"
      "\n"
      "[Service]\n"
      "Type=oneshot\n"
      "ExecStart=:{} {}\n"
      "Nice=19\n"
      "IOSchedulingClass=idle\n"
      "KillMode=process\n"
      "StandardOutput=append:{}\n"
      "StandardError=append:{}\n",
      commandWords(job.executable), BackgroundJob::argument, withoutSpecifiers(job.outputPath),
      withoutSpecifiers(job.errorPath));
}

std::string SystemdScheduler::timerText(const BackgroundJob& job, Date installed) {
  return fmt::format(
      "[Unit]\n"
      "Description=Start the scheduled cleanup of Orvane every {} seconds\n"
      "\n"
      "[Timer]\n"
      "{}"
      "Persistent=true\n"
      "\n"
      "[Install]\n"
      "WantedBy=timers.target\n",
      job.interval.count(), calendarLines(job.interval, installed));
}

void SystemdScheduler::install(const BackgroundJob& job) {
  for (const auto& path : {job.executable, job.outputPath, job.errorPath}) requireWritable(path);
  const auto wanted = wantedPath(m_unitFolder, job.label);
  createFolders(std::string(parentPath(wanted)));
  createFolders(std::string(parentPath(job.outputPath)));
  AtomicFile::replace(servicePath(job.label), serviceText(job), 0644);
  AtomicFile::replace(timerPath(job.label), timerText(job, ReferenceClock::now()), 0644);
  // By hand, so that it holds also where no service manager runs at the moment.
  if (::symlink(("../" + job.label + ".timer").c_str(), wanted.c_str()) != 0 && errno != EEXIST) throwErrno();
  const auto timer = job.label + ".timer";
  runTool({m_systemctl, "--user", "daemon-reload"});
  runTool({m_systemctl, "--user", "stop", timer});
  // When a timer of that name last elapsed is forgotten: the new one would make up for it at once.
  runTool({m_systemctl, "--user", "clean", "--what=state", timer});
  runTool({m_systemctl, "--user", "restart", timer});
}

void SystemdScheduler::uninstall(const std::string& label) {
  if (!isInstalled(label)) return;
  const auto timer = label + ".timer";
  runTool({m_systemctl, "--user", "stop", timer});
  runTool({m_systemctl, "--user", "clean", "--what=state", timer});
  ::unlink(wantedPath(m_unitFolder, label).c_str());
  ::unlink(timerPath(label).c_str());
  ::unlink(servicePath(label).c_str());
  runTool({m_systemctl, "--user", "daemon-reload"});
}

bool SystemdScheduler::isInstalled(const std::string& label) const {
  return ::access(timerPath(label).c_str(), F_OK) == 0;
}

std::vector<BackgroundScheduler::Definition> SystemdScheduler::definitions(const BackgroundJob& job) const {
  return {{job.label + ".service", serviceText(job)}, {job.label + ".timer", timerText(job, ReferenceClock::now())}};
}

}  // namespace orvane
