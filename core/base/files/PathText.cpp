#include "core/base/files/PathText.h"

#include <algorithm>
#include <vector>

namespace orvane {
namespace {

constexpr bool isWhiteSpace(char c) noexcept {
  return c == ' ' || (c >= '\t' && c <= '\r');
}

std::string_view withoutTrailingSlashes(std::string_view path) noexcept {
  while (path.size() > 1 && path.back() == '/') path.remove_suffix(1);
  return path;
}

}  // namespace

std::string_view lastComponent(std::string_view path) noexcept {
  path = withoutTrailingSlashes(path);
  if (path == "/") return {};
  const auto slash = path.rfind('/');
  return slash == std::string_view::npos ? path : path.substr(slash + 1);
}

std::string_view parentPath(std::string_view path) noexcept {
  path = withoutTrailingSlashes(path);
  const auto slash = path.rfind('/');
  if (slash == std::string_view::npos) return {};
  if (slash == 0) return path.substr(0, 1);
  return withoutTrailingSlashes(path.substr(0, slash));
}

std::string joinPath(std::string_view folder, std::string_view name) {
  std::string path;
  path.reserve(folder.size() + 1 + name.size());
  path.append(folder);
  if (!path.empty() && path.back() != '/') path.push_back('/');
  path.append(name);
  return path;
}

NameParts splitName(std::string_view name) noexcept {
  const auto firstOther = name.find_first_not_of('.');
  const auto dot = name.rfind('.');
  const bool hasExtension = dot != std::string_view::npos && firstOther != std::string_view::npos && dot > firstOther &&
                            dot + 1 < name.size() && std::ranges::none_of(name.substr(dot), isWhiteSpace);
  if (!hasExtension) return {name, {}};
  return {name.substr(0, dot), name.substr(dot + 1)};
}

std::string_view shortenedToBytes(std::string_view text, std::size_t bytes) noexcept {
  if (text.size() <= bytes) return text;
  const auto continues = [&](std::size_t index) { return (static_cast<unsigned char>(text[index]) & 0xC0) == 0x80; };
  std::size_t end = bytes;
  while (end > 0 && bytes - end < 4 && continues(end)) --end;
  return text.substr(0, end);
}

bool isSameOrInside(std::string_view path, std::string_view folder) noexcept {
  if (!path.starts_with(folder)) return false;
  if (path.size() == folder.size()) return true;
  if (folder.empty()) return false;
  return folder.ends_with('/') || path[folder.size()] == '/';
}

std::string standardizedPath(std::string_view path) {
  const bool absolute = path.starts_with('/');
  std::vector<std::string_view> components;
  std::size_t start = 0;
  while (start <= path.size()) {
    auto end = path.find('/', start);
    if (end == std::string_view::npos) end = path.size();
    const auto component = path.substr(start, end - start);
    start = end + 1;
    if (component.empty() || component == ".") continue;
    if (component == ".." && !components.empty() && components.back() != "..") {
      components.pop_back();
    } else if (component != ".." || !absolute) {
      components.push_back(component);
    }
  }
  std::string result;
  result.reserve(path.size());
  for (const auto component : components) {
    if (absolute || !result.empty()) result.push_back('/');
    result.append(component);
  }
  if (absolute && result.empty()) result = "/";
  return result;
}

}  // namespace orvane
