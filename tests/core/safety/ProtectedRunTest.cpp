#include "platform/linux/LinuxProfile.h"
#include "tests/support/KeptPlaces.h"
#include "tests/support/SafetyFixture.h"

namespace orvane::test {
namespace {

// The protected places of a Linux home, in the run that all moves go through, with nothing in front of it.
class ProtectedRun : public SafetyFixture {
 public:
  ProtectedRun() {
    for (const auto& place : keptPlaces) tree.file(place.path);
    for (const auto* program : {"org.mozilla.firefox", "org.example.App"}) {
      tree.folder(".local/share/flatpak/app/" + std::string(program));
    }
  }

  // Each place and each folder that holds it, up to the home.
  [[nodiscard]] std::vector<std::string> places() const {
    std::vector<std::string> result{tree.path()};
    for (const auto& place : keptPlaces) {
      for (auto path = fs::path(place.path); !path.empty(); path = path.parent_path()) {
        // Nothing in it tells that a folder of its name could hold such a place.
        if (path != "Games") result.push_back(tree.path(path.string()));
      }
    }
    return result;
  }

  const LinuxProfile profile{XdgFolders::below(tree.path())};
  const PathValidator withProfile{tree.path(), profile};
  TrashMover profileMover{trash, fileMover, withProfile};
};

TEST_F(ProtectedRun, refusesEveryPlaceWhateverTheBoundaryAndDestination) {
  const auto box = tree.url("Downloads/box");
  for (const auto& destination : {std::optional<FileUrl>(), std::optional(box)}) {
    auto all = requests(places());
    for (auto& one : all) one.destinationFolder = destination;
    CleanupRun run(profileMover, *journal, Boundary({tree.url(), FileUrl("/")}));
    for (const auto& outcome : run.carryOut(all)) {
      EXPECT_NE(outcome.result, MoveResult::moved) << outcome.source.path();
      EXPECT_FALSE(outcome.error.empty()) << outcome.source.path();
    }
    EXPECT_TRUE(journal->getEntries(run.id()).empty());
  }
  for (const auto& place : keptPlaces) EXPECT_TRUE(exists(tree.path(place.path))) << place.path;
}

TEST_F(ProtectedRun, movesWhatLiesBesideThem) {
  const auto beside = tree.file(".cargo/config.toml");
  CleanupRun run(profileMover, *journal, Boundary({tree.url()}));
  EXPECT_EQ(run.carryOut(requests({beside})).at(0).result, MoveResult::moved);
}

}  // namespace
}  // namespace orvane::test
