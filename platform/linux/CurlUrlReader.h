#pragma once

#include "core/platform/HttpUrl.h"

namespace orvane {

// HttpUrlReader over the URL parser of libcurl. Throws HttpError::Failed when the library cannot be loaded.
class CurlUrlReader : public HttpUrlReader {
 public:
  [[nodiscard]] std::optional<HttpUrl> read(const std::string& text) const override;
};

}  // namespace orvane
