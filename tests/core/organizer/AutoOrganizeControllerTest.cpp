#include "core/organizer/tidy/AutoOrganizeController.h"

#include "core/base/files/HomeFolder.h"
#include "core/base/text/Json.h"
#include "core/organizer/services/AutoOrganizeSettingsStore.h"
#include "core/platform/LoginItems.h"
#include "core/platform/RepeatingTimer.h"
#include "tests/support/AutoOrganizerFixture.h"
#include "tests/support/MemoryPreferences.h"

#include <stdexcept>

namespace orvane::test {
namespace {

constexpr const char* settingsKey = "OrvaneAutoOrganizeSettings";

TEST(AutoOrganizeSettings, haveTheirGivenForm) {
  TemporaryTree home;
  const ScopedEnvironment environment("HOME", home.path().c_str());
  AutoOrganizeSettings settings;
  EXPECT_EQ(jsonText(settings.toJson()), R"({"isEnabled":false,"recentsDays":3,"folderPaths":[")" +
                                             home.path("Desktop") + R"(",")" + home.path("Downloads") +
                                             R"("],"useAITopics":true,"lastRunMovedCount":0})");
  settings.lastRunDate = dateFromReferenceSeconds(5.5);
  settings.folderPaths = {"~/x", "relative", "file:///odd%FF", "/a"};
  EXPECT_EQ(settings.toJson()["lastRunDate"], 5.5);
  EXPECT_EQ(AutoOrganizeSettings::fromJson(settings.toJson()), settings);
  EXPECT_THAT(settings.folderURLs(), ElementsAre(home.url("x"), FileUrl("/odd\xff"), FileUrl("/a")));
  const auto whole = settings.toJson();
  for (const auto& [name, value] : whole.items()) {
    auto json = whole;
    json.erase(name);
    if (name == "lastRunDate") {
      EXPECT_EQ(AutoOrganizeSettings::fromJson(json).lastRunDate, std::nullopt);
    } else {
      EXPECT_THROW(static_cast<void>(AutoOrganizeSettings::fromJson(json)), JsonError) << name;
    }
  }
}

TEST(AutoOrganizeSettings, fallBackToTheDefaults) {
  MemoryPreferences preferences;
  AutoOrganizeSettingsStore store(preferences);
  EXPECT_EQ(store.get(), AutoOrganizeSettings());
  preferences.values[settingsKey] = Json{{"isEnabled", true}};
  EXPECT_EQ(store.get(), AutoOrganizeSettings());
  store.update([](auto& settings) { settings.recentsDays = 7; });
  EXPECT_EQ(store.get().recentsDays, 7);
  EXPECT_EQ(preferences.values[settingsKey]["recentsDays"], 7);
}

class ManualTimer : public RepeatingTimer {
 public:
  void start(std::chrono::seconds every, std::function<void()> tick) override {
    interval = every;
    m_tick = std::move(tick);
  }
  void stop() override { m_tick = {}; }
  [[nodiscard]] bool isRunning() const { return static_cast<bool>(m_tick); }
  void fire() const { m_tick(); }

  std::chrono::seconds interval{};

 private:
  std::function<void()> m_tick;
};

class FakeLoginItems : public LoginItems {
 public:
  [[nodiscard]] bool isEnabled() const override { return enabled; }
  void setEnabled(bool isEnabled) override {
    if (!problem.empty()) throw std::runtime_error(problem);
    enabled = isEnabled;
  }
  bool enabled = false;
  std::string problem;
};

class Controller : public AutoOrganizerFixture {
 protected:
  Controller() {
    store.update([&](auto& settings) {
      settings.isEnabled = true;
      settings.folderPaths = {tree.path("Downloads")};
    });
  }
  [[nodiscard]] AutoOrganizeController::Collaborators collaborators() {
    return {.organizer = autoOrganizer,
            .store = store,
            .factory = topics,
            .timer = timer,
            .loginItems = loginItems,
            .now = [this] { return now; },
            .whenChanged = [this] { ++changes; }};
  }

  AutoOrganizeSettingsStore store{preferences};
  ManualTimer timer;
  FakeLoginItems loginItems;
  Date now = day(1);
  int changes = 0;
};

TEST_F(Controller, tidiesOnItsTimerWhileEnabled) {
  AutoOrganizeController controller(collaborators());
  controller.start();
  EXPECT_EQ(timer.interval, std::chrono::seconds(120));
  arrive("new.pdf", 1);
  timer.fire();
  EXPECT_EQ(controller.statusMessage(), "Everything is tidy.");
  EXPECT_EQ(store.get().lastRunDate, day(1)) << "also a run that moves nothing is one";
  now = day(2);
  timer.fire();
  EXPECT_EQ(controller.statusMessage(), "Moved 1 new item to Recents and sorted 0. Undo anytime in History.");
  EXPECT_EQ(controller.settings().lastRunMovedCount, 1);
  EXPECT_EQ(controller.settings().lastRunDate, day(2));
  EXPECT_FALSE(controller.isRunning());

  controller.update([](auto& settings) { settings.isEnabled = false; });
  EXPECT_FALSE(timer.isRunning());
  controller.update([](auto& settings) { settings.isEnabled = true; });
  EXPECT_TRUE(timer.isRunning());
}

TEST_F(Controller, startsNoTimerWhenDisabled) {
  store.update([](auto& settings) { settings.isEnabled = false; });
  AutoOrganizeController controller(collaborators());
  controller.start();
  EXPECT_FALSE(timer.isRunning());
  EXPECT_EQ(controller.statusMessage(), std::nullopt);
}

TEST(ControllerStatus, hasAPluralForTheFirstNumberAlone) {
  const Rows<std::int64_t, std::int64_t, const char*> rows{
      {0, 0, "Everything is tidy."},
      {1, 4, "Moved 1 new item to Recents and sorted 4. Undo anytime in History."},
      {0, 1, "Moved 0 new items to Recents and sorted 1. Undo anytime in History."},
      {2, 0, "Moved 2 new items to Recents and sorted 0. Undo anytime in History."},
  };
  for (const auto& [recent, sorted, text] : rows) {
    EXPECT_EQ(AutoOrganizeController::statusText({recent, sorted, {}}), text);
  }
}

TEST_F(Controller, doesNothingWhileARunIsUnderWay) {
  arrive("old.pdf", -10);
  AutoOrganizeController controller(collaborators());
  const auto report = controller.runNow([&](auto) {
    EXPECT_TRUE(controller.isRunning());
    EXPECT_EQ(controller.runNow().end, AutoOrganizeReport::End::busy);
    return false;
  });
  EXPECT_EQ(report.end, AutoOrganizeReport::End::declined);
  EXPECT_FALSE(controller.isRunning());
  EXPECT_EQ(store.get().lastRunDate, std::nullopt) << "a run that was declined is none";
  EXPECT_GT(changes, 0);
}

TEST_F(Controller, usesTopicsWhereTheyAreWantedAndCanBeHad) {
  arrive("a.pdf", -10);
  topicModel.reply = [](const auto&) { return R"({"a.pdf": "Taxes", "b.pdf": "Taxes"})"; };
  AutoOrganizeController controller(collaborators());
  EXPECT_TRUE(controller.isAIAvailable());
  controller.update([](auto& settings) { settings.useAITopics = false; });
  controller.runNow();
  EXPECT_TRUE(exists(tree.path("Downloads/Sorted/Documents/PDFs/a.pdf")));
  arrive("b.pdf", -10);
  controller.update([](auto& settings) { settings.useAITopics = true; });
  controller.runNow();
  EXPECT_TRUE(exists(tree.path("Downloads/Sorted/Taxes/b.pdf")));
  topicModel.reply = {};
  EXPECT_FALSE(AutoOrganizeController(collaborators()).isAIAvailable());
}

TEST_F(Controller, saysWhyItDoesNotStartAtLogin) {
  AutoOrganizeController controller(collaborators());
  controller.setLaunchAtLogin(true);
  EXPECT_TRUE(controller.launchAtLoginEnabled());
  loginItems.problem = "the folder is read-only";
  controller.setLaunchAtLogin(false);
  EXPECT_TRUE(controller.launchAtLoginEnabled());
  EXPECT_EQ(controller.statusMessage(),
            "Couldn't change Launch at Login: the folder is read-only. You can add Orvane in System Settings → General "
            "→ Login Items.");
}

}  // namespace
}  // namespace orvane::test
