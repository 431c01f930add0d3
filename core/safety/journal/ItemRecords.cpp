#include "core/safety/journal/ItemRecords.h"

#include "core/base/files/AtomicFile.h"
#include "core/base/files/FileDescriptor.h"
#include "core/base/files/PathText.h"

#include <fmt/format.h>
#include <sys/stat.h>

#include <charconv>
#include <cstdint>
#include <iterator>
#include <string_view>
#include <system_error>
#include <unordered_set>
#include <utility>

namespace orvane {
namespace {

constexpr std::string_view fileName = "undo_journal.items";
constexpr std::size_t blockBytes = 256 * 1024;
constexpr std::int64_t maxFileBytes = std::int64_t{8} * 1024 * 1024 * 1024;  // of ten million entries and more
constexpr std::size_t maxLineBytes = 4UL * 1024 * 1024;
constexpr std::size_t uuidLength = 36;

// The number that the text begins with, taken off it with the space behind it.
template <typename Number>
std::optional<Number> takeNumber(std::string_view& text) {
  Number number{};
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  const auto length = static_cast<std::size_t>(end - text.data());
  if (error != std::errc() || length == text.size() || *end != ' ') return std::nullopt;
  text.remove_prefix(length + 1);
  return number;
}

constexpr std::string_view noSource = "-";
constexpr std::string_view lockedEnding = " locked";

// "ENTRY inode size seconds nanoseconds URL", the URL perhaps only a hyphen, with " locked" behind it or without.
std::optional<ItemRecord> recordFrom(const Uuid& entryId, std::string_view line) {
  const auto inode = takeNumber<std::uint64_t>(line);
  const auto size = takeNumber<std::int64_t>(line);
  const auto seconds = takeNumber<std::int64_t>(line);
  const auto nanoseconds = takeNumber<std::int64_t>(line);
  const bool isLocked = line.ends_with(lockedEnding);
  if (isLocked) line.remove_suffix(lockedEnding.size());
  auto source = FileUrl::fromAbsoluteString(line);
  const bool isWhole = inode && size && seconds && nanoseconds && (source || line == noSource);
  if (!isWhole) return std::nullopt;
  return ItemRecord{entryId, {0, *inode, *size, {*seconds, *nanoseconds}}, std::move(source), isLocked};
}

}  // namespace

bool ItemRecord::describes(const FileStatus& status) const noexcept {
  const bool isSameTime = identity.modified == status.modified;
  if (status.type != FileType::directory) return isSameTime && identity.size == status.size;
  return isSameTime || identity.inode == 0 || identity.inode == status.inode;
}

ItemRecords::ItemRecords(const std::string& folder) : m_path(joinPath(folder, fileName)) {}

void ItemRecords::append(std::span<const ItemRecord> records) const {
  if (records.empty()) return;
  // The last line may have been cut short.
  std::string text = "\n";
  for (const auto& [entryId, identity, source, isLocked] : records) {
    fmt::format_to(std::back_inserter(text), "{} {} {} {} {} ", entryId.toString(), identity.inode, identity.size,
                   identity.modified.seconds, identity.modified.nanoseconds);
    if (source) {
      source->appendAbsoluteString(text);
    } else {
      text += noSource;
    }
    if (isLocked) text += lockedEnding;
    text += '\n';
  }
  appendDurably(m_path, text);
}

std::unordered_map<Uuid, ItemRecord> ItemRecords::find(std::span<const Uuid> entryIds) const {
  std::unordered_map<Uuid, ItemRecord> found;
  FileDescriptor file;
  try {
    file = openRegularFile(m_path);
  } catch (const std::system_error& error) {
    if (error.code() == std::errc::no_such_file_or_directory) return found;
    throw;
  }
  struct stat status {};
  if (::fstat(file.get(), &status) != 0) throwErrno();
  if (status.st_size > maxFileBytes) throwErrno(EFBIG);
  const std::unordered_set<Uuid> wanted(entryIds.begin(), entryIds.end());
  std::string text;
  std::string block(blockBytes, '\0');
  while (const auto count = readSome(file.get(), block)) {
    text.append(block, 0, count);
    std::size_t start = 0;
    for (auto end = text.find('\n'); end != std::string::npos; start = end + 1, end = text.find('\n', start)) {
      const auto line = std::string_view(text).substr(start, end - start);
      const auto id = Uuid::parse(line.substr(0, uuidLength));
      if (!id || line.size() <= uuidLength || !wanted.contains(*id)) continue;
      if (auto record = recordFrom(*id, line.substr(uuidLength + 1))) found.insert_or_assign(*id, *std::move(record));
    }
    text.erase(0, start);
    if (text.size() > maxLineBytes) text.clear();
  }
  return found;
}

}  // namespace orvane
