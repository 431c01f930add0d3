#pragma once

#include "core/platform/HttpTransport.h"

#include <string>
#include <utility>

namespace orvane {

// HttpTransport over libcurl, a handle for each call.
class CurlTransport : public HttpTransport {
 public:
  // Servers are vouched for by the system's certificate authorities, or by those of a file in PEM form.
  explicit CurlTransport(std::string authorityFile = {}) : m_authorityFile(std::move(authorityFile)) {}
  [[nodiscard]] HttpResponse send(const HttpRequest& request, const std::stop_token& stop = {}) override;

 private:
  std::string m_authorityFile;
};

}  // namespace orvane
