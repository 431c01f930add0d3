#include "core/rules/RuleMatcher.h"

#include "core/base/files/CanonicalPath.h"
#include "core/base/files/HomeFolder.h"

namespace orvane {
namespace {

CleaningFilter filterOf(const RuleTrigger& trigger) {
  return {
      .categories = trigger.categories,
      .extensions = trigger.fileExtensions,
      .minimumAgeDays = trigger.minimumAgeDays,
      .minimumSizeBytes = trigger.minimumSizeBytes,
      .nameContains = trigger.namePattern,
  };
}

RuleMismatch mismatchOf(FilterCriterion criterion) {
  switch (criterion) {
    case FilterCriterion::categories:
      return RuleMismatch::category;
    case FilterCriterion::extensions:
      return RuleMismatch::extension;
    case FilterCriterion::minimumAge:
      return RuleMismatch::age;
    case FilterCriterion::minimumSize:
      return RuleMismatch::size;
    case FilterCriterion::name:
      break;
  }
  return RuleMismatch::name;
}

}  // namespace

RuleMatcher::RuleMatcher(const RuleTrigger& trigger, Date now)
    : m_needsExtension(trigger.fileExtensions && !trigger.fileExtensions->empty()), m_filter(filterOf(trigger), now) {
  if (!trigger.folderPath) return;
  m_pathPrefix = expandedHome(*trigger.folderPath);
  // A home folder such as "~/Downloads" may be a link to another disk, whose files have another path.
  m_realPrefix = canonicalPath(m_pathPrefix);
  if (m_pathPrefix.ends_with('/') && !m_realPrefix.ends_with('/')) m_realPrefix += '/';
}

std::optional<RuleMismatch> RuleMatcher::mismatch(const FileItem& file) {
  if (file.riskLabel() == RiskLabel::manual) return RuleMismatch::manualLabel;
  return triggerMismatch(file);
}

bool RuleMatcher::matchesButForLabel(const FileItem& file) {
  return file.riskLabel() == RiskLabel::manual && !triggerMismatch(file);
}

std::optional<RuleMismatch> RuleMatcher::triggerMismatch(const FileItem& file) {
  const auto& path = file.url().path();
  if (!path.starts_with(m_pathPrefix) && !path.starts_with(m_realPrefix)) return RuleMismatch::folder;
  const auto unmet = m_filter.firstUnmet(file);
  if (unmet) return mismatchOf(*unmet);
  // A list that names the empty extension does not mean files without one.
  if (m_needsExtension && file.url().pathExtension().empty()) return RuleMismatch::extension;
  return std::nullopt;
}

}  // namespace orvane
