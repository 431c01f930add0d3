#include "app/duplicates/DuplicatesModel.h"
#include "app/organize/OrganizeModel.h"
#include "app/overview/MapModel.h"
#include "core/map/services/SnapshotStore.h"
#include "tests/app/WindowFixture.h"

namespace orvane::test {
namespace {

class MapModelTest : public WindowFixture {
 public:
  MapModelTest() {
    tree.file("Videos/2025/film.mkv", std::string(900'000, 'x'));
    tree.file("Videos/2025/short.mkv", std::string(100'000, 'x'));
    tree.file("Pictures/one.jpg", std::string(300'000, 'x'));
    tree.file("Library/Caches/app/data", std::string(500'000, 'x'));
    for (int i = 0; i < 40; ++i) tree.file("many/" + std::to_string(i), std::string(5000, 'x'));
  }
  void map(const QString& folder = {}) {
    model.start(folder);
    ASSERT_TRUE(becomesTrue([&] { return !model.isMapping(); }));
  }
  void open(const std::string& name) {
    model.openFile(place(name));
    ASSERT_TRUE(becomesTrue([&] { return !model.isMapping(); }));
  }
  [[nodiscard]] QVariantMap area(const QString& label) const {
    for (const auto& one : model.areas()) {
      if (one.toMap()["label"] == label) return one.toMap();
    }
    return {};
  }
  [[nodiscard]] double sumOfAreas() const {
    double sum = 0;
    for (const auto& one : model.areas()) sum += one.toMap()["bytes"].toDouble();
    return sum;
  }

  SnapshotStore store{tree.path(".local/share/orvane/map.db"), preferences};
  TaskServices tasks = taskServices();
  MapServices maps{.tasks = tasks, .snapshots = store, .volume = volume};
  AppState state{services()};
  CleanupModel cleanup{services(), state};
  DuplicatesModel duplicates{services()};
  OrganizeModel organize{services()};
  MapModel model{services(),
                 {.state = state, .cleanup = cleanup, .duplicates = duplicates, .organize = organize, .maps = maps}};
};

TEST_F(MapModelTest, drillsDownAndUpWithAreasThatAddUp) {
  map();
  ASSERT_TRUE(model.hasMap());
  EXPECT_EQ(model.trail().size(), 1);
  EXPECT_EQ(sumOfAreas(), model.shownBytes());
  model.enter(area("Videos")["folder"].toInt());
  model.enter(area("2025")["folder"].toInt());
  EXPECT_EQ(model.trail().size(), 3);
  EXPECT_EQ(sumOfAreas(), model.shownBytes());
  EXPECT_TRUE(shows(model.areas().front().toMap(), {{"label", "film.mkv"}, {"canEnter", false}}));
  model.goUp();
  EXPECT_EQ(model.trail().size(), 2);
  model.enter(0);
  model.goUp();
  EXPECT_EQ(model.trail().size(), 1);
  // Of the many files of a folder the largest have names.
  model.enter(area("many")["folder"].toInt());
  EXPECT_EQ(sumOfAreas(), model.shownBytes());
  EXPECT_EQ(model.areas().back().toMap()["titleKey"], "map.other");
  model.enter(9999);
  model.enter(-1);
  EXPECT_EQ(model.trail().size(), 2);
}

TEST_F(MapModelTest, showsWhatAFilterLeaves) {
  map();
  const auto all = model.shownBytes();
  model.setKind(static_cast<int>(MapKind::pictures) + 1);
  EXPECT_EQ(model.shownFiles(), 1);
  EXPECT_EQ(area("Videos"), QVariantMap());
  EXPECT_EQ(sumOfAreas(), model.shownBytes());
  model.setKind(0);
  EXPECT_EQ(model.shownBytes(), all);
  model.setCategory(static_cast<int>(ScanCategory::caches) + 1);
  EXPECT_EQ(model.areas().size(), 1);
  EXPECT_EQ(area("Library")["isReclaimable"], true);
  model.setCategory(0);
  model.setMeasure(1);
  EXPECT_EQ(area("Pictures")["children"].toList().front().toMap()["bytes"], 300'000);
}

TEST_F(MapModelTest, leadsFromAFolderToOtherSections) {
  map();
  const auto videos = area("Videos")["folder"].toInt();
  model.organizeFolder(videos);
  EXPECT_EQ(organize.folder(), place("Videos"));
  EXPECT_EQ(state.selectedNavigation(), static_cast<int>(AppNavigationItem::Organize));
  model.findDuplicates(videos);
  EXPECT_EQ(state.selectedNavigation(), static_cast<int>(AppNavigationItem::Duplicates));
  ASSERT_TRUE(becomesTrue(
      [&] { return duplicates.roots().size() == 1 && duplicates.roots().front().toMap()["path"] == place("Videos"); }));
  model.openFolder(videos);
  ASSERT_TRUE(becomesTrue([&] {
    const std::lock_guard lock(desktop.mutex);
    return desktop.opened == std::vector{tree.url("Videos").absoluteString()};
  }));
}

TEST_F(MapModelTest, showsTheRowsOfAFolderInCleanup) {
  tree.files({"Downloads/Work/run.log", "Downloads/other.log"});
  map();
  model.enter(area("Downloads")["folder"].toInt());
  model.showInCleanup(area("Work")["folder"].toInt());
  EXPECT_EQ(state.selectedNavigation(), static_cast<int>(AppNavigationItem::Cleanup));
  EXPECT_EQ(cleanup.filters().front().toMap()["text"], "~/Downloads/Work");
  ASSERT_TRUE(becomesTrue([&] { return !state.isScanning() && cleanup.shownCount() == 1; }));
  cleanup.clearFilters();
  ASSERT_TRUE(becomesTrue([&] { return cleanup.shownCount() == 2; }));
}

TEST_F(MapModelTest, showsTheMapOfAFileAndLeadsNowhereFromIt) {
  open("none.json");
  EXPECT_THAT(model.problem().toStdString(), HasSubstr("~/none.json: "));
  tree.file("broken.json", "[1,2,{},[");
  open("broken.json");
  EXPECT_THAT(model.problem().toStdString(), HasSubstr("~/broken.json: "));
  EXPECT_FALSE(model.hasMap());

  // Folders that this machine has too.
  tree.file("server.json", R"([1,2,{},[{"name":")" + tree.path() +
                               R"("},[{"name":"Videos"},{"name":"a.mkv","asize":50,"dsize":4096}]]])");
  open("server.json");
  EXPECT_TRUE(shows(model, {{"fileName", "~/server.json"}, {"shownBytes", 4096}}));
  const auto videos = area("Videos")["folder"].toInt();
  model.openFolder(videos);
  model.organizeFolder(videos);
  model.findDuplicates(videos);
  model.showInCleanup(videos);
  EXPECT_EQ(organize.folder(), "");
  EXPECT_EQ(state.selectedNavigation(), static_cast<int>(AppNavigationItem::Overview));
  map();
  EXPECT_EQ(model.fileName(), "");
  EXPECT_GT(model.shownBytes(), 4096);
}

TEST_F(MapModelTest, remembersOnlyOnceAskedAndThenTellsWhatGrew) {
  map();
  EXPECT_FALSE(exists(tree.path(".local")));
  ASSERT_TRUE(becomesTrue([&] { return !model.wasAsked(); }));
  model.setRemembers(true);
  ASSERT_TRUE(becomesTrue([&] { return model.remembers(); }));
  map();
  EXPECT_FALSE(model.hasGrowth());
  tree.file("Videos/2025/new.mkv", std::string(2'000'000, 'x'));
  map();
  ASSERT_TRUE(model.hasGrowth());
  EXPECT_GE(model.grownBytes(), 2'000'000);
  EXPECT_EQ(model.grownFolders().front().toMap()["name"], "~/Videos/2025");
  EXPECT_EQ(model.grownKinds().front().toMap()["nameKey"], "map.kind.videos");
  EXPECT_EQ(model.freeingMost().front().toMap()["name"], "~/Library");
  EXPECT_EQ(model.line().size(), 2);
  EXPECT_EQ(area("Videos")["hasGrown"], true);
  model.forget();
  ASSERT_TRUE(becomesTrue([&] { return store.moments(ReferenceClock::now()).empty(); }));
}

TEST_F(MapModelTest, saysWhyAFolderCannotBeMapped) {
  map(place("nowhere"));
  EXPECT_TRUE(shows(model, {{"hasMap", false}, {"problem", "~/nowhere: No such file or directory"}}));
}

}  // namespace
}  // namespace orvane::test
