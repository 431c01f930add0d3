#include "core/map/NcduFile.h"

#include "core/base/text/Json.h"
#include "core/map/FileKinds.h"
#include "core/map/MapWalk.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <deque>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace orvane {
namespace {

using Index = StorageMap::Index;
using Kind = JsonPieces::Kind;

void appendName(std::string& text, std::string_view name) {
  text += '"';
  for (const char c : name) {
    if (c == '"' || c == '\\') {
      text += '\\';
      text += c;
    } else if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F) {
      text += fmt::format("\\u{:04x}", static_cast<unsigned char>(c));
    } else {
      text += c;
    }
  }
  text += '"';
}

void appendEntry(std::string& text, std::string_view name, std::int64_t diskBytes, std::int64_t logicalBytes,
                 std::string_view rest = {}) {
  text += "{\"name\":";
  appendName(text, name);
  if (logicalBytes > 0) text += fmt::format(",\"asize\":{}", logicalBytes);
  if (diskBytes > 0) text += fmt::format(",\"dsize\":{}", diskBytes);
  text += rest;
  text += '}';
}

std::string_view markOf(MapState state) {
  if (state == MapState::unreadable) return ",\"read_error\":true";
  if (state == MapState::otherFileSystem) return ",\"excluded\":\"otherfs\"";
  return {};
}

void appendFiles(std::string& text, const StorageMap& map, Index index) {
  const auto& folder = map.folder(index);
  const auto linked = map.linkedNames(index);
  for (const auto& name : linked) {
    text += ",\n";
    appendEntry(text, name.name, name.sum.diskBytes, name.sum.logicalBytes,
                fmt::format(",\"ino\":{},\"hlnkc\":true", name.inode));
  }
  const auto isWritten = [&](std::string_view name) {
    return std::ranges::binary_search(linked, name, {}, [](const auto& one) -> std::string_view { return one.name; });
  };
  MapSum rest;
  for (const auto& slice : folder.slices) rest += slice.sum;
  for (const auto& file : folder.files) {
    if (linked.empty() || !isWritten(folder.nameOf(file))) {
      text += ",\n";
      appendEntry(text, folder.nameOf(file), file.diskBytes, file.logicalBytes);
    }
    rest.diskBytes -= file.diskBytes;
    rest.logicalBytes -= file.logicalBytes;
    --rest.files;
  }
  if (rest.files <= 0) return;
  text += ",\n";
  appendEntry(text, fmt::format("({} other files)", rest.files), rest.diskBytes, rest.logicalBytes);
}

class NcduReader {
 public:
  NcduReader(const JsonPieces::Source& source, const SystemProfile& profile, Date now)
      : m_pieces(source), m_kinds(profile), m_now(unixSeconds(now)) {}

  StorageMap read() {
    if (m_pieces.next().kind != Kind::openArray) refuse();
    if (const auto major = m_pieces.next(); major.kind != Kind::number || major.number != 1) {
      throw JsonError("the file is not of a version of ncdu's form that Orvane reads");
    }
    if (m_pieces.next().kind != Kind::number) refuse();
    const auto metadata = m_pieces.next();
    if (metadata.kind != Kind::openObject) refuse();
    m_pieces.skip(metadata);
    if (m_pieces.next().kind != Kind::openArray) refuse();
    readTree();
    while (m_pieces.next().kind != Kind::end) continue;
    return StorageMap(std::move(m_folders));
  }

 private:
  struct Entry {
    std::string name;
    MapSum sum{0, 0, 1};
    std::int64_t device = 0;
    std::int64_t inode = 0;
    std::int64_t modified = -1;  // seconds since 1970
    MapState state = MapState::yours;
    bool hasSeveralNames = false;
  };

  [[noreturn]] static void refuse() { throw JsonError("the file is not in ncdu's form"); }

  // From behind the bracket of the top folder to the bracket that closes it.
  void readTree() {
    std::vector<std::pair<Index, std::int64_t>> open;  // with the device, which folders hand down
    addFolder(StorageMap::noFolder, readEntry(m_pieces.next(), 0), open);
    while (!open.empty()) {
      const auto piece = m_pieces.next();
      const auto [parent, device] = open.back();
      if (piece.kind == Kind::closeArray) {
        open.pop_back();
      } else if (piece.kind == Kind::openArray) {
        addFolder(parent, readEntry(m_pieces.next(), device), open);
      } else {
        addFile(parent, readEntry(piece, device));
      }
    }
  }

  void addFolder(Index parent, Entry entry, std::vector<std::pair<Index, std::int64_t>>& open) {
    if (m_folders.size() >= StorageMap::noFolder - 1) refuse();
    if (parent != StorageMap::noFolder && entry.name.find('/') != std::string::npos) refuse();
    auto& folder = m_folders.emplace_back();
    folder.parent = parent;
    folder.name = std::move(entry.name);
    folder.state = entry.state;
    folder.ownDiskBytes = entry.sum.diskBytes;
    folder.ownLogicalBytes = entry.sum.logicalBytes;
    open.emplace_back(static_cast<Index>(m_folders.size() - 1), entry.device);
  }

  void addFile(Index parent, const Entry& entry) {
    // Another file system stands in the list as a file.
    if (entry.state == MapState::otherFileSystem) {
      std::vector<std::pair<Index, std::int64_t>> closed;
      return addFolder(parent, entry, closed);
    }
    if (entry.hasSeveralNames && !m_linked.emplace(entry.device, entry.inode).second) return;
    MapTraits traits;
    traits.kind = m_kinds.kindOf(entry.name);
    if (entry.modified >= 0) traits.age = ageAfter((m_now - static_cast<double>(entry.modified)) / secondsOfADay);
    m_folders[parent].addFile(entry.name, traits, entry.sum, MapWalk::someFiles);
  }

  Entry readEntry(const JsonPieces::Piece& first, std::int64_t device) {
    if (first.kind != Kind::openObject) refuse();
    Entry entry;
    entry.device = device;
    for (auto key = m_pieces.next(); key.kind == Kind::key; key = m_pieces.next()) {
      const auto value = m_pieces.next();
      take(entry, key.text, value);
      m_pieces.skip(value);
    }
    if (entry.name.empty() || entry.name.find('\0') != std::string::npos) refuse();
    return entry;
  }

  static void take(Entry& entry, std::string_view key, const JsonPieces::Piece& value) {
    const auto size = std::max<std::int64_t>(value.number, 0);
    const bool isTrue = value.text == "true";
    if (key == "name") entry.name = value.text;
    if (key == "dsize") entry.sum.diskBytes = size;
    if (key == "asize") entry.sum.logicalBytes = size;
    if (key == "dev") entry.device = value.number;
    if (key == "ino") entry.inode = value.number;
    if (key == "mtime") entry.modified = size;
    if ((key == "hlnkc" && isTrue) || (key == "nlink" && value.number > 1)) entry.hasSeveralNames = true;
    if (key == "read_error" && isTrue) entry.state = MapState::unreadable;
    if (key == "excluded" && value.kind == Kind::text && value.text != "pattern") {
      entry.state = MapState::otherFileSystem;
    }
  }

  JsonPieces m_pieces;
  FileKinds m_kinds;
  double m_now;
  std::deque<StorageMap::Folder> m_folders;
  std::set<std::pair<std::int64_t, std::int64_t>> m_linked;
};

}  // namespace

void writeNcdu(const StorageMap& map, Date now, const std::function<void(std::string_view)>& write) {
  constexpr std::size_t flushBytes = 65536;
  std::string text = fmt::format("[1,2,{{\"progname\":\"orvane\",\"progver\":\"1\",\"timestamp\":{}}}",
                                 static_cast<std::int64_t>(std::floor(unixSeconds(now))));
  struct Open {
    Index folder;
    std::size_t nextChild = 0;
  };
  std::vector<Open> open;
  const auto begin = [&](Index index) {
    const auto& folder = map.folder(index);
    text += ",\n[";
    appendEntry(text, folder.name, folder.ownDiskBytes, folder.ownLogicalBytes, markOf(folder.state));
    appendFiles(text, map, index);
    open.push_back({index});
  };
  begin(StorageMap::top);
  while (!open.empty()) {
    const auto children = map.children(open.back().folder);
    if (open.back().nextChild < children.size()) {
      begin(children[open.back().nextChild++]);
    } else {
      text += ']';
      open.pop_back();
    }
    if (text.size() < flushBytes) continue;
    write(text);
    text.clear();
  }
  text += "]\n";
  write(text);
}

StorageMap readNcdu(const JsonPieces::Source& source, const SystemProfile& profile, Date now) {
  return NcduReader(source, profile, now).read();
}

}  // namespace orvane
