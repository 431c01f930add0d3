#pragma once

#include "core/base/Date.h"
#include "core/base/FileUrl.h"
#include "core/scanning/RiskLabel.h"
#include "core/scanning/ScanCategory.h"

#include <cstdint>
#include <optional>
#include <string_view>

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
};

// RiskEvaluator for the entries of one folder: what the folder's path decides is decided once.
class FolderRisk {
 public:
  // `folderPrefix` is the folder's path with a slash at its end.
  explicit FolderRisk(std::string_view folderPrefix) noexcept;

  // The same answer as RiskEvaluator::evaluate() for the entry `name`.
  [[nodiscard]] RiskLabel evaluate(ScanCategory category, std::string_view name, Date createdDate) const noexcept;

 private:
  bool m_isSensitive;
  bool m_inPreferences;
  bool m_isPreferences;
};

}  // namespace orvane
