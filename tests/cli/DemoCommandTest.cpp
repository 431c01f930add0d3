#include "tests/cli/OrvanectlFixture.h"

#include <set>

namespace orvane::test {
namespace {

class Demo : public Orvanectl {
 public:
  [[nodiscard]] ChildResult runInDemo(const Words& words) const {
    auto program = setup(words);
    program.arguments.front() = home.path("a demo/orvanectl");
    // Nothing of the user's own session may be found.
    program.environment["XDG_CONFIG_HOME"] = home.path("own/config");
    program.environment["XDG_DATA_HOME"] = home.path("own/data");
    program.environment["XDG_RUNTIME_DIR"] = home.path("own/runtime");
    return LiveProgram(program).finish();
  }
};

TEST_F(Demo, everyCommandThatItNamesWorksAndTouchesNothingElse) {
  const auto made = json({"demo", "a demo"});
  EXPECT_GT(made["files"].get<int>(), 300);
  std::set<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(home.path("a demo")))
    names.insert(entry.path().filename());
  names.erase("orvane");  // only where the window was built
  EXPECT_EQ(names, (std::set<std::string>{"home", "runtime", "orvanectl"}));
  ASSERT_EQ(made["commands"].size(), 5U);

  EXPECT_THAT(runInDemo({"scan"}), Says("Old Installers & Downloads"));
  const auto letters = home.path("a demo/home/Downloads/server.log");
  ASSERT_TRUE(exists(letters));
  EXPECT_EQ(runInDemo({"clean", "--yes"}).exitStatus, 0);
  EXPECT_FALSE(exists(letters));
  EXPECT_EQ(runInDemo({"restore", "--last", "--yes"}).exitStatus, 0);
  EXPECT_TRUE(exists(letters));
  EXPECT_THAT(runInDemo({"duplicates"}), Says("~/Documents/contract.pdf"));
  EXPECT_THAT(runInDemo({"organize", "Downloads"}), Says("Media/Audio"));
  EXPECT_EQ(runInDemo({"agent", "status"}).exitStatus, 0);
  EXPECT_TRUE(holds({}, {"own"}) && isUntouched());
}

TEST_F(Demo, takesNoFolderThatHoldsAnything) {
  const auto mine = home.file("mine/letter.txt", "dear");
  EXPECT_THAT(run({"demo", "mine"}), Fails(1, "is there already"));
  EXPECT_EQ(contentOf(mine), "dear");
  EXPECT_TRUE(holds({}, {"mine/home"}));
}

TEST_F(Demo, givesEachItsOwnFolderWhereNoneIsNamed) {
  EXPECT_EQ(run({"demo"}).exitStatus, 0);
  EXPECT_THAT(run({"demo"}), Says("orvane-demo (1)/orvanectl' scan"));
  EXPECT_TRUE(holds({"orvane-demo/home/Downloads/server.log"}));
}

}  // namespace
}  // namespace orvane::test
