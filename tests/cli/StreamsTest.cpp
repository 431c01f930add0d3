#include "tests/cli/OrvanectlFixture.h"

#include <fcntl.h>
#include <unistd.h>

#include <csignal>

namespace orvane::test {
namespace {

class Streams : public Orvanectl {
 public:
  [[nodiscard]] ChildResult inShell(const std::string& rest) const {
    auto program = setup({});
    program.arguments = {"/bin/bash", "-c", std::string(ORVANECTL) + " " + rest};
    return LiveProgram(program).finish();
  }
  // More output than a pipe holds.
  void makeManyFiles() const {
    for (int i = 0; i < 1500; ++i) recommended(std::to_string(i) + ".log");
  }
};

TEST_F(Streams, endQuietlyWhenNobodyReadsAnyMore) {
  makeManyFiles();
  const auto result = inShell("scan --json | head -n 1; echo ${PIPESTATUS[0]}");
  EXPECT_EQ(result.errors, "");
  EXPECT_THAT(result.output, EndsWith("\n141\n"));
}

TEST_F(Streams, closedOrFullOutputIsAFailureThatIsTold) {
  const auto log = recommended();
  auto closed = setup({"scan"});
  closed.closedDescriptors = {STDOUT_FILENO};
  EXPECT_THAT(LiveProgram(closed).finish(),
              Fails(1, "orvanectl: standard output cannot be written: Bad file descriptor\n"));
  EXPECT_THAT(inShell("--version >/dev/full").errors, HasSubstr("No space left on device"));
}

TEST_F(Streams, closedStreamsNeverLeadIntoTheJournal) {
  recommended();
  auto program = setup({"clean", "--yes", "--json"});
  program.closedDescriptors = {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO};
  EXPECT_EQ(LiveProgram(program).finish().exitStatus, 1);
  EXPECT_EQ(json({"history"})[0]["itemCount"], 1);
}

TEST_F(Streams, aReaderThatLeavesDoesNotCutARunShort) {
  makeManyFiles();
  static_cast<void>(inShell("clean --yes 2>&1 | true"));
  EXPECT_EQ(json({"history"})[0]["itemCount"], 1500);
}

TEST_F(Streams, aScanEndsAsCancelledWhenInterrupted) {
  makeManyFiles();
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    LiveProgram program(setup({"scan", "--json"}));
    // It cannot go on before its output is read.
    program.waitForOutput("itemDiscovered");
    program.signal(signal);
    program.waitForSignalsTaken();
    const auto result = program.finish();
    EXPECT_EQ(result.exitStatus, 130);
    EXPECT_THAT(result.output, EndsWith("{\"event\":\"cancelled\"}\n"));
  }
}

TEST_F(Streams, progressAndColourShowOnlyOnATerminalAndNotWhereTheyAreUnwanted) {
  makeManyFiles();
  const auto onTerminal = [&](const Words& words) { return LiveProgram(terminalSetup(words)).finish().output; };
  const auto drawn = HasSubstr("\r\x1b[KScanning (");
  const auto green = HasSubstr("\x1b[32msafe\x1b[0m");
  EXPECT_THAT(onTerminal({"scan"}), AllOf(drawn, green));
  EXPECT_THAT(onTerminal({"scan", "--no-progress"}), AllOf(Not(HasSubstr("Scanning")), green));
  const auto piped = run({"scan"});
  EXPECT_EQ(piped.errors, "");
  EXPECT_THAT(piped.output, Not(HasSubstr("\x1b")));
  environment["NO_COLOR"] = "1";
  EXPECT_THAT(onTerminal({"scan", "--no-progress"}), Not(HasSubstr("\x1b")));
  environment.erase("NO_COLOR");
  environment["TERM"] = "dumb";
  EXPECT_THAT(onTerminal({"scan"}), Not(HasSubstr("\x1b")));
}

}  // namespace
}  // namespace orvane::test
