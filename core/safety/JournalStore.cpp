#include "core/safety/JournalStore.h"

#include "core/base/AtomicFile.h"
#include "core/base/Calendar.h"
#include "core/base/DirectoryReader.h"
#include "core/base/FileDescriptor.h"
#include "core/base/FreeName.h"
#include "core/base/Json.h"
#include "core/base/PathText.h"
#include "core/base/UnicodeText.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <span>
#include <system_error>
#include <utility>

namespace orvane {
namespace {
constexpr std::string_view fileName = "undo_journal.json";
constexpr std::string_view temporaryPrefix = "undo_journal.json.";
constexpr std::string_view lockName = "undo_journal.lock";
}  // namespace

JournalStore::JournalStore(std::string folder) : m_folder(std::move(folder)), m_path(joinPath(m_folder, fileName)) {}

FileLock JournalStore::lock() const {
  return FileLock::acquire(joinPath(m_folder, lockName));
}

void JournalStore::refresh(JournalModel& model) {
  const auto status = readFileStatus(AT_FDCWD, m_path.c_str());
  if (!status) {
    m_lastSeen.reset();
    m_fileSize = 0;
    return;
  }
  const auto identity = ItemIdentity::of(*status);
  if (m_lastSeen == identity || m_damaged == identity) return;
  try {
    const auto file = openRegularFile(m_path);
    auto onDisk = JournalModel::decode(
        [&](char* place, std::size_t most) { return readSome(file.get(), std::span(place, most)); });
    onDisk.merge(model);
    model = std::move(onDisk);
    m_lastSeen = identity;
    m_fileSize = status->size;
    m_damaged.reset();
  } catch (const std::exception& error) {
    m_damaged = identity;
    note(
        fmt::format("The undo journal '{}' cannot be read ({}). It is kept under another name as soon as the next "
                    "cleanup is recorded; the history starts anew.",
                    escapedForDisplay(m_path), error.what()));
  }
}

bool JournalStore::save(JournalModel& model) {
  try {
    const auto held = lock();
    refresh(model);
    setAsideIfDamaged();
    removeAbandonedTemporaryFiles();
    AtomicFile file(m_path);
    model.encode([&](std::string_view text) { file.write(text); });
    file.commit();
    const auto status = readFileStatus(AT_FDCWD, m_path.c_str());
    if (!status) return false;
    m_lastSeen = ItemIdentity::of(*status);
    m_fileSize = status->size;
    return true;
  } catch (const std::system_error& error) {
    note(fmt::format("The undo journal '{}' cannot be saved: {}.", escapedForDisplay(m_path), error.code().message()));
    return false;
  }
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

// Called under the lock, when nobody else is writing one.
void JournalStore::removeAbandonedTemporaryFiles() const noexcept {
  auto reader = DirectoryReader::open(AT_FDCWD, m_folder.c_str(), DirectoryReader::Links::follow);
  while (reader) {
    const auto entry = reader->next();
    if (!entry) return;
    if (entry->name.starts_with(temporaryPrefix) && entry->name.ends_with(".tmp")) {
      ::unlinkat(reader->descriptor(), entry->nameBytes(), 0);
    }
  }
}

void JournalStore::note(std::string line) {
  if (std::find(m_notices.begin(), m_notices.end(), line) == m_notices.end()) m_notices.push_back(std::move(line));
}

std::vector<std::string> JournalStore::takeNotices() {
  return std::exchange(m_notices, {});
}

}  // namespace orvane
