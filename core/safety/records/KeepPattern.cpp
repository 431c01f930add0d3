#include "core/safety/records/KeepPattern.h"

#include "core/base/files/PathText.h"
#include "core/base/text/HexDigit.h"
#include "core/base/text/UnicodeText.h"

#include <fmt/format.h>

#include <algorithm>
#include <optional>
#include <stdexcept>

namespace orvane {
namespace {

constexpr std::string_view homeBeginning = "~/";
constexpr std::string_view anyFolders = "**";

[[noreturn]] void refuse(std::string_view text, std::string_view why) {
  throw std::invalid_argument(fmt::format("'{}' {}", escapedForDisplay(shortenedToBytes(text, 200)), why));
}

// The byte after "\x"; absent where no two digits stand there.
std::optional<char> byteAt(std::string_view digits) {
  if (digits.size() < 2) return std::nullopt;
  const int high = hexValue(digits[0]);
  const int low = hexValue(digits[1]);
  if (high < 0 || low < 0) return std::nullopt;
  return static_cast<char>(high * 16 + low);
}

// The pieces of a name between its stars. Throws std::invalid_argument.
std::vector<std::string> piecesOf(std::string_view name, std::string_view text) {
  std::vector<std::string> pieces(1);
  for (std::size_t at = 0; at < name.size(); ++at) {
    if (name[at] == '*') {
      pieces.emplace_back();
    } else if (name[at] != '\\') {
      pieces.back() += name[at];
    } else {
      const auto next = name.substr(at + 1);
      const auto byte = next.starts_with('x') ? byteAt(next.substr(1)) : std::nullopt;
      if (!byte && !next.starts_with('*') && !next.starts_with('\\')) {
        refuse(text, R"(holds a "\" that stands before neither "*", "\" nor "xHH")");
      }
      pieces.back() += byte ? *byte : next.front();
      at += byte ? 3 : 1;
    }
  }
  return pieces;
}

bool matches(const std::vector<std::string>& pieces, std::string_view name) {
  if (pieces.size() == 1) return pieces.front() == name;
  if (!name.starts_with(pieces.front())) return false;
  name.remove_prefix(pieces.front().size());
  if (!name.ends_with(pieces.back())) return false;
  name.remove_suffix(pieces.back().size());
  for (std::size_t at = 1; at + 1 < pieces.size(); ++at) {
    const auto found = name.find(pieces[at]);
    if (found == std::string_view::npos) return false;
    name.remove_prefix(found + pieces[at].size());
  }
  return true;
}

std::string escapedName(std::string_view path) {
  const bool isText = isValidUtf8(path);
  std::string result;
  for (const char c : path) {
    const auto byte = static_cast<unsigned char>(c);
    if (c == '*' || c == '\\') result += '\\';
    if (byte < ' ' || byte == 0x7f || (!isText && byte >= 0x80)) {
      result += fmt::format("\\x{:02x}", byte);
    } else {
      result += c;
    }
  }
  return result;
}

template <typename Visit>
void forEachName(std::string_view path, Visit visit) {
  while (!path.empty()) {
    const auto end = std::min(path.find('/'), path.size());
    if (end > 0 && !visit(path.substr(0, end))) return;
    path.remove_prefix(std::min(end + 1, path.size()));
  }
}

}  // namespace

KeepPattern KeepPattern::read(std::string_view text, std::string_view home) {
  std::string path(text);
  if (text.find('\0') != std::string_view::npos) refuse(text, "holds a NUL");
  if (text == "~" || text.starts_with(homeBeginning)) {
    path = escapedName(home) + std::string(text.substr(1));
  } else if (!text.empty() && text.find('/') == std::string_view::npos) {
    path = fmt::format("/{}/{}", anyFolders, text);
  } else if (text.starts_with("**/")) {
    path = fmt::format("/{}", text);
  } else if (!text.starts_with('/')) {
    refuse(text, "must begin with /, ~/ or **/, or be a name");
  }
  KeepPattern pattern;
  pattern.m_text = text;
  forEachName(path, [&](std::string_view name) {
    if (name == ".") return true;
    if (name == "..") refuse(text, "holds \"..\"");
    pattern.m_names.push_back(name == anyFolders ? Name() : piecesOf(name, text));
    return true;
  });
  const bool namesNothing = std::ranges::all_of(pattern.m_names, [](const Name& name) {
    return std::ranges::all_of(name, [](const std::string& piece) { return piece.empty(); });
  });
  if (namesNothing) refuse(text, "would keep everything");
  return pattern;
}

std::string KeepPattern::textFor(const FileUrl& place, std::string_view home) {
  const auto& path = place.path();
  if (path != home && isSameOrInside(path, home)) return "~" + escapedName(std::string_view(path).substr(home.size()));
  return escapedName(path);
}

KeepPattern::Standing KeepPattern::standing(std::string_view path) const {
  // The states of a matcher: how many names of the pattern are behind it.
  std::vector<bool> states(m_names.size() + 1);
  const auto enter = [&](std::vector<bool>& into, std::size_t state) {
    into[state] = true;
    while (state < m_names.size() && m_names[state].empty()) into[++state] = true;
  };
  enter(states, 0);
  bool isMeant = false;
  forEachName(path, [&](std::string_view name) {
    std::vector<bool> next(states.size());
    for (std::size_t state = 0; state < m_names.size(); ++state) {
      if (!states[state]) continue;
      if (m_names[state].empty()) enter(next, state);
      if (!m_names[state].empty() && matches(m_names[state], name)) enter(next, state + 1);
    }
    states = std::move(next);
    isMeant = states.back();
    return !isMeant;
  });
  if (isMeant) return Standing::meant;
  return std::ranges::find(states, true) == states.end() ? Standing::outside : Standing::above;
}

std::size_t KeepPattern::plainNames() const noexcept {
  const auto first = std::ranges::find_if(m_names, [](const Name& name) { return name.size() != 1; });
  return static_cast<std::size_t>(first - m_names.begin());
}

std::string KeepPattern::plainBeginning() const {
  std::string path;
  for (std::size_t at = 0; at < plainNames(); ++at) path += "/" + m_names[at].front();
  return path.empty() ? "/" : path;
}

bool KeepPattern::meansOnePlace() const noexcept {
  return plainNames() == m_names.size();
}

KeepPattern KeepPattern::withBeginning(std::string_view path) const {
  KeepPattern result;
  result.m_text = m_text;
  forEachName(path, [&](std::string_view name) {
    result.m_names.push_back({std::string(name)});
    return true;
  });
  result.m_names.insert(result.m_names.end(), m_names.begin() + static_cast<std::ptrdiff_t>(plainNames()),
                        m_names.end());
  return result;
}

}  // namespace orvane
