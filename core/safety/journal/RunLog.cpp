#include "core/safety/journal/RunLog.h"

#include "core/base/files/AtomicFile.h"
#include "core/base/files/PathText.h"
#include "core/base/text/Json.h"
#include "core/platform/SyncError.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <iterator>
#include <system_error>
#include <unordered_map>
#include <utility>

namespace orvane {
namespace {

constexpr std::string_view namePrefix = "undo_journal.";
constexpr std::string_view nameSuffix = ".log";
constexpr std::string_view movesLockName = "undo_journal.moves.lock";
// A copy to another volume may take much longer: then dead runs are settled at another start.
constexpr std::chrono::milliseconds maxWaitForMoves{500};

ItemIdentity identityFromJson(const Json& json) {
  const auto& modified = requiredKey(json, "modified");
  if (!modified.is_array() || modified.size() != 2) throw JsonError("\"modified\" must be two numbers");
  const auto natural = [&](const char* key) {
    const auto& value = requiredKey(json, key);
    if (!value.is_number_unsigned()) throw JsonError(fmt::format("\"{}\" must be a natural number", key));
    return value.get<std::uint64_t>();
  };
  return {natural("device"),
          natural("inode"),
          integerAt(json, "size"),
          {integerFrom(modified[0], "modified"), integerFrom(modified[1], "modified")}};
}

MoveIntent intentFromJson(const Json& json) {
  MoveIntent intent;
  intent.entry = JournalEntry::fromJson(requiredKey(json, "intent"));
  intent.source = urlAt(json, "source");
  intent.destination = urlAt(json, "destination");
  intent.identity = identityFromJson(requiredKey(json, "identity"));
  if (optionalKey(json, "partial") != nullptr) intent.partial = urlAt(json, "partial");
  if (const auto* settles = optionalKey(json, "settles")) intent.settles = JournalEntry::fromJson(*settles);
  intent.isLocked = optionalKey(json, "locked") != nullptr;
  return intent;
}

}  // namespace

ItemRecord MoveIntent::record() const {
  ItemRecord result{entry.id, identity, std::nullopt, isLocked};
  if (partial) result.identity.inode = 0;
  if (source != entry.originalURL) result.source = source;
  return result;
}

RunLog::RunLog(const std::string& folder, const Uuid& runId)
    : m_folder(folder), m_path(joinPath(folder, fileName(runId))) {
  // Where there is a log, there is the lock for settling it, on a full disk too.
  static_cast<void>(lockMoves());
  constexpr int maxAttempts = 16;
  for (int attempt = 1; !m_lock; ++attempt) {
    const int error = tryToMake();
    // Another process that starts just now may take a log that is not locked yet for one that was abandoned.
    const bool takenAway = error == ENOENT || error == EWOULDBLOCK;
    if (error != 0 && (!takenAway || attempt == maxAttempts)) throwErrno(error);
  }
  syncFolder(folder);
}

// Zero, or the error. The log gets its name once it is locked: nobody ever sees it unlocked while this process lives.
int RunLog::tryToMake() {
  const std::string unlockedPath = m_path + "." + Uuid::random().toString() + std::string(unlockedSuffix);
  FileDescriptor file(::open(unlockedPath.c_str(), O_RDWR | O_CREAT | O_EXCL | O_APPEND | O_CLOEXEC, 0600));
  if (!file) return errno;
  auto lock = FileLock::tryAcquire(file);
  const int error = lock && ::link(unlockedPath.c_str(), m_path.c_str()) == 0 ? 0 : errno;
  ::unlink(unlockedPath.c_str());
  if (error == 0) m_lock = std::move(lock);
  return error;
}

RunLog::~RunLog() = default;

void RunLog::appendIntent(const MoveIntent& intent) {
  const auto& identity = intent.identity;
  m_unwritten += R"({"intent":)";
  intent.entry.appendJsonText(m_unwritten);
  m_unwritten += R"(,"source":")";
  intent.source.appendAbsoluteString(m_unwritten);
  m_unwritten += R"(","destination":")";
  intent.destination.appendAbsoluteString(m_unwritten);
  fmt::format_to(std::back_inserter(m_unwritten),
                 R"(","identity":{{"device":{},"inode":{},"size":{},"modified":[{},{}]}})", identity.device,
                 identity.inode, identity.size, identity.modified.seconds, identity.modified.nanoseconds);
  if (intent.partial) m_unwritten += fmt::format(R"(,"partial":"{}")", intent.partial->absoluteString());
  if (intent.settles) {
    m_unwritten += R"(,"settles":)";
    intent.settles->appendJsonText(m_unwritten);
  }
  if (intent.isLocked) m_unwritten += R"(,"locked":true)";
  m_unwritten += "}\n";
  if (intent.entry.action != JournalAction::restored) m_records.push_back(intent.record());
}

FileLock RunLog::lockMoves() const {
  return FileLock::acquire(joinPath(m_folder, movesLockName), FileLock::maxWait, FileLock::Mode::shared);
}

FileLock RunLog::lockOutMoves(const std::string& folder) {
  return FileLock::acquire(joinPath(folder, movesLockName), maxWaitForMoves);
}

std::vector<ItemRecord> RunLog::takeRecords() {
  return std::exchange(m_records, {});
}

void RunLog::appendDone(std::span<const Uuid> entryIds) {
  m_unwritten += R"({"done":[)";
  const char* separator = "";
  for (const auto& id : entryIds) {
    m_unwritten += separator;
    m_unwritten += '"';
    id.appendTo(m_unwritten);
    m_unwritten += '"';
    separator = ",";
  }
  m_unwritten += "]}\n";
}

void RunLog::sync() {
  const auto length = static_cast<std::int64_t>(m_unwritten.size());
  try {
    writeAll(m_lock->descriptor(), m_unwritten);
  } catch (const std::system_error& error) {
    throw SyncError(error.what());
  }
  if (::fdatasync(m_lock->descriptor()) != 0) throw SyncError(errorText(errno));
  m_unwritten.clear();
  m_size += length;
}

void RunLog::clear() noexcept {
  if (m_isKept) return;
  if (::ftruncate(m_lock->descriptor(), 0) == 0) m_size = 0;
}

void RunLog::remove() noexcept {
  if (!m_isKept) ::unlink(m_path.c_str());
}

std::string RunLog::fileName(const Uuid& runId) {
  return fmt::format("{}{}{}", namePrefix, runId.toString(), nameSuffix);
}

std::optional<Uuid> RunLog::runOf(std::string_view fileName) {
  if (!fileName.starts_with(namePrefix) || !fileName.ends_with(nameSuffix)) return std::nullopt;
  if (fileName.size() < namePrefix.size() + nameSuffix.size()) return std::nullopt;
  return Uuid::parse(fileName.substr(namePrefix.size(), fileName.size() - namePrefix.size() - nameSuffix.size()));
}

std::vector<LoggedIntent> readRunLog(std::string_view text) {
  std::vector<LoggedIntent> intents;
  std::unordered_map<Uuid, std::size_t> positions;
  std::size_t start = 0;
  while (start < text.size()) {
    const auto end = text.find('\n', start);
    if (end == std::string_view::npos) break;
    const auto line = text.substr(start, end - start);
    start = end + 1;
    try {
      const Json json = parseJson(line);
      if (const auto* done = optionalKey(json, "done")) {
        for (const auto& element : *done) {
          const auto id = Uuid::parse(stringFrom(element, "done"));
          if (const auto found = id ? positions.find(*id) : positions.end(); found != positions.end()) {
            intents[found->second].done = true;
          }
        }
        continue;
      }
      auto intent = intentFromJson(json);
      const auto [position, isNew] = positions.emplace(intent.entry.id, intents.size());
      if (isNew) {
        intents.push_back({std::move(intent), false});
      } else {
        intents[position->second] = {std::move(intent), false};
      }
    } catch (const JsonError&) {
      // A block that the disk did not keep. The lines after it may still tell of items that moved.
      continue;
    }
  }
  return intents;
}

}  // namespace orvane
