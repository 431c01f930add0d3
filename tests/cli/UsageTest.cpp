#include "tests/cli/OrvanectlFixture.h"

#include <sys/types.h>
#include <unistd.h>

#include <algorithm>

namespace orvane::test {
namespace {

const Rows<Orvanectl::Words, const char*> wrongUsages{
    {Orvanectl::Words(), "a command is missing"},
    {{"--json"}, "a command is missing"},
    {{"scna"}, "there is no command 'scna'"},
    {{"a\nb\x1b"}, R"(there is no command 'a\nb\x1b')"},
    {{"scan", "--dry-run"}, "there is no option '--dry-run'"},
    {{"scan", "-x"}, "there is no option '-x'"},
    {{"clean", "--category"}, "--category needs a value"},
    {{"scan", "--json=yes"}, "--json takes no value"},
    {{"clean", "--yes", "--category", "Logs"}, "caches, logs, developerCaches"},
    {{"clean", "--yes", "--include-review"}, "add --category"},
    {{"restore", "--last"}, "add --yes"},
    {{"ask"}, "PROMPT is missing"},
    {{"ask", "delete", "logs"}, "'logs' is one argument too many"},
    {{"duplicates", "--keep", "newest"}, "shortest-path"},
    {{"ask", "x", "--provider", "oracle"}, "offline_heuristic"},
    {{"plan", "x"}, "'plan' takes a second word: validate, preview, run"},
    {{"trash", "--yes"}, "PATH is missing"},
    {{"trash", "--yes", ""}, "cannot be empty"},
    {{"scan", ""}, "cannot be empty"},
    {{"trash", "--yes", "--root", "", "Downloads/old.log"}, "cannot be empty"},
    {{"trash", "--yes", "--root", "nope", "Downloads/old.log"}, "~/nope"},
    {{"explain", "file:///a%4"}, "not a valid file URL"},
    {{"restore", "--yes"}, "name one RUN, or --last"},
    {{"restore", "--yes", "--last", "AB"}, "name one RUN, or --last"},
    {{"restore", "--yes", "old.log"}, "'old.log' is no run"},
    {{"summary", "Downloads"}, "'Downloads' is one argument too many"},
    {{"history", "shwo"}, "'shwo' is one argument too many"},
    {{"history", "show", "A", "B"}, "'B' is one argument too many"}};

TEST_F(Orvanectl, tellsOfWrongUsageInOneLineAndChangesNothing) {
  recommended();
  for (const auto& [words, says] : wrongUsages) {
    SCOPED_TRACE(testing::PrintToString(words));
    const auto result = run(words);
    EXPECT_EQ(result.exitStatus, 2);
    EXPECT_EQ(result.output, "");
    EXPECT_THAT(result.errors, AllOf(StartsWith("orvanectl: "), HasSubstr(says), EndsWith("--help')\n")));
    EXPECT_EQ(std::count(result.errors.begin(), result.errors.end(), '\n'), 1);
    EXPECT_TRUE(holds({"Downloads/old.log"}, {".local"}));
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
  for (const std::string name : {"scan", "clean", "trash", "history", "history show", "restore", "summary", "explain",
                                 "ask", "plan validate", "plan preview", "plan run"}) {
    EXPECT_THAT(run(wordsOf(name + " --help")), Says("Usage: orvanectl " + name + " [OPTIONS]"));
    EXPECT_THAT(overview.output, HasSubstr("\n  " + name + " "));
  }
  EXPECT_THAT(overview.output, Not(HasSubstr("internal")));
  EXPECT_THAT(run({"plan", "--help"}).output, AllOf(HasSubstr("plan preview"), Not(HasSubstr("restore"))));
  EXPECT_TRUE(isUntouched());
}

TEST_F(Orvanectl, saysWhatToNameWhereNoFolderIsLookedAfter) {
  EXPECT_THAT(run({"trash", "--yes", "x"}),
              Fails(2, "~/Downloads, ~/Documents, ~/Desktop, ~/Pictures, ~/Library/Caches", "FOLDER"));
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
  EXPECT_THAT(result, Fails(1, "orvanectl: the home folder is unknown: set HOME to its absolute path\n"));
}

// Files that root makes in the Trash and beside the journal would shut its user out.
TEST_F(Orvanectl, rootLeavesTheHomeOfAnotherUserAlone) {
  constexpr uid_t somebody = 12345;
  if (::geteuid() != 0) GTEST_SKIP() << "only root can be told from the owner of a home";
  recommended();
  ASSERT_EQ(::chown(home.path().c_str(), somebody, somebody), 0);
  for (const Words& words : {Words{"clean", "--yes"}, Words{"history"}, Words{"tidy", "set", "--days", "5"}}) {
    EXPECT_THAT(run(words), Fails(1, "orvanectl: the home folder '", "' belongs to another user;"));
  }
  EXPECT_TRUE(holds({"Downloads/old.log"}, {".config"}) && isUntouched());
  EXPECT_EQ(run({"--help"}).exitStatus, 0);
}

}  // namespace
}  // namespace orvane::test
