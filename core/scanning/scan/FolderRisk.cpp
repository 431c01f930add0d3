#include "core/scanning/scan/FolderRisk.h"

#include "core/scanning/records/RiskEvaluator.h"
#include "core/scanning/records/SensitivePaths.h"

namespace orvane {
FolderRisk::FolderRisk(std::string_view folderPrefix) noexcept
    : m_isSensitive(containsFragment(folderPrefix, keychainsFragment) ||
                    containsFragment(folderPrefix, systemPreferenceFragment)),
      m_inPreferences(containsFragment(folderPrefix, preferencesFragment)),
      m_isPreferences(folderPrefix.ends_with(preferencesFragment)) {}

RiskLabel FolderRisk::evaluate(ScanCategory category, std::string_view name, Date createdDate) const noexcept {
  if (m_isSensitive || (m_isPreferences && name.starts_with(systemPreferencePrefix)) ||
      (m_inPreferences && name.ends_with(propertyListEnding))) {
    return RiskLabel::manual;
  }
  return RiskEvaluator::labelByCategory(category, createdDate);
}

}  // namespace orvane
