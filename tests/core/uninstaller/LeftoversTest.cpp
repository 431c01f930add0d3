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
  const auto bundle = leftovers(subject);
  EXPECT_EQ(bundle.app, subject);
  for (const auto& item : bundle.leftovers) {
    EXPECT_EQ(item.fileSize(), item.url().pathExtension() == "plist" ? 70 : 40);
    EXPECT_EQ(item.category(), ScanCategory::appLeftovers);
    EXPECT_EQ(item.riskLabel(), RiskLabel::review);
    EXPECT_FALSE(item.isSelected());
    EXPECT_EQ(item.createdDate(), item.lastModifiedDate());
    EXPECT_LT(ReferenceClock::now() - item.createdDate(), std::chrono::minutes(1));
  }
}

TEST_F(LeftoversTest, theUsersLibraryIsTheDefault) {
  const auto subject = app("A.app", "Subject", "org.example.subject");
  tree.folder("Library/Caches/org.example.subject");
  EXPECT_EQ(engine.findLeftovers(subject).leftovers.size(), 1U);
}

TEST_F(LeftoversTest, foldersOfTheDisplayNameAreFoundWhereNoFlagStands) {
  const auto subject = app("A.app", "Subject", "org.example.subject");
  for (const auto* folder : {"Application Support", "Caches", "Containers", "Logs", "HTTPStorages", "Preferences",
                             "Saved Application State"}) {
    tree.file("Library/" + std::string(folder) + "/Subject/file");
  }
  tree.file("Library/Preferences/Subject.plist");
  tree.folder("Library/Saved Application State/Subject.savedState");
  EXPECT_THAT(leftoverPaths(subject), ElementsAre("Application Support/Subject", "Caches/Subject", "Containers/Subject",
                                                  "Logs/Subject", "HTTPStorages/Subject"));
}

TEST_F(LeftoversTest, aFileOfTheDisplayNameIsNotTaken) {
  tree.file("Library/Logs/Subject");
  tree.link("Library/Caches/Subject", "elsewhere");
  EXPECT_THAT(leftoverPaths(app("A.app", "Subject", "org.example.subject")), IsEmpty());
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
  EXPECT_THAT(leftoverPaths(first), ElementsAre("Caches/org.example.first", "Caches/Twin"));
  app("Second.app", "TWIN", "org.example.second");
  EXPECT_THAT(leftoverPaths(first), ElementsAre("Caches/org.example.first"));
}

TEST_F(LeftoversTest, aNeighbourOutsideTheListedFoldersCountsToo) {
  tree.file("Library/Caches/Twin/file");
  tree.file("Tools/Twin.app/Contents/Info.plist", xmlList({{"CFBundleName", "Twin"}}));
  tree.file("Tools/Other.app/Contents/Info.plist", xmlList({{"CFBundleName", "Twin"}}));
  EXPECT_THAT(leftoverPaths(engine.appAt(tree.url("Tools/Twin.app"))), IsEmpty());
}

TEST_F(LeftoversTest, theIdentifierOfAnotherApplicationIsNotTakenAsName) {
  tree.file("Library/Caches/org.example.other/file");
  app("Other.app", "Other", "org.example.other");
  EXPECT_THAT(leftoverPaths(app("A.app", "org.example.other", "a.b")), IsEmpty());
}

TEST_F(LeftoversTest, aLinkToTheApplicationIsNoOtherApplication) {
  tree.file("Library/Caches/Subject/file");
  const auto subject = app("A.app", "Subject", "a.b");
  tree.link("Applications/Shortcut.app", "A.app");
  EXPECT_THAT(leftoverPaths(subject), ElementsAre("Caches/Subject"));
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

TEST_F(LeftoversTest, jsonHoldsTheApplicationAndItsLeftovers) {
  tree.file("Library/Logs/org.example.subject/file");
  const auto bundle = leftovers(app("A.app", "Subject", "org.example.subject"));
  const auto json = bundle.toJson();
  EXPECT_EQ(json["id"], bundle.id.toString());
  EXPECT_EQ(json["app"], bundle.app.toJson());
  EXPECT_EQ(FileItem::fromJson(json["leftovers"].at(0)), bundle.leftovers.at(0));
}

}  // namespace
}  // namespace orvane::test
