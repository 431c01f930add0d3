#include "core/map/SnapshotForm.h"

#include "core/base/files/PathText.h"

#include <algorithm>
#include <optional>
#include <vector>

namespace orvane {
namespace {

using Index = StorageMap::Index;

void appendNumber(std::string& text, std::uint64_t number) {
  for (; number >= 0x80; number >>= 7) text.push_back(static_cast<char>((number & 0x7F) | 0x80));
  text.push_back(static_cast<char>(number));
}

std::optional<std::uint64_t> takeNumber(std::string_view& text) {
  std::uint64_t number = 0;
  for (int shift = 0; shift < 63 && !text.empty(); shift += 7) {
    const auto byte = static_cast<unsigned char>(text.front());
    text.remove_prefix(1);
    number |= static_cast<std::uint64_t>(byte & 0x7F) << shift;
    if (byte < 0x80) return number;
  }
  return std::nullopt;
}

// How deep a path lies below the root; absent where it does not.
std::size_t depthBelow(std::string_view path, std::string_view root) {
  const auto rest = path.substr(std::min(path.size(), root == "/" ? 0 : root.size()));
  return path == root ? 0 : static_cast<std::size_t>(std::count(rest.begin(), rest.end(), '/'));
}

// Folders of one walk by size; a parent is never smaller and comes first among equals.
std::vector<Index> largest(const StorageMap& map, std::int64_t& left) {
  std::vector<Index> order(map.folderCount());
  for (std::size_t index = 0; index < order.size(); ++index) order[index] = static_cast<Index>(index);
  const auto isBefore = [&](Index one, Index other) {
    const auto oneBytes = map.folder(one).total.diskBytes;
    const auto otherBytes = map.folder(other).total.diskBytes;
    return oneBytes != otherBytes ? oneBytes > otherBytes : one < other;
  };
  if (order.size() > foldersRemembered) {
    std::nth_element(order.begin(), order.begin() + foldersRemembered, order.end(), isBefore);
    left = map.folder(order[foldersRemembered]).total.diskBytes;
    order.resize(foldersRemembered);
  }
  std::sort(order.begin(), order.end());
  return order;
}

}  // namespace

MapSnapshot snapshotOf(const StorageMap& map, Date taken) {
  MapSnapshot snapshot{.taken = taken, .root = map.rootPath(), .total = map.folder(StorageMap::top).total};
  for (const auto index : largest(map, snapshot.left)) {
    snapshot.folders.emplace(map.pathOf(index), map.folder(index).total.diskBytes);
  }
  for (const auto kind : allMapKinds) {
    if (const auto bytes = map.diskBytesOf(kind); bytes > 0) {
      snapshot.kinds.emplace(mapKinds[kind].rawValue, bytes);
    }
  }
  for (const auto category : allScanCategories) {
    if (const auto bytes = map.diskBytesOf(category); bytes > 0) {
      snapshot.categories.emplace(rawValue(category), bytes);
    }
  }
  return snapshot;
}

std::string packedFolders(const MapSnapshot& snapshot) {
  // By path, with "/" before every other byte, so that a folder comes right before those inside.
  std::vector<const std::pair<const std::string, std::int64_t>*> rows;
  for (const auto& row : snapshot.folders) rows.push_back(&row);
  std::sort(rows.begin(), rows.end(), [](const auto* one, const auto* other) {
    return std::lexicographical_compare(one->first.begin(), one->first.end(), other->first.begin(), other->first.end(),
                                        [](char left, char right) {
                                          return (left == '/' ? 0 : static_cast<unsigned char>(left)) <
                                                 (right == '/' ? 0 : static_cast<unsigned char>(right));
                                        });
  });
  std::string packed;
  for (const auto* row : rows) {
    if (row->first == snapshot.root) continue;
    const auto name = lastComponent(row->first);
    appendNumber(packed, depthBelow(row->first, snapshot.root));
    appendNumber(packed, name.size());
    packed.append(name);
    appendNumber(packed, static_cast<std::uint64_t>(std::max<std::int64_t>(row->second, 0)));
  }
  return packed;
}

bool unpackFolders(std::string_view packed, MapSnapshot& snapshot) {
  std::map<std::string, std::int64_t> folders{{snapshot.root, snapshot.total.diskBytes}};
  std::vector<std::string> line{snapshot.root};
  while (!packed.empty()) {
    const auto depth = takeNumber(packed);
    const auto length = depth ? takeNumber(packed) : std::nullopt;
    if (!length || *depth == 0 || *depth > line.size() || *length > packed.size() || *length == 0) return false;
    line.resize(*depth);
    line.push_back(joinPath(line.back(), packed.substr(0, *length)));
    packed.remove_prefix(*length);
    const auto bytes = takeNumber(packed);
    if (!bytes || folders.size() > 4 * foldersRemembered) return false;
    folders.emplace(line.back(), static_cast<std::int64_t>(*bytes));
  }
  snapshot.folders = std::move(folders);
  return true;
}

}  // namespace orvane
