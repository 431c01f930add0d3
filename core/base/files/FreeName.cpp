#include "core/base/files/FreeName.h"

#include "core/base/files/FileStatus.h"
#include "core/base/files/PathAccess.h"
#include "core/base/files/PathText.h"

#include <fmt/format.h>

#include <cerrno>

namespace orvane {
namespace {

constexpr std::size_t maximumNameBytes = 255;

// A name that cannot be looked at counts as taken only where something may stand there.
bool isTaken(const FileUrl& url) {
  return readPathStatus(url.path()).has_value() || (errno != ENOENT && errno != ENOTDIR && errno != EACCES);
}

}  // namespace

std::string numberedName(std::string_view name, std::int64_t number, NumberingStyle style) {
  const auto [base, extension] = splitName(name);
  std::string ending = fmt::format(" ({}{})", style == NumberingStyle::restored ? "restored " : "", number);
  if (!extension.empty()) ending += fmt::format(".{}", extension);
  std::string_view kept = base;
  if (kept.size() + ending.size() > maximumNameBytes) {
    kept = shortenedToBytes(base, ending.size() < maximumNameBytes ? maximumNameBytes - ending.size() : 0);
  }
  return std::string(kept) + ending;
}

FileUrl freeUrl(const FileUrl& wanted, NumberingStyle style, const std::function<bool(const FileUrl&)>& alsoTaken) {
  const auto taken = [&](const FileUrl& url) { return (alsoTaken && alsoTaken(url)) || isTaken(url); };
  if (!taken(wanted)) return wanted;
  const FileUrl folder = wanted.deletingLastPathComponent();
  for (std::int64_t number = 1;; ++number) {
    FileUrl candidate = folder.appendingPathComponent(numberedName(wanted.lastPathComponent(), number, style));
    if (!taken(candidate)) return candidate;
  }
}

}  // namespace orvane
