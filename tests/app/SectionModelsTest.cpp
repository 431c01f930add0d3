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
  for (const auto* name : {"same.pdf", "unchecked.pdf", "song.mp3"}) tree.file("Downloads/" + std::string(name));
  OrganizeModel model(services());
  EXPECT_EQ(model.folder(), "");
  model.chooseFolder("file://" + downloads());
  EXPECT_EQ(model.folder(), downloads());
  model.analyze();
  ASSERT_TRUE(becomesTrue([&] { return model.hasAnalyzed(); }));
  EXPECT_EQ(model.moveCount(), 3);
  // The PDFs in order of their names below their header, then the song below its own.
  ASSERT_EQ(model.rowCount(), 5);
  ASSERT_EQ(model.data(model.index(2), OrganizeModel::NameRole).toString(), "unchecked.pdf");
  model.toggle(2);
  model.renameGroup(0, "Mine");
  EXPECT_EQ(model.data(model.index(0), OrganizeModel::NameRole).toString(), "Mine");
  EXPECT_EQ(model.data(model.index(0), OrganizeModel::CheckStateRole), Qt::PartiallyChecked);
  EXPECT_EQ(model.data(model.index(1), OrganizeModel::ToRole).toString(), "Mine/same.pdf");
  EXPECT_EQ(model.selectedCount(), 2) << "renaming keeps the choice";
  EXPECT_TRUE(model.learned().isEmpty()) << "nothing has moved under the name";
  finish(model, &OrganizeModel::apply);
  EXPECT_THAT(model.messages(), IsEmpty());
  EXPECT_EQ(model.resultText(), "2 items moved.");
  EXPECT_TRUE(exists(tree.path("Downloads/Organized/Mine/same.pdf")));
  EXPECT_FALSE(model.learned().isEmpty());
  EXPECT_TRUE(exists(tree.path("Downloads/unchecked.pdf")));
  finish(model, &OrganizeModel::undo);
  EXPECT_TRUE(exists(tree.path("Downloads/same.pdf")));
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
  finish(model, &OrganizeModel::apply);
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
  finish(model, &AppsModel::uninstall);
  EXPECT_FALSE(exists(tree.path("Applications/Paint.app")));
  EXPECT_FALSE(exists(chosen));
  EXPECT_TRUE(exists(other));
  finish(model, &AppsModel::undo);
  EXPECT_TRUE(exists(tree.path("Applications/Paint.app/Contents/Info.plist")));
  EXPECT_TRUE(exists(chosen));
}

TEST_F(SectionModelsTest, tellsApplicationsOfOtherKindsAndTheCommandOfTheirManager) {
  tree.file("Applications/Draw.AppImage", std::string("\177ELF\2\1\1\0AI\2rest", 15));
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

  // One that has gone before it is reviewed is listed no more.
  std::filesystem::remove(tree.path("Applications/Draw.AppImage"));
  model.review(0);
  EXPECT_TRUE(becomesTrue([&] { return !model.isReviewing() && !model.isListing() && model.rowCount() == 1; }));
}

}  // namespace
}  // namespace orvane::test
