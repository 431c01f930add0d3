#include "core/organizer/records/CloudFolderDetector.h"

#include "tests/support/TemporaryTree.h"

#include <gtest/gtest.h>

namespace orvane {
namespace {

struct ProviderCase {
  const char* path;
  std::optional<CloudProvider> provider;
};
class DetectProvider : public testing::TestWithParam<ProviderCase> {};

TEST_P(DetectProvider, goesByThePath) {
  EXPECT_EQ(CloudFolderDetector::detectProvider(FileUrl(GetParam().path), "/home/u"), GetParam().provider)
      << GetParam().path;
}
INSTANTIATE_TEST_SUITE_P(
    Paths, DetectProvider,
    testing::Values(ProviderCase{"/home/u/Dropbox/Report.pdf", CloudProvider::dropBox},
                    ProviderCase{"/home/u/Dropbox Old/x", CloudProvider::dropBox},
                    ProviderCase{"/home/other/Dropbox", std::nullopt},
                    ProviderCase{"/Volumes/Data/Dropbox/x", CloudProvider::dropBox},
                    ProviderCase{"/x/Library/Mobile Documents/com~apple~Pages/x", CloudProvider::iCloud},
                    ProviderCase{"/x/Mobile Documents/Dropbox/x", CloudProvider::iCloud},
                    ProviderCase{"/x/my GoogleDrive notes.txt", CloudProvider::googleDrive},
                    ProviderCase{"/home/u/Google Drive", CloudProvider::googleDrive},
                    ProviderCase{"/x/Google Drive/y", CloudProvider::googleDrive},
                    ProviderCase{"/home/u/OneDrive - Work/x", CloudProvider::oneDrive},
                    ProviderCase{"/x/OneDrive/y", CloudProvider::oneDrive}, ProviderCase{"/x/onedrive/y", std::nullopt},
                    ProviderCase{"/home/u/Documents/x", std::nullopt}));

TEST(CloudFolderDetector, usesTheCurrentUsersHomeFolder) {
  const test::ScopedEnvironment home("HOME", "/home/somebody");
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

TEST(CloudProvider, isReadBackFromItsName) {
  for (const auto provider : allCloudProviders) EXPECT_EQ(cloudProviderFromRawValue(rawValue(provider)), provider);
  EXPECT_FALSE(cloudProviderFromRawValue("iCloud"));
}

}  // namespace
}  // namespace orvane
