#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace orvane {

// The address of an HTTP server, read so strictly that no two readers can take it for different hosts: scheme http or
// https, a host name or an address, no user name, no query and no fragment.
struct HttpUrl {
  bool isSecure = true;
  std::string host;  // lower case; an IPv6 address without its brackets
  std::optional<std::uint16_t> port;
  std::string path;  // empty or with a slash at its beginning

  [[nodiscard]] static std::optional<HttpUrl> parse(std::string_view text);
  [[nodiscard]] std::string text() const;
  // Whether the host is this machine: "localhost", 127.0.0.0/8 or ::1.
  [[nodiscard]] bool isLoopback() const;
};

}  // namespace orvane
