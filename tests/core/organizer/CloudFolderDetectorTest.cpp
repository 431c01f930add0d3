#include "core/organizer/records/CloudFolderDetector.h"

#include "tests/support/TemporaryTree.h"

namespace orvane::test {
namespace {

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
