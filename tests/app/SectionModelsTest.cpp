#include "app/apps/AppsModel.h"
#include "app/common/Text.h"
#include "app/organize/OrganizeModel.h"
#include "core/base/text/Json.h"
#include "tests/app/WindowFixture.h"

#include <gmock/gmock.h>

#include <QClipboard>
#include <QGuiApplication>

namespace orvane::test {
namespace {

using testing::IsEmpty;

class SectionModelsTest : public WindowFixture {
 public:
  [[nodiscard]] QString downloads() const { return QString::fromStdString(tree.path("Downloads")); }
};

TEST_F(SectionModelsTest, organizesAFolderAsItWasEditedAndUndoesIt) {
  tree.file("Downloads/song.mp3", "la");
  tree.file("Downloads/report.pdf", "words");
  OrganizeModel model(services());
  EXPECT_EQ(model.folder(), "");
  model.chooseFolder("file://" + downloads());
  EXPECT_EQ(model.folder(), downloads());
  model.analyze();
  ASSERT_TRUE(becomesTrue([&] { return model.hasAnalyzed(); }));
  EXPECT_EQ(model.moveCount(), 2);
  EXPECT_EQ(model.rowCount(), 4);

  // Of the two groups the first is renamed, and the other left alone.
  model.renameGroup(0, "Mine");
  EXPECT_EQ(model.data(model.index(0), OrganizeModel::NameRole).toString(), "Mine");
  EXPECT_TRUE(model.learned().isEmpty()) << "nothing has moved under the name";
  model.toggle(2);
  EXPECT_EQ(model.selectedCount(), 1);
  const auto moved = model.data(model.index(1), OrganizeModel::NameRole).toString().toStdString();
  const auto left = moved == "song.mp3" ? "report.pdf" : "song.mp3";
  model.apply();
  ASSERT_TRUE(becomesTrue([&] { return !model.isWorking(); }));
  EXPECT_THAT(model.messages(), IsEmpty());
  EXPECT_TRUE(exists(tree.path("Downloads/Organized/Mine/" + moved)));
  EXPECT_FALSE(model.learned().isEmpty());
  EXPECT_TRUE(exists(tree.path("Downloads/" + std::string(left))));

  model.undo();
  ASSERT_TRUE(becomesTrue([&] { return !model.isWorking(); }));
  EXPECT_TRUE(exists(tree.path("Downloads/" + moved)));
}

TEST_F(SectionModelsTest, organizesWhatItShowedAndNothingElse) {
  tree.file("Downloads/same.pdf", "same");
  tree.file("Downloads/unchecked.pdf");
  const auto replaced = tree.file("Downloads/zz replaced.pdf", "before");
  tree.file("Downloads/album/1.jpg");
  OrganizeModel model(services());
  model.chooseFolder(downloads());
  model.analyze();
  ASSERT_TRUE(becomesTrue([&] { return model.hasAnalyzed(); }));
  ASSERT_EQ(model.rowCount(), 6);
  // The PDFs in order of their names below their header.
  ASSERT_EQ(model.data(model.index(2), OrganizeModel::NameRole).toString(), "unchecked.pdf");
  model.toggle(2);
  model.renameGroup(0, "Papers");
  EXPECT_EQ(model.selectedCount(), 3) << "renaming keeps the choice";
  EXPECT_EQ(model.data(model.index(0), OrganizeModel::CheckStateRole), Qt::PartiallyChecked);
  EXPECT_EQ(model.data(model.index(1), OrganizeModel::ToRole).toString(), "Papers/same.pdf");

  std::filesystem::remove(replaced);
  tree.file("Downloads/zz replaced.pdf", "after!");
  tree.file("Downloads/arrived.pdf");
  std::filesystem::rename(tree.path("Downloads/album"), tree.path("other"));
  tree.file("Downloads/album/2.jpg");
  model.apply();
  ASSERT_TRUE(becomesTrue([&] { return !model.isWorking(); }));
  EXPECT_EQ(model.messages().size(), 2);
  EXPECT_EQ(model.resultText(), "1 item moved.");
  EXPECT_TRUE(exists(tree.path("Downloads/Organized/Papers/same.pdf")));
  for (const auto* left : {"unchecked.pdf", "zz replaced.pdf", "arrived.pdf", "album/2.jpg"}) {
    EXPECT_TRUE(exists(tree.path("Downloads/" + std::string(left)))) << left;
  }
}

TEST_F(SectionModelsTest, showsWhatCannotBeOrganizedAndWhy) {
  tree.file("Downloads/a.pdf");
  tree.link("Downloads/Organized", tree.folder("Elsewhere"));
  OrganizeModel model(services());
  model.chooseFolder(downloads());
  model.analyze();
  ASSERT_TRUE(becomesTrue([&] { return model.hasAnalyzed(); }));
  EXPECT_EQ(model.selectedCount(), 0);
  EXPECT_EQ(model.data(model.index(0), OrganizeModel::CheckStateRole), -1);
  EXPECT_EQ(model.data(model.index(1), OrganizeModel::CheckStateRole), -1);
  EXPECT_THAT(model.data(model.index(1), OrganizeModel::ReasonRole).toString().toStdString(),
              testing::HasSubstr("denied"));
  model.selectAll(true);
  model.toggle(1);
  EXPECT_EQ(model.selectedCount(), 0);

  model.chooseFolder("/etc");
  model.analyze();
  ASSERT_TRUE(becomesTrue([&] { return !model.isSearching(); }));
  EXPECT_EQ(model.moveCount(), 0);
  EXPECT_FALSE(model.hasAnalyzed());
  EXPECT_EQ(model.notices().size(), 1);

  tree.file("Downloads/Documents/PDFs/in place.pdf");
  model.chooseFolder(downloads() + "/Documents/PDFs");
  model.chooseDestination(downloads());
  model.analyze();
  ASSERT_TRUE(becomesTrue([&] { return model.hasAnalyzed(); }));
  EXPECT_EQ(model.notices(), QStringList("1 item is in its place already and stays."));
}

TEST_F(SectionModelsTest, groupsDocumentsByTopicWhereAModelNamesThem) {
  tree.file("Downloads/song.mp3", "la");
  tree.file("Downloads/tax 2025.pdf", "words");
  tree.file("Downloads/letter.pdf", "words");
  topicModel.reply = [](const std::string&) { return R"({"tax 2025.pdf": "Taxes", "song.mp3": "Music"})"; };
  OrganizeModel model(services());
  ASSERT_TRUE(becomesTrue([&] { return model.topicsAvailable(); }));
  model.chooseFolder("file://" + downloads());
  model.setUseTopics(true);
  model.analyze();
  ASSERT_TRUE(becomesTrue([&] { return model.hasAnalyzed(); }));
  EXPECT_EQ(model.moveCount(), 3);
  model.apply();
  ASSERT_TRUE(becomesTrue([&] { return !model.isWorking(); }));
  EXPECT_TRUE(exists(tree.path("Downloads/Organized/Documents/Taxes/tax 2025.pdf")));
  EXPECT_TRUE(exists(tree.path("Downloads/Organized/Documents/PDFs/letter.pdf")));
  EXPECT_TRUE(exists(tree.path("Downloads/Organized/Media/Audio/song.mp3")));
  model.setStrategy(static_cast<int>(OrganizationStrategy::byDate));
  EXPECT_FALSE(model.topicsAvailable());
}

TEST_F(SectionModelsTest, offersNoTopicsWithoutAModel) {
  OrganizeModel model(services());
  ASSERT_TRUE(becomesTrue([&] { return !model.managedFolders().isEmpty(); }));
  QCoreApplication::processEvents();
  EXPECT_FALSE(model.topicsAvailable());
}

TEST_F(SectionModelsTest, uninstallsAnApplicationWithWhatIsChosenOfItsLeftovers) {
  tree.file("Applications/Paint.app/Contents/Info.plist",
            R"(<?xml version="1.0"?><plist version="1.0"><dict><key>CFBundleIdentifier</key>)"
            R"(<string>com.example.paint</string><key>CFBundleName</key><string>Paint</string></dict></plist>)");
  tree.file("Library/Caches/com.example.paint/data", "cache");
  tree.file("Library/Logs/com.example.paint/log", "log");
  AppsModel model(services());
  model.list();
  ASSERT_TRUE(becomesTrue([&] { return model.hasListed(); }));
  ASSERT_EQ(model.rowCount(), 1);
  EXPECT_EQ(model.data(model.index(0), AppsModel::IdentifierRole).toString(), "com.example.paint");
  EXPECT_GT(model.data(model.index(0), AppsModel::BytesRole).toDouble(), 0);
  EXPECT_TRUE(model.data(model.index(0), AppsModel::IconRole).toString().startsWith("image://application/"));
  model.setSearchText("nothing");
  EXPECT_EQ(model.rowCount(), 0);
  model.setSearchText("PAINT");
  ASSERT_EQ(model.rowCount(), 1);

  model.review(0);
  ASSERT_TRUE(becomesTrue([&] { return !model.isFindingLeftovers(); }));
  ASSERT_EQ(model.leftovers().size(), 2);
  EXPECT_EQ(model.reviewCount(), 1);
  model.toggleLeftover(0);
  EXPECT_EQ(model.reviewCount(), 2);
  const auto chosen = model.leftovers().front().toMap()["path"].toString().toStdString();
  const auto other = model.leftovers().back().toMap()["path"].toString().toStdString();
  model.uninstall();
  ASSERT_TRUE(becomesTrue([&] { return !model.isWorking(); }));
  EXPECT_FALSE(exists(tree.path("Applications/Paint.app")));
  EXPECT_FALSE(exists(chosen));
  EXPECT_TRUE(exists(other));
  model.undo();
  ASSERT_TRUE(becomesTrue([&] { return !model.isWorking(); }));
  EXPECT_TRUE(exists(tree.path("Applications/Paint.app/Contents/Info.plist")));
  EXPECT_TRUE(exists(chosen));
}

TEST_F(SectionModelsTest, anApplicationThatIsReplacedUnderReviewStays) {
  const auto install = [&] {
    tree.file("Applications/Paint.app/Contents/Info.plist",
              R"(<?xml version="1.0"?><plist version="1.0"><dict><key>CFBundleIdentifier</key>)"
              R"(<string>com.example.paint</string><key>CFBundleName</key><string>Paint</string></dict></plist>)");
  };
  install();
  tree.file("Library/Caches/com.example.paint/data", "cache");
  AppsModel model(services());
  model.list();
  ASSERT_TRUE(becomesTrue([&] { return model.hasListed(); }));
  model.review(0);
  ASSERT_TRUE(becomesTrue([&] { return !model.isFindingLeftovers(); }));
  model.selectAllLeftovers(true);
  EXPECT_EQ(model.reviewCount(), 2);
  std::filesystem::rename(tree.path("Applications/Paint.app"), tree.path("before"));
  install();
  model.uninstall();
  ASSERT_TRUE(becomesTrue([&] { return !model.isWorking(); }));
  EXPECT_EQ(model.messages().size(), 2);
  EXPECT_TRUE(exists(tree.path("Applications/Paint.app")));
  EXPECT_TRUE(exists(tree.path("Library/Caches/com.example.paint/data")));

  // One that has gone before it is reviewed is listed no more.
  std::filesystem::remove_all(tree.path("Applications/Paint.app"));
  model.review(0);
  EXPECT_TRUE(becomesTrue([&] { return !model.isReviewing() && !model.isListing() && model.rowCount() == 0; }));
}

TEST_F(SectionModelsTest, tellsApplicationsOfOtherKindsAndTheCommandOfTheirManager) {
  tree.file("Applications/Draw.AppImage", std::string("\x7f"
                                                      "ELF\x02\x01\x01\0",
                                                      8) +
                                              "AI\x02rest");
  tree.file(".local/share/flatpak/app/org.example.Paint/current/active/metadata", "[Application]\n");
  AppsModel model(services());
  model.list();
  ASSERT_TRUE(becomesTrue([&] { return model.hasListed(); }));
  ASSERT_EQ(model.rowCount(), 2);
  const auto value = [&](int row, int role) { return model.data(model.index(row), role).toString(); };
  EXPECT_EQ(value(0, AppsModel::NameRole), "Draw");
  EXPECT_EQ(value(0, AppsModel::KindKeyRole), "apps.kind.appImage");
  EXPECT_EQ(value(0, AppsModel::CommandRole), "");
  EXPECT_EQ(value(1, AppsModel::CommandRole), "flatpak uninstall --user org.example.Paint");
  EXPECT_TRUE(model.data(model.index(1), AppsModel::IsProtectedRole).toBool());
  model.copyCommand(1);
  EXPECT_EQ(QGuiApplication::clipboard()->text(), value(1, AppsModel::CommandRole));
  model.review(1);
  EXPECT_FALSE(model.isReviewing());

  model.review(0);
  ASSERT_TRUE(becomesTrue([&] { return model.isReviewing() && !model.isFindingLeftovers(); }));
  model.uninstall();
  ASSERT_TRUE(becomesTrue([&] { return !model.isWorking(); }));
  EXPECT_FALSE(exists(tree.path("Applications/Draw.AppImage")));
}

}  // namespace
}  // namespace orvane::test
