#include "tests/cli/OrvanectlFixture.h"
#include "tests/support/LocalServer.h"

namespace orvane::test {
namespace {

class TidyCommand : public Orvanectl {
 public:
  TidyCommand() { home.folder("Downloads"); }
  // New here, and last changed before the settle time.
  std::string arrive(const std::string& name) const {
    const auto path = home.file("Downloads/" + name);
    setAge(path, 300);
    return path;
  }
};

TEST_F(TidyCommand, showsAndChangesSettings) {
  EXPECT_EQ(json({"tidy", "show"})["folderPaths"][1], home.path("Downloads"));
  EXPECT_EQ(json({"tidy", "enable"})["isEnabled"], true);
  EXPECT_EQ(json({"tidy", "disable"})["isEnabled"], false);
  home.folder("a");
  home.folder("b");
  EXPECT_TRUE(tells(json({"tidy", "set", "--days", "30", "--folder", "a", "--folder", "b", "--ai-topics", "off"}),
                    {{"recentsDays", 30}, {"folderPaths", {home.path("a"), home.path("b")}}, {"useAITopics", false}}));
  EXPECT_EQ(json({"tidy", "set", "--days", "1"})["folderPaths"].size(), 2U);
  EXPECT_THAT(run({"tidy", "show"}), Says("Recent for        1 day\n", "~/b", "Last run          never"));
  EXPECT_THAT(run({"tidy", "set", "--ai-topics", "on"}), Says("no model on this machine is set up"));
  for (const Words& words : {Words{"--days", "0"}, Words{"--days", "31"}, Words{"--days", "3x"}, Words{"--days", ""},
                             Words{"--folder", "missing"}, Words{"--folder", "/etc"}, Words{"--folder", "."},
                             Words{"--ai-topics", "maybe"}, Words{}}) {
    EXPECT_EQ(run(joined({"tidy", "set"}, words)).exitStatus, 2) << testing::PrintToString(words);
  }
  EXPECT_EQ(json({"tidy", "show"})["recentsDays"], 1);
}

TEST_F(TidyCommand, runsAndComesBack) {
  const auto path = arrive("new.pdf");
  EXPECT_THAT(answered({"tidy", "run"}, "[y/N] ", "n\n").output, HasSubstr("Recents (1 item"));
  EXPECT_FALSE(json({"tidy", "show"}).contains("lastRunDate"));
  const auto report = json({"tidy", "run", "--yes"});
  EXPECT_TRUE(tells(report, {{"result", {{"movedToRecents", 1}, {"sorted", 0}}},
                             {"statusMessage", "Moved 1 new item to Recents and sorted 0. Undo anytime in History."}}));
  EXPECT_TRUE(holds({"Downloads/Recents/new.pdf"}));
  EXPECT_EQ(json({"restore", report["result"]["batchIDs"][0].get<std::string>(), "--yes"})["restoredCount"], 1);
  EXPECT_TRUE(exists(path));
  EXPECT_EQ(json({"tidy", "show"})["lastRunMovedCount"], 1);
  EXPECT_EQ(run({"tidy", "run", "--yes"}).output, "Everything is tidy.\n");
}

TEST_F(TidyCommand, leavesAloneWhatWasBroughtBackUntilItChanges) {
  for (const auto* name : {"kept.pdf", "changed.pdf", "report.pdf"}) arrive(name);
  EXPECT_EQ(json({"tidy", "run", "--yes"})["result"]["movedToRecents"], 3);
  // Its place is taken when it comes back.
  home.file("Downloads/report.pdf", "another");
  EXPECT_EQ(json({"restore", "--last", "--yes"})["restoredCount"], 3);
  std::filesystem::remove(home.path("Downloads/report.pdf"));
  const auto again = run({"tidy", "run", "--yes"});
  EXPECT_EQ(again.output, "Everything is tidy.\n");
  EXPECT_THAT(again.errors, HasSubstr("left alone: 3 items (21 bytes) brought back before and not changed since"));

  home.file("Downloads/changed.pdf", "written to since");
  EXPECT_EQ(json({"tidy", "run", "--yes"})["result"]["movedToRecents"], 0) << "it may still be changing";
  EXPECT_EQ(json({"tidy", "run", "--yes", "--returned"})["result"]["movedToRecents"], 2);
  EXPECT_TRUE(holds({"Downloads/changed.pdf"}, {"Downloads/kept.pdf"}));
}

TEST_F(TidyCommand, proposesNothingThatCouldNotMoveAndNamesTheFoldersThatItCannotTidy) {
  for (const auto* name : {"a..b.pdf", "~$letter.docx", "new.pdf"}) arrive(name);
  const auto result = run({"tidy", "run", "--yes"});
  EXPECT_THAT(result, Says("Moved 1 new item to Recents"));
  EXPECT_THAT(result, Fails(0, "left out: 1 item (7 bytes) that may not be moved (", "a..b.pdf",
                            "~/Desktop: No such file or directory"));
  EXPECT_TRUE(holds({"Downloads/a..b.pdf", "Downloads/~$letter.docx"}));
}

TEST_F(TidyCommand, namesTheServersProblem) {
  const LocalServer server([](const auto&) { return LocalServer::answer(200, "{}"); });
  home.file(".config/orvane/preferences.json", "{\"OrvaneLocalModelEndpoint\":\"" + server.url() + "\"}");
  EXPECT_THAT(run({"tidy", "show"}), Says("Topics            on\n"));
  home.file(".config/orvane/preferences.json", R"({"OrvaneLocalModelEndpoint":"http://10.0.0.1"})");
  EXPECT_THAT(run({"tidy", "show"}), Says("names may only be sent to this machine"));
}

}  // namespace
}  // namespace orvane::test
