#include "core/base/files/PathPattern.h"

#include <algorithm>

namespace orvane {
namespace {

// Cuts the first component off a path.
std::string_view takeComponent(std::string_view& path) noexcept {
  const auto end = std::min(path.find('/'), path.size());
  const auto component = path.substr(0, end);
  path.remove_prefix(std::min(end + 1, path.size()));
  return component;
}

void expand(std::string_view text, std::vector<PathPattern>& patterns) {
  const auto open = text.find('{');
  if (open == std::string_view::npos) {
    patterns.emplace_back(text);
    return;
  }
  const auto close = text.find('}', open);
  auto choices = text.substr(open + 1, close - open - 1);
  while (true) {
    const auto end = std::min(choices.find(','), choices.size());
    expand(std::string(text.substr(0, open)).append(choices.substr(0, end)).append(text.substr(close + 1)), patterns);
    if (end == choices.size()) return;
    choices.remove_prefix(end + 1);
  }
}

}  // namespace

bool fitsWildcard(std::string_view name, std::string_view pattern) noexcept {
  // The first letter alone settles most patterns.
  if (!pattern.empty() && pattern.front() != '*' && (name.empty() || name.front() != pattern.front())) return false;
  const auto star = pattern.find('*');
  if (star == std::string_view::npos) return name == pattern;
  if (!name.starts_with(pattern.substr(0, star))) return false;
  name.remove_prefix(star);
  pattern.remove_prefix(star + 1);
  for (auto next = pattern.find('*'); next != std::string_view::npos; next = pattern.find('*')) {
    const auto found = name.find(pattern.substr(0, next));
    if (found == std::string_view::npos) return false;
    name.remove_prefix(found + next);
    pattern.remove_prefix(next + 1);
  }
  return name.ends_with(pattern);
}

bool fitsComponent(std::string_view name, std::string_view pattern) noexcept {
  constexpr std::string_view digit = "[0-9]";
  const auto at = pattern.find(digit);
  if (at == std::string_view::npos) return fitsWildcard(name, pattern);
  for (std::size_t i = 0; i < name.size(); ++i) {
    const bool isDigit = name[i] >= '0' && name[i] <= '9';
    if (isDigit && fitsWildcard(name.substr(0, i), pattern.substr(0, at)) &&
        fitsComponent(name.substr(i + 1), pattern.substr(at + digit.size()))) {
      return true;
    }
  }
  return false;
}

PathPattern::PathPattern(std::string_view pattern) {
  while (!pattern.empty()) m_components.emplace_back(takeComponent(pattern));
}

std::vector<PathPattern> PathPattern::alternatives(std::string_view text) {
  std::vector<PathPattern> patterns;
  expand(text, patterns);
  return patterns;
}

bool PathPattern::isPlain() const noexcept {
  return std::ranges::none_of(m_components,
                              [](const auto& component) { return component.find_first_of("*[") != std::string::npos; });
}

std::string PathPattern::text() const {
  std::string text;
  for (const auto& component : m_components) text.append(text.empty() ? "" : "/").append(component);
  return text;
}

PathPattern::Fit PathPattern::fit(std::string_view relative) const noexcept {
  for (const auto& component : m_components) {
    if (relative.empty()) return Fit::above;
    if (!fitsComponent(takeComponent(relative), component)) return Fit::none;
  }
  return relative.empty() ? Fit::exact : Fit::below;
}

std::size_t PathPattern::coveredBytes(std::string_view relative) const noexcept {
  if (m_components.empty()) return 0;
  auto rest = relative;
  for (std::size_t i = 0; i < m_components.size(); ++i) takeComponent(rest);
  return rest.empty() ? relative.size() : relative.size() - rest.size() - 1;
}

}  // namespace orvane
