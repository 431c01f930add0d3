#pragma once

#include "core/base/files/FileUrl.h"
#include "core/base/values/Date.h"
#include "core/scanning/records/RiskLabel.h"
#include "core/scanning/records/ScanCategory.h"

#include <cstdint>
#include <optional>

namespace orvane {

// Decides how much care a file needs.
class RiskEvaluator {
 public:
  static constexpr double safeInstallerAgeSeconds = 604800;
  // For callers; evaluate() does not consult it.
  static constexpr double reviewScreenshotAgeSeconds = 2592000;

  // `fileSize` and `lastOpenedDate` have no influence.
  [[nodiscard]] static RiskLabel evaluate(ScanCategory category, const FileUrl& url, std::int64_t fileSize,
                                          Date createdDate, std::optional<Date> lastOpenedDate = std::nullopt);
  // The rules that come after those for sensitive paths.
  [[nodiscard]] static RiskLabel labelByCategory(ScanCategory category, Date createdDate) noexcept;
};

}  // namespace orvane
