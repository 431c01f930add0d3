#include "core/rules/schedule/DailyMap.h"

#include "core/map/records/MapSnapshot.h"
#include "core/map/services/SnapshotStore.h"
#include "core/tasks/MapTask.h"
#include "tests/support/RecordingCenter.h"
#include "tests/support/TaskFixture.h"

namespace orvane::test {
namespace {

class DailyMap : public TaskFixture {
 public:
  DailyMap() {
    tree.file("Videos/film.mkv", std::string(500'000, 'x'));
    store.setOn(true);
  }
  // Five days ago there were 1,000 bytes free.
  void rememberEarlierMap() {
    MapSnapshot snapshot{.taken = ReferenceClock::now() - std::chrono::hours(5 * 24 + 1), .root = tree.path()};
    snapshot.freeBytes = 1000;
    snapshot.folders[tree.path()] = 0;
    store.add(snapshot);
  }
  void run() {
    mapAndWarn(maps, center, [this] { ++lowered; });
  }
  [[nodiscard]] std::size_t remembered() { return store.moments(ReferenceClock::now()).size(); }

  SnapshotStore store{tree.path(".local/share/orvane/map.db"), preferences};
  TaskServices tasks = taskServices();
  SmallVolume volume;
  MapServices maps{.tasks = tasks, .snapshots = store, .volume = volume};
  RecordingCenter center;
  int lowered = 0;
};

TEST_F(DailyMap, isMadeOnceADayAtALowerPriority) {
  run();
  run();
  EXPECT_EQ(remembered(), 1U);
  EXPECT_GE(lowered, 1);
  EXPECT_TRUE(center.posted.empty());
}

TEST_F(DailyMap, isNotMadeWhileNothingIsToBeRemembered) {
  store.setOn(false);
  run();
  EXPECT_EQ(lowered, 0);
  EXPECT_FALSE(exists(tree.path(".local/share/orvane")));
}

TEST_F(DailyMap, warnsOfADiskThatIsSoonFullWithWhatGrew) {
  rememberEarlierMap();
  run();
  ASSERT_EQ(center.posted.size(), 1U);
  EXPECT_THAT(center.posted[0].body, HasSubstr(": 6."));
  EXPECT_THAT(center.posted[0].body, HasSubstr("Videos (+"));
  EXPECT_TRUE(store.warned().has_value());
}

TEST_F(DailyMap, warnsAgainOnlyAfterThereWasRoom) {
  rememberEarlierMap();
  store.setWarned(ReferenceClock::now() - std::chrono::hours(24));
  run();
  EXPECT_TRUE(center.posted.empty());
  // Room again, another day.
  store.clear();
  rememberEarlierMap();
  store.setWarned(ReferenceClock::now() - std::chrono::hours(24));
  volume.free = 5000;
  run();
  EXPECT_TRUE(center.posted.empty());
  EXPECT_FALSE(store.warned().has_value());
}

}  // namespace
}  // namespace orvane::test
