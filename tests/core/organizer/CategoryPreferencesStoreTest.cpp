#include "core/organizer/categories/CategoryPreferencesStore.h"

#include "core/base/text/Json.h"
#include "tests/support/MemoryPreferences.h"
#include "tests/support/Testing.h"

namespace orvane::test {
namespace {

constexpr const char* learnedKey = "OrvaneLearnedCategoryPreferences";

TEST(CategoryPreferencesStore, remembersUnderLowerCaseKeysAndStoresAtOnce) {
  MemoryPreferences preferences;
  CategoryPreferencesStore store(preferences);
  store.rememberPreference("PDF", "Work/Invoices");
  EXPECT_EQ(store.preferredCategory("Pdf"), "Work/Invoices");
  EXPECT_FALSE(store.preferredCategory("txt"));
  EXPECT_EQ(preferences.values[learnedKey], Json({{"pdf", "Work/Invoices"}}));
  EXPECT_EQ(CategoryPreferencesStore(preferences).preferredCategory("pdf"), "Work/Invoices");
  store.reset();
  EXPECT_FALSE(store.preferredCategory("pdf"));
  EXPECT_EQ(preferences.values[learnedKey], Json::object());
}

TEST(CategoryPreferencesStore, namesTheFirstFolderOfEveryCategory) {
  MemoryPreferences preferences;
  preferences.values[learnedKey] =
      Json({{"a", "Work/Invoices"}, {"b", "Work"}, {"c", "/Led/By slash"}, {"d", "/"}, {"e", ""}});
  EXPECT_THAT(CategoryPreferencesStore(preferences).learnedCategoryRoots(), ElementsAre("Led", "Work"));
}

TEST(CategoryPreferencesStore, startsEmptyFromAMalformedValue) {
  for (const Json& stored : {Json("text"), Json::array({1}), Json({{"pdf", 1}, {"txt", "Notes"}}), Json()}) {
    MemoryPreferences preferences;
    preferences.values[learnedKey] = stored;
    EXPECT_FALSE(CategoryPreferencesStore(preferences).preferredCategory("txt")) << stored;
  }
}

TEST(CategoryPreferencesStore, keepsWhatAnotherProcessLearned) {
  MemoryPreferences preferences;
  CategoryPreferencesStore store(preferences);
  CategoryPreferencesStore other(preferences);
  other.rememberPreference("txt", "Notes");
  store.rememberPreference("pdf", "Work");
  EXPECT_EQ(preferences.values[learnedKey], Json({{"pdf", "Work"}, {"txt", "Notes"}}));
}

}  // namespace
}  // namespace orvane::test
