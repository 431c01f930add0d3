#include "tests/core/uninstaller/UninstallerFixture.h"

namespace orvane::test {
namespace {

class UninstallTest : public UninstallerFixture {
 public:
  // An application with three leftovers.
  AppUninstallBundle subject() {
    tree.file("Applications/A.app/Contents/MacOS/run", "executable");
    tree.link("Applications/A.app/Contents/Current", "MacOS");
    tree.file("Library/Application Support/org.example.a/data", "data");
    tree.file("Library/Caches/org.example.a/cache", "cache");
    tree.file("Library/Preferences/org.example.a.plist", "settings");
    return leftovers(app("A.app", "Subject", "org.example.a"));
  }

  UninstallResult uninstall(const AppUninstallBundle& bundle) {
    return engine.uninstall(bundle, mover, *journal, tree.url("Library"));
  }

  [[nodiscard]] std::map<std::string, std::string> contents() const {
    auto result = contentsBelow(tree.path("Applications"));
    for (const auto& [path, content] : contentsBelow(tree.path("Library"))) result.emplace("~/" + path, content);
    return result;
  }

  template <typename Case>
  void expectRefusal(const AppUninstallBundle& bundle) {
    const auto before = contents();
    try {
      uninstall(bundle);
      ADD_FAILURE() << "not refused: " << bundle.app.url.path();
    } catch (const UninstallError& error) {
      EXPECT_TRUE(std::holds_alternative<Case>(error.which())) << error.what();
    }
    EXPECT_EQ(contents(), before);
    EXPECT_THAT(journal->getRuns(), IsEmpty());
  }
};

TEST_F(UninstallTest, takesTheApplicationAndWhatIsSelectedAndComesBackAsOne) {
  auto bundle = subject();
  ASSERT_EQ(bundle.leftovers.size(), 3U);
  bundle.leftovers[0].setSelected(true);
  bundle.leftovers[2].setSelected(true);
  const auto before = contents();

  const auto result = uninstall(bundle);

  ASSERT_EQ(result.outcomes.size(), 3U);
  for (const auto& outcome : result.outcomes) EXPECT_EQ(outcome.result, MoveResult::moved) << outcome.error;
  EXPECT_FALSE(exists(tree.path("Applications/A.app")));
  EXPECT_FALSE(exists(tree.path("Library/Application Support/org.example.a")));
  EXPECT_TRUE(exists(tree.path("Library/Caches/org.example.a/cache")));
  EXPECT_FALSE(exists(tree.path("Library/Preferences/org.example.a.plist")));
  const auto runs = journal->getRuns();
  ASSERT_EQ(runs.size(), 1U);
  EXPECT_EQ(runs[0].runId, result.runId);
  EXPECT_EQ(runs[0].itemCount, 3);
  EXPECT_EQ(runs[0].totalBytes, bundle.app.appSize + bundle.leftovers[0].fileSize() + bundle.leftovers[2].fileSize());
  for (const auto& entry : journal->getEntries(result.runId)) EXPECT_EQ(entry.action, JournalAction::trashed);

  reopenJournal();
  EXPECT_EQ(journal->restoreRun(result.runId).restoredCount, 3);
  EXPECT_EQ(contents(), before);
}

TEST_F(UninstallTest, aProtectedApplicationIsRefusedHoweverItIsHandedOver) {
  auto bundle = subject();
  bundle.leftovers[0].setSelected(true);
  bundle.app.isSystemProtected = true;
  expectRefusal<UninstallError::ProtectedApplication>(bundle);

  auto disguised = bundle;
  disguised.app = app("B.app", "Browser", "com.apple.Safari");
  EXPECT_TRUE(disguised.app.isSystemProtected);
  disguised.app.isSystemProtected = false;
  disguised.app.bundleIdentifier.reset();
  expectRefusal<UninstallError::ProtectedApplication>(disguised);

  auto detour = bundle;
  app("Finder.app", "Finder", "x.y");
  tree.link("Applications/Other.app", "Finder.app");
  detour.app = InstalledApp();
  detour.app.url = tree.url("Applications/Other.app");
  expectRefusal<UninstallError::ProtectedApplication>(detour);
}

TEST_F(UninstallTest, aFolderThatIsNoApplicationIsRefused) {
  auto bundle = subject();
  tree.file("Applications/Folder/file");
  bundle.app.url = tree.url("Applications/Folder");
  expectRefusal<UninstallError::NotAnApplication>(bundle);
  bundle.app.url = tree.url("Applications/gone.app");
  expectRefusal<UninstallError::NotAnApplication>(bundle);
}

TEST_F(UninstallTest, leftoversStayWithAnApplicationThatCannotMove) {
  auto bundle = subject();
  for (auto& item : bundle.leftovers) item.setSelected(true);
  tree.folder("Elsewhere/Real.app");
  tree.link("Applications/Linked.app", tree.path("Elsewhere/Real.app"));
  bundle.app.url = tree.url("Applications/Linked.app");
  const auto before = contents();

  const auto result = uninstall(bundle);

  ASSERT_EQ(result.outcomes.size(), 4U);
  EXPECT_EQ(result.outcomes[0].result, MoveResult::refused);
  for (std::size_t i = 1; i < 4; ++i) {
    EXPECT_EQ(result.outcomes[i].result, MoveResult::failed);
    EXPECT_EQ(result.outcomes[i].error, "Left with its application, which was not moved.");
  }
  EXPECT_EQ(contents(), before);
  EXPECT_THAT(journal->getRuns(), IsEmpty());
}

TEST_F(UninstallTest, nothingOutsideTheApplicationsFolderAndTheLibraryMoves) {
  auto bundle = subject();
  FileItem::Fields fields;
  fields.url = FileUrl(tree.file("Documents/letter.txt"));
  fields.category = ScanCategory::appLeftovers;
  fields.isSelected = true;
  bundle.leftovers = {FileItem(fields)};

  const auto result = uninstall(bundle);

  ASSERT_EQ(result.outcomes.size(), 2U);
  EXPECT_EQ(result.outcomes[0].result, MoveResult::moved);
  EXPECT_EQ(result.outcomes[1].result, MoveResult::refused);
  EXPECT_TRUE(exists(tree.path("Documents/letter.txt")));
}

TEST_F(UninstallTest, aStopLeavesTheRest) {
  auto bundle = subject();
  for (auto& item : bundle.leftovers) item.setSelected(true);
  std::stop_source stop;
  std::vector<std::size_t> steps;
  const auto stopAtOnce = [&](std::size_t done, std::size_t total) {
    EXPECT_EQ(total, 4U);
    steps.push_back(done);
    stop.request_stop();
  };
  const auto result = engine.uninstall(bundle, mover, *journal, tree.url("Library"), stopAtOnce, stop.get_token());
  EXPECT_THAT(steps, ElementsAre(1U));
  ASSERT_EQ(result.outcomes.size(), 4U);
  EXPECT_EQ(result.outcomes[0].result, MoveResult::moved);
  for (std::size_t i = 1; i < 4; ++i) EXPECT_EQ(result.outcomes[i].result, MoveResult::cancelled);
  EXPECT_EQ(journal->getEntries(result.runId).size(), 1U);
}

}  // namespace
}  // namespace orvane::test
