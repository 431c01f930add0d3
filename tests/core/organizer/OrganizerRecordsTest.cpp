#include "core/base/text/Json.h"
#include "core/organizer/records/CloudFolderDetector.h"
#include "core/organizer/records/OrganizationCategoryGroup.h"
#include "tests/support/TemporaryTree.h"

namespace orvane::test {
namespace {

OrganizationCategoryGroup groupOf(std::initializer_list<std::int64_t> sizes) {
  OrganizationCategoryGroup group;
  group.destinationFolder = FileUrl("/h/Organized/Media/Images");
  for (const auto size : sizes) {
    auto& move = group.moves.emplace_back();
    move.originalURL = FileUrl("/h/a b.png");
    move.fileSize = size;
  }
  return group;
}

TEST(OrganizationCategoryGroup, sumsTheSelectedMoves) {
  auto group = groupOf({10, 20, 30});
  group.moves[1].isSelected = false;
  EXPECT_EQ(group.totalSize(), 40);
}

TEST(OrganizationCategoryGroupDeathTest, endsTheProcessOnOverflow) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  const auto group = groupOf({std::numeric_limits<std::int64_t>::max(), 1});
  EXPECT_DEATH(static_cast<void>(group.totalSize()), "overflow");
}

TEST(OrganizationCategoryGroup, writesItsMovesWithTheGivenKeys) {
  const auto json = groupOf({5}).toJson();
  EXPECT_EQ(json.at("destinationFolder"), "file:///h/Organized/Media/Images");
  const auto& move = json.at("moves").at(0);
  EXPECT_THAT(keysOf(move), ElementsAre("id", "originalURL", "targetURL", "categoryName", "fileSize", "isSelected",
                                        "isDirectory", "sourceRelativePath"));
  EXPECT_EQ(move.at("originalURL"), "file:///h/a%20b.png");
  EXPECT_EQ(move.at("isSelected"), true);
}

TEST(CloudFolderDetector, goesByThePath) {
  const Rows<std::optional<CloudProvider>, std::vector<const char*>> rows{
      {CloudProvider::dropBox, {"/home/u/Dropbox/Report.pdf", "/home/u/Dropbox Old/x", "/Volumes/Data/Dropbox/x"}},
      {std::nullopt, {"/home/other/Dropbox", "/x/onedrive/y", "/home/u/Documents/x"}},
      {CloudProvider::iCloud, {"/x/Library/Mobile Documents/com~apple~Pages/x", "/x/Mobile Documents/Dropbox/x"}},
      {CloudProvider::googleDrive, {"/x/my GoogleDrive notes.txt", "/home/u/Google Drive", "/x/Google Drive/y"}},
      {CloudProvider::oneDrive, {"/home/u/OneDrive - Work/x", "/x/OneDrive/y"}},
  };
  for (const auto& [provider, paths] : rows) {
    for (const auto* path : paths) {
      EXPECT_EQ(CloudFolderDetector::detectProvider(FileUrl(path), "/home/u"), provider) << path;
    }
  }
}

TEST(CloudFolderDetector, usesTheCurrentUsersHomeFolder) {
  const ScopedEnvironment home("HOME", "/home/somebody");
  EXPECT_EQ(CloudFolderDetector::detectProvider(FileUrl("/home/somebody/OneDrive")), CloudProvider::oneDrive);
  EXPECT_EQ(CloudFolderDetector::syncWarning(FileUrl("/x/Mobile Documents/Taxes")),
            "Warning: 'Taxes' is synced via iCloud Drive. Deleting it will also remove it from your other connected "
            "devices.");
  EXPECT_FALSE(CloudFolderDetector::syncWarning(FileUrl("/x/Taxes")));
}

TEST(CloudFolderDetector, knowsPlaceholdersByTheirNames) {
  EXPECT_TRUE(CloudFolderDetector::isDatalessCloudPlaceholder(FileUrl("/x/.Notes.pdf.icloud")));
  for (const char* path : {"/x/Notes.icloud", "/x/.Notes.ICLOUD", "/x/.icloud", "/.x.icloud/y"}) {
    EXPECT_FALSE(CloudFolderDetector::isDatalessCloudPlaceholder(FileUrl(path))) << path;
  }
}

}  // namespace
}  // namespace orvane::test
