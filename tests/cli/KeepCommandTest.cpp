#include "tests/cli/OrvanectlFixture.h"

namespace orvane::test {
namespace {

class KeepCommand : public Orvanectl {};

TEST_F(KeepCommand, keepsPlacesAsTheyAreCalledAndPatternsAsTheyAreWritten) {
  home.file("Downloads/a*b");
  EXPECT_EQ(json({"keep", "add", home.path("Downloads/a*b"), "~/src/**/*.pem", "*.psd", "not there yet"}),
            Json::array({R"(~/Downloads/a\*b)", "~/src/**/*.pem", "*.psd", "~/not there yet"}));
  EXPECT_EQ(run({"keep", "add", "src/*.pem"}).exitStatus, 2);
  EXPECT_THAT(run({"keep", "remove", "~/none", "*.psd"}), Fails(1, "~/none: is not on the keep list"));
  EXPECT_EQ(json({"keep", "remove", home.path("Downloads/a*b"), "*.psd"}),
            Json::array({"~/src/**/*.pem", "~/not there yet"}));
  EXPECT_EQ(run({"keep", "list"}).output, "~/src/**/*.pem\n~/not there yet\n");
}

TEST_F(KeepCommand, holdsBackFromScansAndRunsAndSaysSo) {
  const auto kept = recommended("kept.log");
  recommended("free.log");
  EXPECT_EQ(run({"keep", "add", "~/Downloads/kept.log"}).exitStatus, 0);
  const auto scan = run({"scan"});
  EXPECT_THAT(scan, Says("Found 1 item"));
  EXPECT_THAT(scan.errors, HasSubstr("1 item, 7 bytes, is on the keep list"));
  EXPECT_THAT(run({"trash", kept, "--yes"}), Fails(1, "orvanectl keep remove '~/Downloads/kept.log'"));
  EXPECT_EQ(json({"clean", "--yes"})["itemsProcessed"], 1);
  EXPECT_TRUE(holds({"Downloads/kept.log"}, {"Downloads/free.log"}));
}

TEST_F(KeepCommand, anUnreadableListStopsWhatWouldMove) {
  const auto kept = recommended();
  home.file(".config/orvane/preferences.json", R"({"OrvaneKeepList":"~/Downloads"})");
  EXPECT_THAT(run({"clean", "--yes"}), Fails(1, "the keep list cannot be read"));
  EXPECT_TRUE(exists(kept));
}

}  // namespace
}  // namespace orvane::test
