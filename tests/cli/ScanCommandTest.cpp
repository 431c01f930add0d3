#include "tests/cli/OrvanectlFixture.h"

namespace orvane::test {
namespace {

using testing::MatchesRegex;

class ScanCommand : public Orvanectl {
 public:
  // Of the items that a scan of these found.
  [[nodiscard]] Words found(const Words& folders, int exitStatus = 0) const {
    const auto result = run(joined({"scan", "--json"}, folders));
    EXPECT_EQ(result.exitStatus, exitStatus) << result.errors;
    Words urls;
    for (const auto& event : eventsIn(result.output)) {
      if (event["event"] == "itemDiscovered") urls.push_back(event["item"]["url"]);
    }
    return urls;
  }
  [[nodiscard]] std::string urlOf(std::string_view relative) const { return home.url(relative).absoluteString(); }
};

TEST_F(ScanCommand, printsOneEventALine) {
  for (int i = 0; i < 150; ++i) home.file("Downloads/note" + std::to_string(i) + ".txt", "1234567890");
  recommended();
  const auto result = run({"scan", "--json"});
  EXPECT_EQ(result.exitStatus, 0);
  EXPECT_EQ(result.errors, "");
  const auto events = eventsIn(result.output);
  ASSERT_EQ(events.size(), 153);
  EXPECT_EQ(events.back(), (Json{{"event", "completed"}, {"totalItems", 151}, {"totalBytes", 1507}}));
  const auto progress =
      std::find_if(events.begin(), events.end(), [](const Json& e) { return e["event"] == "progress"; });
  ASSERT_NE(progress, events.end());
  EXPECT_EQ((*progress)["itemsScanned"], 100);
  for (const auto& event : events) {
    if (event["event"] != "itemDiscovered") continue;
    EXPECT_THAT(keysOf(event["item"]),
                ElementsAre("id", "url", "relativePath", "fileSize", "createdDate", "lastModifiedDate",
                            "lastOpenedDate", "category", "riskLabel", "isSelected", "isCloudPlaceholder"));
  }
}

// As root's, or in a container.
TEST_F(ScanCommand, endsWellInABareAccount) {
  home.file("srv-data/old.log", std::string(3000, 'x'));
  home.file(".hidden/large", std::string(5000, 'x'));
  home.file(".cache/pip/wheel", std::string(2000, 'x'));
  const auto result = run({"scan"});
  EXPECT_EQ(result.exitStatus, 0);
  EXPECT_EQ(result.errors, "");
  EXPECT_THAT(result.output,
              AllOf(testing::ContainsRegex("~/\\.hidden(.|\n)*~/srv-data"),
                    HasSubstr("of which 1 (2 KB) can go without a second look: orvanectl clean\n"),
                    EndsWith("None of the folders that are looked after is here: only the caches and logs of programs "
                             "were scanned.\n"
                             "Look after one: orvanectl folders add FOLDER. Clean one now: orvanectl clean FOLDER\n")));
  EXPECT_THAT(found({}), ElementsAre(urlOf(".cache/pip/")));
  EXPECT_EQ(run({"clean", "--yes", "--no-known-places"}).exitStatus, 2) << "nothing is left to look into";
  EXPECT_EQ(run({"clean", "--save", "saved.json"}).exitStatus, 0);
  EXPECT_EQ(json({"apply", "saved.json", "--yes"})["itemsProcessed"], 1);
  EXPECT_EQ(run({"restore", "--last", "--yes"}).exitStatus, 0);
  EXPECT_EQ(json({"clean", "--yes"})["itemsProcessed"], 1);
  EXPECT_TRUE(holds({"srv-data/old.log"}, {".cache/pip"})) << "nothing moves that nobody named";
  EXPECT_EQ(run({"rules", "run", "--yes"}).exitStatus, 0);
}

TEST_F(ScanCommand, showsCategoriesInDeclarationOrderWithTotalsLast) {
  recommended("a.log", std::string(2000, 'x'));
  home.file("Downloads/Screenshot 1.png", std::string(500, 'x'));
  home.sparseFile("Documents/film.mov", 200'000'000);
  const auto result = run({"scan"});
  EXPECT_EQ(result.errors, "");
  EXPECT_THAT(result.output,
              MatchesRegex("Category +Items +Size +Risk\n"
                           "System & App Logs +1 +2 KB +safe\n"
                           "Screenshots +1 +500 bytes +review\n"
                           "Large Unused Files +1 +200 MB +review\n"
                           "-+\n"
                           "Total +3 +200 MB\n"
                           "\n"
                           "Disk: [^\n]* available\n"
                           "Found 3 items \\(200 MB\\), of which 1 \\(2 KB\\)[^\n]*: orvanectl clean\n"));
  EXPECT_TRUE(isUntouched());
}

TEST_F(ScanCommand, includesDeveloperCachesOnDemand) {
  home.file("Library/Developer/CoreSimulator/Caches/a/b", "12345");
  EXPECT_THAT(found({"Library"}), ElementsAre());
  EXPECT_THAT(found({"Library", "--developer-caches"}), ElementsAre(urlOf("Library/Developer/CoreSimulator/Caches")));
}

TEST_F(ScanCommand, takesFoldersAsTheyAreTyped) {
  for (const auto* folder : {"plain", "[a,b]", "{}", "-dash", "scan"}) home.file(std::string(folder) + "/in.log");
  home.link("to plain", "plain");
  for (const auto& [typed, folder] : Rows<Words, const char*>{{{"plain/../[a,b]/."}, "[a,b]"},
                                                              {{"{}"}, "{}"},
                                                              {{"scan"}, "scan"},
                                                              {{"--", "-dash"}, "-dash"},
                                                              {{urlOf("[a,b]")}, "[a,b]"},
                                                              {{"plain", "./plain", home.path("plain")}, "plain"}}) {
    EXPECT_THAT(found(typed), ElementsAre(urlOf(std::string(folder) + "/in.log")));
  }
  EXPECT_THAT(found({"plain", "scan"}), UnorderedElementsAre(urlOf("plain/in.log"), urlOf("scan/in.log")));
  EXPECT_EQ(found({"to plain"}).size(), 1);
}

TEST_F(ScanCommand, namesFoldersThatCannotBeScannedAndScansTheOthers) {
  recommended();
  home.file("file");
  home.folder(".ssh");
  const auto result = run({"scan", "--json", "nope", "file", ".ssh", "/usr", "Downloads"});
  EXPECT_EQ(result.exitStatus, 1);
  EXPECT_EQ(eventsIn(result.output)[0]["item"]["url"], urlOf("Downloads/old.log"));
  EXPECT_EQ(eventsIn(result.output).back()["totalItems"], 1);
  EXPECT_EQ(result.errors,
            "orvanectl: ~/nope: No such file or directory\n"
            "orvanectl: ~/file: Not a directory\n"
            "orvanectl: Operation denied: '" +
                home.path(".ssh") +
                "' is a protected system or personal identity path.\n"
                "orvanectl: Operation denied: '/usr' is a protected system or personal identity path.\n");
}

TEST_F(ScanCommand, namesFoldersThatMayNotBeRead) {
  if (::geteuid() != 0) GTEST_SKIP() << "becomes another user";
  home.file("closed/in.log");
  ASSERT_EQ(::chmod(home.path("closed").c_str(), 0700), 0);
  EXPECT_THAT(runAsNobody({"scan", "closed"}), Fails(1, "orvanectl: ~/closed: Permission denied\n"));
}

TEST_F(Orvanectl, noNameInJsonReachesTheTerminalAsACommand) {
  // CSI in one character, a delete character, and text that runs backwards.
  const std::string name =
      "a\xC2\x9B"
      "31m\x7F\xE2\x80\xAE"
      "fdp.\xD8\x9C\xE2\x81\xA6\xE2\x80\xA6.log";
  recommended(name);
  const auto output = run({"scan", "--json"}).output;
  for (const char* hidden : {"\xC2\x9B", "\x7F", "\xE2\x80\xAE", "\xD8\x9C", "\xE2\x81\xA6"}) {
    EXPECT_THAT(output, Not(HasSubstr(hidden)));
  }
  EXPECT_THAT(output, HasSubstr("\xE2\x80\xA6")) << "an ellipsis hides nothing";
  EXPECT_EQ(eventsIn(output)[0]["item"]["relativePath"], name);
}

}  // namespace
}  // namespace orvane::test
