#include "core/map/records/StorageMap.h"

#include "core/base/files/PathText.h"

#include <algorithm>
#include <limits>

namespace orvane {
namespace {

std::int64_t sumAtMost(std::int64_t left, std::int64_t right) noexcept {
  std::int64_t sum = 0;
  return __builtin_add_overflow(left, right, &sum) ? std::numeric_limits<std::int64_t>::max() : sum;
}

bool isLarger(const StorageMap::File& left, const StorageMap::File& right) noexcept {
  return left.diskBytes > right.diskBytes;
}

}  // namespace

MapSum& MapSum::operator+=(const MapSum& other) noexcept {
  diskBytes = sumAtMost(diskBytes, other.diskBytes);
  logicalBytes = sumAtMost(logicalBytes, other.logicalBytes);
  files = sumAtMost(files, other.files);
  return *this;
}

void StorageMap::Folder::addToSlice(const MapTraits& traits, const MapSum& sum) {
  const auto slice = std::find_if(slices.begin(), slices.end(), [&](const Slice& s) { return s.traits == traits; });
  if (slice == slices.end()) {
    slices.push_back({traits, sum});
  } else {
    slice->sum += sum;
  }
}

// The files are a heap with the smallest at its front; names of files that fell out stay until half of the text is
// theirs.
void StorageMap::Folder::addFile(std::string_view fileName, const MapTraits& traits, const MapSum& sum,
                                 std::size_t filesKept) {
  addToSlice(traits, sum);
  const bool isFull = files.size() >= filesKept;
  if (filesKept == 0 || (isFull && files.front().diskBytes >= sum.diskBytes)) return;
  if (fileNames.size() + fileName.size() >= std::numeric_limits<std::uint32_t>::max()) return;
  if (isFull) {
    std::pop_heap(files.begin(), files.end(), isLarger);
    files.pop_back();
    std::size_t used = 0;
    for (const auto& file : files) used += nameOf(file).size() + 1;
    if (fileNames.size() > 2 * used + 256) {
      std::string names;
      for (auto& file : files) {
        const auto start = static_cast<std::uint32_t>(names.size());
        names.append(nameOf(file)).push_back('\0');
        file.nameStart = start;
      }
      fileNames = std::move(names);
    }
  }
  files.push_back({static_cast<std::uint32_t>(fileNames.size()), traits, sum.diskBytes, sum.logicalBytes});
  fileNames.append(fileName).push_back('\0');
  if (filesKept < std::numeric_limits<std::size_t>::max()) std::push_heap(files.begin(), files.end(), isLarger);
}

StorageMap::StorageMap(std::deque<Folder> folders, std::vector<LinkedName> linkedNames)
    : m_folders(std::move(folders)), m_linkedNames(std::move(linkedNames)) {
  if (m_folders.empty()) m_folders.emplace_back();
  addUp();
  linkChildren();
}

void StorageMap::addUp() {
  m_unreadable = 0;
  for (auto& folder : m_folders) {
    folder.total = {folder.ownDiskBytes, folder.ownLogicalBytes, 0};
    folder.reclaimableBytes = 0;
    for (const auto& slice : folder.slices) {
      folder.total += slice.sum;
      auto& kindBytes = m_kindBytes[static_cast<std::size_t>(slice.traits.kind)];
      kindBytes = sumAtMost(kindBytes, slice.sum.diskBytes);
      auto& categoryBytes = m_categoryBytes[static_cast<std::size_t>(slice.traits.category)];
      categoryBytes = sumAtMost(categoryBytes, slice.sum.diskBytes);
      if (slice.traits.isReclaimable) {
        folder.reclaimableBytes = sumAtMost(folder.reclaimableBytes, slice.sum.diskBytes);
      }
    }
    if (folder.state == MapState::unreadable) ++m_unreadable;
  }
  for (auto index = m_folders.size(); index-- > 1;) {
    const auto& folder = m_folders[index];
    auto& parent = m_folders[folder.parent];
    parent.total += folder.total;
    parent.reclaimableBytes = sumAtMost(parent.reclaimableBytes, folder.reclaimableBytes);
  }
  for (auto& folder : m_folders) {
    if (folder.state != MapState::yours || folder.reclaimableBytes == 0) continue;
    if (folder.reclaimableBytes >= folder.total.diskBytes / 2) folder.state = MapState::reclaimable;
  }
}

std::vector<StorageMap::Share> StorageMap::mostReclaimable(std::size_t count) const {
  std::vector<Share> shares;
  std::vector<Index> waiting{top};
  while (!waiting.empty()) {
    const auto index = waiting.back();
    waiting.pop_back();
    const auto& folder = m_folders[index];
    if (folder.reclaimableBytes == 0) continue;
    Share share{index, folder.reclaimableBytes};
    if (folder.state != MapState::reclaimable || index == top) {
      const auto inside = children(index);
      waiting.insert(waiting.end(), inside.begin(), inside.end());
      for (const auto child : inside) share.bytes -= m_folders[child].reclaimableBytes;
    }
    if (share.bytes > 0) shares.push_back(share);
  }
  const auto isMore = [](const Share& one, const Share& other) {
    return one.bytes != other.bytes ? one.bytes > other.bytes : one.folder < other.folder;
  };
  count = std::min(count, shares.size());
  std::partial_sort(shares.begin(), shares.begin() + static_cast<std::ptrdiff_t>(count), shares.end(), isMore);
  shares.resize(count);
  return shares;
}

std::int64_t StorageMap::diskBytesOf(MapKind kind) const noexcept {
  return m_kindBytes[static_cast<std::size_t>(kind)];
}

std::int64_t StorageMap::diskBytesOf(ScanCategory category) const noexcept {
  return m_categoryBytes[static_cast<std::size_t>(category)];
}

void StorageMap::linkChildren() {
  m_childStart.assign(m_folders.size() + 1, 0);
  for (std::size_t index = 1; index < m_folders.size(); ++index) ++m_childStart[m_folders[index].parent + 1];
  for (std::size_t index = 1; index < m_childStart.size(); ++index) m_childStart[index] += m_childStart[index - 1];
  m_children.resize(m_folders.size() - 1);
  auto next = m_childStart;
  for (std::size_t index = 1; index < m_folders.size(); ++index) {
    m_children[next[m_folders[index].parent]++] = static_cast<Index>(index);
  }
}

std::span<const StorageMap::Index> StorageMap::children(Index index) const noexcept {
  return std::span(m_children).subspan(m_childStart[index], m_childStart[index + 1] - m_childStart[index]);
}

std::span<const StorageMap::LinkedName> StorageMap::linkedNames(Index folder) const {
  const auto first = std::ranges::lower_bound(m_linkedNames, folder, {}, &LinkedName::folder);
  const auto end = std::ranges::upper_bound(m_linkedNames, folder, {}, &LinkedName::folder);
  return {first, end};
}

std::string StorageMap::pathOf(Index index) const {
  std::vector<Index> line;
  for (; index != top; index = m_folders[index].parent) line.push_back(index);
  std::string path = rootPath();
  for (auto next = line.rbegin(); next != line.rend(); ++next) {
    if (!path.ends_with('/')) path += '/';
    path += m_folders[*next].name;
  }
  return path;
}

std::optional<StorageMap::Index> StorageMap::find(std::string_view path) const {
  if (!isSameOrInside(path, rootPath())) return std::nullopt;
  Index index = top;
  path.remove_prefix(rootPath().size());
  while (!path.empty()) {
    if (path.front() == '/') {
      path.remove_prefix(1);
      continue;
    }
    const auto name = path.substr(0, path.find('/'));
    const auto inside = children(index);
    const auto next =
        std::find_if(inside.begin(), inside.end(), [&](Index child) { return m_folders[child].name == name; });
    if (next == inside.end()) return std::nullopt;
    index = *next;
    path.remove_prefix(name.size());
  }
  return index;
}

std::vector<MapSum> StorageMap::totals(const MapFilter& filter) const {
  std::vector<MapSum> sums(m_folders.size());
  for (std::size_t index = 0; index < m_folders.size(); ++index) {
    const auto& folder = m_folders[index];
    if (filter.isOff()) {
      sums[index] = folder.total;
      continue;
    }
    for (const auto& slice : folder.slices) {
      if (filter.admits(slice.traits)) sums[index] += slice.sum;
    }
  }
  if (filter.isOff()) return sums;
  for (auto index = sums.size(); index-- > 1;) sums[m_folders[index].parent] += sums[index];
  return sums;
}

}  // namespace orvane
