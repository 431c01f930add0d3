#include "core/duplicates/HashUtility.h"

#include "core/base/values/Sha256.h"
#include "core/duplicates/ContentFile.h"

#include <array>
#include <cstddef>
#include <span>
#include <vector>

namespace orvane {

std::optional<std::string> HashUtility::computePartialHash(const FileUrl& url, std::int64_t fileSize) {
  auto file = ContentFile::open(url.path());
  if (!file) return std::nullopt;
  Sha256 hash;
  std::array<std::byte, partialSize> buffer;
  hash.update(std::span(buffer).first(file->read(0, buffer)));
  if (fileSize > maxHeadOnlyBytes) {
    hash.update(std::span(buffer).first(file->read(fileSize - partialSize, buffer)));
  }
  return digestText(hash.finish());
}

std::optional<std::string> HashUtility::computeFullHash(const FileUrl& url) {
  auto file = ContentFile::open(url.path());
  if (!file) return std::nullopt;
  Sha256 hash;
  std::vector<std::byte> buffer(chunkSize);
  std::int64_t offset = 0;
  while (const auto count = file->read(offset, buffer)) {
    hash.update(std::span(buffer).first(count));
    offset += static_cast<std::int64_t>(count);
  }
  return digestText(hash.finish());
}

}  // namespace orvane
