#include "core/organizer/categories/OrganizerCategories.h"

#include "core/organizer/categories/GeneratedFolders.h"
#include "tests/support/TemporaryTree.h"

#include <gtest/gtest.h>

#include <array>

namespace orvane {
namespace {

using test::TemporaryTree;

struct ExtensionCase {
  const char* extension;
  const char* filename;
  const char* category;
};
class ExtensionCategory : public testing::TestWithParam<ExtensionCase> {};

TEST_P(ExtensionCategory, namesTheCategory) {
  const auto& [extension, filename, category] = GetParam();
  EXPECT_EQ(defaultCategoryNameForExtension(extension, filename), category);
}
INSTANTIATE_TEST_SUITE_P(
    Extensions, ExtensionCategory,
    testing::Values(ExtensionCase{"pdf", "a.pdf", "Documents/PDFs"},
                    ExtensionCase{"md", "a.md", "Documents/Text & Notes"},
                    ExtensionCase{"csv", "a.csv", "Documents/Spreadsheets"},
                    ExtensionCase{"key", "a.key", "Documents/Presentations"},
                    ExtensionCase{"png", "screenshot.png", "Media/Screenshots"},
                    ExtensionCase{"jpg", "My SCREEN SHOT.jpg", "Media/Screenshots"},
                    ExtensionCase{"heic", "a.heic", "Media/Images"}, ExtensionCase{"JPG", "a.JPG", "Other"},
                    ExtensionCase{"mp4", "Screenshot.mp4", "Media/Videos"}, ExtensionCase{"aiff", "a", "Media/Audio"},
                    ExtensionCase{"xz", "a.xz", "Other"}, ExtensionCase{"7z", "a.7z", "Archives"},
                    ExtensionCase{"iso", "a.iso", "Installers"}, ExtensionCase{"h", "a.h", "Development/Source Code"},
                    ExtensionCase{"", "Makefile", "Other"}));

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

}  // namespace
}  // namespace orvane
