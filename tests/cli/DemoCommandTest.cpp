#include "tests/cli/OrvanectlFixture.h"

#include <set>

namespace orvane::test {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;

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

  EXPECT_THAT(runInDemo({"scan"}).output, HasSubstr("Old Installers & Downloads"));
  const auto letters = home.path("a demo/home/Downloads/server.log");
  ASSERT_TRUE(exists(letters));
  EXPECT_EQ(runInDemo({"clean", "--yes"}).exitStatus, 0);
  EXPECT_FALSE(exists(letters));
  EXPECT_EQ(runInDemo({"restore", "--last", "--yes"}).exitStatus, 0);
  EXPECT_TRUE(exists(letters));
  EXPECT_THAT(runInDemo({"duplicates"}).output, HasSubstr("~/Documents/contract.pdf"));
  EXPECT_THAT(runInDemo({"organize", "Downloads"}).output, HasSubstr("Media/Audio"));
  EXPECT_EQ(runInDemo({"agent", "status"}).exitStatus, 0);
  EXPECT_FALSE(exists(home.path("own")));
  EXPECT_TRUE(isUntouched());
}

TEST_F(Demo, takesNoFolderThatHoldsAnything) {
  const auto mine = home.file("mine/letter.txt", "dear");
  const auto result = run({"demo", "mine"});
  EXPECT_EQ(result.exitStatus, 1);
  EXPECT_THAT(result.errors, HasSubstr("is there already"));
  EXPECT_EQ(contentOf(mine), "dear");
  EXPECT_FALSE(exists(home.path("mine/home")));
}

TEST_F(Demo, givesEachItsOwnFolderWhereNoneIsNamed) {
  EXPECT_EQ(run({"demo"}).exitStatus, 0);
  const auto second = run({"demo"});
  EXPECT_THAT(second.errors, IsEmpty());
  EXPECT_THAT(second.output, HasSubstr("orvane-demo (1)/orvanectl' scan"));
  EXPECT_TRUE(exists(home.path("orvane-demo/home/Downloads/server.log")));
}

}  // namespace
}  // namespace orvane::test
