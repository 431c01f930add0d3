#include "tests/cli/OrvanectlFixture.h"

#include <sys/types.h>
#include <unistd.h>

#include <algorithm>

namespace orvane::test {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

struct WrongUsage {
  std::string name;
  std::vector<std::string> words;
  std::string says;
};
void PrintTo(const WrongUsage& usage, std::ostream* out) {
  *out << usage.name;
}

class WrongUsageTest : public Orvanectl, public testing::WithParamInterface<WrongUsage> {};

TEST_P(WrongUsageTest, isToldInOneLineAndChangesNothing) {
  const auto file = recommended();
  const auto result = run(GetParam().words);
  EXPECT_EQ(result.exitStatus, 2);
  EXPECT_EQ(result.output, "");
  EXPECT_THAT(result.errors, StartsWith("orvanectl: "));
  EXPECT_THAT(result.errors, HasSubstr(GetParam().says));
  EXPECT_THAT(result.errors, EndsWith("--help')\n"));
  EXPECT_EQ(std::count(result.errors.begin(), result.errors.end(), '\n'), 1);
  EXPECT_TRUE(exists(file));
  EXPECT_FALSE(exists(home.path(".local")));
}

INSTANTIATE_TEST_SUITE_P(
    Usage, WrongUsageTest,
    testing::Values(
        WrongUsage{"no command", {}, "a command is missing"},
        WrongUsage{"only a common option", {"--json"}, "a command is missing"},
        WrongUsage{"an unknown command", {"scna"}, "there is no command 'scna'"},
        WrongUsage{"a command with control characters", {"a\nb\x1b"}, R"(there is no command 'a\nb\x1b')"},
        WrongUsage{"an unknown option", {"scan", "--dry-run"}, "there is no option '--dry-run'"},
        WrongUsage{"an unknown short option", {"scan", "-x"}, "there is no option '-x'"},
        WrongUsage{"an option without its value", {"clean", "--category"}, "--category needs a value"},
        WrongUsage{"a switch with a value", {"scan", "--json=yes"}, "--json takes no value"},
        WrongUsage{"an unknown category", {"clean", "--yes", "--category", "Logs"}, "caches, logs, developerCaches"},
        WrongUsage{"review items of no category", {"clean", "--yes", "--include-review"}, "add --category"},
        WrongUsage{"clean with nobody to ask", {"clean"}, "add --yes"},
        WrongUsage{"trash with nobody to ask", {"trash", "Downloads/old.log"}, "add --yes"},
        WrongUsage{"restore with nobody to ask", {"restore", "--last"}, "add --yes"},
        WrongUsage{"apply with nobody to ask", {"ask", "delete old logs", "--apply"}, "add --yes"},
        WrongUsage{"ask without a request", {"ask"}, "PROMPT is missing"},
        WrongUsage{"ask without quotes", {"ask", "delete", "logs"}, "'logs' is one argument too many"},
        WrongUsage{"an unknown provider", {"ask", "x", "--provider", "oracle"}, "offline_heuristic"},
        WrongUsage{"plan without a verb", {"plan", "x"}, "'plan' takes a second word: validate, preview, run"},
        WrongUsage{"plan run with nobody to ask", {"plan", "run", "plan.json"}, "add --yes"},
        WrongUsage{"trash without a path", {"trash", "--yes"}, "PATH is missing"},
        WrongUsage{"trash of an empty path", {"trash", "--yes", ""}, "cannot be empty"},
        WrongUsage{"scan of an empty path", {"scan", ""}, "cannot be empty"},
        WrongUsage{
            "trash with an empty root", {"trash", "--yes", "--root", "", "Downloads/old.log"}, "cannot be empty"},
        WrongUsage{"trash with a missing root", {"trash", "--yes", "--root", "nope", "Downloads/old.log"}, "~/nope"},
        WrongUsage{"a broken URL", {"explain", "file:///a%4"}, "not a valid file URL"},
        WrongUsage{"restore of nothing", {"restore", "--yes"}, "name one RUN, or --last"},
        WrongUsage{"restore of a run and the last", {"restore", "--yes", "--last", "AB"}, "name one RUN, or --last"},
        WrongUsage{"restore of what is no run", {"restore", "--yes", "old.log"}, "'old.log' is no run"},
        WrongUsage{"a summary of something", {"summary", "Downloads"}, "'Downloads' is one argument too many"},
        WrongUsage{"history of an unknown word", {"history", "shwo"}, "'shwo' is one argument too many"},
        WrongUsage{"two runs to show", {"history", "show", "A", "B"}, "'B' is one argument too many"}));

TEST_F(Orvanectl, saysItsVersion) {
  for (const Words& words : {Words{"--version"}, Words{"scan", "--version"}, Words{"--json", "--version"}}) {
    EXPECT_EQ(run(words).output, "orvanectl " ORVANE_VERSION "\n");
  }
  EXPECT_TRUE(isUntouched());
}

TEST_F(Orvanectl, helpsWithAFamilyOfCommands) {
  const auto help = run({"plan", "--help"});
  EXPECT_EQ(help.exitStatus, 0);
  EXPECT_THAT(help.output, HasSubstr("plan preview"));
  EXPECT_THAT(help.output, Not(HasSubstr("restore")));
}

TEST_F(Orvanectl, helpsWithEveryCommandItLists) {
  const auto overview = run({"--help"});
  EXPECT_EQ(overview.exitStatus, 0);
  EXPECT_EQ(overview.errors, "");
  for (const Words& words : {Words{"scan"}, Words{"clean"}, Words{"trash"}, Words{"history"}, Words{"history", "show"},
                             Words{"restore"}, Words{"summary"}, Words{"explain"}, Words{"ask"},
                             Words{"plan", "validate"}, Words{"plan", "preview"}, Words{"plan", "run"}}) {
    auto asked = words;
    asked.push_back("--help");
    const auto help = run(asked);
    EXPECT_EQ(help.exitStatus, 0);
    const std::string name = words.size() == 1 ? words[0] : words[0] + " " + words[1];
    EXPECT_THAT(help.output, StartsWith("Usage: orvanectl " + name + " [OPTIONS]"));
    EXPECT_THAT(overview.output, HasSubstr("\n  " + name + " "));
  }
  EXPECT_THAT(overview.output, testing::Not(HasSubstr("internal")));
  EXPECT_TRUE(isUntouched());
}

TEST_F(Orvanectl, takesCommonOptionsAnywhere) {
  home.folder("Downloads");
  for (const Words& words : {Words{"--json", "history"}, Words{"history", "--json"}}) {
    EXPECT_EQ(run(words).output, "[]\n");
  }
}

TEST_F(Orvanectl, saysWhatToNameWhereNoFolderIsLookedAfter) {
  const auto result = run({"trash", "--yes", "x"});
  EXPECT_EQ(result.exitStatus, 2);
  EXPECT_THAT(result.errors, HasSubstr("~/Downloads, ~/Documents, ~/Desktop, ~/Pictures, ~/Library/Caches"));
  EXPECT_THAT(result.errors, HasSubstr("FOLDER"));
}

TEST_F(Orvanectl, saysThatTheHomeFolderIsUnknown) {
  // An account without an entry in the password database.
  environment.erase("HOME");
  auto program = setup({"scan"});
  program.arguments = {"/usr/bin/setpriv", "--reuid=4242", ORVANECTL, "scan"};
  program.workingFolder = "/";
  const auto result = LiveProgram(program).finish();
  if (result.errors.find("setpriv") != std::string::npos || result.exitStatus == 127) {
    GTEST_SKIP() << "only root can become another user: " << result.errors;
  }
  EXPECT_EQ(result.exitStatus, 1);
  EXPECT_EQ(result.errors, "orvanectl: the home folder is unknown: set HOME to its absolute path\n");
}

// Files that root makes in the Trash and beside the journal would shut its user out.
TEST_F(Orvanectl, rootLeavesTheHomeOfAnotherUserAlone) {
  constexpr uid_t somebody = 12345;
  if (::geteuid() != 0) GTEST_SKIP() << "only root can be told from the owner of a home";
  const auto log = recommended();
  ASSERT_EQ(::chown(home.path().c_str(), somebody, somebody), 0);
  for (const Words& words : {Words{"clean", "--yes"}, Words{"history"}, Words{"tidy", "set", "--days", "5"}}) {
    const auto result = run(words);
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_THAT(result.errors, testing::MatchesRegex("orvanectl: the home folder '.*' belongs to another user;.*\n"));
  }
  EXPECT_TRUE(exists(log));
  EXPECT_TRUE(isUntouched());
  EXPECT_FALSE(exists(home.path(".config")));
  EXPECT_EQ(run({"--help"}).exitStatus, 0);
}

}  // namespace
}  // namespace orvane::test
