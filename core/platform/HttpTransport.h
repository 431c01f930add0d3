#pragma once

#include "core/base/values/VariantError.h"

#include <chrono>
#include <cstdint>
#include <stop_token>
#include <string>
#include <variant>
#include <vector>

namespace orvane {

struct HttpHeader {
  std::string name;
  std::string value;  // without line breaks
};

enum class HttpMethod : std::uint8_t { get, post };
// How the server is reached: by whatever proxy the user's environment names, or straight.
enum class HttpRoute : std::uint8_t { asConfigured, direct };

struct HttpRequest {
  HttpMethod method = HttpMethod::post;
  std::string url;                            // https, or http to a loopback address
  std::vector<HttpHeader> headers;            // besides "Content-Type: application/json", which a body always has
  std::string body;                           // JSON; for a post
  std::chrono::milliseconds timeout{60'000};  // of the whole call
  HttpRoute route = HttpRoute::asConfigured;
};

struct HttpResponse {
  int status = 0;  // as the server says, errors and redirections included
  std::string body;
};

struct HttpErrorCases {
  struct UrlRefused {
    std::string url;
    [[nodiscard]] std::string description() const {
      return "'" + url + "' is no https address, nor http to this machine.";
    }
    bool operator==(const UrlRefused&) const = default;
  };
  struct TimedOut {
    static std::string description() { return "The server did not answer in time."; }
    bool operator==(const TimedOut&) const = default;
  };
  struct Cancelled {
    static std::string description() { return "The request was cancelled."; }
    bool operator==(const Cancelled&) const = default;
  };
  struct ReplyTooLarge {
    static std::string description() { return "The server's reply is too large."; }
    bool operator==(const ReplyTooLarge&) const = default;
  };
  struct Failed {
    std::string reason;
    [[nodiscard]] std::string description() const { return "The server could not be asked: " + reason; }
    bool operator==(const Failed&) const = default;
  };
  using Case = std::variant<UrlRefused, TimedOut, Cancelled, ReplyTooLarge, Failed>;
};

// No answer came, or none that may be used. Secrets in headers and bodies never show in what().
using HttpError = VariantError<HttpErrorCases>;

// Sends one request and takes the whole reply. Servers are authenticated (TLS verified); no redirection is followed, so
// that what is sent reaches the host that was named or nobody. Callable from any thread.
class HttpTransport {
 public:
  static constexpr std::size_t maxReplyBytes = std::size_t{4} * 1024 * 1024;  // bytes

  virtual ~HttpTransport() = default;
  // Throws HttpError. A stop ends the call at once.
  [[nodiscard]] virtual HttpResponse send(const HttpRequest& request, const std::stop_token& stop = {}) = 0;
};

}  // namespace orvane
