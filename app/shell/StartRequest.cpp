#include "app/shell/StartRequest.h"

#include "core/base/files/FileUrl.h"

#include <algorithm>
#include <filesystem>
#include <string_view>

namespace orvane {
namespace {

constexpr std::string_view scanWord = "--scan";
constexpr std::string_view organizeWord = "--organize";
constexpr std::string_view showWord = "--show";

}  // namespace

StartRequest StartRequest::fromArguments(std::span<const char* const> arguments) {
  for (std::size_t at = 0; at < arguments.size(); ++at) {
    const std::string_view word = arguments[at];
    const std::string next = at + 1 < arguments.size() ? arguments[at + 1] : "";
    if (word == showWord && !next.empty()) return {.section = next};
    if (word == organizeWord) return {.work = Work::organize};
    if (word != scanWord) continue;
    StartRequest result{.section = "cleanup", .work = Work::scan};
    if (!next.empty() && !next.starts_with("--"))
      result.folder = FileUrl(std::filesystem::absolute(next).lexically_normal().string()).absoluteString();
    return result;
  }
  return {};
}

QByteArray StartRequest::toLine() const {
  switch (work) {
    case Work::scan:
      return QByteArray::fromStdString(std::string(scanWord) + " " + folder);
    case Work::organize:
      return QByteArray::fromStdString(std::string(organizeWord));
    case Work::none:
      break;
  }
  return QByteArray::fromStdString(section);
}

StartRequest StartRequest::fromLine(const QByteArray& line) {
  const std::string text = line.trimmed().toStdString();
  if (text == organizeWord) return {.work = Work::organize};
  if (!text.starts_with(scanWord)) return {.section = text};
  return {.section = "cleanup", .work = Work::scan, .folder = text.substr(std::min(text.size(), scanWord.size() + 1))};
}

}  // namespace orvane
