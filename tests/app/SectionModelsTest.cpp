#include "app/apps/AppsModel.h"
#include "app/common/Text.h"
#include "app/organize/OrganizeModel.h"
#include "core/base/text/Json.h"
#include "tests/app/WindowFixture.h"

#include <QClipboard>
#include <QGuiApplication>

namespace orvane::test {
namespace {

class SectionModelsTest : public WindowFixture {
 public:
  static void analyze(OrganizeModel& model, const QString& folder) {
    model.chooseFolder(folder);
    model.analyze();
    ASSERT_TRUE(becomesTrue([&] { return model.hasAnalyzed(); }));
  }
  static void list(AppsModel& model, int count) {
    model.list();
    ASSERT_TRUE(becomesTrue([&] { return model.hasListed(); }));
    ASSERT_EQ(model.rowCount(), count);
  }
  const QString downloads = place("Downloads");
};

TEST_F(SectionModelsTest, organizesAFolderAsItWasEditedAndUndoesIt) {
  for (const auto* name : {"same.pdf", "unchecked.pdf", "song.mp3"}) tree.file("Downloads/" + std::string(name));
  OrganizeModel model(services());
  analyze(model, "file://" + downloads);
  EXPECT_TRUE(shows(model, {{"folder", downloads}, {"moveCount", 3}}));
  // The PDFs in order of their names below their header, then the song below its own.
  ASSERT_EQ(model.rowCount(), 5);
  ASSERT_TRUE(shows(model, 2, {{"name", "unchecked.pdf"}}));
  model.toggle(2);
  model.renameGroup(0, "Mine");
  EXPECT_TRUE(shows(model, 0, {{"name", "Mine"}, {"checkState", int{Qt::PartiallyChecked}}}));
  EXPECT_TRUE(shows(model, 1, {{"to", "Mine/same.pdf"}}));
  EXPECT_EQ(model.selectedCount(), 2) << "renaming keeps the choice";
  EXPECT_TRUE(model.learned().isEmpty()) << "nothing has moved under the name";
  finish(model, &OrganizeModel::apply);
  EXPECT_TRUE(shows(model, {{"messages", QStringList()}, {"resultText", "2 items moved."}}));
  EXPECT_TRUE(holds({"Downloads/Organized/Mine/same.pdf", "Downloads/unchecked.pdf"}));
  EXPECT_FALSE(model.learned().isEmpty());
  finish(model, &OrganizeModel::undo);
  EXPECT_TRUE(holds({"Downloads/same.pdf"}));
}

TEST_F(SectionModelsTest, showsWhatCannotBeOrganizedAndWhy) {
  tree.file("Downloads/a.pdf");
  tree.link("Downloads/Organized", tree.folder("Elsewhere"));
  OrganizeModel model(services());
  analyze(model, downloads);
  EXPECT_EQ(model.selectedCount(), 0);
  for (const int row : {0, 1}) EXPECT_TRUE(shows(model, row, {{"checkState", -1}}));
  EXPECT_THAT(model.data(model.index(1), OrganizeModel::ReasonRole).toString().toStdString(), HasSubstr("denied"));
  model.selectAll(true);
  model.toggle(1);
  EXPECT_EQ(model.selectedCount(), 0);

  model.chooseFolder("/etc");
  model.analyze();
  ASSERT_TRUE(becomesTrue([&] { return !model.isSearching(); }));
  EXPECT_TRUE(shows(model, {{"moveCount", 0}, {"hasAnalyzed", false}}));
  EXPECT_EQ(model.notices().size(), 1);

  tree.file("Downloads/Documents/PDFs/in place.pdf");
  model.chooseFolder(downloads + "/Documents/PDFs");
  model.chooseDestination(downloads);
  model.analyze();
  ASSERT_TRUE(becomesTrue([&] { return model.hasAnalyzed(); }));
  EXPECT_EQ(model.notices(), QStringList("1 item is in its place already and stays."));
}

TEST_F(SectionModelsTest, groupsDocumentsByTopicWhereAModelNamesThem) {
  tree.files({"Downloads/song.mp3", "Downloads/tax 2025.pdf", "Downloads/letter.pdf"});
  {
    OrganizeModel without(services());
    ASSERT_TRUE(becomesTrue([&] { return !without.managedFolders().isEmpty(); }));
    QCoreApplication::processEvents();
    EXPECT_FALSE(without.topicsAvailable());
  }
  topicModel.reply = [](const std::string&) { return R"({"tax 2025.pdf": "Taxes", "song.mp3": "Music"})"; };
  OrganizeModel model(services());
  ASSERT_TRUE(becomesTrue([&] { return model.topicsAvailable(); }));
  model.setUseTopics(true);
  analyze(model, downloads);
  finish(model, &OrganizeModel::apply);
  EXPECT_TRUE(holds({"Downloads/Organized/Documents/Taxes/tax 2025.pdf",
                     "Downloads/Organized/Documents/PDFs/letter.pdf", "Downloads/Organized/Media/Audio/song.mp3"}));
  model.setStrategy(static_cast<int>(OrganizationStrategy::byDate));
  EXPECT_FALSE(model.topicsAvailable());
}

TEST_F(SectionModelsTest, tellsApplicationsOfOtherKindsAndTheCommandOfTheirManager) {
  tree.file("Applications/Draw.AppImage", std::string("\177ELF\2\1\1\0AI\2rest", 15));
  tree.file(".local/share/flatpak/app/org.example.Paint/current/active/metadata", "[Application]\n");
  AppsModel model(services());
  list(model, 2);
  const auto* command = "flatpak uninstall --user org.example.Paint";
  EXPECT_TRUE(shows(model, 0, {{"name", "Draw"}, {"kindKey", "apps.kind.appImage"}, {"command", ""}}));
  EXPECT_TRUE(shows(model, 1, {{"identifier", "org.example.Paint"}, {"command", command}, {"isProtected", true}}));
  EXPECT_TRUE(model.data(model.index(0), AppsModel::IconRole).toString().startsWith("image://application/"));
  model.setSearchText("nothing");
  EXPECT_EQ(model.rowCount(), 0);
  model.setSearchText("");
  model.copyCommand(1);
  EXPECT_EQ(QGuiApplication::clipboard()->text(), command);
  model.review(1);
  EXPECT_FALSE(model.isReviewing());

  // One that has gone before it is reviewed is listed no more.
  std::filesystem::remove(tree.path("Applications/Draw.AppImage"));
  model.review(0);
  EXPECT_TRUE(becomesTrue([&] { return !model.isReviewing() && !model.isListing() && model.rowCount() == 1; }));
}

}  // namespace
}  // namespace orvane::test
