#include "app/duplicates/DuplicatesModel.h"

#include "tests/app/WindowFixture.h"

#include <filesystem>

namespace orvane::test {
namespace {

class DuplicatesModelTest : public WindowFixture {
 public:
  DuplicatesModelTest() {
    setAge(tree.file("Downloads/a.jpg", "the same picture"), 3 * 86400.0);
    setAge(tree.file("Downloads/copy of a.jpg", "the same picture"), 86400);
    tree.file("Downloads/other.txt", "alone");
  }
  void search() {
    model.search();
    ASSERT_TRUE(becomesTrue([this] { return !model.isSearching(); }));
  }
  [[nodiscard]] QVariant value(int row, int role) const { return model.data(model.index(row), role); }

  DuplicatesModel model{services()};
};

TEST_F(DuplicatesModelTest, findsCopiesKeepsOneCleansTheOthersAndBringsThemBack) {
  search();
  ASSERT_EQ(model.rowCount(), 3);
  EXPECT_TRUE(shows(model, {{"groupCount", 1}, {"selectedCount", 1}}));
  EXPECT_TRUE(shows(model, 0, {{"kind", int{DuplicatesModel::Header}}, {"copies", 2}, {"freed", 16}}));
  EXPECT_FALSE(value(0, DuplicatesModel::ThumbnailRole).toString().isEmpty());

  finish(model, &DuplicatesModel::cleanSelected);
  EXPECT_EQ(model.resultText(), "Cleaned 1 duplicate files, freeing 16 bytes.");
  EXPECT_TRUE(holds({"Downloads/a.jpg"}, {"Downloads/copy of a.jpg"}));
  EXPECT_EQ(model.rowCount(), 0);

  finish(model, &DuplicatesModel::undo);
  EXPECT_EQ(contentOf(tree.path("Downloads/copy of a.jpg")), "the same picture");
  EXPECT_EQ(model.rowCount(), 3);
  model.toggleExpanded(0);
  EXPECT_EQ(model.rowCount(), 1);
  model.toggleExpanded(0);

  // The run of an older search comes back too, beside the rows of the next.
  finish(model, &DuplicatesModel::cleanSelected);
  tree.file("Downloads/second.txt", "alone");
  search();
  ASSERT_EQ(model.rowCount(), 3);
  finish(model, &DuplicatesModel::undo);
  EXPECT_TRUE(holds({"Downloads/copy of a.jpg"}));
  EXPECT_EQ(model.rowCount(), 3);
  EXPECT_EQ(model.selectedCount(), 1);
}

TEST_F(DuplicatesModelTest, cleansOnlyTheSetsThatASearchShows) {
  for (const auto* name : {"song.mp3", "copy of song.mp3"})
    tree.file(std::string("Downloads/") + name, "the same song");
  search();
  ASSERT_EQ(model.selectedCount(), 2);
  model.setSearchText("SONG");
  EXPECT_EQ(model.rowCount(), 3);
  EXPECT_TRUE(shows(model, {{"shownSelectedCount", 1}, {"shownSelectedBytes", 13}}));
  EXPECT_EQ(model.copiesAt(2).size(), 2) << "rows of hidden sets count for nothing";

  finish(model, &DuplicatesModel::cleanShown);
  EXPECT_TRUE(holds({"Downloads/a.jpg", "Downloads/copy of a.jpg"}));
  EXPECT_NE(exists(tree.path("Downloads/song.mp3")), exists(tree.path("Downloads/copy of song.mp3")));
  EXPECT_EQ(model.rowCount(), 0);
  model.setSearchText("");
  EXPECT_EQ(model.rowCount(), 3);
  EXPECT_EQ(model.shownSelectedCount(), model.selectedCount());
}

TEST_F(DuplicatesModelTest, saysWhyACopyStaysInTheLanguageThatIsChosenMeanwhile) {
  search();
  bool isTold = false;
  QObject::connect(&model, &DuplicatesModel::dataChanged,
                   [&](const QModelIndex& first, const QModelIndex&, auto roles) {
                     isTold = first.row() == 0 && roles.contains(DuplicatesModel::KeptReasonRole);
                   });
  model.languageChanged();
  EXPECT_TRUE(isTold);
}

TEST_F(DuplicatesModelTest, neverTouchesAFolderThatItComparesWith) {
  tree.file("Archive/original.jpg", "the same picture");
  model.addReference("file://" + place("Archive"));
  ASSERT_EQ(model.references().size(), 1);
  search();
  EXPECT_EQ(model.selectedCount(), 2);
  model.setKeepStrategy(1);
  EXPECT_EQ(model.selectedCount(), 2) << "whatever the strategy, its copy stays";
  const auto found = model.match(model.index(1), DuplicatesModel::NameRole, "original.jpg");
  ASSERT_EQ(found.size(), 1);
  model.toggle(found.front().row());
  EXPECT_EQ(model.refusal(), "This copy lies in a folder that is only compared with.");
  model.removeReference(model.references().front().toMap()["path"].toString());
  EXPECT_TRUE(model.references().isEmpty());
}

TEST_F(DuplicatesModelTest, takesOutACopyThatIsKept) {
  tree.file("Downloads/third.jpg", "the same picture");
  search();
  EXPECT_EQ(model.rowCount(), 4);
  model.keep(1);
  ASSERT_TRUE(becomesTrue([this] { return model.rowCount() == 3; }));
  finish(model, &DuplicatesModel::cleanSelected);
  EXPECT_TRUE(exists(tree.path("Downloads/a.jpg")));
}

TEST_F(DuplicatesModelTest, saysWhichCopyStaysAndWhyAndShowsItFirst) {
  search();
  const auto first = [this] { return value(1, DuplicatesModel::NameRole).toString().toStdString(); };
  const auto reason = [this] { return value(0, DuplicatesModel::KeptReasonRole).toString().toStdString(); };
  EXPECT_EQ(first(), "a.jpg");
  EXPECT_THAT(reason(), StartsWith("keeps the oldest, created "));
  model.setKeepStrategy(2);
  EXPECT_EQ(first(), "copy of a.jpg");
  EXPECT_TRUE(value(1, DuplicatesModel::IsKeptRole).toBool());
  EXPECT_THAT(reason(), StartsWith("keeps the newest, created "));
  model.keepIn("file://" + place("Pictures"));
  EXPECT_THAT(reason(), StartsWith("none in Pictures: keeps the oldest, created "));
  model.keepIn(place("Downloads"));
  EXPECT_THAT(reason(), StartsWith("keeps the one in Downloads, created "));
  model.toggle(2);
  EXPECT_EQ(reason(), "keeps what you chose");
}

TEST_F(DuplicatesModelTest, saysWhyItCannotSearch) {
  std::filesystem::remove(tree.path(".config/orvane/preferences.json"));
  tree.folder(".config/orvane/preferences.json");
  search();
  EXPECT_EQ(model.rowCount(), 0);
  ASSERT_EQ(model.messages().size(), 1);
  EXPECT_TRUE(model.messages().front().contains("preferences.json")) << model.messages().front().toStdString();
}

// Which copies stay is the terminal's test; here the list and the sums follow.
TEST_F(DuplicatesModelTest, keepsInItsListWhatDidNotMove) {
  const auto replaced = tree.file("Downloads/replaced.jpg", "the same picture");
  search();
  ASSERT_EQ(model.selectedCount(), 2);
  std::filesystem::rename(replaced, tree.path("before"));
  tree.file("Downloads/replaced.jpg", "no such picture!");
  finish(model, &DuplicatesModel::cleanSelected);
  EXPECT_EQ(model.messages(), QStringList("Failed to trash duplicate replaced.jpg: it changed after the scan"));
  EXPECT_TRUE(holds({"Downloads/replaced.jpg"}, {"Downloads/copy of a.jpg"}));
  EXPECT_TRUE(shows(model, {{"groupCount", 1}, {"selectedCount", 1}}));
}

TEST_F(DuplicatesModelTest, saysWhyTheLastCopyStaysUntilSomethingElseHappens) {
  search();
  const int kept = value(1, DuplicatesModel::IsKeptRole).toBool() ? 1 : 2;
  model.toggle(kept);
  EXPECT_TRUE(value(kept, DuplicatesModel::IsKeptRole).toBool());
  EXPECT_FALSE(model.refusal().isEmpty());
  model.toggle(3 - kept);
  EXPECT_TRUE(model.refusal().isEmpty());
  EXPECT_EQ(model.selectedCount(), 0);
  model.toggle(3 - kept);
  EXPECT_EQ(model.selectedCount(), 1);
  model.toggle(kept);
  EXPECT_FALSE(model.refusal().isEmpty());
  finish(model, &DuplicatesModel::cleanSelected);
  EXPECT_TRUE(model.refusal().isEmpty());
}

TEST_F(DuplicatesModelTest, searchesTheFoldersThatAreSwitchedOnAndOffersThoseGrantedMeanwhile) {
  ASSERT_TRUE(becomesTrue([this] { return model.roots().size() == 1; }));
  model.setRootIncluded(place("Downloads"), false);
  EXPECT_FALSE(model.roots().front().toMap()["included"].toBool());
  search();
  EXPECT_TRUE(shows(model, {{"hasSearched", true}, {"groupCount", 0}}));
  tree.folder("Library/Caches");
  tree.folder("Pictures");
  FileAccessService other(preferences, grants, tree.path());
  other.saveBookmark(tree.url("Library/Caches"));
  other.saveBookmark(tree.url("Pictures"));
  model.reloadRoots();
  ASSERT_TRUE(becomesTrue([this] { return model.roots().size() == 2; }));
  for (const auto& root : model.roots()) EXPECT_NE(root.toMap()["name"].toString(), "Caches");
}

}  // namespace
}  // namespace orvane::test
