#include "core/base/text/Json.h"
#include "core/tasks/UninstallTask.h"
#include "core/uninstaller/records/UninstallError.h"
#include "tests/core/uninstaller/UninstallerFixture.h"
#include "tests/support/TaskFixture.h"

namespace orvane::test {
namespace {

class UninstallTask : public TaskFixture {
 public:
  UninstallTask() {
    app("Applications/A.app", "Subject", "org.example.a");
    tree.file("Library/Application Support/org.example.a/data", "data");
    tree.file("Library/Preferences/org.example.a.plist", "settings");
  }
  void app(const std::string& place, const std::string& name, const std::string& identifier) const {
    tree.file(place + "/Contents/Info.plist", xmlList({{"CFBundleName", name}, {"CFBundleIdentifier", identifier}}));
  }
  Proposal propose(Leftovers leftovers = Leftovers::take) {
    return proposeUninstall(taskServices(), {tree.url("Applications/A.app"), leftovers});
  }
  [[nodiscard]] bool areLeftoversThere() const {
    return exists(tree.path("Library/Application Support/org.example.a/data")) &&
           exists(tree.path("Library/Preferences/org.example.a.plist"));
  }
};

TEST_F(UninstallTask, proposesTheApplicationAndWhatItLeftBehind) {
  const auto alone = propose(Leftovers::leave);
  ASSERT_EQ(alone.size(), 3U);
  EXPECT_EQ(alone.row(0).item.url(), tree.url("Applications/A.app"));
  EXPECT_EQ(alone.row(0).group->name, "Subject");
  EXPECT_EQ(alone.approve().rows().size(), 1U);
  EXPECT_EQ(firstNotice<RowsLeftAside>(alone.notices())->rows, (RowSum{2, 12}));
  const auto all = propose();
  EXPECT_TRUE(all.notices().empty());
  const auto report = carryOut(taskServices(), all.approve());
  EXPECT_EQ(report.moved(), 3);
  EXPECT_EQ(report.toTrash.bytes, all.approve().toTrash().bytes);
  EXPECT_EQ(journal->restoreRun(report.runId.value()).restoredCount, 3);
  EXPECT_TRUE(areLeftoversThere() && exists(tree.path("Applications/A.app/Contents/Info.plist")));
}

TEST_F(UninstallTask, anApplicationThatWasReplacedStaysWithItsLeftovers) {
  const auto proposal = propose();
  fs::rename(tree.path("Applications/A.app"), tree.path("old"));
  app("Applications/A.app", "Newer", "org.example.a");
  const auto report = carryOut(taskServices(), proposal.approve());
  EXPECT_EQ(report.moved(), 0);
  EXPECT_EQ(report.outcomes.at(0).result, MoveResult::changed);
  for (const std::size_t at : {1U, 2U}) {
    EXPECT_EQ(report.outcomes.at(at).error, "Left with its application, which was not moved.");
  }
  EXPECT_TRUE(areLeftoversThere() && exists(tree.path("Applications/A.app")));
  EXPECT_TRUE(journal->getRuns().empty());
}

TEST_F(UninstallTask, aLeftoverThatWasReplacedStaysAndNoneGoesWithoutItsApplication) {
  const auto proposal = propose();
  const auto replaced = tree.path("Library/Preferences/org.example.a.plist");
  EXPECT_EQ(carryOut(taskServices(), proposal.approve(without(proposal, "A.app"))).failed, 2);
  EXPECT_TRUE(areLeftoversThere());
  fs::remove(replaced);
  tree.file("Library/Preferences/org.example.a.plist", "another's");
  EXPECT_EQ(carryOut(taskServices(), proposal.approve()).moved(), 2);
  EXPECT_EQ(contentOf(replaced), "another's");
}

TEST_F(UninstallTask, anApplicationThatBecameOneOfTheSystemStays) {
  const auto proposal = propose();
  app("Applications/A.app", "Subject", "com.apple.Safari");
  const auto report = carryOut(taskServices(), proposal.approve());
  EXPECT_EQ(report.failed, 3);
  EXPECT_EQ(report.outcomes.at(0).error, "'Subject' is part of the system and cannot be uninstalled.");
  EXPECT_TRUE(areLeftoversThere() && exists(tree.path("Applications/A.app")));
  EXPECT_THROW(propose(), UninstallError);
}

TEST_F(UninstallTask, proposesAgainOnlyWhereApplicationsAre) {
  const auto again = [&](const FileUrl& place) {
    Json subject = Json::object();
    subject["app"] = jsonFromUrl(place);
    subject["leftovers"] = true;
    return *reproposeUninstall(taskServices(), subject, roots(), Date());
  };
  EXPECT_EQ(again(tree.url("Applications/A.app")).approve().rows().size(), 3U);
  app("Downloads/B.app", "Granted", "org.example.b");
  EXPECT_EQ(again(tree.url("Downloads/B.app")).approve().rows().size(), 1U);
  app("Documents/Project.app", "Elsewhere", "org.example.a");
  const auto refused = again(tree.url("Documents/Project.app"));
  EXPECT_EQ(refused.row(0).lock, Lock::refused);
  EXPECT_THAT(refused.row(0).group->refusal, HasSubstr("lies in no folder of applications"));
  EXPECT_EQ(carryOut(taskServices(), refused.approve()).moved(), 0);
  EXPECT_TRUE(areLeftoversThere());
  EXPECT_THROW(static_cast<void>(reproposeUninstall(taskServices(), parseJson("{}"), roots(), Date())), JsonError);
}

TEST_F(UninstallTask, appliesASavedProposalButNeverLeftoversAlone) {
  auto document = parseJson(savedText(propose().approve()));
  ASSERT_EQ(document["rows"].size(), 3U);
  auto leftovers = document;
  leftovers["rows"].erase(0);
  const auto apply = [&](const Json& json) {
    const auto saved = proposeSaved(taskServices(), SavedProposal::decode(jsonText(json)), roots());
    return carryOut(taskServices(), saved->approve());
  };
  EXPECT_EQ(apply(leftovers).failed, 2);
  EXPECT_TRUE(areLeftoversThere());
  document["rows"].erase(2);
  EXPECT_EQ(apply(document).moved(), 2);
  EXPECT_FALSE(exists(tree.path("Applications/A.app")));
  EXPECT_TRUE(exists(tree.path("Library/Preferences/org.example.a.plist")));
}

TEST_F(UninstallTask, findsWhatATextMeans) {
  app("Applications/B.app", "subject", "org.example.b");
  const auto placesOf = [&](const std::string& text) {
    std::vector<std::string> places;
    for (const auto& found : appsMeantBy(taskServices(), text)) places.emplace_back(found.url.lastPathComponent());
    return places;
  };
  EXPECT_THAT(placesOf("org.example.b"), ElementsAre("B.app"));
  EXPECT_THAT(placesOf("SUBJECT"), UnorderedElementsAre("A.app", "B.app"));
  EXPECT_THAT(placesOf("org.example.B"), IsEmpty());
}

}  // namespace
}  // namespace orvane::test
