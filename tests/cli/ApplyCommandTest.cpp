#include "tests/cli/OrvanectlFixture.h"

#include <sys/stat.h>

namespace orvane::test {
namespace {

using testing::HasSubstr;

class ApplyCommand : public Orvanectl {
 public:
  ApplyCommand() { home.folder("Downloads"); }
  [[nodiscard]] std::string saved(Words words) const {
    words.insert(words.end(), {"--save", "saved.json"});
    const auto result = run(words);
    EXPECT_EQ(result.exitStatus, 0) << result.errors;
    EXPECT_TRUE(isUntouched());
    return home.path("saved.json");
  }
};

TEST_F(ApplyCommand, carriesOutWhatWasSavedAndBringsItBack) {
  recommended("a.log");
  recommended("b.log");
  const auto file = saved({"clean"});
  recommended("new.log");
  home.file("Downloads/b.log", "written to since");
  const auto shown = json({"apply", "--dry-run", file});
  ASSERT_EQ(shown["items"].size(), 2U);
  std::map<std::string, std::string> states;
  for (const auto& item : shown["items"]) states[item["url"]] = item["state"];
  EXPECT_EQ(states.at(home.url("Downloads/a.log").absoluteString()), "ready");
  EXPECT_THAT(states.at(home.url("Downloads/b.log").absoluteString()), HasSubstr("changed"));
  EXPECT_TRUE(isUntouched());

  const auto report = json({"apply", "--yes", file}, 1);
  EXPECT_EQ(report["itemsProcessed"], 1);
  EXPECT_EQ(report["failures"].size(), 1U);
  EXPECT_TRUE(exists(trashed("a.log")));
  EXPECT_TRUE(exists(home.path("Downloads/b.log")) && exists(home.path("Downloads/new.log")));
  EXPECT_EQ(json({"restore", "--last", "--yes"})["restoredCount"], 1);
  EXPECT_TRUE(exists(home.path("Downloads/a.log")));
}

TEST_F(ApplyCommand, asksAndStaysInsideTheGrantedFoldersOrTheRootsNamed) {
  home.file("project/x", "x");
  const auto file = saved({"trash", "--root", "project", "project/x"});
  EXPECT_EQ(run({"apply", file}).exitStatus, 2);
  EXPECT_EQ(json({"apply", "--yes", file}, 1)["itemsProcessed"], 0);
  EXPECT_TRUE(exists(home.path("project/x")));
  EXPECT_EQ(json({"apply", "--yes", "--root", "project", file})["itemsProcessed"], 1);
}

TEST_F(ApplyCommand, carriesOutASavedPlanWherePlansMayAct) {
  home.folder("Library/Caches");
  const auto log = home.file("Library/Logs/old.log", "precious");
  setAge(log, 40 * 86400.0);
  EXPECT_EQ(run({"ask", "delete old logs", "--save", "saved.json"}).exitStatus, 0);
  EXPECT_EQ(json({"apply", "--yes", "saved.json"})["itemsProcessed"], 1);
  EXPECT_FALSE(exists(log));
}

TEST_F(ApplyCommand, neverReplacesAFileBySaving) {
  recommended();
  home.file("mine.json", "mine");
  const auto result = run({"clean", "--save", "mine.json"});
  EXPECT_EQ(result.exitStatus, 2);
  EXPECT_THAT(result.errors, HasSubstr("there already"));
  EXPECT_EQ(contentOf(home.path("mine.json")), "mine");
  EXPECT_THAT(run({"clean", "--save", "none/x.json"}).errors, HasSubstr("No such file"));
}

TEST_F(ApplyCommand, saysWhatIsWrongWithAFile) {
  recommended();
  struct Case {
    std::string name;
    std::string content;
    std::string reason;
  };
  for (const auto& [name, content, reason] : std::vector<Case>{
           {"empty", "", "not valid JSON"},
           {"plan", R"({"id":"x"})", "no saved proposal"},
           {"deep", std::string(100'000, '['), "nested deeper"},
           {"newer", R"({"format":"orvane.proposal","version":9,"rows":[]})", "version 9"},
       }) {
    home.file(name, content);
    const auto result = run({"apply", "--yes", name});
    EXPECT_EQ(result.exitStatus, 1) << name;
    EXPECT_THAT(result.errors, HasSubstr(reason)) << name;
  }
  home.file("huge", "");
  std::filesystem::resize_file(home.path("huge"), 1'000'000'000);
  EXPECT_THAT(run({"apply", "--yes", "huge"}).errors, HasSubstr("longer than"));
  ASSERT_EQ(::mkfifo(home.path("pipe").c_str(), 0600), 0);
  EXPECT_EQ(run({"apply", "--yes", "pipe"}).exitStatus, 1);
  EXPECT_EQ(run({"apply", "--yes", "none"}).exitStatus, 1);
  EXPECT_TRUE(isUntouched());
}

}  // namespace
}  // namespace orvane::test
