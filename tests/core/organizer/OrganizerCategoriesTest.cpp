#include "core/organizer/categories/OrganizerCategories.h"

#include "core/organizer/categories/GeneratedFolders.h"
#include "tests/support/TemporaryTree.h"

#include <array>

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

}  // namespace
}  // namespace orvane::test
