#include "core/base/HttpUrl.h"

#include "core/base/UnicodeText.h"

#include <arpa/inet.h>
#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <charconv>

namespace orvane {
namespace {

constexpr std::string_view plainScheme = "http://";
constexpr std::string_view secureScheme = "https://";
constexpr std::size_t longestUrl = 2048;

bool isAllOf(std::string_view text, std::string_view allowed) noexcept {
  return text.find_first_not_of(allowed) == std::string_view::npos;
}

constexpr std::string_view hostCharacters = "abcdefghijklmnopqrstuvwxyz0123456789.-";
constexpr std::string_view pathCharacters =
    "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789/-._~%:@!$&'()*+,;=";

bool isHostName(std::string_view host) {
  return !host.empty() && isAllOf(host, hostCharacters) && host.front() != '-' && host.front() != '.';
}

bool isSixthAddress(std::string_view host) {
  in6_addr address{};
  return isAllOf(host, "0123456789abcdefABCDEF:.") && ::inet_pton(AF_INET6, std::string(host).c_str(), &address) == 1;
}

bool isPath(std::string_view path) {
  return path.empty() || (path.front() == '/' && isAllOf(path, pathCharacters));
}

std::optional<std::uint16_t> portFrom(std::string_view text) {
  std::uint16_t port = 0;
  const auto* end = text.data() + text.size();
  const auto result = std::from_chars(text.data(), end, port);
  if (result.ec != std::errc() || result.ptr != end || port == 0) return std::nullopt;
  return port;
}

}  // namespace

std::optional<HttpUrl> HttpUrl::parse(std::string_view text) {
  if (text.size() > longestUrl) return std::nullopt;
  HttpUrl url;
  const auto lower = lowercased(text.substr(0, secureScheme.size()));
  url.isSecure = lower == secureScheme;
  if (!url.isSecure && !lower.starts_with(plainScheme)) return std::nullopt;
  text.remove_prefix(url.isSecure ? secureScheme.size() : plainScheme.size());

  const auto pathStart = std::min(text.find('/'), text.size());
  url.path = text.substr(pathStart);
  auto authority = text.substr(0, pathStart);
  bool isHost = false;
  if (authority.starts_with('[')) {
    const auto end = authority.find(']');
    if (end == std::string_view::npos) return std::nullopt;
    url.host = lowercased(authority.substr(1, end - 1));
    isHost = isSixthAddress(url.host);
    authority.remove_prefix(end + 1);
  } else {
    const auto end = std::min(authority.find(':'), authority.size());
    url.host = lowercased(authority.substr(0, end));
    isHost = isHostName(url.host);
    authority.remove_prefix(end);
  }
  if (!authority.empty()) {
    if (authority.front() == ':') url.port = portFrom(authority.substr(1));
    if (!url.port) return std::nullopt;
  }
  if (!isHost || !isPath(url.path)) return std::nullopt;
  return url;
}

std::string HttpUrl::text() const {
  const bool isSixth = host.find(':') != std::string::npos;
  auto result =
      fmt::format("{}{}{}{}", isSecure ? secureScheme : plainScheme, isSixth ? "[" : "", host, isSixth ? "]" : "");
  if (port) result += fmt::format(":{}", *port);
  return result + path;
}

bool HttpUrl::isLoopback() const {
  if (host == "localhost") return true;
  in6_addr sixth{};
  if (::inet_pton(AF_INET6, host.c_str(), &sixth) == 1) return IN6_IS_ADDR_LOOPBACK(&sixth);
  // Exactly four decimal numbers, as nothing else is an address to every reader.
  in_addr fourth{};
  return ::inet_pton(AF_INET, host.c_str(), &fourth) == 1 && (ntohl(fourth.s_addr) >> 24) == 127;
}

}  // namespace orvane
