// Any value under any key of the preferences is settings or the default; settings read back as they were written.

#include "core/base/text/Json.h"
#include "core/organizer/categories/CategoryPreferencesStore.h"
#include "core/organizer/records/AutoOrganizeSettings.h"
#include "core/platform/StoredValue.h"
#include "core/rules/records/CleanupRule.h"
#include "core/rules/records/RuleCheck.h"
#include "core/rules/records/ScheduleSettings.h"
#include "tests/fuzz/FuzzCheck.h"
#include "tests/support/MemoryPreferences.h"

#include <string_view>

namespace orvane::fuzz {
namespace {

template <typename Settings>
void readBack(const test::MemoryPreferences& preferences, std::string_view key) {
  const auto settings = storedValue<Settings>(preferences, key);
  check(Settings::fromJson(parseJson(jsonText(settings.toJson()))) == settings, "settings read back as written");
}

}  // namespace

void run(std::string_view input) {
  test::MemoryPreferences preferences;
  try {
    const auto document = parseJson(input);
    if (!document.is_object()) return;
    for (const auto& [key, value] : document.items()) preferences.setValue(key, value);
  } catch (const JsonError&) {
    return;
  }
  CategoryPreferencesStore store(preferences);
  for (const auto& [key, value] : preferences.values) {
    readBack<ScheduleSettings>(preferences, key);
    readBack<AutoOrganizeSettings>(preferences, key);
    static_cast<void>(storedValue<AutoOrganizeSettings>(preferences, key).folderURLs());
  }
}

}  // namespace orvane::fuzz
