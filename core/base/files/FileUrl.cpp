#include "core/base/files/FileUrl.h"

#include "core/base/files/PathText.h"
#include "core/base/text/HexDigit.h"

#include <algorithm>
#include <array>

namespace orvane {
namespace {

constexpr std::array<bool, 256> pathCharacters() {
  std::array<bool, 256> allowed{};
  for (int c = '0'; c <= '9'; ++c) allowed[static_cast<std::size_t>(c)] = true;
  for (int c = 'a'; c <= 'z'; ++c) allowed[static_cast<std::size_t>(c)] = true;
  for (int c = 'A'; c <= 'Z'; ++c) allowed[static_cast<std::size_t>(c)] = true;
  for (const char c : std::string_view("-._~!$&'()*+,;=:@/")) allowed[static_cast<unsigned char>(c)] = true;
  return allowed;
}
constexpr auto allowedInPath = pathCharacters();

}  // namespace

FileUrl::FileUrl(std::string path) : m_path(std::move(path)) {
  while (m_path.size() > 1 && m_path.back() == '/') m_path.pop_back();
}

std::optional<FileUrl> FileUrl::fromAbsoluteString(std::string_view text) {
  constexpr std::string_view scheme = "file://";
  constexpr std::string_view localHost = "localhost";
  if (!text.starts_with(scheme)) return std::nullopt;
  text.remove_prefix(scheme.size());
  if (text.starts_with(localHost)) text.remove_prefix(localHost.size());
  if (!text.starts_with('/')) return std::nullopt;
  auto path = percentDecoded(text);
  if (!path || path->find('\0') != std::string::npos) return std::nullopt;
  return FileUrl(*std::move(path));
}

std::string FileUrl::absoluteString() const {
  std::string text;
  text.reserve(m_path.size() + 24);
  appendAbsoluteString(text);
  return text;
}

void FileUrl::appendAbsoluteString(std::string& text) const {
  text += "file://";
  appendPercentEncodedPath(text, m_path);
}

std::string_view FileUrl::lastPathComponent() const noexcept {
  return lastComponent(m_path);
}

std::string_view FileUrl::pathExtension() const noexcept {
  return splitName(lastPathComponent()).extension;
}

FileUrl FileUrl::deletingLastPathComponent() const {
  return FileUrl(std::string(parentPath(m_path)));
}

FileUrl FileUrl::appendingPathComponent(std::string_view name) const {
  return FileUrl(joinPath(m_path, name));
}

std::string percentEncodedPath(std::string_view path) {
  std::string result;
  result.reserve(path.size() + 16);
  appendPercentEncodedPath(result, path);
  return result;
}

void appendPercentEncodedPath(std::string& text, std::string_view path) {
  constexpr std::string_view digits = "0123456789ABCDEF";
  while (!path.empty()) {
    const auto plain =
        std::find_if_not(path.begin(), path.end(), [](char c) { return allowedInPath[static_cast<unsigned char>(c)]; });
    text.append(path.begin(), plain);
    path.remove_prefix(static_cast<std::size_t>(plain - path.begin()));
    if (path.empty()) break;
    const auto byte = static_cast<unsigned char>(path.front());
    const char escape[] = {'%', digits[byte >> 4], digits[byte & 0x0F]};
    text.append(escape, sizeof escape);
    path.remove_prefix(1);
  }
}

std::optional<std::string> percentDecoded(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  while (true) {
    const auto plain = std::min(text.find('%'), text.size());
    result.append(text.substr(0, plain));
    text.remove_prefix(plain);
    if (text.empty()) return result;
    if (text.size() < 3) return std::nullopt;
    const int high = hexValue(text[1]);
    const int low = hexValue(text[2]);
    if (high < 0 || low < 0) return std::nullopt;
    result.push_back(static_cast<char>(high * 16 + low));
    text.remove_prefix(3);
  }
}

}  // namespace orvane
