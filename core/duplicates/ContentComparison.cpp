#include "core/duplicates/ContentComparison.h"

#include "core/duplicates/SearchMonitor.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace orvane {
namespace {

// Two of these fit into the cache that one processor has for itself.
constexpr std::size_t blockSize = 128 * 1024;
// Files that begin alike often end differently.
constexpr std::size_t tailSize = 16 * 1024;

constexpr std::byte zeros[blockSize] = {};

bool isEqual(std::span<const std::byte> left, std::span<const std::byte> right) noexcept {
  return left.data() == right.data() || std::memcmp(left.data(), right.data(), left.size()) == 0;
}

std::size_t lengthAt(std::int64_t offset, std::int64_t size) noexcept {
  return static_cast<std::size_t>(std::min<std::int64_t>(blockSize, size - offset));
}

}  // namespace

ContentComparison::ContentComparison(std::vector<Member> members, std::int64_t size, SearchMonitor& monitor)
    : m_size(size), m_monitor(monitor), m_scratch(std::make_unique_for_overwrite<std::byte[]>(blockSize)) {
  m_classes.emplace_back().members = std::move(members);
}

std::vector<ContentComparison::EqualFiles> ContentComparison::run() {
  auto& members = m_classes.front().members;
  for (auto& member : members) member.file.expectWholeRead();
  // Holes are compared without being read, and a digest cannot skip them: it waits until it is known to be needed.
  const bool anySparse =
      std::any_of(members.begin(), members.end(), [](const Member& member) { return member.file.isSparse(); });
  const auto hashing = anySparse ? Hashing::leaveOut : Hashing::update;
  compareAll(hashing);

  std::vector<EqualFiles> result;
  for (auto& equal : m_classes) {
    std::erase_if(equal.members, [](const Member& member) { return !member.file.isUnchanged(); });
    if (equal.members.size() < 2) continue;
    const auto digest = settledDigest(equal, hashing);
    if (!digest) continue;
    auto& files = result.emplace_back(EqualFiles{*digest, {}});
    for (const auto& member : equal.members) files.indexes.push_back(member.index);
  }
  return m_monitor.isStopped() ? std::vector<EqualFiles>() : result;
}

void ContentComparison::compareAll(Hashing hashing) {
  if (m_size > static_cast<std::int64_t>(blockSize)) {
    split(m_size - static_cast<std::int64_t>(tailSize), tailSize, Hashing::leaveOut);
  }
  for (std::int64_t offset = 0; offset < m_size && !m_classes.empty(); offset += blockSize) {
    if (m_monitor.isStopped()) return;
    split(offset, lengthAt(offset, m_size), hashing);
  }
}

std::optional<Sha256::Digest> ContentComparison::settledDigest(Class& equal, Hashing hashing) {
  if (hashing == Hashing::update) return equal.hash.finish();
  m_settled += m_size;
  return digestOf(equal.members.front().file, m_size, m_monitor);
}

void ContentComparison::split(std::int64_t offset, std::size_t length, Hashing hashing) {
  std::vector<Class> parts;
  parts.reserve(m_classes.size());
  for (auto& whole : m_classes) splitClass(whole, offset, length, parts);
  std::erase_if(parts, [&](Class& part) {
    if (part.block) m_freeBlocks.push_back(std::move(part.block));
    return part.members.size() < 2;
  });
  m_classes = std::move(parts);
  if (hashing == Hashing::leaveOut) return;
  // The blocks that were given back are not written to before the next range.
  for (auto& part : m_classes) {
    part.hash.update(part.bytes);
    const auto bytes = static_cast<std::int64_t>(length * part.members.size());
    m_monitor.settle(0, bytes);
    m_settled += bytes;
  }
}

void ContentComparison::splitClass(Class& whole, std::int64_t offset, std::size_t length, std::vector<Class>& parts) {
  const auto first = parts.size();
  for (auto& member : whole.members) {
    const auto bytes = read(member, offset, length);
    if (bytes.empty()) continue;
    auto part = parts.begin() + static_cast<std::ptrdiff_t>(first);
    while (part != parts.end() && !isEqual(part->bytes, bytes)) ++part;
    if (part == parts.end()) {
      const bool isFirst = parts.size() == first;
      parts.push_back(Class{{}, isFirst ? std::move(whole.hash) : Sha256(parts[first].hash), nullptr, bytes});
      part = std::prev(parts.end());
      if (bytes.data() == m_scratch.get()) part->block = std::exchange(m_scratch, takeBlock());
    }
    part->members.push_back(std::move(member));
  }
}

ContentComparison::Bytes ContentComparison::read(Member& member, std::int64_t offset, std::size_t length) {
  if (member.file.isHole(offset, length)) return Bytes(zeros, length);
  if (member.file.read(offset, {m_scratch.get(), length}) < length) return {};
  return {m_scratch.get(), length};
}

ContentComparison::Block ContentComparison::takeBlock() {
  if (m_freeBlocks.empty()) return std::make_unique_for_overwrite<std::byte[]>(blockSize);
  auto block = std::move(m_freeBlocks.back());
  m_freeBlocks.pop_back();
  return block;
}

std::optional<Sha256::Digest> ContentComparison::digestOf(ContentFile& file, std::int64_t size,
                                                          SearchMonitor& monitor) {
  Sha256 hash;
  const auto block = std::make_unique_for_overwrite<std::byte[]>(blockSize);
  for (std::int64_t offset = 0; offset < size; offset += blockSize) {
    if (monitor.isStopped()) return std::nullopt;
    const auto length = lengthAt(offset, size);
    monitor.settle(0, static_cast<std::int64_t>(length));
    if (file.isHole(offset, length)) {
      hash.update(Bytes(zeros, length));
      continue;
    }
    if (file.read(offset, {block.get(), length}) < length) return std::nullopt;
    hash.update(Bytes(block.get(), length));
  }
  if (!file.isUnchanged()) return std::nullopt;
  return hash.finish();
}

}  // namespace orvane
