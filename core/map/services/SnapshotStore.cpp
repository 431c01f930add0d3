#include "core/map/services/SnapshotStore.h"

#include "core/base/files/AtomicFile.h"
#include "core/base/files/FileDescriptor.h"
#include "core/base/files/FileStatus.h"
#include "core/base/files/PathText.h"
#include "core/base/files/SetAside.h"
#include "core/base/text/Json.h"
#include "core/base/text/UnicodeText.h"
#include "core/map/SnapshotForm.h"
#include "core/map/services/SnapshotStatement.h"
#include "core/platform/Preferences.h"

#include <fcntl.h>
#include <fmt/format.h>

#include <chrono>
#include <cmath>
#include <map>
#include <set>
#include <system_error>
#include <utility>

namespace orvane {
namespace {

// "ORVM"
constexpr std::int64_t applicationId = 0x4F52564D;
constexpr std::int64_t formVersion = 1;
constexpr int patienceMilliseconds = 2000;
constexpr std::int64_t daysDaily = 31;
constexpr std::int64_t daysWeekly = 366;

constexpr std::string_view form = R"(
CREATE TABLE snapshots(
  id INTEGER PRIMARY KEY,
  taken REAL NOT NULL,       -- seconds since 2001-01-01T00:00:00Z
  root BLOB NOT NULL,
  disk INTEGER NOT NULL,
  logical INTEGER NOT NULL,
  files INTEGER NOT NULL,
  volume INTEGER NOT NULL,
  free INTEGER NOT NULL,
  left INTEGER NOT NULL,
  sums BLOB NOT NULL,        -- JSON: bytes by kind and by category
  folders BLOB NOT NULL
);
CREATE TABLE warnings(date REAL NOT NULL);
)";

std::map<std::string, std::int64_t> sumsFrom(const Json& json, std::string_view key) {
  std::map<std::string, std::int64_t> sums;
  const auto* object = optionalKey(json, key);
  if (object == nullptr || !object->is_object()) return sums;
  for (const auto& [name, bytes] : object->items()) {
    if (bytes.is_number_integer()) sums[name] = bytes.get<std::int64_t>();
  }
  return sums;
}

std::int64_t dayOf(Date date) noexcept {
  return static_cast<std::int64_t>(std::floor(unixSeconds(date) / secondsOfADay));
}

// The days that one snapshot stands for, as a number of their own.
std::pair<int, std::int64_t> bucketOf(std::int64_t day, std::int64_t today) {
  if (today - day < daysDaily) return {0, day};
  if (today - day < daysWeekly) return {1, day / 7};
  const std::chrono::year_month_day date{std::chrono::sys_days{std::chrono::days{day}}};
  return {2, static_cast<int>(date.year()) * 12L + static_cast<unsigned>(date.month())};
}

}  // namespace

std::vector<std::int64_t> momentsToDrop(std::span<const MapMoment> moments, Date now) {
  std::vector<std::int64_t> drop;
  std::set<std::pair<int, std::int64_t>> kept;
  for (auto moment = moments.rbegin(); moment != moments.rend(); ++moment) {
    if (!kept.insert(bucketOf(dayOf(moment->taken), dayOf(now))).second) drop.push_back(moment->id);
  }
  return drop;
}

SnapshotStore::SnapshotStore(std::string path, Preferences& preferences)
    : m_path(std::move(path)), m_preferences(preferences) {}

SnapshotStore::~SnapshotStore() {
  close();
}

std::optional<bool> SnapshotStore::choice() const {
  const auto stored = m_preferences.value(switchKey);
  return stored && stored->is_boolean() ? std::optional(stored->get<bool>()) : std::nullopt;
}

void SnapshotStore::setOn(bool isOn) {
  m_preferences.setValue(switchKey, Json(isOn));
}

void SnapshotStore::close() {
  sqlite3_close(std::exchange(m_database, nullptr));
}

// A database that SQLite finds damaged has nothing to lose; one that is busy, unreadable or of another version stays.
void SnapshotStore::fail(int code, std::string_view reason) {
  close();
  const auto shown = escapedForDisplay(m_path);
  if ((code & 0xFF) != SQLITE_CORRUPT && (code & 0xFF) != SQLITE_NOTADB) {
    m_notices.push_back(fmt::format("The snapshots in '{}' cannot be used now: {}.", shown, reason));
    return;
  }
  try {
    const auto aside = setAside(m_path);
    m_notices.push_back(
        fmt::format("The snapshots in '{}' are damaged and kept as '{}'.", shown, escapedForDisplay(aside.path())));
  } catch (const std::system_error& error) {
    m_notices.push_back(fmt::format("The snapshots in '{}' are damaged: {}.", shown, error.what()));
  }
}

void SnapshotStore::openFile(Missing missing) {
  if (missing == Missing::make) {
    createFolders(std::string(parentPath(m_path)));
    // For this user alone; SQLite would make it readable to others.
    const FileDescriptor file(::open(m_path.c_str(), O_CREAT | O_RDWR | O_CLOEXEC | O_NOFOLLOW, 0600));
    if (!file) throwErrno();
  }
  const int code = sqlite3_open_v2(m_path.c_str(), &m_database, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOFOLLOW, nullptr);
  if (code != SQLITE_OK) throw DatabaseError(code, sqlite3_errmsg(m_database));
  sqlite3_busy_timeout(m_database, patienceMilliseconds);
  sqlite3_db_config(m_database, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
  sqlite3_db_config(m_database, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
}

void SnapshotStore::prepare() {
  const auto pragma = [&](std::string_view name) {
    SnapshotStatement statement(m_database, fmt::format("PRAGMA {}", name));
    return statement.step() ? statement.integer(0) : 0;
  };
  const auto version = pragma("user_version");
  const auto owner = pragma("application_id");
  if (version == formVersion && owner == applicationId) return;
  if (pragma("schema_version") != 0) throw DatabaseError(SQLITE_SCHEMA, "another version of Orvane made them");
  const auto made = fmt::format("BEGIN IMMEDIATE;{}PRAGMA application_id={};PRAGMA user_version={};COMMIT", form,
                                applicationId, formVersion);
  const int code = sqlite3_exec(m_database, made.c_str(), nullptr, nullptr, nullptr);
  // Another process may have been faster.
  if (code == SQLITE_OK || pragma("user_version") == formVersion) return;
  throw DatabaseError(code, sqlite3_errmsg(m_database));
}

bool SnapshotStore::open(Missing missing) {
  if (m_database != nullptr) return true;
  if (missing == Missing::leave && !itemExists(m_path.c_str())) return false;
  openFile(missing);
  prepare();
  return true;
}

// A damaged database is set aside, and what was to be written goes to a new one.
template <typename Work>
auto SnapshotStore::with(Missing missing, Work work) -> decltype(work()) {
  const std::lock_guard lock(m_mutex);
  for (const bool mayRepeat : {true, false}) {
    try {
      if (!open(missing)) return {};
      return work();
    } catch (const DatabaseError& error) {
      fail(error.code(), error.what());
      const bool wasDamaged = (error.code() & 0xFF) == SQLITE_CORRUPT || (error.code() & 0xFF) == SQLITE_NOTADB;
      if (!mayRepeat || !wasDamaged) return {};
    } catch (const std::system_error& error) {
      fail(SQLITE_CANTOPEN, error.what());
      return {};
    }
  }
  return {};
}

void SnapshotStore::add(const MapSnapshot& snapshot) {
  if (!isOn()) return;
  const auto sums = jsonText(Json{{"kinds", snapshot.kinds}, {"categories", snapshot.categories}});
  const auto folders = packedFolders(snapshot);
  with(Missing::make, [&] {
    SnapshotStatement(m_database, "BEGIN IMMEDIATE").step();
    try {
      SnapshotStatement(m_database,
                        "INSERT INTO snapshots(taken,root,disk,logical,files,volume,free,left,sums,folders) "
                        "VALUES(?,?,?,?,?,?,?,?,?,?)")
          .bind(referenceSeconds(snapshot.taken))
          .bind(std::string_view(snapshot.root))
          .bind(snapshot.total.diskBytes)
          .bind(snapshot.total.logicalBytes)
          .bind(snapshot.total.files)
          .bind(snapshot.volumeBytes)
          .bind(snapshot.freeBytes)
          .bind(snapshot.left)
          .bind(std::string_view(sums))
          .bind(std::string_view(folders))
          .step();
      thin(snapshot.taken);
    } catch (const DatabaseError&) {
      sqlite3_exec(m_database, "ROLLBACK", nullptr, nullptr, nullptr);
      throw;
    }
    SnapshotStatement(m_database, "COMMIT").step();
    return true;
  });
}

// Later dates than now are from before the clock was set back: they stay until it gets there.
void SnapshotStore::thin(Date now) {
  std::map<std::string, std::vector<MapMoment>> byRoot;
  SnapshotStatement rows(m_database, "SELECT id,taken,root FROM snapshots WHERE taken<=? ORDER BY taken,id");
  rows.bind(referenceSeconds(now));
  while (rows.step()) {
    byRoot[rows.bytes(2)].push_back({.id = rows.integer(0), .taken = dateFromReferenceSeconds(rows.real(1))});
  }
  for (const auto& [root, moments] : byRoot) {
    for (const auto id : momentsToDrop(moments, now)) {
      SnapshotStatement(m_database, "DELETE FROM snapshots WHERE id=?").bind(id).step();
    }
  }
}

std::vector<MapMoment> SnapshotStore::moments(Date now) {
  return with(Missing::leave, [&] {
    std::vector<MapMoment> moments;
    SnapshotStatement rows(m_database,
                           "SELECT id,taken,root,disk,volume,free FROM snapshots WHERE taken<=? ORDER BY taken,id");
    rows.bind(referenceSeconds(now));
    while (rows.step()) {
      moments.push_back({rows.integer(0), dateFromReferenceSeconds(rows.real(1)), rows.bytes(2), rows.integer(3),
                         rows.integer(4), rows.integer(5)});
    }
    return moments;
  });
}

std::optional<MapSnapshot> SnapshotStore::read(std::int64_t id) {
  return with(Missing::leave, [&]() -> std::optional<MapSnapshot> {
    SnapshotStatement row(
        m_database, "SELECT taken,root,disk,logical,files,volume,free,left,sums,folders FROM snapshots WHERE id=?");
    if (!row.bind(id).step()) return std::nullopt;
    MapSnapshot snapshot{.taken = dateFromReferenceSeconds(row.real(0)), .root = row.bytes(1)};
    snapshot.total = {row.integer(2), row.integer(3), row.integer(4)};
    snapshot.volumeBytes = row.integer(5);
    snapshot.freeBytes = row.integer(6);
    snapshot.left = row.integer(7);
    if (!unpackFolders(row.bytes(9), snapshot)) return std::nullopt;
    try {
      const auto sums = parseJson(row.bytes(8));
      snapshot.kinds = sumsFrom(sums, "kinds");
      snapshot.categories = sumsFrom(sums, "categories");
    } catch (const JsonError&) {
      return std::nullopt;
    }
    return snapshot;
  });
}

void SnapshotStore::clear() {
  with(Missing::leave, [&] {
    SnapshotStatement(m_database, "DELETE FROM snapshots").step();
    SnapshotStatement(m_database, "DELETE FROM warnings").step();
    SnapshotStatement(m_database, "VACUUM").step();
    return true;
  });
}

std::optional<Date> SnapshotStore::warned() {
  return with(Missing::leave, [&]() -> std::optional<Date> {
    SnapshotStatement row(m_database, "SELECT max(date) FROM warnings WHERE date IS NOT NULL HAVING count(*)>0");
    if (!row.step()) return std::nullopt;
    return dateFromReferenceSeconds(row.real(0));
  });
}

void SnapshotStore::setWarned(std::optional<Date> date) {
  with(Missing::leave, [&] {
    SnapshotStatement(m_database, "DELETE FROM warnings").step();
    if (date) SnapshotStatement(m_database, "INSERT INTO warnings VALUES(?)").bind(referenceSeconds(*date)).step();
    return true;
  });
}

std::vector<std::string> SnapshotStore::takeNotices() {
  const std::lock_guard lock(m_mutex);
  return std::exchange(m_notices, {});
}

}  // namespace orvane
