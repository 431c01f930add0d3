#include "core/scanning/records/ScanCategory.h"

#include "core/base/files/PathText.h"
#include "core/base/text/Json.h"

#include <fmt/format.h>

namespace orvane {

std::vector<ScanCategory> scanCategoriesFrom(const Json& value, std::string_view what) {
  constexpr std::size_t quotedBytes = 100;
  std::vector<ScanCategory> result;
  for (const auto& text : stringsFrom(value, what)) {
    const auto category = scanCategoryFromRawValue(text);
    if (!category) {
      throw JsonError(fmt::format("unknown category \"{}\" in \"{}\"", shortenedToBytes(text, quotedBytes), what));
    }
    result.push_back(*category);
  }
  return result;
}

void to_json(Json& json, ScanCategory category) {
  json = rawValue(category);
}

}  // namespace orvane
