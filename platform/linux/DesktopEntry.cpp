#include "platform/linux/DesktopEntry.h"

#include "core/base/files/DirectoryReader.h"
#include "core/base/files/FileDescriptor.h"
#include "core/base/files/PathText.h"

#include <fcntl.h>

#include <algorithm>
#include <string_view>
#include <system_error>
#include <unordered_map>

namespace orvane {
namespace {

constexpr std::size_t maxBytes = 256 * 1024;
constexpr std::string_view ending = ".desktop";
constexpr std::string_view group = "[Desktop Entry]";

using Values = std::unordered_map<std::string, std::string>;

std::string_view trimmedSpace(std::string_view text) {
  const auto start = text.find_first_not_of(" \t\r");
  if (start == std::string_view::npos) return {};
  return text.substr(start, text.find_last_not_of(" \t\r") - start + 1);
}

// The escapes of a string value.
std::string unescaped(std::string_view text) {
  std::string result;
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (text[at] != '\\' || at + 1 == text.size()) {
      result += text[at];
      continue;
    }
    switch (const char next = text[++at]) {
      case 's':
      case 'n':
      case 't':
      case 'r':
        result += ' ';
        break;
      default:
        // A quoted argument has escapes of its own.
        if (next != '\\') result += '\\';
        result += next;
    }
  }
  return result;
}

Values valuesOf(std::string_view text) {
  Values result;
  bool isInside = false;
  while (!text.empty()) {
    const auto end = std::min(text.find('\n'), text.size());
    const auto line = trimmedSpace(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
    if (line.starts_with('[')) {
      isInside = line == group;
    } else if (const auto equals = line.find('='); isInside && !line.starts_with('#') && equals != line.npos) {
      result.emplace(trimmedSpace(line.substr(0, equals)), unescaped(trimmedSpace(line.substr(equals + 1))));
    }
  }
  return result;
}

// The first argument, which may be quoted.
std::string firstWord(std::string_view command) {
  command = trimmedSpace(command);
  if (!command.starts_with('"')) return std::string(command.substr(0, command.find_first_of(" \t")));
  std::string word;
  for (std::size_t at = 1; at < command.size() && command[at] != '"'; ++at) {
    if (command[at] == '\\' && at + 1 < command.size()) ++at;
    word += command[at];
  }
  return word;
}

}  // namespace

std::optional<DesktopEntry> DesktopEntry::read(const std::string& file) {
  const auto name = lastComponent(file);
  if (!name.ends_with(ending)) return std::nullopt;
  Values values;
  try {
    values = valuesOf(readFile(file, maxBytes));
  } catch (const std::system_error&) {
    return std::nullopt;
  }
  if (values["Type"] != "Application" || values["Hidden"] == "true" || values["NoDisplay"] == "true") {
    return std::nullopt;
  }
  DesktopEntry entry;
  entry.file = file;
  entry.identifier = name.substr(0, name.size() - ending.size());
  entry.name = values["Name"].empty() ? entry.identifier : values["Name"];
  entry.icon = values["Icon"];
  entry.windowClass = values["StartupWMClass"];
  entry.version = values["X-AppImage-Version"];
  entry.program = firstWord(values["TryExec"].empty() ? values["Exec"] : values["TryExec"]);
  if (lastComponent(entry.program) == "env") entry.program.clear();
  return entry;
}

std::vector<DesktopEntry> DesktopEntry::allIn(const std::string& folder) {
  std::vector<DesktopEntry> result;
  auto reader = DirectoryReader::open(AT_FDCWD, folder.c_str(), DirectoryReader::Links::follow);
  while (const auto entry = reader ? reader->next() : std::nullopt) {
    if (auto read = DesktopEntry::read(joinPath(folder, entry->name))) result.push_back(*std::move(read));
  }
  std::ranges::sort(result, {}, &DesktopEntry::file);
  return result;
}

}  // namespace orvane
