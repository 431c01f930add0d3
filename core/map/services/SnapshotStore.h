#pragma once

#include "core/map/records/MapSnapshot.h"

#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

struct sqlite3;

namespace orvane {

class Preferences;

// The sums of earlier maps, in one SQLite database. Off until the user turns it on: nothing is written before, and
// no file is made by a look. Thinned with every snapshot: daily for a month, weekly for a year, monthly beyond.
class SnapshotStore {
 public:
  static constexpr std::string_view switchKey = "OrvaneMapSnapshots";

  SnapshotStore(std::string path, Preferences& preferences);
  ~SnapshotStore();
  SnapshotStore(const SnapshotStore&) = delete;
  SnapshotStore& operator=(const SnapshotStore&) = delete;
  static SnapshotStore& shared();

  // Absent as long as the user was not asked.
  [[nodiscard]] std::optional<bool> choice() const;
  [[nodiscard]] bool isOn() const { return choice().value_or(false); }
  // Throws std::system_error. Snapshots that are there stay.
  void setOn(bool isOn);

  // Stores one, as of its own date, and thins the others. Nothing while the switch is off.
  void add(const MapSnapshot& snapshot);
  // All of them, oldest first; those from a later date than `now` (the clock was set back) left out.
  [[nodiscard]] std::vector<MapMoment> moments(Date now);
  // Absent where there is none, or it does not decode.
  [[nodiscard]] std::optional<MapSnapshot> read(std::int64_t id);
  // Drops all of them and gives the room back. The switch stays as it is.
  void clear();

  // When the user was last told that the disk is soon full.
  [[nodiscard]] std::optional<Date> warned();
  void setWarned(std::optional<Date> date);

  // The faults of the database since the last call, one line each: it is passed over then.
  [[nodiscard]] std::vector<std::string> takeNotices();

 private:
  enum class Missing : std::uint8_t { make, leave };
  template <typename Work>
  auto with(Missing missing, Work work) -> decltype(work());
  bool open(Missing missing);
  void openFile(Missing missing);
  void prepare();
  void thin(Date now);
  void fail(int code, std::string_view reason);
  void close();

  std::string m_path;
  Preferences& m_preferences;
  std::mutex m_mutex;
  sqlite3* m_database = nullptr;
  std::vector<std::string> m_notices;
};

// Of moments of one root, oldest first, the identifiers of those that thinning drops. `now` is the time of the newest.
[[nodiscard]] std::vector<std::int64_t> momentsToDrop(std::span<const MapMoment> moments, Date now);

}  // namespace orvane
