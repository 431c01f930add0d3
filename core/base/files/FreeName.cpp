#include "core/base/files/FreeName.h"

#include "core/base/files/FileDescriptor.h"
#include "core/base/files/FileStatus.h"
#include "core/base/files/PathAccess.h"
#include "core/base/files/PathText.h"

#include <fmt/format.h>

#include <cerrno>

namespace orvane {
namespace {

constexpr std::int64_t maxTries = 1'000'000;

}  // namespace

std::string numberedName(std::string_view name, std::int64_t number, NumberingStyle style) {
  const std::string mark = fmt::format(" ({}{})", style == NumberingStyle::restored ? "restored " : "", number);
  const auto [base, extension] = splitName(name);
  std::string ending = extension.empty() ? mark : fmt::format("{}.{}", mark, extension);
  std::string_view stem = base;
  if (ending.size() < maxNameBytes) stem = shortenedToBytes(base, maxNameBytes - ending.size());
  if (ending.size() >= maxNameBytes || stem.empty()) {
    stem = shortenedToBytes(name, maxNameBytes - mark.size());
    ending = mark;
  }
  return std::string(stem) + ending;
}

std::optional<std::string> unnumberedName(std::string_view name, NumberingStyle style) {
  const auto [base, extension] = splitName(name);
  const std::string_view opening = style == NumberingStyle::restored ? " (restored " : " (";
  const auto start = base.rfind(opening);
  if (start == std::string_view::npos || !base.ends_with(')')) return std::nullopt;
  const auto digits = base.substr(start + opening.size(), base.size() - start - opening.size() - 1);
  if (digits.empty() || digits.find_first_not_of("0123456789") != std::string_view::npos) return std::nullopt;
  std::string original(base.substr(0, start));
  if (!extension.empty()) original.append(".").append(extension);
  return original;
}

FileUrl freeUrl(const FileUrl& wanted, NumberingStyle style, const std::function<bool(const FileUrl&)>& alsoTaken) {
  const auto taken = [&](const FileUrl& url) {
    return (alsoTaken && alsoTaken(url)) || readPathStatus(url.path()).has_value();
  };
  if (!taken(wanted)) return wanted;
  const FileUrl folder = wanted.deletingLastPathComponent();
  for (std::int64_t number = 1; number <= maxTries; ++number) {
    FileUrl candidate = folder.appendingPathComponent(numberedName(wanted.lastPathComponent(), number, style));
    if (!taken(candidate)) return candidate;
  }
  throwErrno(EEXIST);
}

}  // namespace orvane
