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
constexpr std::int64_t longestLog = std::int64_t{1024} * 1024 * 1024;

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

}  // namespace

std::vector<FoundLog> findLogsToSettle(const std::string& folder, std::vector<std::string>& notices) {
  std::vector<FoundLog> dead;
  std::vector<std::pair<std::string, FileDescriptor>> alive;
  for (const auto& name : logNames(folder)) {
    const std::string path = joinPath(folder, name);
    FileDescriptor file(::open(path.c_str(), openFlags));
    if (!file) {
      if (errno != ENOENT) notices.push_back(notice(path, errorText(errno)));
    } else if (!S_ISREG(statusOf(file.get()).st_mode)) {
      notices.push_back(notice(path, "it is no regular file"));
    } else if (auto lock = FileLock::tryAcquire(file); !lock) {
      alive.emplace_back(path, std::move(file));
    } else if (statusOf(lock->descriptor()).st_nlink > 0) {
      dead.push_back({path, std::move(lock), {}});
    }
  }
  if (dead.empty()) return {};
  std::vector<FoundLog> logs;
  const auto take = [&](FoundLog log, int descriptor) {
    try {
      if (statusOf(descriptor).st_size > longestLog) throwErrno(EFBIG);
      log.intents = readRunLog(readAll(descriptor));
      logs.push_back(std::move(log));
      return true;
    } catch (const std::system_error& error) {
      notices.push_back(notice(log.path, error.code().message()));
    } catch (const std::bad_alloc&) {
      notices.push_back(notice(log.path, errorText(ENOMEM)));
    }
    return false;
  };
  // Without knowing what the living are doing nothing can be taken back.
  for (const auto& [path, file] : alive) {
    if (!take({path, {}, {}}, file.get())) return {};
  }
  for (auto& log : dead) {
    const int descriptor = log.lock->descriptor();
    take(std::move(log), descriptor);
  }
  return logs;
}

}  // namespace orvane
