#include "core/base/text/Json.h"
#include "core/scanning/records/FileItem.h"
#include "core/scanning/records/RiskEvaluator.h"
#include "core/scanning/records/StorageSummary.h"
#include "core/scanning/scan/FolderRisk.h"
#include "tests/support/Testing.h"

namespace orvane::test {
namespace {

FileItem::Fields fieldsOf(ScanCategory category) {
  FileItem::Fields fields;
  fields.url = FileUrl("/home/u/Downloads/a b.dmg");
  fields.fileSize = 12;
  fields.createdDate = dateFromReferenceSeconds(1.5);
  fields.lastModifiedDate = dateFromReferenceSeconds(2);
  fields.category = category;
  return fields;
}

TEST(ScanCategory, standsInDeclarationOrder) {
  std::string all;
  for (const auto category : allScanCategories) all += std::string(rawValue(category)) + " ";
  EXPECT_EQ(all,
            "caches logs developerCaches oldDownloads screenshots largeFiles duplicates appLeftovers trash "
            "messagingMedia browserCaches manualReview ");
  EXPECT_FALSE(scanCategoryFromRawValue("Caches"));
}

TEST(FileItem, startsWithItsCategorysLabelAndSelectsWhatIsSafe) {
  const Rows<ScanCategory, RiskLabel, bool> rows{
      {ScanCategory::oldDownloads, RiskLabel::safe, true},
      {ScanCategory::screenshots, RiskLabel::review, false},
      {ScanCategory::manualReview, RiskLabel::manual, false},
  };
  for (const auto& [category, label, isSelected] : rows) {
    const FileItem item(fieldsOf(category));
    EXPECT_EQ(item.riskLabel(), label);
    EXPECT_EQ(item.isSelected(), isSelected);
  }
}

TEST(FileItem, isNeverSelectedWhenManual) {
  auto fields = fieldsOf(ScanCategory::caches);
  fields.riskLabel = RiskLabel::manual;
  fields.isSelected = true;
  FileItem item(std::move(fields));
  EXPECT_FALSE(item.isSelected());
  item.setSelected(true);
  EXPECT_FALSE(item.isSelected());
}

TEST(FileItem, keepsItsRelativePathHoweverItIsGiven) {
  auto fields = fieldsOf(ScanCategory::caches);
  EXPECT_EQ(FileItem(fields).relativePath(), "a b.dmg");
  fields.relativePath = "Downloads/a b.dmg";
  const FileItem byText(fields);
  fields.relativePath.reset();
  fields.relativeStart = 8;
  const FileItem byStart(fields);
  EXPECT_EQ(byStart.relativePath(), "Downloads/a b.dmg");
  EXPECT_EQ(byText, byStart);
  EXPECT_EQ(std::hash<FileItem>{}(byText), std::hash<FileItem>{}(byStart));
  auto selected = byText;
  selected.setSelected(false);
  EXPECT_NE(selected, byText);
  fields.relativeStart.reset();
  fields.relativePath = "elsewhere";
  EXPECT_EQ(FileItem(fields).relativePath(), "elsewhere");
}

TEST(FileItem, survivesJsonWithTheGivenKeys) {
  auto fields = fieldsOf(ScanCategory::oldDownloads);
  const FileItem unopened(fields);
  EXPECT_FALSE(unopened.toJson().contains("lastOpenedDate"));
  EXPECT_EQ(FileItem::fromJson(unopened.toJson()), unopened);
  fields.lastOpenedDate = dateFromReferenceSeconds(0.1);
  fields.isCloudPlaceholder = true;
  const FileItem item(fields);
  const auto json = item.toJson();
  EXPECT_EQ(keysOf(json), words("id url relativePath fileSize createdDate lastModifiedDate lastOpenedDate category "
                                "riskLabel isSelected isCloudPlaceholder"));
  EXPECT_EQ(FileItem::fromJson(parseJson(jsonText(json))), item);
}

TEST(FileItemIdentity, survivesTheRoundOfDatesToTheNanosecond) {
  for (const std::int64_t seconds : {std::int64_t{0}, std::int64_t{978307199}, std::int64_t{4102444800}}) {
    for (const std::int64_t nanoseconds : {0, 1, 499'999'999, 500'000'001, 999'999'999}) {
      const ItemIdentity identity{1ULL << 40, ~0ULL, 12, {seconds, nanoseconds}, FileType::regular};
      FileItem::Fields fields;
      fields.url = FileUrl("/a/b");
      fields.identity = identity;
      const FileItem item(std::move(fields));
      EXPECT_EQ(item.identity(), identity) << seconds << " " << nanoseconds;
      EXPECT_EQ(item.fileSize(), 12);
      EXPECT_EQ(item.lastModifiedDate(), identity.modified.date());
    }
  }
  EXPECT_FALSE(FileItem(FileItem::Fields{}).identity());
}

TEST(FileItemIdentity, ofAFolderIsItsInode) {
  const ItemIdentity folder{1, 2, 4096, {3, 4}, FileType::directory};
  auto now = folder;
  now.size = 8192;
  now.modified = {5, 6};
  EXPECT_TRUE(folder.isStill(now));
  now.type = FileType::symbolicLink;
  EXPECT_FALSE(folder.isStill(now));
  auto file = folder;
  file.type = FileType::regular;
  auto written = file;
  written.modified = {3, 5};
  EXPECT_TRUE(file.isStill(file));
  EXPECT_FALSE(file.isStill(written));
}

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

StorageSummary sample() {
  return {1000, 250, 750, 100, 5000, {{ScanCategory::caches, 60}, {ScanCategory::trash, 40}}};
}

TEST(StorageSummary, givesFractionsOfTheDisk) {
  EXPECT_DOUBLE_EQ(sample().usedPercentage(), 0.75);
  EXPECT_DOUBLE_EQ(sample().reclaimablePercentage(), 0.1);
  EXPECT_EQ(StorageSummary{}.usedPercentage(), 0);
  EXPECT_EQ((StorageSummary{.totalDiskBytes = 0, .usedDiskBytes = 5, .categoryBreakdown = {}}.usedPercentage()), 0);
}

TEST(StorageSummary, survivesJson) {
  const auto json = sample().toJson();
  EXPECT_EQ(jsonText(json), R"({"totalDiskBytes":1000,"freeDiskBytes":250,"usedDiskBytes":750,"reclaimableBytes":100,)"
                            R"("lifetimeReclaimedBytes":5000,"categoryBreakdown":{"caches":60,"trash":40}})");
  EXPECT_EQ(StorageSummary::fromJson(json), sample());
}

TEST(StorageSummary, refusesUnknownCategories) {
  auto json = sample().toJson();
  json["categoryBreakdown"]["Caches"] = 1;
  EXPECT_THROW(static_cast<void>(StorageSummary::fromJson(json)), JsonError);
}

}  // namespace
}  // namespace orvane::test
