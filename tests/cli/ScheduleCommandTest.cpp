#include "tests/cli/OrvanectlFixture.h"

#include <sys/stat.h>
#include <unistd.h>

namespace orvane::test {
namespace {

class ScheduleCommand : public Orvanectl {
 public:
  // Only logs are cleaned up.
  void onlyLogs() const {
    for (const auto& rule : json({"rules", "list"})) {
      EXPECT_EQ(run({"rules", "disable", rule["id"].get<std::string>()}).exitStatus, 0);
    }
    addRule(R"({"name":"Logs","trigger":{"fileExtensions":["log"]},"action":{"type":"moveToTrash"}})");
  }
};

TEST_F(ScheduleCommand, keepsSettings) {
  EXPECT_EQ(json({"schedule", "show"}),
            (Json{{"isEnabled", false}, {"frequency", {{"weekly", Json::object()}}}, {"runApprovedRulesOnly", true}}));
  EXPECT_EQ(json({"schedule", "due"})["due"], false);
  EXPECT_EQ(json({"schedule", "enable"})["isEnabled"], true);
  EXPECT_EQ(json({"schedule", "due"})["due"], true);
  EXPECT_EQ(json({"schedule", "set", "low-disk:25"})["frequency"], (Json{{"onLowDiskSpace", {{"thresholdGB", 25}}}}));
  EXPECT_THAT(run({"schedule", "show"}), Says("When Free Space < 25 GB", "agent install"));
  EXPECT_EQ(json({"schedule", "set", "monthly"})["frequency"], (Json{{"monthly", Json::object()}}));
  EXPECT_EQ(json({"schedule", "disable"})["isEnabled"], false);
  for (const auto* word :
       {"yearly", "low-disk:", "low-disk:0", "low-disk:-1", "low-disk:5x", "low-disk:99999999999999999999"}) {
    EXPECT_EQ(run({"schedule", "set", word}).exitStatus, 2) << word;
  }
}

TEST_F(ScheduleCommand, runsNotesTheTimeAndComesBack) {
  onlyLogs();
  const auto file = recommended();
  EXPECT_EQ(answered({"schedule", "run"}, "[y/N] ", "n\n").exitStatus, 0);
  EXPECT_EQ(run({"schedule", "run", "--save", "saved.json"}).exitStatus, 0);
  EXPECT_TRUE(exists(file));
  EXPECT_FALSE(json({"schedule", "show"}).contains("lastRunDate"));
  const auto summary = json({"schedule", "run", "--yes"});
  EXPECT_EQ(summary["itemsProcessed"], 1);
  EXPECT_FALSE(exists(file));
  EXPECT_TRUE(json({"schedule", "show"}).contains("lastRunDate"));
  EXPECT_EQ(run({"restore", summary["batchId"].get<std::string>(), "--yes"}).exitStatus, 0);
  EXPECT_TRUE(exists(file));
}

TEST_F(ScheduleCommand, takesKnownPlacesThatARuleNamesAndNobodyUses) {
  onlyLogs();
  constexpr double twoMonths = 61.0 * 86400;
  for (const auto* place : {".cache/pip", ".cache/chromium", ".cache/young"}) {
    setAge(home.file(std::string(place) + "/a"), twoMonths);
    setAge(home.path(place), twoMonths);
  }
  home.file(".cache/young/b");
  setAge(home.path(".cache/young"), twoMonths);
  home.link(".config/chromium/SingletonLock", "host-" + std::to_string(::getpid()));
  EXPECT_EQ(run({"rules", "add", "--suggested", "old-caches"}).exitStatus, 0);
  EXPECT_EQ(run({"folders", "known", "off"}).exitStatus, 0);
  EXPECT_EQ(json({"schedule", "run", "--yes"})["itemsProcessed"], 0);
  EXPECT_EQ(run({"folders", "known", "on"}).exitStatus, 0);
  EXPECT_EQ(json({"schedule", "run", "--yes"})["itemsProcessed"], 1);
  EXPECT_TRUE(holds({".cache/chromium/a", ".cache/young/a"}, {".cache/pip"}));
  EXPECT_EQ(run({"restore", "--last", "--yes"}).exitStatus, 0);
  EXPECT_TRUE(exists(home.path(".cache/pip/a")));
}

TEST_F(ScheduleCommand, losesNothingWhenARunIsKilled) {
  onlyLogs();
  std::vector<std::string> files;
  for (int i = 0; i < 5; ++i) files.push_back(recommended(std::to_string(i) + ".log"));
  static_cast<void>(runUnder({"/usr/bin/strace", "-f", "-o", "/dev/null", "-e", "trace=renameat2", "-e",
                              "inject=renameat2:signal=SIGKILL:when=3"},
                             {"schedule", "run", "--yes"}));
  const auto left = std::ranges::count_if(files, [](const auto& file) { return exists(file); });
  EXPECT_GT(left, 0);
  EXPECT_LT(left, 5);
  EXPECT_FALSE(json({"schedule", "show"}).contains("lastRunDate"));
  EXPECT_EQ(json({"restore", "--last", "--yes"})["restoredCount"], 5 - left);
  for (const auto& file : files) EXPECT_EQ(contentOf(file), "1234567");
}

class AgentCommand : public Orvanectl {
 public:
  // By an orvanectl that has a program with a window beside it; whatever a service manager is told comes to nothing.
  [[nodiscard]] ChildResult runBesideAWindow(const Words& words) const {
    auto program = setup(words);
    program.arguments.front() = home.path("bin/orvanectl");
    return LiveProgram(program).finish();
  }
  AgentCommand() {
    home.folder("bin");
    std::filesystem::copy_file(ORVANECTL, home.path("bin/orvanectl"));
    ::chmod(home.file("bin/orvane", "#!/bin/sh\n").c_str(), 0700);
  }
  [[nodiscard]] std::string units(std::string_view name) const {
    return home.path(".config/systemd/user/com.orvane.cleanup" + std::string(name));
  }
};

TEST_F(AgentCommand, installsAndRemovesTheAgent) {
  EXPECT_EQ(json({"agent", "status"})["installed"], false);
  EXPECT_EQ(runBesideAWindow({"agent", "install"}).output,
            "The background agent is installed (Weekly).\n"
            "Scheduled cleanups are off: 'orvanectl schedule enable' switches them on.\n");
  EXPECT_THAT(contentOf(units(".service")),
              HasSubstr("ExecStart=:\"" + home.path("bin/orvane") + "\" --scheduled-run\n"));
  EXPECT_THAT(contentOf(units(".timer")), HasSubstr("every 604800 seconds"));
  EXPECT_EQ(runBesideAWindow({"schedule", "set", "daily"}).exitStatus, 0);
  EXPECT_THAT(contentOf(units(".timer")), HasSubstr("every 86400 seconds"));
  EXPECT_EQ(json({"agent", "status"})["intervalSeconds"], 86400);
  EXPECT_EQ(json({"agent", "uninstall"})["installed"], false);
  EXPECT_FALSE(exists(units(".timer")) || exists(units(".service")));
}

TEST_F(AgentCommand, showsTheUnitsThatItWouldInstallOrThePropertyList) {
  const auto shown = runBesideAWindow({"agent", "show"}).output;
  const auto list = runBesideAWindow({"agent", "show", "--property-list"}).output;
  EXPECT_TRUE(list.starts_with("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"));
  EXPECT_THAT(list,
              AllOf(HasSubstr("<string>" + home.path("bin/orvane") + "</string>"), HasSubstr("<integer>604800<")));
  EXPECT_EQ(runBesideAWindow({"agent", "install"}).exitStatus, 0);
  EXPECT_THAT(shown, AllOf(HasSubstr("# com.orvane.cleanup.service\n" + contentOf(units(".service"))),
                           HasSubstr("# com.orvane.cleanup.timer\n[Unit]\n"), HasSubstr("every 604800 seconds")));
}

TEST_F(AgentCommand, installsNothingWhereThereIsNoWindow) {
  ::unlink(home.path("bin/orvane").c_str());
  EXPECT_THAT(runBesideAWindow({"agent", "install"}), Fails(1, "there is no program at ~/bin/orvane"));
  EXPECT_FALSE(exists(units(".timer")));
}

}  // namespace
}  // namespace orvane::test
