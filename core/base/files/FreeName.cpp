#include "core/base/files/FreeName.h"

#include "core/base/files/FileDescriptor.h"
#include "core/base/files/FileStatus.h"
#include "core/base/files/PathAccess.h"
#include "core/base/files/PathText.h"

#include <fmt/format.h>

#include <cerrno>

namespace orvane {
namespace {

constexpr std::size_t maximumNameBytes = 255;
constexpr std::int64_t mostTries = 1'000'000;

}  // namespace

std::string numberedName(std::string_view name, std::int64_t number, NumberingStyle style) {
  const std::string mark = fmt::format(" ({}{})", style == NumberingStyle::restored ? "restored " : "", number);
  const auto [base, extension] = splitName(name);
  std::string ending = extension.empty() ? mark : fmt::format("{}.{}", mark, extension);
  std::string_view stem = base;
  if (ending.size() < maximumNameBytes) stem = shortenedToBytes(base, maximumNameBytes - ending.size());
  if (ending.size() >= maximumNameBytes || stem.empty()) {
    stem = shortenedToBytes(name, maximumNameBytes - mark.size());
    ending = mark;
  }
  return std::string(stem) + ending;
}

FileUrl freeUrl(const FileUrl& wanted, NumberingStyle style, const std::function<bool(const FileUrl&)>& alsoTaken) {
  const auto taken = [&](const FileUrl& url) {
    return (alsoTaken && alsoTaken(url)) || readPathStatus(url.path()).has_value();
  };
  if (!taken(wanted)) return wanted;
  const FileUrl folder = wanted.deletingLastPathComponent();
  for (std::int64_t number = 1; number <= mostTries; ++number) {
    FileUrl candidate = folder.appendingPathComponent(numberedName(wanted.lastPathComponent(), number, style));
    if (!taken(candidate)) return candidate;
  }
  throwErrno(EEXIST);
}

}  // namespace orvane
