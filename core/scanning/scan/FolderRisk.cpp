#include "core/scanning/scan/FolderRisk.h"

#include "core/scanning/records/RiskEvaluator.h"
#include "core/scanning/records/SensitivePaths.h"

namespace orvane {
namespace {

bool contains(std::string_view text, std::string_view fragment) noexcept {
  return text.find(fragment) != std::string_view::npos;
}

}  // namespace

FolderRisk::FolderRisk(std::string_view folderPrefix) noexcept
    : m_isSensitive(contains(folderPrefix, keychainsFragment) || contains(folderPrefix, systemPreferenceFragment)),
      m_inPreferences(contains(folderPrefix, preferencesFragment)),
      m_isPreferences(folderPrefix.ends_with(preferencesFragment)) {}

RiskLabel FolderRisk::evaluate(ScanCategory category, std::string_view name, Date createdDate) const noexcept {
  if (m_isSensitive || (m_isPreferences && name.starts_with(systemPreferencePrefix)) ||
      (m_inPreferences && name.ends_with(propertyListEnding))) {
    return RiskLabel::manual;
  }
  return RiskEvaluator::labelByCategory(category, createdDate);
}

}  // namespace orvane
