#include "core/base/files/FileDescriptor.h"
#include "core/base/files/PathText.h"
#include "core/base/files/UserFolders.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <system_error>

namespace orvane {
namespace {

struct Row {
  std::string_view usualName;
  std::string_view variable;  // of user-dirs.dirs(5)
};
constexpr std::array folderRows{
    Row{"Downloads", "XDG_DOWNLOAD_DIR"}, Row{"Documents", "XDG_DOCUMENTS_DIR"}, Row{"Desktop", "XDG_DESKTOP_DIR"},
    Row{"Pictures", "XDG_PICTURES_DIR"},  Row{"Music", "XDG_MUSIC_DIR"},         Row{"Videos", "XDG_VIDEOS_DIR"},
    Row{"Movies", "XDG_VIDEOS_DIR"},
};

constexpr std::size_t maxBytes = 64 * 1024;
constexpr std::string_view homeStart = "$HOME/";

// The shell's rules for a text in double quotes, without anything that it would look up.
std::optional<std::string> unquoted(std::string_view text) {
  if (!text.starts_with('"')) return std::nullopt;
  std::string result;
  for (std::size_t at = 1; at < text.size(); ++at) {
    if (text[at] == '"') return result;
    if (text[at] == '\\' && at + 1 < text.size()) ++at;
    result += text[at];
  }
  return std::nullopt;
}

std::string_view withoutSpace(std::string_view line) {
  const auto start = line.find_first_not_of(" \t");
  return start == std::string_view::npos ? std::string_view() : line.substr(start);
}

// The value of an assignment to the variable.
std::optional<std::string> valueIn(std::string_view line, std::string_view variable) {
  line = withoutSpace(line);
  if (!line.starts_with(variable)) return std::nullopt;
  line = withoutSpace(line.substr(variable.size()));
  if (!line.starts_with('=')) return std::nullopt;
  return unquoted(withoutSpace(line.substr(1)));
}

// The last assignment counts, as it would for a shell.
std::optional<std::string> lastValue(std::string_view text, std::string_view variable) {
  std::optional<std::string> result;
  while (!text.empty()) {
    const auto end = std::min(text.find('\n'), text.size());
    if (auto value = valueIn(text.substr(0, end), variable)) result = std::move(value);
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return result;
}

std::string settingsFile(const std::string& home) {
  const char* configured = std::getenv("XDG_CONFIG_HOME");
  const auto folder =
      configured != nullptr && configured[0] == '/' ? std::string(configured) : joinPath(home, ".config");
  return joinPath(folder, "user-dirs.dirs");
}

bool isFolder(const std::string& path) {
  return ::access(joinPath(path, "").c_str(), F_OK) == 0;
}

}  // namespace

std::optional<std::string> userFolder(std::string_view usualName, const std::string& home) {
  const auto row = std::ranges::find(folderRows, usualName, &Row::usualName);
  if (row == folderRows.end()) return std::nullopt;
  const auto file = settingsFile(home);
  std::optional<std::string> value;
  try {
    value = lastValue(readFile(file, maxBytes), row->variable);
  } catch (const std::system_error&) {
    return std::nullopt;
  }
  if (!value) return std::nullopt;
  const bool isInHome = value->starts_with(homeStart);
  if (!isInHome && !value->starts_with('/')) return std::nullopt;
  auto folder = standardizedPath(isInHome ? joinPath(home, value->substr(homeStart.size())) : *value);
  // The home folder itself stands for none. Nor does one that is gone count where the usual one is there.
  const auto usual = joinPath(home, usualName);
  if (isSameOrInside(home, folder) || folder == usual || (!isFolder(folder) && isFolder(usual))) return std::nullopt;
  return folder;
}

}  // namespace orvane
