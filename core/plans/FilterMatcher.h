#pragma once

#include "core/base/text/CaselessSearch.h"
#include "core/base/values/Date.h"
#include "core/base/values/MinimumAge.h"
#include "core/plans/records/CleaningFilter.h"
#include "core/scanning/records/FileItem.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace orvane {

enum class FilterCriterion : std::uint8_t { categories, extensions, minimumAge, minimumSize, name };

// A filter made ready to be held against many files: nothing is allocated for an ordinary one. For one thread.
class FilterMatcher {
 public:
  // Ages are counted to `now`.
  FilterMatcher(const CleaningFilter& filter, Date now);

  // Whether all criteria that place a condition hold. Nothing is read from the disk.
  [[nodiscard]] bool matches(const FileItem& file) { return !firstUnmet(file); }
  // The first criterion, in their order, that a file does not meet; absent for one that matches.
  [[nodiscard]] std::optional<FilterCriterion> firstUnmet(const FileItem& file);

 private:
  [[nodiscard]] bool hasExtension(const FileItem& file) const;

  std::uint32_t m_categories = 0;         // one bit each; none places no condition
  std::vector<std::string> m_extensions;  // lower case
  std::optional<MinimumAge> m_minimumAge;
  std::optional<std::int64_t> m_minimumSize;
  std::optional<CaselessSearch> m_name;
};

}  // namespace orvane
