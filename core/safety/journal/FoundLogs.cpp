#include "core/safety/journal/FoundLogs.h"

#include "core/base/files/DirectoryReader.h"
#include "core/base/files/PathText.h"
#include "core/base/text/UnicodeText.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <new>
#include <system_error>
#include <utility>

namespace orvane {
namespace {

// Never waits for anything else that has the name of a log.
constexpr int openFlags = O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC;

// Far beyond any that this program writes: the journal is brought up to date, and the log emptied, before.
constexpr std::int64_t maxLogBytes = std::int64_t{1024} * 1024 * 1024;

// Throws std::system_error.
struct stat statusOf(int descriptor) {
  struct stat status {};
  if (::fstat(descriptor, &status) != 0) throwErrno();
  return status;
}

std::vector<std::string> logNames(const std::string& folder) {
  std::vector<std::string> names;
  auto reader = DirectoryReader::open(AT_FDCWD, folder.c_str(), DirectoryReader::Links::follow);
  while (reader) {
    const auto entry = reader->next();
    if (!entry) break;
    if (RunLog::runOf(entry->name)) names.emplace_back(entry->name);
    if (entry->name.ends_with(RunLog::unlockedSuffix)) {
      // Made by a process that died before its log had a name: nothing had been written to it. One that lives holds it.
      FileDescriptor file(::openat(reader->descriptor(), entry->nameBytes(), openFlags));
      if (file && S_ISREG(statusOf(file.get()).st_mode) && FileLock::tryAcquire(file)) {
        ::unlinkat(reader->descriptor(), entry->nameBytes(), 0);
      }
    }
  }
  std::sort(names.begin(), names.end());
  return names;
}

std::string notice(const std::string& path, std::string_view what) {
  return fmt::format("The log '{}' of an interrupted run cannot be read: {}.", escapedForDisplay(path), what);
}

// A log that is there, locked where its run is dead. Its intents are not read yet.
struct OpenLog {
  FoundLog log;
  FileDescriptor file;  // of a run that lives
};

std::optional<OpenLog> openLog(const std::string& path, std::vector<std::string>& notices) {
  FileDescriptor file(::open(path.c_str(), openFlags));
  if (!file) {
    if (errno != ENOENT) notices.push_back(notice(path, errorText(errno)));
    return std::nullopt;
  }
  if (!S_ISREG(statusOf(file.get()).st_mode)) {
    notices.push_back(notice(path, "it is no regular file"));
    return std::nullopt;
  }
  OpenLog open{{path, FileLock::tryAcquire(file), {}}, {}};
  if (!open.log.lock) open.file = std::move(file);
  // It may have been removed while we looked.
  if (open.log.lock && statusOf(open.log.lock->descriptor()).st_nlink == 0) return std::nullopt;
  return open;
}

bool readIntents(OpenLog& open, std::vector<std::string>& notices) {
  auto& log = open.log;
  const int descriptor = log.lock ? log.lock->descriptor() : open.file.get();
  try {
    if (statusOf(descriptor).st_size > maxLogBytes) throwErrno(EFBIG);
    log.intents = readRunLog(readAll(descriptor));
    return true;
  } catch (const std::system_error& error) {
    notices.push_back(notice(log.path, error.code().message()));
  } catch (const std::bad_alloc&) {
    notices.push_back(notice(log.path, errorText(ENOMEM)));
  }
  return false;
}

}  // namespace

bool hasLogsToSettle(const std::string& folder) {
  return std::ranges::any_of(logNames(folder), [&](const std::string& name) {
    FileDescriptor file(::open(joinPath(folder, name).c_str(), openFlags));
    if (!file) return errno != ENOENT;
    return FileLock::tryAcquire(file, FileLock::Mode::shared).has_value();
  });
}

std::vector<FoundLog> findLogsToSettle(const std::string& folder, std::vector<std::string>& notices) {
  std::vector<FoundLog> dead;
  for (const auto& name : logNames(folder)) {
    auto open = openLog(joinPath(folder, name), notices);
    if (open && open->log.lock && readIntents(*open, notices)) dead.push_back(std::move(open->log));
  }
  return dead;
}

std::optional<std::vector<FoundLog>> findOtherLogs(const std::string& folder, std::span<const FoundLog> settled,
                                                   std::vector<std::string>& notices) {
  std::vector<FoundLog> others;
  for (const auto& name : logNames(folder)) {
    const auto path = joinPath(folder, name);
    if (std::ranges::find(settled, path, &FoundLog::path) != settled.end()) continue;
    // Told already, where it was there before.
    std::vector<std::string> told;
    auto open = openLog(path, told);
    if (!open) continue;
    if (readIntents(*open, open->log.lock ? told : notices)) {
      others.push_back(std::move(open->log));
    } else if (!open->log.lock) {
      return std::nullopt;
    }
  }
  return others;
}

}  // namespace orvane
