#include "core/base/text/Json.h"
#include "tests/core/uninstaller/UninstallerFixture.h"

namespace orvane::test {
namespace {

class LeftoversTest : public UninstallerFixture {};

TEST_F(LeftoversTest, everyPlaceIsLookedAtInOrder) {
  const auto subject = app("A.app", "Subject", "org.example.subject");
  const std::vector<std::string> places{"Application Support/org.example.subject",
                                        "Caches/org.example.subject",
                                        "Containers/org.example.subject",
                                        "Logs/org.example.subject",
                                        "HTTPStorages/org.example.subject",
                                        "Preferences/org.example.subject.plist",
                                        "Saved Application State/org.example.subject.savedState"};
  EXPECT_THAT(leftoverPaths(subject), IsEmpty());
  for (const auto& place : places) {
    if (place.starts_with("Preferences")) {
      tree.sparseFile("Library/" + place, 70);
    } else {
      tree.sparseFile("Library/" + place + "/sub/.data", 40);
    }
    tree.file("Library/" + place + ".other");
  }
  tree.folder("Library/Preferences/org.example.subject");
  tree.folder("Library/Other/org.example.subject");

  EXPECT_EQ(leftoverPaths(subject), places);
  EXPECT_EQ(engine.findLeftovers(subject).leftovers.size(), places.size()) << "the user's library is the default";
  const auto bundle = leftovers(subject);
  EXPECT_EQ(bundle.app, subject);
  const auto json = bundle.toJson();
  EXPECT_EQ(json["id"], bundle.id.toString());
  EXPECT_EQ(json["app"], bundle.app.toJson());
  EXPECT_EQ(FileItem::fromJson(json["leftovers"].at(0)), bundle.leftovers.at(0));
  for (const auto& item : bundle.leftovers) {
    EXPECT_EQ(item.fileSize(), item.url().pathExtension() == "plist" ? 70 : 40);
    EXPECT_EQ(item.category(), ScanCategory::appLeftovers);
    EXPECT_EQ(item.riskLabel(), RiskLabel::review);
    EXPECT_FALSE(item.isSelected());
    EXPECT_EQ(item.createdDate(), item.lastModifiedDate());
    EXPECT_LT(ReferenceClock::now() - item.createdDate(), std::chrono::minutes(1));
  }
}

TEST_F(LeftoversTest, foldersOfTheDisplayNameAreFoundWhereNoFlagStands) {
  const auto subject = app("A.app", "Subject", "org.example.subject");
  for (const auto* folder : {"Application Support", "Caches", "Containers", "Logs", "HTTPStorages", "Preferences",
                             "Saved Application State"}) {
    tree.file("Library/" + std::string(folder) + "/Subject/file");
  }
  tree.file("Library/Preferences/Subject.plist");
  tree.folder("Library/Saved Application State/Subject.savedState");
  // Nor is what is no folder taken by its name.
  fs::remove_all(tree.path("Library/HTTPStorages/Subject"));
  tree.file("Library/HTTPStorages/Subject");
  fs::remove_all(tree.path("Library/Containers/Subject"));
  tree.link("Library/Containers/Subject", "elsewhere");
  EXPECT_THAT(leftoverPaths(subject), ElementsAre("Application Support/Subject", "Caches/Subject", "Logs/Subject"));
}

TEST_F(LeftoversTest, namesAreTakenOnlyWhenTheyTellWhoseFolderItIs) {
  struct Row {
    std::string name;
    std::string identifier;
    std::string folder;  // below Caches
    bool isFound = false;
  };
  for (const auto& row : {Row{"Four", "a.b", "Four", true},
                          {"日本語ー", "a.b", "日本語ー", true},
                          {"Thr", "a.b", "Thr"},
                          {"日本語", "a.b", "日本語"},  // characters count, not bytes
                          {"Google", "a.b", "Google"},
                          {"ADOBE", "a.b", "ADOBE"},
                          {"Microsoft", "a.b", "Microsoft"},
                          {"Four", "Mozilla", "Mozilla"},
                          {"com.apple.Safari", "a.b", "com.apple.Safari"},
                          {"Four", "..", "x"},
                          {"Four", ".", "x"},
                          {"Four", "../Caches/x", "x"},
                          {"Four", "x/y", "x/y"},
                          {"long/name", "a.b", "long/name"},
                          {"../Caches/x", "a.b", "x"},
                          {"a..name", "a.b", "a..name"}}) {
    SCOPED_TRACE(row.name + " of " + row.identifier);
    tree.file("Library/Caches/" + row.folder + "/file");
    const auto found = leftoverPaths(app("A.app", row.name, row.identifier));
    EXPECT_EQ(found, row.isFound ? std::vector{"Caches/" + row.folder} : std::vector<std::string>());
    fs::remove_all(tree.path("Library"));
  }
}

TEST_F(LeftoversTest, aNameThatAnotherApplicationHasIsNotTaken) {
  tree.file("Library/Caches/Twin/file");
  tree.file("Library/Caches/org.example.first/file");
  const auto first = app("First.app", "Twin", "org.example.first");
  tree.link("Applications/Shortcut.app", "First.app");
  EXPECT_THAT(leftoverPaths(first), ElementsAre("Caches/org.example.first", "Caches/Twin"));
  app("Second.app", "TWIN", "org.example.second");
  EXPECT_THAT(leftoverPaths(first), ElementsAre("Caches/org.example.first"));
  EXPECT_THAT(leftoverPaths(app("Third.app", "org.example.first", "a.b")), IsEmpty()) << "another's identifier";
}

TEST_F(LeftoversTest, aNeighbourOutsideTheListedFoldersCountsToo) {
  tree.file("Library/Caches/Twin/file");
  tree.file("Tools/Twin.app/Contents/Info.plist", xmlList({{"CFBundleName", "Twin"}}));
  tree.file("Tools/Other.app/Contents/Info.plist", xmlList({{"CFBundleName", "Twin"}}));
  EXPECT_THAT(leftoverPaths(engine.appAt(tree.url("Tools/Twin.app"))), IsEmpty());
}

TEST_F(LeftoversTest, withoutAnIdentifierOnlyTheNameCounts) {
  tree.files(
      {"Library/Preferences/.plist", "Library/Saved Application State/.savedState", "Library/Logs/Subject/file"});
  EXPECT_THAT(leftoverPaths(engine.appAt(FileUrl(appWithList("Subject.app", "damaged")))), ElementsAre("Logs/Subject"));
}

TEST_F(LeftoversTest, whatLeadsOutOfTheLibraryIsNotListed) {
  tree.file("Documents/file");
  tree.link("Library/Caches/org.example.subject", tree.path("Documents"));
  tree.link("Library/Logs", tree.path("Documents"));
  tree.file("Documents/org.example.subject/file");
  EXPECT_THAT(leftoverPaths(app("A.app", "Subject", "org.example.subject")), IsEmpty());
}

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
  // An item is no leftover because a caller says so.
  FileItem::Fields fields;
  fields.url = FileUrl(tree.file("Documents/letter.txt"));
  fields.category = ScanCategory::appLeftovers;
  fields.isSelected = true;
  bundle.leftovers.emplace_back(fields);
  const auto before = contents();

  const auto result = uninstall(bundle);

  ASSERT_EQ(result.outcomes.size(), 4U);
  for (std::size_t i = 0; i < 3; ++i) EXPECT_EQ(result.outcomes[i].result, MoveResult::moved);
  EXPECT_EQ(result.outcomes[3].result, MoveResult::refused);
  EXPECT_TRUE(exists(tree.path("Documents/letter.txt")));
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

TEST_F(UninstallTest, aProtectedApplicationIsRefusedHoweverItIsHandedOverAndSoIsNone) {
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

  tree.folder("Applications/Folder");
  for (const auto* none : {"Applications/Folder", "Applications/gone.app"}) {
    bundle.app.url = tree.url(none);
    expectRefusal<UninstallError::NotAnApplication>(bundle);
  }
}

TEST_F(UninstallTest, aStopLeavesTheRest) {
  auto bundle = subject();
  for (auto& item : bundle.leftovers) item.setSelected(true);
  std::stop_source stop;
  std::vector<std::pair<std::size_t, std::size_t>> steps;
  const auto stopAtOnce = [&](std::size_t done, std::size_t total) {
    steps.emplace_back(done, total);
    stop.request_stop();
  };
  const auto result = engine.uninstall(bundle, mover, *journal, tree.url("Library"), stopAtOnce, stop.get_token());
  EXPECT_THAT(steps, ElementsAre(Pair(1U, 4U)));
  ASSERT_EQ(result.outcomes.size(), 4U);
  EXPECT_EQ(result.outcomes[0].result, MoveResult::moved);
  for (std::size_t i = 1; i < 4; ++i) EXPECT_EQ(result.outcomes[i].result, MoveResult::cancelled);
}

}  // namespace
}  // namespace orvane::test
