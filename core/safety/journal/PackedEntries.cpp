#include "core/safety/journal/PackedEntries.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <string>
#include <utility>

namespace orvane {
namespace {

// Instead of a length.
constexpr std::uint32_t sameName = 0xFFFFFFFF;
constexpr std::uint32_t noChecksum = 0xFFFFFFFF;

constexpr std::size_t packedBlockBytes = 256 * 1024;

std::pair<std::string_view, std::string_view> splitAfterFolder(const FileUrl& url) {
  const std::string_view path = url.path();
  const auto slash = path.rfind('/');
  const auto length = slash == std::string_view::npos ? 0 : slash + 1;
  return {path.substr(0, length), path.substr(length)};
}

std::uint32_t lengthOf(std::string_view text) {
  return static_cast<std::uint32_t>(text.size());
}

FileUrl joined(std::string_view folder, std::string_view name) {
  std::string path;
  path.reserve(folder.size() + name.size());
  path.append(folder).append(name);
  return FileUrl(std::move(path));
}

}  // namespace

class PackedEntries::Folders {
 public:
  std::uint32_t numberOf(std::string_view folder) {
    // Neighbours mostly share theirs.
    for (const auto recent : m_recent) {
      if (recent < m_texts.size() && m_texts[recent] == folder) return recent;
    }
    auto found = m_numbers.find(folder);
    if (found == m_numbers.end()) {
      m_texts.emplace_back(folder);
      found = m_numbers.emplace(m_texts.back(), static_cast<std::uint32_t>(m_texts.size() - 1)).first;
    }
    m_recent[m_next++ % m_recent.size()] = found->second;
    return found->second;
  }
  [[nodiscard]] std::string_view text(std::uint32_t number) const { return m_texts[number]; }

 private:
  std::deque<std::string> m_texts;
  std::unordered_map<std::string_view, std::uint32_t> m_numbers;
  std::array<std::uint32_t, 2> m_recent{};
  std::size_t m_next = 0;
};

class PackedEntries::Texts {
 public:
  char* reserve(std::size_t length) {
    if (length > m_free) {
      m_free = std::max(length, packedBlockBytes);
      m_blocks.push_back(std::make_unique_for_overwrite<char[]>(m_free));
      m_place = m_blocks.back().get();
    }
    m_free -= length;
    return std::exchange(m_place, m_place + length);
  }

 private:
  std::vector<std::unique_ptr<char[]>> m_blocks;
  char* m_place = nullptr;
  std::size_t m_free = 0;
};

// Open addressing with linear probing, at most three quarters full: a sixth of the memory of a map of the standard
// library.
class PackedEntries::Index {
 public:
  // The place of the entry with the identifier, or the free one where it belongs.
  [[nodiscard]] Number& place(const std::deque<Packed>& entries, const Uuid& id) {
    if (4 * (entries.size() + 1) > 3 * m_places.size()) grow(entries);
    return m_places[slotOf(entries, id)];
  }
  [[nodiscard]] Number find(const std::deque<Packed>& entries, const Uuid& id) const {
    return m_places.empty() ? none : m_places[slotOf(entries, id)];
  }
  static constexpr Number none = 0xFFFFFFFF;

 private:
  [[nodiscard]] std::size_t slotOf(const std::deque<Packed>& entries, const Uuid& id) const {
    const std::size_t mask = m_places.size() - 1;
    // The best bits of the product are the upper ones.
    auto slot = (std::hash<Uuid>{}(id)*0x9E3779B97F4A7C15ULL >> 20) & mask;
    while (m_places[slot] != none && entries[m_places[slot]].id != id) slot = (slot + 1) & mask;
    return slot;
  }
  void grow(const std::deque<Packed>& entries) {
    m_places.assign(std::max<std::size_t>(64, 2 * m_places.size()), none);
    for (std::size_t i = 0; i < entries.size(); ++i) m_places[slotOf(entries, entries[i].id)] = static_cast<Number>(i);
  }

  std::vector<Number> m_places;
};

PackedEntries::PackedEntries()
    : m_folders(std::make_unique<Folders>()), m_texts(std::make_unique<Texts>()), m_index(std::make_unique<Index>()) {}
PackedEntries::~PackedEntries() = default;
PackedEntries::PackedEntries(PackedEntries&&) noexcept = default;
PackedEntries& PackedEntries::operator=(PackedEntries&&) noexcept = default;

std::optional<PackedEntries::Number> PackedEntries::add(const JournalEntry& entry) {
  auto& place = m_index->place(m_entries, entry.id);
  if (place != Index::none) return std::nullopt;
  place = static_cast<Number>(m_entries.size());
  m_entries.push_back(packed(entry));
  return place;
}

void PackedEntries::replace(Number number, const JournalEntry& entry) {
  m_entries[number] = packed(entry);
}

std::optional<PackedEntries::Number> PackedEntries::find(const Uuid& id) const {
  const auto number = m_index->find(m_entries, id);
  return number == Index::none ? std::nullopt : std::optional(number);
}

PackedEntries::Packed PackedEntries::packed(const JournalEntry& entry) {
  const auto [originalFolder, originalName] = splitAfterFolder(entry.originalURL);
  const auto [trashedFolder, trashedName] = splitAfterFolder(entry.trashedURL);
  const bool isSame = originalName == trashedName;
  const std::string_view checksum = entry.checksum ? std::string_view(*entry.checksum) : std::string_view();
  char* const text = m_texts->reserve(originalName.size() + (isSame ? 0 : trashedName.size()) + checksum.size());
  char* place = text;
  for (const auto piece : {originalName, isSame ? std::string_view() : trashedName, checksum}) {
    place = std::copy(piece.begin(), piece.end(), place);
  }
  return {entry.id,
          entry.timestamp,
          entry.fileSize,
          text,
          runNumber(entry.runId),
          m_folders->numberOf(originalFolder),
          m_folders->numberOf(trashedFolder),
          lengthOf(originalName),
          isSame ? sameName : lengthOf(trashedName),
          entry.checksum ? lengthOf(checksum) : noChecksum,
          entry.action};
}

std::uint32_t PackedEntries::runNumber(const Uuid& runId) {
  if (!m_runs.empty() && m_runs.back() == runId) return static_cast<std::uint32_t>(m_runs.size() - 1);
  const auto [found, isNew] = m_runNumbers.emplace(runId, static_cast<std::uint32_t>(m_runs.size()));
  if (isNew) m_runs.push_back(runId);
  return found->second;
}

JournalEntry PackedEntries::at(Number number) const {
  const auto& packed = m_entries[number];
  const std::string_view originalName(packed.text, packed.originalLength);
  const char* place = packed.text + packed.originalLength;
  std::string_view trashedName = originalName;
  if (packed.trashedLength != sameName) {
    trashedName = {place, packed.trashedLength};
    place += packed.trashedLength;
  }
  JournalEntry entry{packed.id,
                     m_runs[packed.run],
                     packed.timestamp,
                     joined(m_folders->text(packed.originalFolder), originalName),
                     joined(m_folders->text(packed.trashedFolder), trashedName),
                     packed.fileSize,
                     std::nullopt,
                     packed.action};
  if (packed.checksumLength != noChecksum) entry.checksum.emplace(place, packed.checksumLength);
  return entry;
}

}  // namespace orvane
