#include "core/organizer/categories/OrganizerCategories.h"

#include "core/base/text/Json.h"
#include "core/organizer/categories/CategoryChooser.h"
#include "core/organizer/categories/CategoryPreferencesStore.h"
#include "core/organizer/categories/GeneratedFolders.h"
#include "tests/support/MemoryPreferences.h"
#include "tests/support/TemporaryTree.h"
#include "tests/support/TimeZone.h"

#include <unicode/locid.h>

namespace orvane::test {
namespace {

TEST(ExtensionCategory, namesTheCategory) {
  const Rows<const char*, const char*, const char*> rows{
      {"pdf", "a.pdf", "Documents/PDFs"},
      {"md", "a.md", "Documents/Text & Notes"},
      {"csv", "a.csv", "Documents/Spreadsheets"},
      {"key", "a.key", "Documents/Presentations"},
      {"png", "screenshot.png", "Media/Screenshots"},
      {"jpg", "My SCREEN SHOT.jpg", "Media/Screenshots"},
      {"heic", "a.heic", "Media/Images"},
      {"JPG", "a.JPG", "Other"},
      {"mp4", "Screenshot.mp4", "Media/Videos"},
      {"aiff", "a", "Media/Audio"},
      {"xz", "a.xz", "Other"},
      {"7z", "a.7z", "Archives"},
      {"iso", "a.iso", "Installers"},
      {"h", "a.h", "Development/Source Code"},
      {"", "Makefile", "Other"},
  };
  for (const auto& [extension, filename, category] : rows) {
    EXPECT_EQ(defaultCategoryNameForExtension(extension, filename), category) << filename;
  }
}

TEST(NameHasWord, comparesWholeWordsAndTheirPlurals) {
  constexpr std::array<std::string_view, 3> words{"photo", "backup", "class"};
  for (const char* name : {"MyPhotos", "photo-2024", "BACKUPS", "Old Backup", "Classes", "photo_album"}) {
    EXPECT_TRUE(nameHasWord(name, words)) << name;
  }
  for (const char* name : {"Photoshop", "backupx", "myphotos", "", "PHOTOAlbum"}) {
    EXPECT_FALSE(nameHasWord(name, words)) << name;
  }
  EXPECT_FALSE(nameHasWord("anything", {}));
}

TEST(FolderCategory, goesByTheNameFirst) {
  EXPECT_EQ(defaultCategoryNameForFolder("MyPhotos", std::nullopt), "Media/Folders");
  EXPECT_EQ(defaultCategoryNameForFolder("Photo App", std::nullopt), "Development/Projects");
  EXPECT_EQ(defaultCategoryNameForFolder("Setup", std::nullopt), "Installers/Folders");
  EXPECT_EQ(defaultCategoryNameForFolder("Backups", std::nullopt), "Archives/Folders");
  EXPECT_EQ(defaultCategoryNameForFolder("Homework", std::nullopt), "Documents/Folders");
  EXPECT_EQ(defaultCategoryNameForFolder("Photoshop", std::nullopt), "Documents/Folders");
}

TEST(FolderCategory, looksInsideWhereTheNameSaysNothing) {
  const TemporaryTree tree;
  tree.file("stuff/a.PNG");
  EXPECT_EQ(defaultCategoryNameForFolder("stuff", tree.url("stuff")), "Media/Folders");
  tree.file("stuff/Main.py");
  EXPECT_EQ(defaultCategoryNameForFolder("stuff", tree.url("stuff")), "Development/Projects");
  tree.folder("repository/.git");
  EXPECT_EQ(defaultCategoryNameForFolder("x", tree.url("repository")), "Development/Projects");
  tree.folder("empty");
  EXPECT_EQ(defaultCategoryNameForFolder("empty", tree.url("empty")), "Documents/Folders");
  EXPECT_EQ(defaultCategoryNameForFolder("gone", tree.url("gone")), "Documents/Folders");
}

TEST(ProjectTest, recognisesProjectsByTheirFiles) {
  const TemporaryTree tree;
  tree.file("rust/Cargo.toml");
  tree.folder("cloned/.git");
  tree.file("plain/main.py");
  EXPECT_TRUE(isProjectOrBundleDirectory(tree.url("rust")));
  EXPECT_TRUE(isProjectOrBundleDirectory(tree.url("cloned")));
  EXPECT_FALSE(isProjectOrBundleDirectory(tree.url("plain")));
  EXPECT_FALSE(isProjectOrBundleDirectory(tree.url("gone")));
}

TEST(GeneratedFolders, areRecognisedByNamePatternOrLearning) {
  for (const char* name : {"PDFs", "Keep As Is", "PDF Files", "7Z Files", "2024-05 (May)", "1999-12 (décembre)"}) {
    EXPECT_TRUE(isGeneratedFolder(name, {})) << name;
  }
  for (const char* name : {"pdfs", "Documents", "pdf Files", " Files", "My PDF Files", "PDF Files 2", "2024-05",
                           "2024-05 ()", "2024-5 (May)", "x 2024-05 (May)", "Work"}) {
    EXPECT_FALSE(isGeneratedFolder(name, {})) << name;
  }
  EXPECT_TRUE(isGeneratedFolder("Work", {"Work"}));
  EXPECT_TRUE(isReservedTopLevelCategory("Organized"));
  EXPECT_FALSE(isReservedTopLevelCategory("Sorted"));
}

TEST(SmartCategory, dependsOnTheFolderAndTheName) {
  using enum ItemKind;
  const Rows<const char*, const char*, ItemKind, const char*> rows{
      {"my PHOTOS", "Screen Shot 1.gif", file, "Screenshots"},
      {"Pictures", "Capture.png", file, "Screenshots"},
      {"Pictures", "CleanShot of a logo.png", file, "Screenshots"},
      {"Pictures", "ChatGPT logo.png", file, "AI Generated"},
      {"Pictures", "Logo.svg", file, "Banners & Graphics"},
      {"Pictures", "IMG_1 header.HEIC", file, "Banners & Graphics"},
      {"Pictures", "x.HEIC", file, "Photos & Pictures"},
      {"Pictures", "DSC_1.svg", file, "Photos & Pictures"},
      {"Pictures", "x.EPS", file, "Vectors & Icons"},
      {"Pictures", "x.gif", file, "GIFs & Animations"},
      {"Pictures", "report.pdf", file, "Photos & Pictures"},
      {"Pictures", "x.inv", file, "Photos & Pictures"},
      {"Image Box", "x.gif", file, "GIFs & Animations"},
      // The name is compared in lower case, where no camel shows.
      {"MyPhotos", "x.gif", file, "Media/Images"},
      {"Epic", "x.gif", file, "Media/Images"},
      {"media", "a.SVG", file, "Images"},
      {"Media", "My Screenshot.png", file, "Screenshots"},
      {"Media", "screenshot.mov", file, "Videos"},
      {"Media", "a.aiff", file, "Audio"},
      {"Media", "a.pdf", file, "Other"},
      {"Media 2", "a.pdf", file, "Documents/PDFs"},
      {"Documents", "a.pdf", file, "PDFs"},
      {"DOCUMENT", "a.txt", file, "Text & Notes"},
      {"Documents", "a.png", file, "Media/Images"},
      {"Documents", "a.doc", file, "Old/Letters"},
      {"Dev", "a.png", file, "Source Code"},
      {"CODE", "x.inv", file, "Source Code"},
      {"Downloads", "a.PDF", file, "Documents/PDFs"},
      {"Downloads", "noext", file, "Other"},
      {"Downloads", ".hidden", file, "Other"},
      {"Downloads", "bill.INV", file, "Work/Invoices"},
      {"Downloads", "Screenshot.webp", file, "Media/Screenshots"},
      {"Pictures", "Trip", folder, "Folders"},
      {"Media", "old PHOTOS", folder, "Images"},
      {"Media", "movie photos", folder, "Images"},
      {"Media", "Movies", folder, "Videos"},
      {"Media", "musicals", folder, "Audio"},
      {"Media", "Stuff", folder, "Folders"},
      {"Documents", "Homework", folder, "Folders"},
      {"Documents", "Backups", folder, "Archives/Folders"},
      {"development", "Photos", folder, "Projects"},
      {"Downloads", "MyPhotos", folder, "Media/Folders"},
      {"Downloads", "nothing told", folder, "Documents/Folders"},
  };
  for (const auto& [in, name, kind, category] : rows) {
    const CategoryChooser chooser(FileUrl(std::string("/d/") + in), OrganizationStrategy::byCategory,
                                  {{"inv", "Work/Invoices"}, {"doc", "Documents/Old/Documents/Letters"}});
    EXPECT_EQ(chooser.categoryOf({.name = name, .kind = kind}), category) << name << " in " << in;
  }
}

std::string byType(std::string_view name, ItemKind kind = ItemKind::file) {
  return CategoryChooser(FileUrl("/d/Pictures"), OrganizationStrategy::byType, {{"pdf", "x"}})
      .categoryOf({.name = name, .kind = kind});
}

TEST(ByType, takesTheExtensionInUpperCase) {
  EXPECT_EQ(byType("a.pdf"), "PDF Files");
  EXPECT_EQ(byType("archive.tar.gz"), "GZ Files");
  EXPECT_EQ(byType("Makefile"), "No Extension");
  EXPECT_EQ(byType(".bashrc"), "No Extension");
  EXPECT_EQ(byType("a.pdf", ItemKind::folder), "Folders");
  EXPECT_EQ(byType("x.größe"), "GRÖSSE Files");
  EXPECT_LE(byType("x." + std::string(253, 'y')).size(), 255U);
}

class ByDate : public testing::Test {
 protected:
  ByDate() : m_before(icu::Locale::getDefault()) {}
  ~ByDate() override { useLocale(m_before); }
  static void useLocale(const icu::Locale& locale) {
    UErrorCode status = U_ZERO_ERROR;
    icu::Locale::setDefault(locale, status);
  }
  static std::string monthOf(const CategoryChooser::Item& item) {
    return CategoryChooser(FileUrl("/d/Pictures"), OrganizationStrategy::byDate, {}).categoryOf(item);
  }

  const FileTime endOfApril{1'714'520'000, 0};  // 2024-04-30T23:33:20Z
  const FileTime march2021{1'615'000'000, 0};

 private:
  icu::Locale m_before;
};

TEST_F(ByDate, namesTheMonthInTheUsersLanguageAndTimeZone) {
  useLocale(icu::Locale("en_US"));
  inTimeZone("UTC", [&] { EXPECT_EQ(monthOf({.name = "a", .modified = endOfApril}), "2024-04 (April)"); });
  inTimeZone("Europe/Berlin", [&] { EXPECT_EQ(monthOf({.name = "a", .modified = endOfApril}), "2024-05 (May)"); });
  useLocale(icu::Locale("de_DE"));
  inTimeZone("UTC", [&] { EXPECT_EQ(monthOf({.name = "a", .modified = march2021}), "2021-03 (März)"); });
  useLocale(icu::Locale("ja_JP"));
  inTimeZone("UTC", [&] { EXPECT_EQ(monthOf({.name = "a", .modified = march2021}), "2021-03 (3月)"); });
}

TEST_F(ByDate, prefersTheModificationDate) {
  useLocale(icu::Locale("en_US"));
  inTimeZone("UTC", [&] {
    EXPECT_EQ(monthOf({.name = "a", .modified = march2021, .created = endOfApril}), "2021-03 (March)");
    EXPECT_EQ(monthOf({.name = "a", .kind = ItemKind::folder, .created = endOfApril}), "2024-04 (April)");
    const auto undated = monthOf({.name = "a"});
    EXPECT_GE(undated, "2024-05");
  });
}

constexpr const char* learnedKey = "OrvaneLearnedCategoryPreferences";

TEST(CategoryPreferencesStore, remembersUnderLowerCaseKeysAndStoresAtOnce) {
  MemoryPreferences preferences;
  CategoryPreferencesStore store(preferences);
  store.rememberPreference("PDF", "Work/Invoices");
  EXPECT_EQ(store.preferredCategory("Pdf"), "Work/Invoices");
  EXPECT_FALSE(store.preferredCategory("txt"));
  EXPECT_EQ(preferences.values[learnedKey], Json({{"pdf", "Work/Invoices"}}));
  CategoryPreferencesStore(preferences).rememberPreference("txt", "Notes");
  store.rememberPreference("pdf", "Work");
  EXPECT_EQ(preferences.values[learnedKey], Json({{"pdf", "Work"}, {"txt", "Notes"}})) << "another process learned too";
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

}  // namespace
}  // namespace orvane::test
