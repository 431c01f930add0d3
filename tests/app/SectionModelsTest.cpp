#include "app/AgentModel.h"
#include "app/AppsModel.h"
#include "app/OrganizeModel.h"
#include "app/Text.h"
#include "core/base/Json.h"
#include "tests/app/SectionFixture.h"

#include <gmock/gmock.h>

namespace orvane::test {
namespace {

using testing::IsEmpty;

class SectionModelsTest : public SectionFixture {
 public:
  [[nodiscard]] QString downloads() const { return QString::fromStdString(tree.path("Downloads")); }
};

TEST_F(SectionModelsTest, organizesAFolderAsItWasEditedAndUndoesIt) {
  tree.file("Downloads/song.mp3", "la");
  tree.file("Downloads/report.pdf", "words");
  OrganizeModel model(services(), sections());
  EXPECT_EQ(model.folder(), "");
  model.chooseFolder("file://" + downloads());
  EXPECT_EQ(model.folder(), downloads());
  model.analyze();
  ASSERT_TRUE(becomesTrue([&] { return model.hasAnalyzed(); }));
  EXPECT_EQ(model.moveCount(), 2);
  EXPECT_EQ(model.rowCount(), 4);

  // Of the two groups the first is renamed, and the other left alone.
  model.renameGroup(0, "Mine");
  EXPECT_EQ(model.data(model.index(0), OrganizeModel::NameRole).toString(), "Mine");
  EXPECT_FALSE(model.learned().isEmpty());
  model.toggle(2);
  EXPECT_EQ(model.selectedCount(), 1);
  const auto moved = model.data(model.index(1), OrganizeModel::NameRole).toString().toStdString();
  const auto left = moved == "song.mp3" ? "report.pdf" : "song.mp3";
  model.apply();
  ASSERT_TRUE(becomesTrue([&] { return !model.isWorking(); }));
  EXPECT_THAT(model.messages(), IsEmpty());
  EXPECT_TRUE(exists(tree.path("Downloads/Organized/Mine/" + moved)));
  EXPECT_TRUE(exists(tree.path("Downloads/" + std::string(left))));

  model.undo();
  ASSERT_TRUE(becomesTrue([&] { return !model.isWorking(); }));
  EXPECT_TRUE(exists(tree.path("Downloads/" + moved)));
}

TEST_F(SectionModelsTest, groupsDocumentsByTopicWhereAModelNamesThem) {
  tree.file("Downloads/song.mp3", "la");
  tree.file("Downloads/tax 2025.pdf", "words");
  tree.file("Downloads/letter.pdf", "words");
  topicModel.reply = [](const std::string&) { return R"({"tax 2025.pdf": "Taxes", "song.mp3": "Music"})"; };
  OrganizeModel model(services(), sections());
  ASSERT_TRUE(becomesTrue([&] { return model.topicsAvailable(); }));
  model.chooseFolder("file://" + downloads());
  model.setUseTopics(true);
  model.analyze();
  ASSERT_TRUE(becomesTrue([&] { return model.hasAnalyzed(); }));
  EXPECT_EQ(model.moveCount(), 3);
  model.apply();
  ASSERT_TRUE(becomesTrue([&] { return !model.isWorking(); }));
  EXPECT_TRUE(exists(tree.path("Downloads/Organized/Documents/Taxes/tax 2025.pdf")));
  EXPECT_TRUE(exists(tree.path("Downloads/Organized/Documents/PDFs/letter.pdf")));
  EXPECT_TRUE(exists(tree.path("Downloads/Organized/Media/Audio/song.mp3")));
  model.setStrategy(static_cast<int>(OrganizationStrategy::byDate));
  EXPECT_FALSE(model.topicsAvailable());
}

TEST_F(SectionModelsTest, offersNoTopicsWithoutAModel) {
  OrganizeModel model(services(), sections());
  ASSERT_TRUE(becomesTrue([&] { return !model.managedFolders().isEmpty(); }));
  QCoreApplication::processEvents();
  EXPECT_FALSE(model.topicsAvailable());
}

TEST_F(SectionModelsTest, uninstallsAnApplicationWithWhatIsChosenOfItsLeftovers) {
  tree.file("Applications/Paint.app/Contents/Info.plist",
            R"(<?xml version="1.0"?><plist version="1.0"><dict><key>CFBundleIdentifier</key>)"
            R"(<string>com.example.paint</string><key>CFBundleName</key><string>Paint</string></dict></plist>)");
  tree.file("Library/Caches/com.example.paint/data", "cache");
  tree.file("Library/Logs/com.example.paint/log", "log");
  AppsModel model(services(), sections());
  model.list();
  ASSERT_TRUE(becomesTrue([&] { return model.hasListed(); }));
  ASSERT_EQ(model.rowCount(), 1);
  EXPECT_EQ(model.data(model.index(0), AppsModel::IdentifierRole).toString(), "com.example.paint");
  EXPECT_GT(model.data(model.index(0), AppsModel::BytesRole).toDouble(), 0);
  EXPECT_TRUE(model.data(model.index(0), AppsModel::IconRole).toString().startsWith("image://application/"));
  model.setSearchText("nothing");
  EXPECT_EQ(model.rowCount(), 0);
  model.setSearchText("PAINT");
  ASSERT_EQ(model.rowCount(), 1);

  model.review(0);
  ASSERT_TRUE(becomesTrue([&] { return !model.isFindingLeftovers(); }));
  ASSERT_EQ(model.leftovers().size(), 2);
  EXPECT_EQ(model.reviewCount(), 1);
  model.toggleLeftover(0);
  EXPECT_EQ(model.reviewCount(), 2);
  const auto chosen = model.leftovers().front().toMap()["path"].toString().toStdString();
  const auto other = model.leftovers().back().toMap()["path"].toString().toStdString();
  model.uninstall();
  ASSERT_TRUE(becomesTrue([&] { return !model.isWorking(); }));
  EXPECT_FALSE(exists(tree.path("Applications/Paint.app")));
  EXPECT_FALSE(exists(chosen));
  EXPECT_TRUE(exists(other));
  model.undo();
  ASSERT_TRUE(becomesTrue([&] { return !model.isWorking(); }));
  EXPECT_TRUE(exists(tree.path("Applications/Paint.app/Contents/Info.plist")));
  EXPECT_TRUE(exists(chosen));
}

TEST_F(SectionModelsTest, plansOfflineShowsWhatItWouldDoAndDoesItWhenConfirmed) {
  const ScopedEnvironment home("HOME", tree.path().c_str());
  setAge(tree.file("Downloads/setup.dmg", "installer"), 60 * 86400.0);
  tree.file("Downloads/keep.txt");
  AgentModel model(services(), sections());
  EXPECT_TRUE(model.isOffline());
  model.setPrompt("delete dmg files older than 30 days in downloads");
  model.dryRun();
  ASSERT_TRUE(becomesTrue([&] { return !model.isPlanning(); }));
  ASSERT_TRUE(model.hasPlan()) << model.error().toStdString();
  EXPECT_FALSE(model.planSteps().isEmpty());
  ASSERT_EQ(model.rowCount(), 1);
  EXPECT_EQ(model.data(model.index(0), AgentModel::NameRole).toString(), "setup.dmg");
  EXPECT_TRUE(exists(tree.path("Downloads/setup.dmg")));
  if (model.selectedCount() == 0) model.toggle(0);
  model.confirm();
  ASSERT_TRUE(becomesTrue([&] { return !model.isWorking(); }));
  EXPECT_THAT(model.messages(), IsEmpty());
  EXPECT_FALSE(exists(tree.path("Downloads/setup.dmg")));
  EXPECT_FALSE(model.hasPlan());
  model.undo();
  ASSERT_TRUE(becomesTrue([&] { return !model.isWorking(); }));
  EXPECT_TRUE(exists(tree.path("Downloads/setup.dmg")));
}

TEST_F(SectionModelsTest, pointsToTheOrganizerForAWholeFolder) {
  AgentModel model(services(), sections());
  model.setPrompt("Sort Downloads");
  model.dryRun();
  ASSERT_TRUE(becomesTrue([&] { return !model.isPlanning(); }));
  EXPECT_FALSE(model.hasPlan());
  EXPECT_THAT(model.error().toStdString(), testing::HasSubstr("“Organize”"));
}

TEST_F(SectionModelsTest, showsWhatWouldBeSentAndSendsNothingWithoutAKey) {
  AgentModel model(services(), sections());
  model.setPrompt("delete old logs");
  model.updateRequest();
  model.setProvider(static_cast<int>(AIProvider::anthropic));
  model.updateRequest();
  ASSERT_TRUE(becomesTrue([&] { return !model.request().isEmpty(); }));
  EXPECT_THAT(model.request().toStdString(), testing::HasSubstr("delete old logs"));
  EXPECT_TRUE(model.isOffline());
  bool isSent = false;
  QObject::connect(&model, &AgentModel::requestSent, [&] { isSent = true; });
  model.dryRun();
  ASSERT_TRUE(becomesTrue([&] { return !model.isPlanning(); }));
  EXPECT_FALSE(isSent);
}

// A key ring with every key, and a server that answers as it is told; refuses when it is told nothing.
class OneKey : public NoSecrets {
 public:
  [[nodiscard]] std::optional<SecretText> find(const std::string& /*service*/,
                                               const std::string& /*account*/) override {
    return SecretText("sk-secret-key");
  }
};
class Server : public HttpTransport {
 public:
  [[nodiscard]] HttpResponse send(const HttpRequest& request, const std::stop_token& /*stop*/) override {
    body = request.body;
    if (plan.empty()) throw HttpError(HttpError::Failed{"no route"});
    Json reply;
    reply["content"] = Json::array({Json{{"type", "text"}, {"text", plan}}});
    return {200, jsonText(reply)};
  }

  std::string plan;
  std::string body;
};

TEST_F(SectionModelsTest, carriesOutThePlanOfARemotePlannerAndSaysWhoAnswered) {
  const ScopedEnvironment home("HOME", tree.path().c_str());
  tree.file("Downloads/setup.dmg", "installer");
  OneKey keys;
  const KeychainService ring{keys};
  Server server;
  AgentCoordinator remote{ring, server, ProviderAddresses()};
  AgentModel model(services(), {.finder = finder,
                                .organizer = organizer,
                                .learned = learned,
                                .topics = topics,
                                .uninstaller = uninstaller,
                                .agent = remote,
                                .keychain = ring,
                                .planExecutor = planExecutor,
                                .validator = validator,
                                .duplicateCleaner = {}});
  std::vector<std::string> sent;
  QObject::connect(&model, &AgentModel::requestSent, [&](const QString& text) { sent.push_back(text.toStdString()); });
  model.setProvider(static_cast<int>(AIProvider::anthropic));
  ASSERT_TRUE(becomesTrue([&] { return !model.isOffline(); }));
  model.setPrompt("clear out installers");

  server.plan = R"({"id":"7E2B1C90-3A44-4D5B-9C1E-0A2B3C4D5E6F","userGoal":"clear out installers","steps":[)"
                R"({"id":"1E2B1C90-3A44-4D5B-9C1E-0A2B3C4D5E6F","targetFolder":"~/Downloads",)"
                R"("filter":{"extensions":["dmg"]},"action":"trash","explanation":"Old."}],)"
                R"("summary":"Installers.","isDryRun":true,"createdAt":700000000})";
  model.dryRun();
  ASSERT_TRUE(becomesTrue([&] { return !model.isPlanning(); }));
  EXPECT_EQ(model.answeredBy(), textFrom(displayName(AIProvider::anthropic)));
  EXPECT_TRUE(model.fallbackReason().isEmpty());
  ASSERT_EQ(sent.size(), 1U);
  EXPECT_THAT(sent.front(), testing::HasSubstr(server.body));
  EXPECT_THAT(sent.front(), testing::Not(testing::HasSubstr("sk-secret-key")));
  ASSERT_EQ(model.rowCount(), 1);
  if (model.selectedCount() == 0) model.toggle(0);
  model.confirm();
  ASSERT_TRUE(becomesTrue([&] { return !model.isWorking(); }));
  EXPECT_FALSE(exists(tree.path("Downloads/setup.dmg")));

  server.plan.clear();
  model.dryRun();
  ASSERT_TRUE(becomesTrue([&] { return !model.isPlanning(); }));
  EXPECT_EQ(model.answeredBy(), textFrom(displayName(AIProvider::heuristic)));
  EXPECT_THAT(model.fallbackReason().toStdString(), testing::HasSubstr("no route"));
  EXPECT_TRUE(model.isOffline());
}

}  // namespace
}  // namespace orvane::test
