#pragma once

#include "core/platform/HttpTransport.h"

namespace orvane {

// HttpTransport over libcurl, a handle for each call.
class CurlTransport : public HttpTransport {
 public:
  [[nodiscard]] HttpResponse send(const HttpRequest& request, const std::stop_token& stop = {}) override;
};

}  // namespace orvane
