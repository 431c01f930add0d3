#include "platform/linux/TrashInfo.h"

#include "core/base/files/FileUrl.h"
#include "core/base/values/Calendar.h"

#include <fmt/format.h>

#include <ctime>

namespace orvane {
namespace {
constexpr std::string_view header = "[Trash Info]";
constexpr std::string_view pathKey = "Path=";
constexpr std::string_view dateKey = "DeletionDate=";

std::optional<std::string_view> valueOf(std::string_view key, std::string_view text) {
  bool inGroup = false;
  while (!text.empty()) {
    const auto end = text.find('\n');
    const auto line = text.substr(0, end);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    if (line.starts_with('[')) inGroup = line == header;
    if (inGroup && line.starts_with(key)) return line.substr(key.size());
  }
  return std::nullopt;
}

}  // namespace

std::string trashInfoText(std::string_view path, Date deleted) {
  return fmt::format("{}\n{}{}\nDeletionDate={}\n", header, pathKey, percentEncodedPath(path), localTimestamp(deleted));
}

std::optional<std::string> trashInfoPath(std::string_view text) {
  const auto value = valueOf(pathKey, text);
  if (!value) return std::nullopt;
  return percentDecoded(*value);
}

std::optional<Date> trashInfoDate(std::string_view text) {
  const std::string value(valueOf(dateKey, text).value_or(""));
  std::tm parts{};
  if (::strptime(value.c_str(), "%Y-%m-%dT%H:%M:%S", &parts) == nullptr) return std::nullopt;
  parts.tm_isdst = -1;
  return dateFromUnix(std::mktime(&parts));
}

}  // namespace orvane
