#include "core/organizer/categories/CategoryChooser.h"

#include "tests/support/TemporaryTree.h"
#include "tests/support/TimeZone.h"

#include <gtest/gtest.h>
#include <unicode/locid.h>

#include <ostream>
#include <string>

namespace orvane {
namespace {

using Item = CategoryChooser::Item;

struct Choice {
  const char* folder;
  const char* name;
  ItemKind kind;
  const char* category;
};
void PrintTo(const Choice& choice, std::ostream* out) {
  *out << choice.name << " in " << choice.folder;
}
class SmartCategory : public testing::TestWithParam<Choice> {};

TEST_P(SmartCategory, dependsOnTheFolderAndTheName) {
  const auto& choice = GetParam();
  const CategoryChooser chooser(FileUrl(std::string("/d/") + choice.folder), OrganizationStrategy::byCategory,
                                {{"inv", "Work/Invoices"}, {"doc", "Documents/Old/Documents/Letters"}});
  EXPECT_EQ(chooser.categoryOf({.name = choice.name, .kind = choice.kind}), choice.category);
}

constexpr auto file = ItemKind::file;
constexpr auto aFolder = ItemKind::folder;

INSTANTIATE_TEST_SUITE_P(Pictures, SmartCategory,
                         testing::Values(Choice{"Pictures", "Trip", aFolder, "Folders"},
                                         Choice{"my PHOTOS", "Screen Shot 1.gif", file, "Screenshots"},
                                         Choice{"Pictures", "Capture.png", file, "Screenshots"},
                                         Choice{"Pictures", "CleanShot of a logo.png", file, "Screenshots"},
                                         Choice{"Pictures", "ChatGPT logo.png", file, "AI Generated"},
                                         Choice{"Pictures", "Logo.svg", file, "Banners & Graphics"},
                                         Choice{"Pictures", "IMG_1 header.HEIC", file, "Banners & Graphics"},
                                         Choice{"Pictures", "x.HEIC", file, "Photos & Pictures"},
                                         Choice{"Pictures", "DSC_1.svg", file, "Photos & Pictures"},
                                         Choice{"Pictures", "x.EPS", file, "Vectors & Icons"},
                                         Choice{"Pictures", "x.gif", file, "GIFs & Animations"},
                                         Choice{"Pictures", "report.pdf", file, "Photos & Pictures"},
                                         Choice{"Pictures", "x.inv", file, "Photos & Pictures"},
                                         Choice{"Image Box", "x.gif", file, "GIFs & Animations"},
                                         // The name is compared in lower case, where no camel shows.
                                         Choice{"MyPhotos", "x.gif", file, "Media/Images"},
                                         Choice{"Epic", "x.gif", file, "Media/Images"}));

INSTANTIATE_TEST_SUITE_P(
    Media, SmartCategory,
    testing::Values(Choice{"Media", "old PHOTOS", aFolder, "Images"},
                    Choice{"Media", "movie photos", aFolder, "Images"}, Choice{"Media", "Movies", aFolder, "Videos"},
                    Choice{"Media", "musicals", aFolder, "Audio"}, Choice{"Media", "Stuff", aFolder, "Folders"},
                    Choice{"media", "a.SVG", file, "Images"}, Choice{"Media", "My Screenshot.png", file, "Screenshots"},
                    Choice{"Media", "screenshot.mov", file, "Videos"}, Choice{"Media", "a.aiff", file, "Audio"},
                    Choice{"Media", "a.pdf", file, "Other"}, Choice{"Media 2", "a.pdf", file, "Documents/PDFs"}));

INSTANTIATE_TEST_SUITE_P(Documents, SmartCategory,
                         testing::Values(Choice{"Documents", "a.pdf", file, "PDFs"},
                                         Choice{"DOCUMENT", "a.txt", file, "Text & Notes"},
                                         Choice{"Documents", "Homework", aFolder, "Folders"},
                                         Choice{"Documents", "a.png", file, "Media/Images"},
                                         Choice{"Documents", "Backups", aFolder, "Archives/Folders"},
                                         Choice{"Documents", "a.doc", file, "Old/Letters"}));

INSTANTIATE_TEST_SUITE_P(Development, SmartCategory,
                         testing::Values(Choice{"Dev", "a.png", file, "Source Code"},
                                         Choice{"development", "Photos", aFolder, "Projects"},
                                         Choice{"CODE", "x.inv", file, "Source Code"}));

INSTANTIATE_TEST_SUITE_P(OtherFolders, SmartCategory,
                         testing::Values(Choice{"Downloads", "a.PDF", file, "Documents/PDFs"},
                                         Choice{"Downloads", "noext", file, "Other"},
                                         Choice{"Downloads", ".hidden", file, "Other"},
                                         Choice{"Downloads", "bill.INV", file, "Work/Invoices"},
                                         Choice{"Downloads", "MyPhotos", aFolder, "Media/Folders"},
                                         Choice{"Downloads", "Screenshot.webp", file, "Media/Screenshots"},
                                         Choice{"Downloads", "nothing told", aFolder, "Documents/Folders"}));

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
  static std::string monthOf(const Item& item) {
    return CategoryChooser(FileUrl("/d/Pictures"), OrganizationStrategy::byDate, {}).categoryOf(item);
  }

  const FileTime endOfApril{1'714'520'000, 0};  // 2024-04-30T23:33:20Z
  const FileTime march2021{1'615'000'000, 0};

 private:
  icu::Locale m_before;
};

TEST_F(ByDate, namesTheMonthInTheUsersLanguageAndTimeZone) {
  useLocale(icu::Locale("en_US"));
  test::inTimeZone("UTC", [&] { EXPECT_EQ(monthOf({.name = "a", .modified = endOfApril}), "2024-04 (April)"); });
  test::inTimeZone("Europe/Berlin",
                   [&] { EXPECT_EQ(monthOf({.name = "a", .modified = endOfApril}), "2024-05 (May)"); });
  useLocale(icu::Locale("de_DE"));
  test::inTimeZone("UTC", [&] { EXPECT_EQ(monthOf({.name = "a", .modified = march2021}), "2021-03 (März)"); });
  useLocale(icu::Locale("ja_JP"));
  test::inTimeZone("UTC", [&] { EXPECT_EQ(monthOf({.name = "a", .modified = march2021}), "2021-03 (3月)"); });
}

TEST_F(ByDate, prefersTheModificationDate) {
  useLocale(icu::Locale("en_US"));
  test::inTimeZone("UTC", [&] {
    EXPECT_EQ(monthOf({.name = "a", .modified = march2021, .created = endOfApril}), "2021-03 (March)");
    EXPECT_EQ(monthOf({.name = "a", .kind = ItemKind::folder, .created = endOfApril}), "2024-04 (April)");
    const auto undated = monthOf({.name = "a"});
    EXPECT_GE(undated, "2024-05");
  });
}

}  // namespace
}  // namespace orvane
