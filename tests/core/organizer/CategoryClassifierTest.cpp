#include "core/organizer/categories/CategoryClassifier.h"

#include "core/organizer/categories/FolderClassifier.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

namespace orvane {
namespace {

constexpr std::int64_t large = 104'857'600;

struct PathCase {
  const char* path;
  ScanCategory category;
  std::int64_t size = 1;
};
class Classify : public testing::TestWithParam<PathCase> {};

TEST_P(Classify, namesTheCategory) {
  EXPECT_EQ(CategoryClassifier::classify(FileUrl(GetParam().path), GetParam().size), GetParam().category)
      << GetParam().path;
}
INSTANTIATE_TEST_SUITE_P(
    Paths, Classify,
    testing::Values(PathCase{"/h/.Trash", ScanCategory::trash}, PathCase{"/h/.Trash/setup.dmg", ScanCategory::trash},
                    PathCase{"/h/.Trash2/x", ScanCategory::manualReview},
                    PathCase{"/h/.Trash/Library/Caches/Google/x", ScanCategory::trash},
                    PathCase{"/h/Library/Developer/Xcode/DerivedData/x.log", ScanCategory::developerCaches},
                    PathCase{"/h/Library/Developer/Xcode/Archives", ScanCategory::developerCaches},
                    PathCase{"/h/Library/Caches/GoogleUpdater/x", ScanCategory::browserCaches},
                    PathCase{"/h/Library/Caches/BraveSoftware", ScanCategory::browserCaches},
                    PathCase{"/h/Library/Caches/ms-teams/Screenshot.png", ScanCategory::messagingMedia},
                    PathCase{"/h/Library/Caches/Adobe/report.log", ScanCategory::caches},
                    PathCase{"/h/Library/Application Support/Adobe/Common/Media Cache Files/x", ScanCategory::caches},
                    PathCase{"/h/Library/Logs/x.dmg", ScanCategory::logs}, PathCase{"/h/x.LOG", ScanCategory::logs},
                    PathCase{"/h/Library/Caches/other/setup.dmg", ScanCategory::caches},
                    PathCase{"/h/MyLibrary/Caches/other/x", ScanCategory::manualReview},
                    PathCase{"/h/Downloads/Screenshot.zip", ScanCategory::screenshots},
                    PathCase{"/h/Capture d’écran 1.png", ScanCategory::screenshots},
                    PathCase{"/h/screenshot.png", ScanCategory::manualReview},
                    PathCase{"/h/anywhere/setup.dmg", ScanCategory::oldDownloads},
                    PathCase{"/h/x.AppInstaller", ScanCategory::oldDownloads},
                    PathCase{"/h/x.p\xE2\x84\xAAg", ScanCategory::oldDownloads},  // the Kelvin sign's lower case is "k"
                    PathCase{"/h/Downloads/x.xz", ScanCategory::oldDownloads},
                    PathCase{"/h/x.zip", ScanCategory::manualReview},
                    PathCase{"/h/x.zip", ScanCategory::largeFiles, large},
                    PathCase{"/h/Library/Application Support/App/x.zip", ScanCategory::appLeftovers, large},
                    PathCase{"/h/Library/Containers/x", ScanCategory::appLeftovers},
                    PathCase{"/h/Library/Containers", ScanCategory::manualReview},
                    PathCase{"/h/Movies/x.mov", ScanCategory::largeFiles, 150'000'000},
                    PathCase{"/h/Movies/x.mov", ScanCategory::manualReview, large - 1}));

TEST(CategoryClassifier, knowsScreenshotsByTheBeginningOfTheirNames) {
  for (const char* name : {"Screen Shot 1", "Bildschirmfoto.png", "スクリーンショット 1", "截屏2024", "Shot_1.txt"}) {
    EXPECT_TRUE(CategoryClassifier::isScreenshot(name)) << name;
  }
  for (const char* name : {"", "screenshot.png", "My Screenshot", "Screen", "shot_1"}) {
    EXPECT_FALSE(CategoryClassifier::isScreenshot(name)) << name;
  }
}

// The folder's classifier gives the same answer as the path's, however a path is cut into folder and name.
TEST(FolderClassifier, agreesOnPathsMadeOfTellingPieces) {
  const std::vector<std::string> pieces{
      "h",
      ".Trash",
      "Library",
      "Caches",
      "Developer",
      "Xcode",
      "DerivedData",
      "Archives",
      "Google",
      "GoogleX",
      "Logs",
      "Downloads",
      "CoreSimulator",
      "com.apple.Safari",
      "ms-teams",
      "Adobe",
      "Common",
      "Media Cache Files X",
      "Application Support",
      "Containers",
      "x.log",
      "Screenshot.zip",
      "x.zip",
      "x.dmg",
      "blender",
      "MyLibrary",
      "com.hnc.Discord",
      "Shot_",
      "a.7Z",
      "Media Cache Files",
      "com.apple.FinalCut.x",
  };
  // Paths that reach deep into the tables by chance alone are rare, so some begin there.
  const std::vector<std::string> beginnings{"",
                                            "/h/Library",
                                            "/h/Library/Caches",
                                            "/h/Library/Developer/Xcode",
                                            "/h/Library/Developer/CoreSimulator",
                                            "/h/Library/Application Support/Adobe/Common"};
  std::mt19937 random(7);
  std::vector<int> seen(allScanCategories.size());
  for (int i = 0; i < 40'000; ++i) {
    std::string folder = beginnings[random() % beginnings.size()];
    for (auto depth = random() % 4; depth > 0; --depth) folder += "/" + pieces[random() % pieces.size()];
    const auto& name = pieces[random() % pieces.size()];
    const auto size = static_cast<std::int64_t>(random() % 2) * large;
    const auto expected = CategoryClassifier::classify(FileUrl(folder + "/" + name), size);
    EXPECT_EQ(FolderClassifier(folder + "/").classify(name, size), expected) << folder << "/" << name;
    ++seen[static_cast<std::size_t>(expected)];
  }
  for (const auto category : allScanCategories) {
    if (category == ScanCategory::duplicates) continue;
    EXPECT_GT(seen[static_cast<std::size_t>(category)], 50) << rawValue(category);
  }
}

}  // namespace
}  // namespace orvane
