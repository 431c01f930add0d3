#include "core/organizer/categories/CategoryChooser.h"

#include "tests/support/TemporaryTree.h"
#include "tests/support/TimeZone.h"

#include <unicode/locid.h>

namespace orvane::test {
namespace {

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

}  // namespace
}  // namespace orvane::test
