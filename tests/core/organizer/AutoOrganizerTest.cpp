#include "core/base/files/FileLock.h"
#include "core/base/files/HomeFolder.h"
#include "core/base/files/PathAccess.h"
#include "core/base/text/Json.h"
#include "core/organizer/services/AutoOrganizeSettingsStore.h"
#include "core/organizer/tidy/AutoOrganizeController.h"
#include "core/platform/LoginItems.h"
#include "core/platform/RepeatingTimer.h"
#include "core/tasks/Folders.h"
#include "tests/support/AutoOrganizerFixture.h"
#include "tests/support/MemoryPreferences.h"

#include <sys/inotify.h>

namespace orvane::test {
namespace {

class AutoOrganizerTest : public AutoOrganizerFixture {};

TEST_F(AutoOrganizerTest, takesAFileThroughItsWeeks) {
  arrive("report.pdf", 0);
  arrive("old.zip", -40);
  EXPECT_EQ(tidy(minute).result.sorted, 1);
  EXPECT_THAT(files(), UnorderedElementsAre("report.pdf", "Sorted/Archives/old.zip")) << "it may still be changing";

  auto report = tidy(2 * minute);
  EXPECT_EQ(report.result.movedToRecents, 1);
  EXPECT_EQ(report.result.sorted, 0);
  EXPECT_THAT(report.result.batchIDs, SizeIs(1));
  EXPECT_THAT(files(), UnorderedElementsAre("Recents/report.pdf", "Sorted/Archives/old.zip"));

  // A day is 86,400 seconds, and the third has to be full.
  EXPECT_EQ(tidy(3 - minute).result.totalMoved(), 0);
  arrive("later.png", 3 - 5 * minute);
  report = tidy(3);
  EXPECT_EQ(report.result.movedToRecents, 1);
  EXPECT_EQ(report.result.sorted, 1);
  EXPECT_THAT(files(),
              UnorderedElementsAre("Recents/later.png", "Sorted/Archives/old.zip", "Sorted/Documents/PDFs/report.pdf"));

  tidy(10);
  EXPECT_THAT(files(), UnorderedElementsAre("Sorted/Archives/old.zip", "Sorted/Documents/PDFs/report.pdf",
                                            "Sorted/Media/Images/later.png"));
  EXPECT_EQ(tidy(30).result.totalMoved(), 0) << "what is sorted is left alone";
}

TEST_F(AutoOrganizerTest, leavesAloneWhatIsNotItsBusiness) {
  std::set<std::string> left{"Keep As Is/kept.pdf", "old folder/inner.pdf"};
  for (const auto& name : words("movie.mp4.crdownload b.DOWNLOAD c.part d.partial e.opdownload f.tmp .hidden.pdf "
                                "Sorted/loose.pdf Organized/Other/x.pdf")) {
    left.insert(name);
  }
  for (const auto& name : left) arrive(name, -10);
  for (const auto* folder : {"Keep As Is", "Sorted", "Organized"})
    touch(tree.path("Downloads/" + std::string(folder)), 0);
  touch(tree.path("Downloads/old folder"), -10);
  tree.link("Downloads/link.pdf", tree.file("Elsewhere/a.pdf"));
  EXPECT_EQ(tidy(1).result.totalMoved(), 0);
  left.insert("link.pdf");
  EXPECT_EQ(files(), left);
}

TEST_F(AutoOrganizerTest, waitsForADownloadThatIsStillGrowing) {
  arrive("film.mp4.part", 0, "1");
  tidy(1);
  fs::rename(tree.path("Downloads/film.mp4.part"), tree.path("Downloads/film.mp4"));
  arrive("film.mp4", 1, "12");
  EXPECT_EQ(tidy(1 + minute).result.totalMoved(), 0);
  arrive("film.mp4", 1 + minute, "123");
  EXPECT_EQ(tidy(1 + 2 * minute).result.totalMoved(), 0);
  EXPECT_EQ(tidy(1 + 3 * minute).result.movedToRecents, 1);
  EXPECT_EQ(contentOf(tree.path("Downloads/Recents/film.mp4")), "123");
}

TEST_F(AutoOrganizerTest, countsAgeFromTheLaterOfCreationAndModification) {
  const auto path = arrive("copied.pdf", -100);
  statusReader.created = FileTime{dayZero, 0};
  EXPECT_EQ(autoOrganizer.age(FileUrl(path), day(2)), 2 * 86400);
  EXPECT_EQ(tidy(2).result.movedToRecents, 1) << "it is old, but new here";
  EXPECT_EQ(tidy(3).result.sorted, 1);
  statusReader.created = FileTime{dayZero - 200 * 86400, 0};
  EXPECT_EQ(autoOrganizer.age(FileUrl(arrive("x", -100)), day(0)), 100 * 86400);
  EXPECT_EQ(autoOrganizer.age(tree.url("Downloads/missing"), day(0)), 0);
}

TEST_F(AutoOrganizerTest, foldersGoToRecentsAndThenToTheFoldersThatAreSorted) {
  arrive("album/1.jpg", 0, "12345");
  touch(tree.path("Downloads/album"), 0);
  EXPECT_EQ(tidy(1).result.movedToRecents, 1);
  EXPECT_EQ(journal->getRuns().front().totalBytes, 5);
  touch(tree.path("Downloads/Recents/album"), 0);
  topicModel.reply = [](const auto&) { return R"({"album": "Travel"})"; };
  EXPECT_EQ(tidy(2).result.totalMoved(), 0);
  EXPECT_EQ(tidy(20, TopicUse::whenAvailable).result.sorted, 1);
  EXPECT_THAT(files(), ElementsAre("Sorted/Folders/album/1.jpg"));
}

TEST_F(AutoOrganizerTest, numbersTakenNames) {
  arrive("a.pdf", -10, "in Downloads");
  arrive("Recents/a.pdf", -10, "in Recents");
  arrive("Recents/b.pdf", 0, "older");
  arrive("b.pdf", 1, "newer");
  tidy(2);
  EXPECT_EQ(contentOf(tree.path("Downloads/Sorted/Documents/PDFs/a.pdf")), "in Downloads");
  EXPECT_EQ(contentOf(tree.path("Downloads/Sorted/Documents/PDFs/a (1).pdf")), "in Recents");
  EXPECT_EQ(contentOf(tree.path("Downloads/Recents/b.pdf")), "older");
  EXPECT_EQ(contentOf(tree.path("Downloads/Recents/b (1).pdf")), "newer");
}

TEST_F(AutoOrganizerTest, undoesAWholePass) {
  tree.folder("Desktop");
  arrive("new.pdf", 0);
  arrive("old.pdf", -10);
  arrive("../Desktop/note.txt", -10);
  arrive("Recents/aged.pdf", -5);
  const auto before = files();
  auto both = request(1);
  both.options.folders.insert(both.options.folders.begin(), {tree.url("Desktop"), tree.url("missing")});
  const auto report = autoOrganizer.run(both);
  EXPECT_EQ(report.result.movedToRecents, 1);
  EXPECT_EQ(report.result.sorted, 3);
  EXPECT_THAT(report.result.batchIDs, SizeIs(2));
  EXPECT_TRUE(exists(tree.path("Desktop/Sorted/Documents/Text & Notes/note.txt")));
  for (const auto& id : report.result.batchIDs) EXPECT_THAT(journal->restoreRun(id).warnings, IsEmpty());
  EXPECT_EQ(files(), before);
  EXPECT_TRUE(exists(tree.path("Desktop/note.txt")));
}

TEST_F(AutoOrganizerTest, aFolderThatFailsDoesNotStopTheNext) {
  tree.folder("Desktop");
  arrive("../Desktop/old.pdf", -10);
  tree.link("Desktop/Sorted", tree.folder("Elsewhere"));
  arrive("old.pdf", -10);
  auto both = request(0);
  both.options.folders = {FileUrl("/etc"), tree.url("Desktop"), tree.url("Downloads")};
  const auto report = autoOrganizer.run(both);
  EXPECT_EQ(report.result.sorted, 1);
  ASSERT_THAT(report.runs, SizeIs(2));
  EXPECT_EQ(report.runs[0].proposal.row(0).lock, Lock::refused);
  EXPECT_FALSE(report.runs[0].report.runId);
  EXPECT_EQ(report.notices, Notices{*problemWith(taskServices(), FileUrl("/etc"))});
  EXPECT_TRUE(exists(tree.path("Desktop/old.pdf")));
  EXPECT_TRUE(fs::is_empty(tree.path("Elsewhere")));
}

TEST_F(AutoOrganizerTest, sortsByTopicWhereTheModelNamesOne) {
  arrive("tax 2020.pdf", -10);
  arrive("plan.pdf", -10);
  arrive("picture.png", -10);
  arrive("new.pdf", 0);
  arrive("Sorted/Travel/map.pdf", -10);
  arrive("Sorted/Documents/PDFs/x.pdf", -10);
  arrive("Sorted/Screenshots/x.png", -10);
  topicModel.reply = [](const auto&) { return R"({"tax 2020.pdf": "Taxes", "plan.pdf": "Travel"})"; };
  EXPECT_EQ(tidy(1).result.sorted, 3) << "topics are not asked for";
  arrive("a..b.pdf", -10);
  EXPECT_EQ(tidy(1, TopicUse::whenAvailable).result.sorted, 0) << "what cannot move";
  EXPECT_THAT(topicModel.prompts, IsEmpty());
  journal->restoreRun(journal->getRuns().front().runId);

  auto again = request(1, TopicUse::whenAvailable);
  again.options.returned = ReturnedUse::take;
  EXPECT_EQ(autoOrganizer.run(again).result.sorted, 3);
  EXPECT_THAT(topicModel.prompts,
              ElementsAre("Existing folders: Travel\n\nItems:\n- picture.png\n- plan.pdf\n- tax 2020.pdf"));
  EXPECT_TRUE(exists(tree.path("Downloads/Sorted/Taxes/tax 2020.pdf")));
  EXPECT_TRUE(exists(tree.path("Downloads/Sorted/Travel/plan.pdf")));
  EXPECT_TRUE(exists(tree.path("Downloads/Sorted/Media/Images/picture.png")));
}

TEST_F(AutoOrganizerTest, takesTheWordsOfTheModelForOneFolderEach) {
  arrive("a.deb", -10);
  arrive("b.pdf", -10);
  arrive("c.pdf", -10);
  arrive("d.pdf", -10);
  arrive("Sorted/Travel/map.pdf", -10);
  topicModel.reply = [](const auto&) {
    return R"({"a.deb": "installers", "b.pdf": "travel", "c.pdf": "TRAVEL", "d.pdf": "pdfs"})";
  };
  EXPECT_EQ(tidy(1, TopicUse::whenAvailable).result.sorted, 4);
  EXPECT_THAT(files(), UnorderedElementsAre("Sorted/Installers/a.deb", "Sorted/Travel/b.pdf", "Sorted/Travel/c.pdf",
                                            "Sorted/Travel/map.pdf", "Sorted/Documents/PDFs/d.pdf"));
}

TEST_F(AutoOrganizerTest, noTopicLeavesSorted) {
  const std::vector<std::string> names{"..",     "../..",   "../../Elsewhere", "/etc",   ".ssh", "Documents",
                                       "media",  "RECENTS", "Keep As Is",      "Sorted", ". .",  std::string(400, 'x'),
                                       "Other/x"};
  std::string reply = "{";
  for (std::size_t i = 0; i < names.size(); ++i) {
    arrive(std::to_string(i) + ".pdf", -10);
    reply += (i > 0 ? "," : "") + ("\"" + std::to_string(i) + ".pdf\": \"" + names[i] + "\"");
  }
  topicModel.reply = [&](const auto&) { return reply + "}"; };
  EXPECT_EQ(tidy(1, TopicUse::whenAvailable).result.sorted, static_cast<std::int64_t>(names.size()));
  std::set<std::string> sorted;
  for (const auto& file : files()) sorted.insert(file.substr(0, file.rfind('/')));
  EXPECT_THAT(sorted, UnorderedElementsAre("Sorted/Documents/PDFs", "Sorted/Elsewhere", "Sorted/etc", "Sorted/ssh",
                                           "Sorted/Other x"));
}

TEST_F(AutoOrganizerTest, leavesWhatChangedWhileTheModelWasThinking) {
  arrive("a.pdf", -10);
  arrive("b.pdf", -10);
  topicModel.reply = [&](const auto&) {
    arrive("a.pdf", 1, "somebody saved it");
    return R"({"a.pdf": "Taxes", "b.pdf": "Taxes"})";
  };
  EXPECT_EQ(tidy(1, TopicUse::whenAvailable).result.sorted, 1);
  EXPECT_THAT(files(), UnorderedElementsAre("a.pdf", "Sorted/Taxes/b.pdf"));
}

TEST_F(AutoOrganizerTest, twoRunsNeverOverlap) {
  arrive("a.pdf", -10);
  auto outer = request(1);
  outer.approve = [&](auto proposals) {
    EXPECT_THAT(proposals, SizeIs(1));
    EXPECT_EQ(tidy(1).end, AutoOrganizeReport::End::busy);
    EXPECT_THAT(files(), ElementsAre("a.pdf"));
    return false;
  };
  EXPECT_EQ(autoOrganizer.run(outer).end, AutoOrganizeReport::End::declined);
  EXPECT_THAT(files(), ElementsAre("a.pdf"));
  {
    // As another process holds it.
    const auto lock = FileLock::acquire(tree.path("State/auto_organize.lock"));
    EXPECT_EQ(tidy(1).end, AutoOrganizeReport::End::busy);
  }
  EXPECT_EQ(tidy(1).result.sorted, 1);
}

TEST_F(AutoOrganizerTest, aPassWithNothingToDoReadsTwoFoldersAndOpensNoFile) {
  const auto fresh = arrive("fresh.pdf", 1);
  const auto recent = arrive("Recents/new.pdf", 0);
  arrive("Sorted/Documents/PDFs/x.pdf", -10);
  arrive("old folder/deep/inner.pdf", -10);
  touch(tree.path("Downloads/old folder"), -10);
  topicModel.reply = [](const auto&) { return "{}"; };

  const FileDescriptor events(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC));
  for (const auto& path : {fresh, recent, tree.path("Downloads/Sorted"), tree.path("Downloads/old folder")}) {
    ASSERT_GE(::inotify_add_watch(events.get(), path.c_str(), IN_OPEN | IN_ACCESS), 0);
  }
  EXPECT_EQ(tidy(1 + minute, TopicUse::whenAvailable).result.totalMoved(), 0);
  char buffer[4096];
  EXPECT_EQ(::read(events.get(), buffer, sizeof buffer), -1) << "something was opened";
  EXPECT_THAT(topicModel.prompts, IsEmpty());
}

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
  for (const auto& name : keysOf(whole)) {
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
  AutoOrganizeController disabled(collaborators());
  disabled.start();
  EXPECT_FALSE(timer.isRunning());
  EXPECT_EQ(disabled.statusMessage(), std::nullopt);
  controller.update([](auto& settings) { settings.isEnabled = true; });
  EXPECT_TRUE(timer.isRunning());
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
