#include "platform/linux/TrashInfo.h"

#include "core/base/files/FileUrl.h"
#include "core/base/values/Calendar.h"

#include <fmt/format.h>

namespace orvane {
namespace {
constexpr std::string_view header = "[Trash Info]";
constexpr std::string_view pathKey = "Path=";
}  // namespace

std::string trashInfoText(std::string_view path, Date deleted) {
  return fmt::format("{}\n{}{}\nDeletionDate={}\n", header, pathKey, percentEncodedPath(path), localTimestamp(deleted));
}

std::optional<std::string> trashInfoPath(std::string_view text) {
  bool inGroup = false;
  while (!text.empty()) {
    const auto end = text.find('\n');
    const auto line = text.substr(0, end);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    if (line.starts_with('[')) inGroup = line == header;
    if (inGroup && line.starts_with(pathKey)) return percentDecoded(line.substr(pathKey.size()));
  }
  return std::nullopt;
}

}  // namespace orvane
