#include "core/rules/schedule/DailyMap.h"

#include "core/map/records/MapSnapshot.h"
#include "core/map/services/SnapshotStore.h"
#include "core/platform/NotificationCenter.h"
#include "core/platform/Volume.h"
#include "core/tasks/MapTask.h"
#include "tests/support/TaskFixture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace orvane::test {
namespace {

class NotingCenter : public NotificationCenter {
 public:
  bool requestAuthorization() override { return true; }
  void post(const Notification& notification) override { bodies.push_back(notification.body); }
  void awaitAnswers(std::chrono::milliseconds /*limit*/) noexcept override {}
  std::vector<std::string> bodies;
};

class FillingVolume : public Volume {
 public:
  [[nodiscard]] std::optional<VolumeCapacity> capacity(const FileUrl& /*location*/) const override {
    return VolumeCapacity{.totalBytes = 10'000, .availableBytes = free};
  }
  std::int64_t free = 500;
};

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
  FillingVolume volume;
  MapServices maps{.tasks = tasks, .snapshots = store, .volume = volume};
  NotingCenter center;
  int lowered = 0;
};

TEST_F(DailyMap, isMadeOnceADayAtALowerPriority) {
  run();
  run();
  EXPECT_EQ(remembered(), 1U);
  EXPECT_GE(lowered, 1);
  EXPECT_TRUE(center.bodies.empty());
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
  ASSERT_EQ(center.bodies.size(), 1U);
  EXPECT_THAT(center.bodies[0], testing::HasSubstr(": 6."));
  EXPECT_THAT(center.bodies[0], testing::HasSubstr("Videos (+"));
  EXPECT_TRUE(store.warned().has_value());
}

TEST_F(DailyMap, warnsAgainOnlyAfterThereWasRoom) {
  rememberEarlierMap();
  store.setWarned(ReferenceClock::now() - std::chrono::hours(24));
  run();
  EXPECT_TRUE(center.bodies.empty());
  // Room again, another day.
  store.clear();
  rememberEarlierMap();
  store.setWarned(ReferenceClock::now() - std::chrono::hours(24));
  volume.free = 5000;
  run();
  EXPECT_TRUE(center.bodies.empty());
  EXPECT_FALSE(store.warned().has_value());
}

}  // namespace
}  // namespace orvane::test
