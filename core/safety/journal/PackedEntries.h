#pragma once

#include "core/base/values/Uuid.h"
#include "core/safety/records/JournalEntry.h"

#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace orvane {

// Journal entries in little memory, found by number and by identifier: entries share their folders, and an item mostly
// keeps its name.
class PackedEntries {
 public:
  using Number = std::uint32_t;

  PackedEntries();
  ~PackedEntries();
  PackedEntries(PackedEntries&&) noexcept;
  PackedEntries& operator=(PackedEntries&&) noexcept;

  [[nodiscard]] std::size_t size() const noexcept { return m_entries.size(); }
  // Counted from zero; absent where an entry with the identifier is there already.
  std::optional<Number> add(const JournalEntry& entry);
  // Takes the place of the entry with this number, which has the same identifier.
  void replace(Number number, const JournalEntry& entry);
  [[nodiscard]] std::optional<Number> find(const Uuid& id) const;

  [[nodiscard]] JournalEntry at(Number number) const;
  [[nodiscard]] JournalAction actionOf(Number number) const { return m_entries[number].action; }
  [[nodiscard]] Date timestampOf(Number number) const { return m_entries[number].timestamp; }
  [[nodiscard]] std::int64_t fileSizeOf(Number number) const { return m_entries[number].fileSize; }

 private:
  // A path is its folder, slash included, and what follows it.
  struct Packed {
    Uuid id;
    Date timestamp;
    std::int64_t fileSize = 0;
    const char* text = nullptr;  // of both names, where they differ, and of the checksum, one after the other
    std::uint32_t run = 0;
    std::uint32_t originalFolder = 0;
    std::uint32_t trashedFolder = 0;
    std::uint32_t originalLength = 0;
    std::uint32_t trashedLength = 0;
    std::uint32_t checksumLength = 0;
    JournalAction action = JournalAction::trashed;
  };
  // Texts that are there once each, by number.
  class Folders;
  // Pieces of text that stay where they are.
  class Texts;
  // Numbers of entries by their identifier.
  class Index;

  [[nodiscard]] Packed packed(const JournalEntry& entry);
  std::uint32_t runNumber(const Uuid& runId);

  std::deque<Packed> m_entries;
  std::vector<Uuid> m_runs;
  std::unordered_map<Uuid, std::uint32_t> m_runNumbers;
  std::unique_ptr<Folders> m_folders;
  std::unique_ptr<Texts> m_texts;
  std::unique_ptr<Index> m_index;
};

}  // namespace orvane
