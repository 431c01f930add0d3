#pragma once

#include "core/base/values/Date.h"
#include "core/scanning/records/RiskLabel.h"
#include "core/scanning/records/ScanCategory.h"

#include <string_view>

namespace orvane {

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
