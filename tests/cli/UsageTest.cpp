#include "tests/cli/OrvanectlFixture.h"

#include <sys/types.h>
#include <unistd.h>

#include <algorithm>

namespace orvane::test {
namespace {

using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

struct WrongUsage {
  const char* name;
  Orvanectl::Words words;
  const char* says;
};

const std::vector<WrongUsage> wrongUsages{
    {"no command", {}, "a command is missing"},
    {"only a common option", {"--json"}, "a command is missing"},
    {"an unknown command", {"scna"}, "there is no command 'scna'"},
    {"a command with control characters", {"a\nb\x1b"}, R"(there is no command 'a\nb\x1b')"},
    {"an unknown option", {"scan", "--dry-run"}, "there is no option '--dry-run'"},
    {"an unknown short option", {"scan", "-x"}, "there is no option '-x'"},
    {"an option without its value", {"clean", "--category"}, "--category needs a value"},
    {"a switch with a value", {"scan", "--json=yes"}, "--json takes no value"},
    {"an unknown category", {"clean", "--yes", "--category", "Logs"}, "caches, logs, developerCaches"},
    {"review items of no category", {"clean", "--yes", "--include-review"}, "add --category"},
    {"restore with nobody to ask", {"restore", "--last"}, "add --yes"},
    {"ask without a request", {"ask"}, "PROMPT is missing"},
    {"ask without quotes", {"ask", "delete", "logs"}, "'logs' is one argument too many"},
    {"an unknown way to keep a copy", {"duplicates", "--keep", "newest"}, "shortest-path"},
    {"an unknown provider", {"ask", "x", "--provider", "oracle"}, "offline_heuristic"},
    {"plan without a verb", {"plan", "x"}, "'plan' takes a second word: validate, preview, run"},
    {"trash without a path", {"trash", "--yes"}, "PATH is missing"},
    {"trash of an empty path", {"trash", "--yes", ""}, "cannot be empty"},
    {"scan of an empty path", {"scan", ""}, "cannot be empty"},
    {"trash with an empty root", {"trash", "--yes", "--root", "", "Downloads/old.log"}, "cannot be empty"},
    {"trash with a missing root", {"trash", "--yes", "--root", "nope", "Downloads/old.log"}, "~/nope"},
    {"a broken URL", {"explain", "file:///a%4"}, "not a valid file URL"},
    {"restore of nothing", {"restore", "--yes"}, "name one RUN, or --last"},
    {"restore of a run and the last", {"restore", "--yes", "--last", "AB"}, "name one RUN, or --last"},
    {"restore of what is no run", {"restore", "--yes", "old.log"}, "'old.log' is no run"},
    {"a summary of something", {"summary", "Downloads"}, "'Downloads' is one argument too many"},
    {"history of an unknown word", {"history", "shwo"}, "'shwo' is one argument too many"},
    {"two runs to show", {"history", "show", "A", "B"}, "'B' is one argument too many"}};

TEST_F(Orvanectl, tellsOfWrongUsageInOneLineAndChangesNothing) {
  const auto file = recommended();
  for (const auto& [name, words, says] : wrongUsages) {
    SCOPED_TRACE(name);
    const auto result = run(words);
    EXPECT_EQ(result.exitStatus, 2);
    EXPECT_EQ(result.output, "");
    EXPECT_THAT(result.errors, AllOf(StartsWith("orvanectl: "), HasSubstr(says), EndsWith("--help')\n")));
    EXPECT_EQ(std::count(result.errors.begin(), result.errors.end(), '\n'), 1);
    EXPECT_TRUE(exists(file));
    EXPECT_FALSE(exists(home.path(".local")));
  }
}

TEST_F(Orvanectl, saysItsVersion) {
  for (const Words& words : {Words{"--version"}, Words{"scan", "--version"}, Words{"--json", "--version"}}) {
    EXPECT_EQ(run(words).output, "orvanectl " ORVANE_VERSION "\n") << "common options stand anywhere";
  }
  EXPECT_TRUE(isUntouched());
}

TEST_F(Orvanectl, helpsWithEveryCommandItListsAndWithAFamilyOfThem) {
  const auto overview = run({"--help"});
  EXPECT_EQ(overview.exitStatus, 0);
  EXPECT_EQ(overview.errors, "");
  for (const std::string name : {"scan", "clean", "trash", "history", "history show", "restore", "summary", "explain",
                                 "ask", "plan validate", "plan preview", "plan run"}) {
    const auto space = name.find(' ');
    const auto help = space == std::string::npos ? run({name, "--help"})
                                                 : run({name.substr(0, space), name.substr(space + 1), "--help"});
    EXPECT_EQ(help.exitStatus, 0);
    EXPECT_THAT(help.output, StartsWith("Usage: orvanectl " + name + " [OPTIONS]"));
    EXPECT_THAT(overview.output, HasSubstr("\n  " + name + " "));
  }
  EXPECT_THAT(overview.output, Not(HasSubstr("internal")));
  EXPECT_THAT(run({"plan", "--help"}).output, AllOf(HasSubstr("plan preview"), Not(HasSubstr("restore"))));
  EXPECT_TRUE(isUntouched());
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
