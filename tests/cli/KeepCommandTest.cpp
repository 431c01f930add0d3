#include "tests/cli/OrvanectlFixture.h"

namespace orvane::test {
namespace {

using testing::HasSubstr;

class KeepCommand : public Orvanectl {};

TEST_F(KeepCommand, keepsPlacesAsTheyAreCalledAndPatternsAsTheyAreWritten) {
  home.file("Downloads/a*b");
  EXPECT_EQ(json({"keep", "add", home.path("Downloads/a*b"), "~/src/**/*.pem", "*.psd", "not there yet"}),
            Json::array({R"(~/Downloads/a\*b)", "~/src/**/*.pem", "*.psd", "~/not there yet"}));
  EXPECT_EQ(run({"keep", "add", "src/*.pem"}).exitStatus, 2);
  const auto missing = run({"keep", "remove", "~/none", "*.psd"});
  EXPECT_EQ(missing.exitStatus, 1);
  EXPECT_THAT(missing.errors, HasSubstr("~/none: is not on the keep list"));
  EXPECT_EQ(json({"keep", "remove", home.path("Downloads/a*b"), "*.psd"}),
            Json::array({"~/src/**/*.pem", "~/not there yet"}));
  EXPECT_EQ(run({"keep", "list"}).output, "~/src/**/*.pem\n~/not there yet\n");
}

TEST_F(KeepCommand, holdsBackFromScansAndRunsAndSaysSo) {
  const auto kept = recommended("kept.log");
  const auto free = recommended("free.log");
  EXPECT_EQ(run({"keep", "add", "~/Downloads/kept.log"}).exitStatus, 0);
  const auto scan = run({"scan"});
  EXPECT_THAT(scan.output, HasSubstr("Found 1 item"));
  EXPECT_THAT(scan.errors, HasSubstr("1 item, 7 bytes, is on the keep list"));
  const auto trash = run({"trash", kept, "--yes"});
  EXPECT_EQ(trash.exitStatus, 1);
  EXPECT_THAT(trash.errors, HasSubstr("orvanectl keep remove '~/Downloads/kept.log'"));
  EXPECT_EQ(json({"clean", "--yes"})["itemsProcessed"], 1);
  EXPECT_TRUE(exists(kept));
  EXPECT_FALSE(exists(free));
}

TEST_F(KeepCommand, anUnreadableListStopsWhatWouldMove) {
  const auto kept = recommended();
  home.file(".config/orvane/preferences.json", R"({"OrvaneKeepList":"~/Downloads"})");
  const auto result = run({"clean", "--yes"});
  EXPECT_EQ(result.exitStatus, 1);
  EXPECT_THAT(result.errors, HasSubstr("the keep list cannot be read"));
  EXPECT_TRUE(exists(kept));
}

}  // namespace
}  // namespace orvane::test
