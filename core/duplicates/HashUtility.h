#pragma once

#include "core/base/files/FileUrl.h"

#include <cstdint>
#include <optional>
#include <string>

namespace orvane {

// Fingerprints of a file's content: SHA-256 digests as 64 lower-case hexadecimal characters, absent where the file
// cannot be opened or is no regular file. A read error counts as the end of the file. Nothing throws.
struct HashUtility {
  HashUtility() = delete;

  static constexpr std::int64_t partialSize = 16384;       // bytes read at either end
  static constexpr std::int64_t maxHeadOnlyBytes = 32768;  // a file of more bytes has its end read too
  static constexpr std::size_t chunkSize = 65536;          // bytes held at a time

  // Of the first bytes and, where `fileSize` is large enough, the last ones, as `fileSize` tells where they begin. A
  // file of 16 to 32 KiB is never looked at behind its first 16 KiB: this only tells which files may be the same.
  [[nodiscard]] static std::optional<std::string> computePartialHash(const FileUrl& url, std::int64_t fileSize);
  // Of every byte.
  [[nodiscard]] static std::optional<std::string> computeFullHash(const FileUrl& url);
};

}  // namespace orvane
