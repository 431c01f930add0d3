#include "core/plans/FilterMatcher.h"

#include "core/base/text/AsciiText.h"
#include "core/base/text/UnicodeText.h"

#include <algorithm>
#include <string_view>

namespace orvane {
namespace {

constexpr std::uint32_t bitOf(ScanCategory category) {
  return std::uint32_t{1} << static_cast<unsigned>(category);
}
static_assert(allScanCategories.size() <= 32);

// Whether plain ASCII text in lower case is `lowered`.
bool lowersTo(std::string_view text, std::string_view lowered) {
  return std::ranges::equal(text, lowered, {}, lowerAscii);
}

}  // namespace

FilterMatcher::FilterMatcher(const CleaningFilter& filter, Date now) : m_minimumSize(filter.minimumSizeBytes) {
  if (filter.categories) {
    for (const auto category : *filter.categories) m_categories |= bitOf(category);
  }
  if (filter.extensions) {
    for (const auto& extension : *filter.extensions) m_extensions.push_back(lowercased(extension));
  }
  if (filter.minimumAgeDays) m_minimumAge.emplace(*filter.minimumAgeDays, now);
  if (filter.nameContains && !filter.nameContains->empty()) m_name.emplace(*filter.nameContains);
}

std::optional<FilterCriterion> FilterMatcher::firstUnmet(const FileItem& file) {
  if (m_categories != 0 && (m_categories & bitOf(file.category())) == 0) return FilterCriterion::categories;
  if (!m_extensions.empty() && !hasExtension(file)) return FilterCriterion::extensions;
  if (m_minimumAge && !m_minimumAge->isReachedBy(file.lastModifiedDate())) return FilterCriterion::minimumAge;
  if (m_minimumSize && file.fileSize() < *m_minimumSize) return FilterCriterion::minimumSize;
  if (m_name && !m_name->isIn(file.url().lastPathComponent())) return FilterCriterion::name;
  return std::nullopt;
}

bool FilterMatcher::hasExtension(const FileItem& file) const {
  const auto extension = file.url().pathExtension();
  if (isAscii(extension)) {
    return std::ranges::any_of(m_extensions, [&](const std::string& wanted) { return lowersTo(extension, wanted); });
  }
  return std::ranges::find(m_extensions, lowercased(extension)) != m_extensions.end();
}

}  // namespace orvane
