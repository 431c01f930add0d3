#include "core/scanning/records/FileItem.h"

#include "core/base/text/Json.h"
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
  std::vector<std::string> keys;
  for (const auto& [key, value] : json.items()) keys.push_back(key);
  EXPECT_EQ(keys,
            (std::vector<std::string>{"id", "url", "relativePath", "fileSize", "createdDate", "lastModifiedDate",
                                      "lastOpenedDate", "category", "riskLabel", "isSelected", "isCloudPlaceholder"}));
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

}  // namespace
}  // namespace orvane::test
