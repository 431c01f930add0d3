#include "tests/cli/OrvanectlFixture.h"

namespace orvane::test {
namespace {

class ApplyCommand : public Orvanectl {
 public:
  ApplyCommand() { home.folder("Downloads"); }
  [[nodiscard]] std::string saved(const Words& words) const {
    const auto result = run(joined(words, {"--save", "saved.json"}));
    EXPECT_EQ(result.exitStatus, 0) << result.errors;
    EXPECT_TRUE(isUntouched());
    return home.path("saved.json");
  }
};

TEST_F(ApplyCommand, showsWhatItWouldDo) {
  recommended("a.log");
  recommended("b.log");
  const auto file = saved({"clean"});
  home.file("Downloads/b.log", "written to since");
  std::map<std::string, std::string> states;
  const auto shown = json({"apply", "--dry-run", file});
  for (const auto& item : shown["items"]) states[item["url"]] = item["state"];
  ASSERT_EQ(states.size(), 2U);
  EXPECT_EQ(states.at(home.url("Downloads/a.log").absoluteString()), "ready");
  EXPECT_THAT(states.at(home.url("Downloads/b.log").absoluteString()), HasSubstr("changed"));
  EXPECT_TRUE(isUntouched());
}

TEST_F(ApplyCommand, asksAndStaysInsideTheGrantedFoldersOrTheRootsNamed) {
  home.file("project/x", "x");
  const auto file = saved({"trash", "--root", "project", "project/x"});
  EXPECT_EQ(run({"apply", file}).exitStatus, 2);
  EXPECT_EQ(json({"apply", "--yes", file}, 1)["itemsProcessed"], 0);
  EXPECT_EQ(json({"apply", "--yes", "--root", "project", file})["itemsProcessed"], 1);
}

TEST_F(ApplyCommand, neverReplacesAFileBySaving) {
  recommended();
  home.file("mine.json", "mine");
  EXPECT_THAT(run({"clean", "--save", "mine.json"}), Fails(2, "there already"));
  EXPECT_EQ(contentOf(home.path("mine.json")), "mine");
  EXPECT_THAT(run({"clean", "--save", "none/x.json"}).errors, HasSubstr("No such file"));
}

TEST_F(ApplyCommand, saysWhatIsWrongWithAFile) {
  recommended();
  for (const auto& [content, reason] :
       Rows<std::string, const char*>{{"", "not valid JSON"},
                                      {R"({"id":"x"})", "no saved proposal"},
                                      {std::string(100'000, '['), "nested deeper"},
                                      {R"({"format":"orvane.proposal","version":9,"rows":[]})", "version 9"}}) {
    home.file("saved", content);
    EXPECT_THAT(run({"apply", "--yes", "saved"}), Fails(1, reason));
  }
  home.sparseFile("huge", 1'000'000'000);
  EXPECT_THAT(run({"apply", "--yes", "huge"}).errors, HasSubstr("longer than"));
  home.pipe("pipe");
  for (const auto* name : {"pipe", "none"}) EXPECT_EQ(run({"apply", "--yes", name}).exitStatus, 1) << name;
  EXPECT_TRUE(isUntouched());
}

}  // namespace
}  // namespace orvane::test
