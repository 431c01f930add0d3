#include "cli/frame/FileArguments.h"

#include "cli/frame/UsageError.h"
#include "core/base/files/CanonicalPath.h"
#include "core/base/files/HomeFolder.h"
#include "core/base/files/PlaceText.h"
#include "core/base/text/UnicodeText.h"

#include <fmt/format.h>

#include <algorithm>

namespace orvane::cli {
namespace {

constexpr std::string_view urlStart = "file:///";

}  // namespace

FileUrl placeFromArgument(const std::string& text) {
  if (text.empty()) throw UsageError("a path cannot be empty");
  if (!text.starts_with(urlStart)) return FileUrl(canonicalPlace(text));
  const auto url = FileUrl::fromAbsoluteString(text);
  if (!url) throw UsageError(fmt::format("'{}' is not a valid file URL", escapedForDisplay(text)));
  return FileUrl(canonicalPlace(url->path()));
}

std::vector<FileUrl> placesFromArguments(const std::vector<std::string>& texts) {
  std::vector<FileUrl> result;
  for (const auto& text : texts) {
    auto place = placeFromArgument(text);
    if (std::find(result.begin(), result.end(), place) == result.end()) result.push_back(std::move(place));
  }
  return result;
}

std::string shownPath(const FileUrl& url) {
  return displayPath(url.path(), homeFolder());
}

}  // namespace orvane::cli
