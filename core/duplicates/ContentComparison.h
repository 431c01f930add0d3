#pragma once

#include "core/base/values/Sha256.h"
#include "core/duplicates/ContentFile.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <vector>

namespace orvane {

class SearchMonitor;

// Tells which of several files of one size are identical, reading all of them side by side: one of equal files is
// hashed and the others are compared with it byte by byte, and a file that differs from all is read no further.
class ContentComparison {
 public:
  struct Member {
    std::uint32_t index;  // the caller's
    ContentFile file;
  };
  struct EqualFiles {
    Sha256::Digest digest;
    std::vector<std::uint32_t> indexes;  // at least two, in the order given
  };

  ContentComparison(std::vector<Member> members, std::int64_t size, SearchMonitor& monitor);
  // For one call. Files that cannot be read to their end or that changed meanwhile are left out. Nothing once the
  // monitor is stopped.
  [[nodiscard]] std::vector<EqualFiles> run();
  // The bytes that run() has told the monitor of.
  [[nodiscard]] std::int64_t settledBytes() const noexcept { return m_settled; }

  // Digest of a file that is `size` bytes long; absent when it is not any more and when the monitor is stopped.
  [[nodiscard]] static std::optional<Sha256::Digest> digestOf(ContentFile& file, std::int64_t size,
                                                              SearchMonitor& monitor);

 private:
  using Block = std::unique_ptr<std::byte[]>;
  using Bytes = std::span<const std::byte>;
  // Files that are identical as far as they were read.
  struct Class {
    std::vector<Member> members;
    Sha256 hash;
    Block block;
    Bytes bytes;  // of the range read last
  };
  enum class Hashing : std::uint8_t { leaveOut, update };

  void split(std::int64_t offset, std::size_t length, Hashing hashing);
  void splitClass(Class& whole, std::int64_t offset, std::size_t length, std::vector<Class>& parts);
  // Empty when the file ends before.
  [[nodiscard]] Bytes read(Member& member, std::int64_t offset, std::size_t length);
  [[nodiscard]] Block takeBlock();
  void compareAll(Hashing hashing);
  [[nodiscard]] std::optional<Sha256::Digest> settledDigest(Class& equal, Hashing hashing);

  std::vector<Class> m_classes;
  std::int64_t m_size;
  std::int64_t m_settled = 0;
  SearchMonitor& m_monitor;
  std::vector<Block> m_freeBlocks;
  Block m_scratch;
};

}  // namespace orvane
