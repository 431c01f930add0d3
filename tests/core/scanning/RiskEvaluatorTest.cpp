#include "core/scanning/records/RiskEvaluator.h"

#include "core/scanning/scan/FolderRisk.h"
#include "tests/support/Testing.h"

#include <random>

namespace orvane::test {
namespace {

Date aged(double seconds) {
  return ReferenceClock::now() - ReferenceClock::duration(seconds);
}

TEST(RiskEvaluator, labelsByCategoryAndPath) {
  const Rows<RiskLabel, ScanCategory, std::vector<const char*>> rows{
      {RiskLabel::manual, ScanCategory::manualReview, {"/h/x"}},
      {RiskLabel::manual,
       ScanCategory::caches,
       {"/h/Library/Keychains/x", "/h/Library/Preferences/com.apple.finder.plist",
        "/h/Preferences/org.x/deep/x.plist"}},
      {RiskLabel::safe, ScanCategory::caches, {"/h/Library/Keychains", "/h/x.plist", "/h/preferences/com.apple.x"}},
      {RiskLabel::manual, ScanCategory::logs, {"/h/Preferences/com.apple.x/y.log"}},
      {RiskLabel::review, ScanCategory::developerCaches, {"/h/x"}},
      {RiskLabel::review, ScanCategory::duplicates, {"/h/x"}},
      {RiskLabel::review, ScanCategory::messagingMedia, {"/h/x"}},
      {RiskLabel::review, ScanCategory::oldDownloads, {"/h/x"}},
      {RiskLabel::safe, ScanCategory::trash, {"/h/x"}},
      {RiskLabel::safe, ScanCategory::browserCaches, {"/h/x"}},
  };
  for (const auto& [label, category, paths] : rows) {
    for (const auto* path : paths) {
      EXPECT_EQ(RiskEvaluator::evaluate(category, FileUrl(path), 1, aged(0)), label)
          << path << " of " << rawValue(category);
    }
  }
}

TEST(RiskEvaluator, trustsInstallersFromSevenDaysOn) {
  const FileUrl url("/h/Downloads/x.dmg");
  const auto label = [&](double age) { return RiskEvaluator::evaluate(ScanCategory::oldDownloads, url, 1, aged(age)); };
  EXPECT_EQ(label(RiskEvaluator::safeInstallerAgeSeconds), RiskLabel::safe);
  EXPECT_EQ(label(RiskEvaluator::safeInstallerAgeSeconds - 3600), RiskLabel::review);
  EXPECT_EQ(label(-3600), RiskLabel::review);
}

TEST(FolderRisk, agreesOnPathsMadeOfTellingPieces) {
  const std::vector<std::string> pieces{
      "Library", "Preferences", "Keychains",        "com.apple.x", "com.apple.y.plist",
      "a.plist", ".plist",      "com.applex.plist", "x",           "Preferences.plist"};
  std::mt19937 random(3);
  int manual = 0;
  for (int i = 0; i < 5'000; ++i) {
    std::string folder;
    for (auto depth = random() % 4; depth > 0; --depth) folder += "/" + pieces[random() % pieces.size()];
    const auto& name = pieces[random() % pieces.size()];
    const auto category = allScanCategories[random() % allScanCategories.size()];
    const auto created = aged(static_cast<double>(random() % 2) * RiskEvaluator::safeInstallerAgeSeconds);
    const auto expected = RiskEvaluator::evaluate(category, FileUrl(folder + "/" + name), 1, created);
    EXPECT_EQ(FolderRisk(folder + "/").evaluate(category, name, created), expected) << folder << "/" << name;
    manual += expected == RiskLabel::manual && category != ScanCategory::manualReview ? 1 : 0;
  }
  EXPECT_GT(manual, 500);
}

}  // namespace
}  // namespace orvane::test
