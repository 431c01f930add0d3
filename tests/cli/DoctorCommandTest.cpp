#include "tests/cli/OrvanectlFixture.h"

#include <unistd.h>

#include <array>

namespace orvane::test {
namespace {

TEST_F(Orvanectl, doctorTellsOfTheJournalAndOfNothingPersonal) {
  recommended("secret plans.log");
  ASSERT_EQ(run({"clean", "--yes"}).exitStatus, 0);
  home.file("Library/Application Support/Orvane/undo_journal.damaged-2026.json", "x");
  const auto report = json({"doctor"});
  EXPECT_TRUE(tells(report, {{"Journal", {{"runs", 1}, {"items", 1}, {"damaged copies", 1}, {"readable", true}}},
                             {"Services", {{"message bus", "not there"}}},
                             {"Folders", {{"granted", 1}}}}));

  const auto text = run({"doctor"}).output;
  std::array<char, 256> machine{};
  ASSERT_EQ(::gethostname(machine.data(), machine.size() - 1), 0);
  for (const auto& personal : {home.path(), std::string("secret plans"), std::string(machine.data())}) {
    EXPECT_THAT(text, Not(HasSubstr(personal)));
  }
}

TEST_F(Orvanectl, doctorMakesNothing) {
  EXPECT_EQ(run({"doctor"}).exitStatus, 0);
  EXPECT_TRUE(holds({}, {".config"}) && isUntouched());
}

// The report is made for broken parts.
TEST_F(Orvanectl, doctorReportsStateThatCannotBeRead) {
  home.folder("Library/Application Support/Orvane/undo_journal.json");
  EXPECT_EQ(json({"doctor"})["Journal"]["readable"], false);
  home.folder(".config/orvane/preferences.json");
  const auto report = json({"doctor"});
  EXPECT_EQ(report["Settings"]["problem"], "Is a directory");
  EXPECT_EQ(report["Program"]["version"], ORVANE_VERSION);
}

}  // namespace
}  // namespace orvane::test
