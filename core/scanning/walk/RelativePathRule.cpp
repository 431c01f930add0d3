#include "core/scanning/walk/RelativePathRule.h"

#include "core/base/files/PathText.h"

namespace orvane {
namespace {
constexpr std::size_t maxPathBytes = UINT32_MAX;
}

std::string relativePath(std::string_view path, std::string_view root) {
  std::string rest;
  std::size_t start = 0;
  while (start < path.size() && !root.empty()) {
    const auto found = path.find(root, start);
    if (found == std::string_view::npos) break;
    rest.append(path.substr(start, found - start));
    start = found + root.size();
  }
  rest.append(path.substr(start));
  const auto first = rest.find_first_not_of('/');
  if (first == std::string::npos) return std::string(lastComponent(path));
  return rest.substr(first, rest.find_last_not_of('/') + 1 - first);
}

RelativePathRule::RelativePathRule(std::string_view root, std::string_view folderPrefix) noexcept {
  if (root.empty() || !folderPrefix.starts_with(root) || folderPrefix.size() >= maxPathBytes) return;
  const auto first = folderPrefix.find_first_not_of('/', root.size());
  m_isPlain = folderPrefix.find(root, root.size()) == std::string_view::npos;
  m_start = static_cast<std::uint32_t>(first == std::string_view::npos ? folderPrefix.size() : first);
  const auto nameStart = root.rfind('/') + 1;
  if (folderPrefix.ends_with(root.substr(0, nameStart))) m_suspiciousPrefix = root.substr(nameStart);
}

std::optional<std::uint32_t> RelativePathRule::start(std::string_view name) const noexcept {
  if (!m_isPlain || (m_suspiciousPrefix && name.starts_with(*m_suspiciousPrefix))) return std::nullopt;
  return m_start;
}

}  // namespace orvane
