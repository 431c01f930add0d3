#include "core/plans/FilterMatcher.h"

#include "core/base/AsciiText.h"
#include "core/base/UnicodeText.h"

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

bool FilterMatcher::matches(const FileItem& file) {
  if (m_categories != 0 && (m_categories & bitOf(file.category())) == 0) return false;
  if (m_minimumSize && file.fileSize() < *m_minimumSize) return false;
  if (!m_extensions.empty() && !hasExtension(file)) return false;
  if (m_minimumAge && !m_minimumAge->isReachedBy(file.lastModifiedDate())) return false;
  return !m_name || m_name->isIn(file.url().lastPathComponent());
}

bool FilterMatcher::hasExtension(const FileItem& file) const {
  const auto extension = file.url().pathExtension();
  if (isAscii(extension)) {
    return std::ranges::any_of(m_extensions, [&](const std::string& wanted) { return lowersTo(extension, wanted); });
  }
  return std::ranges::find(m_extensions, lowercased(extension)) != m_extensions.end();
}

}  // namespace orvane
