#include "core/tasks/RunOrigins.h"

#include "core/base/files/PathText.h"
#include "core/tasks/History.h"
#include "core/tasks/RulesTask.h"
#include "core/tasks/TrashTask.h"
#include "tests/support/CleanupRules.h"
#include "tests/support/TaskFixture.h"

#include <fstream>

namespace orvane::test {
namespace {

using testing::Optional;

class RunOriginsTest : public TaskFixture {
 public:
  void runRules(const std::vector<std::string>& names, RunOrigin::Start start) {
    RulesWish wish;
    wish.boundary = roots();
    for (const auto& name : names) {
      tree.file("Downloads/" + name + ".log", name);
      wish.rules.push_back(ruleFor(name, {.fileExtensions = {{"log"}}, .namePattern = name}));
    }
    const auto proposal = proposeRules(taskServices(), wish);
    ASSERT_TRUE(proposal);
    ASSERT_EQ(carryOut(taskServices(), proposal->approve(), {}, {}, start).moved(),
              static_cast<std::int64_t>(names.size()));
  }
  [[nodiscard]] std::vector<std::optional<RunOrigin>> origins() {
    std::vector<std::optional<RunOrigin>> result;
    for (const auto& run : readHistory(taskServices()).runs) result.push_back(run.origin);
    return result;
  }
  [[nodiscard]] std::string file() const { return joinPath(journal->storageFolder(), "undo_journal.origins"); }
};

TEST_F(RunOriginsTest, tellWhoHadEachRunDoneNewestFirst) {
  const std::vector place{FileUrl(tree.file("Downloads/by hand.txt"))};
  ASSERT_EQ(carryOut(taskServices(), proposeTrash(taskServices(), place, roots()).approve()).moved(), 1);
  runRules({"Old \"logs\"\n", "Ärger"}, RunOrigin::Start::byHand);
  runRules({"nightly"}, RunOrigin::Start::scheduled);
  // As their items come in the folder.
  const auto ofRules = [](std::string names) {
    return Optional(RunOrigin{TaskKind::rules, RunOrigin::Start::byHand, std::move(names)});
  };
  EXPECT_THAT(origins(), ElementsAre(Optional(RunOrigin{TaskKind::rules, RunOrigin::Start::scheduled, "nightly"}),
                                     AnyOf(ofRules("Old \"logs\"\n, Ärger"), ofRules("Ärger, Old \"logs\"\n")),
                                     Optional(RunOrigin{TaskKind::trash})));
}

TEST_F(RunOriginsTest, areThereBeforeTheFirstMove) {
  const std::vector place{FileUrl(tree.file("Downloads/a.txt"))};
  const auto approval = proposeTrash(taskServices(), place, roots()).approve();
  bool wasThere = false;
  const auto look = [&](std::size_t, std::size_t) { wasThere = exists(file()); };
  ASSERT_EQ(carryOut(taskServices(), approval, look).moved(), 1);
  EXPECT_TRUE(wasThere);
}

TEST_F(RunOriginsTest, passOverLinesThatAreNone) {
  runRules({"first"}, RunOrigin::Start::byHand);
  std::ofstream(file(), std::ios::app) << "{\"runId\":3}\nnoise\n{\"kind\":\"rules\"";
  runRules({"second"}, RunOrigin::Start::byHand);
  EXPECT_THAT(origins(),
              ElementsAre(Optional(Field(&RunOrigin::detail, "second")), Optional(Field(&RunOrigin::detail, "first"))));
}

TEST_F(RunOriginsTest, holdUpNoRunWhereTheyCannotBeWritten) {
  tree.folder(file().substr(tree.path().size() + 1));
  runRules({"first"}, RunOrigin::Start::byHand);
  EXPECT_THAT(origins(), ElementsAre(std::nullopt));
}

}  // namespace
}  // namespace orvane::test
