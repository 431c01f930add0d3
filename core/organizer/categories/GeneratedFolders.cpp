#include "core/organizer/categories/GeneratedFolders.h"

#include "core/base/values/FatalError.h"

#include <unicode/regex.h>

#include <algorithm>
#include <memory>

namespace orvane {
namespace {

std::unique_ptr<const icu::RegexPattern> compiled(const char* pattern) {
  UErrorCode status = U_ZERO_ERROR;
  UParseError where{};
  std::unique_ptr<const icu::RegexPattern> result(
      icu::RegexPattern::compile(icu::UnicodeString::fromUTF8(pattern), where, status));
  if (U_FAILURE(status)) fatalError("a folder pattern does not compile");
  return result;
}

bool matches(const icu::RegexPattern& pattern, const icu::UnicodeString& text) {
  UErrorCode status = U_ZERO_ERROR;
  const std::unique_ptr<icu::RegexMatcher> matcher(pattern.matcher(text, status));
  return U_SUCCESS(status) && matcher->find(status) && U_SUCCESS(status);
}

}  // namespace

bool isReservedTopLevelCategory(std::string_view name) noexcept {
  return std::find(reservedTopLevelCategories.begin(), reservedTopLevelCategories.end(), name) !=
         reservedTopLevelCategories.end();
}

bool isGeneratedFolder(std::string_view name, const std::set<std::string>& learnedRoots) {
  if (std::find(generatedFolderNames.begin(), generatedFolderNames.end(), name) != generatedFolderNames.end()) {
    return true;
  }
  static const auto byType = compiled(R"(^[A-Z0-9]+ Files$)");
  static const auto byDate = compiled(R"(^\d{4}-\d{2} \(.+\)$)");
  const auto text = icu::UnicodeString::fromUTF8({name.data(), static_cast<int32_t>(name.size())});
  return matches(*byType, text) || matches(*byDate, text) || learnedRoots.contains(std::string(name));
}

}  // namespace orvane
