#pragma once

#include <optional>
#include <string>

namespace orvane {

// The address of an HTTP server.
struct HttpUrl {
  std::string text;  // as it is asked for; without a user name, a query and a fragment
  bool isSecure = true;
  bool isLoopback = false;  // whether the host is this machine: "localhost", 127.0.0.0/8 or ::1
};

// Reads addresses as the library does that makes the requests, so that no two readers take one for different hosts.
class HttpUrlReader {
 public:
  virtual ~HttpUrlReader() = default;
  // Absent unless it is http or https with a host and perhaps a port and a path, the host as it is asked for: "127.1"
  // is none. Callable from any thread.
  [[nodiscard]] virtual std::optional<HttpUrl> read(const std::string& text) const = 0;
};

}  // namespace orvane
