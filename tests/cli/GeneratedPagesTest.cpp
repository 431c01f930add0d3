#include "tests/cli/OrvanectlFixture.h"

namespace orvane::test {
namespace {

class GeneratedPages : public Orvanectl {
 public:
  // The completions that bash offers for the words, the last of which is being typed.
  [[nodiscard]] std::string offered(const std::string& words) {
    const auto script = home.file("completion.bash", run({"internal-completions", "bash"}).output);
    auto program = setup({});
    program.workingFolder = home.folder("typed");
    program.environment["LANG"] = "C.UTF-8";  // which is always there; bash names one that is not
    program.environment["PATH"] += ":" + std::filesystem::path(ORVANECTL).parent_path().string();
    program.arguments = {"/bin/bash", "-c",
                         ". /usr/share/bash-completion/bash_completion && . " + script + R"( && COMP_WORDS=()" + words +
                             R"() && COMP_CWORD=$((${#COMP_WORDS[@]} - 1)) && COMP_LINE="${COMP_WORDS[*]}" &&
                             COMP_POINT=${#COMP_LINE} && _orvanectl; printf '%s ' "${COMPREPLY[@]}")"};
    const auto result = LiveProgram(program).finish();
    EXPECT_EQ(result.errors, "");
    return result.output;
  }
};

TEST_F(GeneratedPages, manPageHasNoFaultsAndEveryCommandAndSpeaksOfNoOtherSystem) {
  const auto page = home.file("orvanectl.1", run({"internal-man"}).output);
  auto program = setup({});
  program.arguments = {"/usr/bin/man", "--warnings=all", "-l", page};
  program.environment["MANWIDTH"] = "100";
  program.environment["LC_ALL"] = "C.UTF-8";
  const auto result = LiveProgram(program).finish();
  EXPECT_EQ(result.exitStatus, 0);
  EXPECT_EQ(result.errors, "");
  for (const char* piece :
       {"orvanectl scan [OPTIONS] [FOLDER...]", "--include-review", "EXIT STATUS", "undo_journal.json"}) {
    EXPECT_THAT(result.output, HasSubstr(piece));
  }
  for (const char* foreign : {"Finder", "launchd", "macOS", " Mac ", "Full Disk"}) {
    EXPECT_THAT(contentOf(page), Not(HasSubstr(foreign)));
  }
}

TEST_F(GeneratedPages, bashCompletesCommandsOptionsAndValues) {
  home.folder("typed/folder");
  home.file("typed/file");
  EXPECT_EQ(offered("orvanectl su"), "summary ");
  EXPECT_EQ(offered("orvanectl clean --d"), "--developer-caches --dry-run ");
  EXPECT_EQ(offered("orvanectl clean --category l"), "logs largeFiles ");
  EXPECT_EQ(offered("orvanectl scan f"), "folder ");
  EXPECT_EQ(offered("orvanectl --json trash fi"), "file ");
  EXPECT_EQ(offered("orvanectl history s"), "show ");
  EXPECT_EQ(offered("orvanectl history show --j"), "--json ");
}

TEST_F(GeneratedPages, bashCompletesRulesRunsAndSavedProposals) {
  home.file("typed/cleanup.json");
  home.file("typed/letter.txt");
  EXPECT_EQ(offered("orvanectl apply ''"), "cleanup.json ");
  EXPECT_EQ(offered("orvanectl rules run Stale"), "Stale\\ Installers\\ in\\ Downloads ");
  EXPECT_EQ(offered("orvanectl rules disable Stale\\ Inst"), "Stale\\ Installers\\ in\\ Downloads ");
  EXPECT_EQ(offered("orvanectl restore ''"), " ");
  EXPECT_TRUE(isUntouched());

  recommended();
  const auto run = json({"clean", "--yes"})["runId"].get<std::string>().substr(0, 8);
  EXPECT_EQ(offered("orvanectl restore ''"), run + " ");
  EXPECT_EQ(offered("orvanectl history show " + run.substr(0, 3)), run + " ");
}

}  // namespace
}  // namespace orvane::test
