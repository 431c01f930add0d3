#include "core/organizer/categories/CategoryClassifier.h"

#include "core/organizer/categories/FolderClassifier.h"
#include "tests/support/Testing.h"

namespace orvane::test {
namespace {

constexpr std::int64_t large = 104'857'600;

TEST(CategoryClassifier, namesTheCategory) {
  const Rows<ScanCategory, std::vector<const char*>> rows{
      {ScanCategory::trash, {"/h/.Trash", "/h/.Trash/setup.dmg", "/h/.Trash/Library/Caches/Google/x"}},
      {ScanCategory::manualReview,
       {"/h/.Trash2/x", "/h/MyLibrary/Caches/other/x", "/h/screenshot.png", "/h/x.zip", "/h/Library/Containers"}},
      {ScanCategory::developerCaches,
       {"/h/Library/Developer/Xcode/DerivedData/x.log", "/h/Library/Developer/Xcode/Archives"}},
      {ScanCategory::browserCaches, {"/h/Library/Caches/GoogleUpdater/x", "/h/Library/Caches/BraveSoftware"}},
      {ScanCategory::messagingMedia, {"/h/Library/Caches/ms-teams/Screenshot.png"}},
      {ScanCategory::caches,
       {"/h/Library/Caches/Adobe/report.log", "/h/Library/Application Support/Adobe/Common/Media Cache Files/x",
        "/h/Library/Caches/other/setup.dmg"}},
      {ScanCategory::logs, {"/h/Library/Logs/x.dmg", "/h/x.LOG"}},
      {ScanCategory::screenshots, {"/h/Downloads/Screenshot.zip", "/h/Capture d’écran 1.png"}},
      {ScanCategory::oldDownloads,
       {"/h/anywhere/setup.dmg", "/h/x.AppInstaller", "/h/x.p\xE2\x84\xAAg", "/h/Downloads/x.xz"}},
      {ScanCategory::appLeftovers, {"/h/Library/Containers/x"}},
  };
  for (const auto& [category, paths] : rows) {
    for (const auto* path : paths) EXPECT_EQ(CategoryClassifier::classify(FileUrl(path), 1), category) << path;
  }
  const Rows<const char*, ScanCategory, std::int64_t> ofSize{
      {"/h/x.zip", ScanCategory::largeFiles, large},
      {"/h/Library/Application Support/App/x.zip", ScanCategory::appLeftovers, large},
      {"/h/Movies/x.mov", ScanCategory::largeFiles, 150'000'000},
      {"/h/Movies/x.mov", ScanCategory::manualReview, large - 1},
  };
  for (const auto& [path, category, size] : ofSize) {
    EXPECT_EQ(CategoryClassifier::classify(FileUrl(path), size), category) << path;
  }
}

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
  auto pieces = words(R"(h .Trash Library Caches Developer Xcode DerivedData Archives Google GoogleX Logs Downloads
      CoreSimulator com.apple.Safari ms-teams Adobe Common Containers x.log Screenshot.zip x.zip x.dmg blender MyLibrary
      com.hnc.Discord Shot_ a.7Z com.apple.FinalCut.x)");
  for (const auto* piece : {"Media Cache Files", "Media Cache Files X", "Application Support"}) {
    pieces.emplace_back(piece);
  }
  // Paths that reach deep into the tables by chance alone are rare, so some begin there.
  std::vector<std::string> beginnings{"", "/h/Library/Application Support/Adobe/Common"};
  for (const auto& folder : words("/Caches /Developer/Xcode /Developer/CoreSimulator")) {
    beginnings.push_back("/h/Library" + folder);
  }
  beginnings.emplace_back("/h/Library");
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
}  // namespace orvane::test
