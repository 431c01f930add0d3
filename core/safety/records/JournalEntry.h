#pragma once

#include "core/base/files/FileUrl.h"
#include "core/base/text/JsonFwd.h"
#include "core/base/values/Date.h"
#include "core/base/values/EnumTable.h"
#include "core/base/values/Uuid.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace orvane {

// The action recorded for an item: moved to the Trash, brought back, or moved to another folder.
enum class JournalAction : std::uint8_t { trashed, restored, moved };

// The case name is also the JSON form.
inline constexpr EnumTable journalActions({
    RawValueRow{JournalAction::trashed, "trashed"},
    RawValueRow{JournalAction::restored, "restored"},
    RawValueRow{JournalAction::moved, "moved"},
});

constexpr std::string_view rawValue(JournalAction action) noexcept {
  return journalActions[action].rawValue;
}

// One recorded move.
struct JournalEntry {
  Uuid id = Uuid::random();
  Uuid runId;
  Date timestamp = ReferenceClock::now();
  FileUrl originalURL;
  FileUrl trashedURL;  // where it went: its place in the Trash, or the destination of a move
  std::int64_t fileSize = 0;
  std::optional<std::string> checksum;  // content digest, when the caller had one
  JournalAction action = JournalAction::trashed;

  [[nodiscard]] std::string formattedSize() const;
  bool operator==(const JournalEntry&) const = default;

  // The given form of the record, keys in field order; "checksum" is left out when absent.
  [[nodiscard]] Json toJson() const;
  // Appends toJson() as compact text.
  void appendJsonText(std::string& text) const;
  // Throws JsonError.
  static JournalEntry fromJson(const Json& json);
};

// One cleanup run as the history lists it.
struct CleanupRunSummary {
  Uuid runId;
  Date timestamp;  // of the run's first entry
  std::int64_t itemCount = 0;
  std::int64_t totalBytes = 0;
  bool isRestored = false;

  [[nodiscard]] const Uuid& id() const noexcept { return runId; }
  [[nodiscard]] std::string formattedSize() const;
  [[nodiscard]] std::string formattedDate() const;
  bool operator==(const CleanupRunSummary&) const = default;

  [[nodiscard]] Json toJson() const;
  // toJson() as compact text.
  [[nodiscard]] std::string jsonText() const;
  // Throws JsonError.
  static CleanupRunSummary fromJson(const Json& json);
};

}  // namespace orvane

template <>
struct std::hash<orvane::JournalEntry> {
  std::size_t operator()(const orvane::JournalEntry& entry) const noexcept;
};
