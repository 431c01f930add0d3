#include "core/safety/journal/JournalStore.h"

#include "core/base/files/AtomicFile.h"
#include "core/base/files/FileDescriptor.h"
#include "core/base/files/FreeName.h"
#include "core/base/files/PathText.h"
#include "core/base/text/Json.h"
#include "core/base/text/UnicodeText.h"
#include "core/base/values/Calendar.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <new>
#include <span>
#include <system_error>
#include <utility>

namespace orvane {
namespace {
constexpr std::string_view journalFileName = "undo_journal.json";
// Of ten million entries and more; what is longer was not written by this program.
constexpr std::int64_t maxJournalBytes = std::int64_t{8} * 1024 * 1024 * 1024;
constexpr std::string_view lockName = "undo_journal.lock";

ItemIdentity identityOf(const FileDescriptor& file) {
  struct stat status {};
  if (::fstat(file.get(), &status) != 0) throwErrno();
  return ItemIdentity::of(fileStatusFrom(status));
}
}  // namespace

JournalStore::JournalStore(std::string folder)
    : m_folder(std::move(folder)), m_path(joinPath(m_folder, journalFileName)) {
  AtomicFile::removeAbandoned(m_path, lockPath());
}

std::string JournalStore::lockPath() const {
  return joinPath(m_folder, lockName);
}

FileLock JournalStore::lock() {
  try {
    auto held = FileLock::acquire(lockPath(), m_isLockKept ? std::chrono::milliseconds(0) : FileLock::maxWait);
    m_isLockKept = false;
    return held;
  } catch (const LockTimeout&) {
    m_isLockKept = true;
    throw;
  }
}

void JournalStore::refresh(JournalModel& model) {
  m_problem.reset();
  try {
    read(model);
  } catch (const JsonError& error) {
    note(
        fmt::format("The undo journal '{}' cannot be read ({}). It is kept under another name as soon as the next "
                    "cleanup is recorded; the history starts anew.",
                    escapedForDisplay(m_path), error.what()));
  } catch (const std::system_error& error) {
    noteProblem(error.code());
  } catch (const std::bad_alloc&) {
    noteProblem(std::make_error_code(std::errc::not_enough_memory));
  }
}

void JournalStore::read(JournalModel& model) {
  FileDescriptor file;
  try {
    file = openRegularFile(m_path);
  } catch (const std::system_error& error) {
    // Where the folder cannot be, no run begins either.
    if (error.code() != std::errc::no_such_file_or_directory && error.code() != std::errc::not_a_directory) throw;
    m_lastSeen.reset();
    m_fileSize = 0;
    return;
  }
  const auto identity = identityOf(file);
  if (m_lastSeen == identity || m_damaged == identity) return;
  if (identity.size > maxJournalBytes) throwErrno(EFBIG);
  std::int64_t size = 0;
  const auto source = [&](char* place, std::size_t room) {
    const auto count = readSome(file.get(), std::span(place, room));
    size += static_cast<std::int64_t>(count);
    return count;
  };
  try {
    auto onDisk = JournalModel::decode(source);
    onDisk.merge(model);
    model = std::move(onDisk);
  } catch (const JsonError&) {
    // Only a file that was there in full can be called damaged.
    std::array<char, 4096> rest{};
    while (source(rest.data(), rest.size()) > 0) continue;
    if (size != identity.size || identityOf(file) != identity) throwErrno(EBUSY);
    m_damaged = identity;
    throw;
  }
  m_lastSeen = identity;
  m_fileSize = size;
  m_damaged.reset();
}

void JournalStore::noteProblem(std::error_code problem) {
  m_problem = problem;
  const auto reason = problem == std::errc::invalid_argument ? "it is no regular file" : problem.message();
  note(
      fmt::format("The undo journal '{}' cannot be read now: {}. It stays as it is, and nothing is moved or restored "
                  "until it can be read. Mend what keeps it from being read and try again.",
                  escapedForDisplay(m_path), reason));
}

bool JournalStore::save(JournalModel& model) {
  try {
    const auto held = lock();
    refresh(model);
    if (m_problem) return false;
    setAsideIfDamaged();
    AtomicFile::removeAbandoned(m_path);
    AtomicFile file(m_path);
    model.encode([&](std::string_view text) { file.write(text); });
    file.commit();
    const auto status = readFileStatus(AT_FDCWD, m_path.c_str());
    if (!status) return false;
    m_lastSeen = ItemIdentity::of(*status);
    m_fileSize = status->size;
    return true;
  } catch (const LockTimeout& error) {
    note(fmt::format("The undo journal '{}' cannot be saved: {}.", escapedForDisplay(m_path), error.what()));
  } catch (const std::system_error& error) {
    note(fmt::format("The undo journal '{}' cannot be saved: {}.", escapedForDisplay(m_path), error.code().message()));
  }
  return false;
}

void JournalStore::setAsideIfDamaged() {
  if (!m_damaged) return;
  std::string stamp = localTimestamp(ReferenceClock::now());
  std::erase(stamp, ':');
  const auto aside =
      freeUrl(FileUrl(fmt::format("{}/undo_journal.damaged-{}.json", m_folder, stamp)), NumberingStyle::plain);
  if (std::rename(m_path.c_str(), aside.path().c_str()) != 0) throwErrno();
  m_damaged.reset();
  note(fmt::format("The undo journal that could not be read is kept as '{}'.", escapedForDisplay(aside.path())));
}

void JournalStore::note(std::string line) {
  if (std::find(m_notices.begin(), m_notices.end(), line) == m_notices.end()) m_notices.push_back(std::move(line));
}

std::vector<std::string> JournalStore::takeNotices() {
  return std::exchange(m_notices, {});
}

}  // namespace orvane
