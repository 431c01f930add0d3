#include "app/agent/AgentModel.h"

#include "app/agent/PlanChips.h"
#include "app/common/Text.h"
#include "app/shell/AppNavigationItem.h"
#include "core/base/text/Json.h"
#include "core/tasks/RunOrigins.h"
#include "tests/app/WindowFixture.h"

#include <gmock/gmock.h>

namespace orvane::test {
namespace {

using testing::IsEmpty;

class AgentModelTest : public WindowFixture {
 public:
  // A file that was made and changed so many days ago.
  std::string aged(std::string_view name, double days) const {
    auto path = tree.file("Downloads/" + std::string(name), "1234567");
    setAge(path, days * 86400);
    return path;
  }
  void plan(AgentModel& model, const QString& prompt) {
    model.setPrompt(prompt);
    model.dryRun();
    EXPECT_TRUE(becomesTrue([&] { return !model.isPlanning(); }));
  }
  // Of the first match, whatever header is above it.
  [[nodiscard]] static int firstMatch(const AgentModel& model) {
    for (int row = 0; row < model.rowCount(); ++row) {
      if (model.data(model.index(row), AgentModel::KindRole).toInt() == AgentModel::Match) return row;
    }
    return -1;
  }
  // Header rows as text: name, count of files, state of the box.
  [[nodiscard]] static QStringList headers(const AgentModel& model) {
    QStringList result;
    for (int row = 0; row < model.rowCount(); ++row) {
      const auto at = model.index(row);
      if (model.data(at, AgentModel::KindRole).toInt() != AgentModel::Header) continue;
      result.append(QStringLiteral("%1|%2|%3")
                        .arg(model.data(at, AgentModel::NameRole).toString())
                        .arg(model.data(at, AgentModel::CountRole).toInt())
                        .arg(model.data(at, AgentModel::CheckStateRole).toInt()));
    }
    return result;
  }
  // Conditions are changed by their names in the window.
  void change(AgentModel& model, const QString& name, const QString& value) {
    for (const auto& chip : model.reading()) {
      if (chip.toMap()["name"].toString() != name) continue;
      EXPECT_EQ(model.change(chip.toMap()["condition"].toInt(), value), "");
      EXPECT_TRUE(becomesTrue([&] { return !model.isPlanning(); }));
      return;
    }
    FAIL() << "there is no " << name.toStdString();
  }
  [[nodiscard]] static int rowOf(const AgentModel& model, const QString& name) {
    for (int row = 0; row < model.rowCount(); ++row) {
      if (model.data(model.index(row), AgentModel::NameRole).toString() == name) return row;
    }
    return -1;
  }

 private:
  const ScopedEnvironment m_home{"HOME", tree.path().c_str()};
};

TEST_F(AgentModelTest, movesExactlyTheFilesWhoseBoxIsChecked) {
  const auto report = aged("report.pdf", 60);
  const auto thesis = aged("thesis.docx", 60);
  const auto setup = aged("setup.dmg", 60);
  AgentModel model(services());
  plan(model, "organize files older than 30 days in downloads");
  ASSERT_EQ(model.matchCount(), 3);
  for (int row = 0; row < model.rowCount(); ++row) {
    EXPECT_EQ(model.data(model.index(row), AgentModel::CheckStateRole).toInt(), Qt::Checked)
        << row << ", although only the user can judge these files";
  }
  EXPECT_EQ(model.selectedCount(), 3);
  model.toggle(rowOf(model, "thesis.docx"));
  EXPECT_EQ(model.selectedCount(), 2);
  finish(model, &AgentModel::confirm);
  EXPECT_THAT(model.messages(), IsEmpty());
  EXPECT_TRUE(exists(thesis));
  EXPECT_FALSE(exists(report) || exists(setup));
  EXPECT_TRUE(exists(tree.path("Downloads/Documents/PDFs/report.pdf")));
  EXPECT_FALSE(model.hasPlan());
  finish(model, &AgentModel::undo);
  EXPECT_TRUE(exists(report) && exists(setup));
}

TEST_F(AgentModelTest, namesAFolderThatIsNotGranted) {
  tree.file("Documents/a.log");
  AgentModel model(services());
  plan(model, "delete logs older than 1 day in documents");
  EXPECT_TRUE(model.hasPlan()) << model.error().toStdString();
  EXPECT_EQ(model.rowCount(), 0);
  ASSERT_EQ(model.notices().size(), 1);
  EXPECT_THAT(model.notices().front().toStdString(), testing::HasSubstr("~/Documents is not one of your folders"));
}

TEST_F(AgentModelTest, showsDeveloperCachesOnlyToAPlanThatNamesThem) {
  constexpr std::int64_t size = 300'000'000;
  tree.sparseFile("Downloads/Library/Developer/CoreSimulator/Caches/dyld/x", size);
  tree.sparseFile("Downloads/big.bin", size);
  AgentModel model(services());
  plan(model, "show me stuff in downloads");
  EXPECT_EQ(model.matchCount(), 1) << model.error().toStdString();
  EXPECT_EQ(rowOf(model, "big.bin"), firstMatch(model));
  EXPECT_THAT(headers(model), testing::ElementsAre("Downloads|1|-1")) << "it is only listed";
  EXPECT_EQ(model.allCheckState(), -1);
}

TEST_F(AgentModelTest, pointsToTheOrganizerForAWholeFolder) {
  AgentModel model(services());
  plan(model, "Sort Downloads");
  EXPECT_TRUE(model.hasPlan() && model.isRefused());
  EXPECT_THAT(model.error().toStdString(), testing::HasSubstr("“Organize”"));
  EXPECT_THAT(model.fault().toStdString(), testing::HasSubstr("at least one filter attribute"));
  EXPECT_FALSE(model.planSteps().isEmpty());
  EXPECT_EQ(model.rowCount(), 0);
}

TEST_F(AgentModelTest, selectsNothingThatItDidNotUnderstandAndSaysWhy) {
  setAge(tree.file("Downloads/old.log"), 400 * 86400.0);
  AgentModel model(services());
  plan(model, "delete files older than a year");
  EXPECT_EQ(model.selectedCount(), 1);
  EXPECT_EQ(model.doubt(), "");
  plan(model, "don't delete files older than a year");
  ASSERT_EQ(model.matchCount(), 1);
  EXPECT_EQ(model.selectedCount(), 0);
  EXPECT_EQ(model.doubt(), localizedText("agent.doubt_negation"));
  plan(model, "delete emails older than a year");
  EXPECT_EQ(model.selectedCount(), 0);
  EXPECT_THAT(model.doubt().toStdString(), testing::HasSubstr("“emails”"));
  ThreadSafeLanguageStore::shared().setCurrentLanguage(AppLanguage::de);
  EXPECT_THAT(model.doubt().toStdString(), testing::StartsWith("„emails“ "));
  ThreadSafeLanguageStore::shared().setCurrentLanguage(AppLanguage::en);
  model.toggle(firstMatch(model));
  EXPECT_EQ(model.selectedCount(), 1) << "the user may take the plan all the same";
}

TEST_F(AgentModelTest, showsWhatEachWordBecameAndWhatWasAssumed) {
  AgentModel model(services());
  plan(model, "delete big pizza files older than a month");
  QStringList read;
  for (const auto& entry : model.reading()) {
    const auto map = entry.toMap();
    if (map["kind"] == AgentModel::Missing) continue;
    read.append(map["text"].toString() + "|" + map["became"].toString());
  }
  EXPECT_EQ(read, QStringList({"delete|to the Trash", "big|524.3\u00a0MB", "older than a month|30 days",
                               "|no folder named: ~/Downloads", "|meant nothing: pizza"}));
}

TEST_F(AgentModelTest, opensTheSectionThatDoesItWithItsFieldsFilled) {
  AgentModel model(services());
  QVariantList asked;
  QObject::connect(&model, &AgentModel::roomAsked,
                   [&](int section, const QString& folder, const QString& name, int way) {
                     asked = {section, folder, name, way};
                   });
  plan(model, "sort photos by date");
  EXPECT_EQ(model.roomAction(), "Open “Organize”");
  model.openRoom();
  EXPECT_EQ(asked,
            QVariantList({static_cast<int>(AppNavigationItem::Organize), textFrom(tree.path("Pictures")), "", 1}));
  plan(model, "uninstall zoom");
  EXPECT_EQ(model.selectedCount(), 0);
  model.openRoom();
  EXPECT_EQ(asked, QVariantList({static_cast<int>(AppNavigationItem::Apps), "", "zoom", -1}));
  plan(model, "delete old logs");
  EXPECT_EQ(model.roomText(), "");
}

TEST_F(AgentModelTest, showsWhatWouldBeSentAndSendsNothingWithoutAKey) {
  AgentModel model(services());
  model.setPrompt("delete old logs");
  model.updateRequest();
  model.setProvider(static_cast<int>(AIProvider::anthropic));
  model.updateRequest();
  ASSERT_TRUE(becomesTrue([&] { return !model.request().isEmpty(); }));
  EXPECT_THAT(model.request().toStdString(), testing::HasSubstr("delete old logs"));
  EXPECT_TRUE(model.isOffline());
  bool isSent = false;
  QObject::connect(&model, &AgentModel::requestSent, [&] { isSent = true; });
  plan(model, "delete old logs");
  EXPECT_FALSE(isSent);
}

// A key ring with one key for everybody, and a server that answers as it is told; refuses when it is told nothing.
class OneKey : public NoSecrets {
 public:
  [[nodiscard]] std::optional<SecretText> find(const std::string& /*service*/,
                                               const std::string& /*account*/) override {
    return SecretText(key);
  }

  std::string key = "sk-secret-key";
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

// The window's services with a remote planner.
class RemoteAgentTest : public AgentModelTest {
 public:
  RemoteAgentTest() { planner = &remote; }

  OneKey keys;
  KeychainService ring{keys};
  Server server;
  AgentCoordinator remote{ring, server, ProviderAddresses()};
};

TEST_F(RemoteAgentTest, anEmptyKeyIsNoKeyAndSendsNothing) {
  keys.key.clear();
  AgentModel model(services());
  bool isSent = false;
  QObject::connect(&model, &AgentModel::requestSent, [&] { isSent = true; });
  model.setProvider(static_cast<int>(AIProvider::anthropic));
  plan(model, "delete old logs");
  EXPECT_FALSE(isSent);
  EXPECT_EQ(server.body, "");
  for (const auto& provider : model.providers()) EXPECT_FALSE(provider.toMap()["hasKey"].toBool());
  EXPECT_THAT(model.fallbackReason().toStdString(), testing::HasSubstr("No key"));
}

TEST_F(RemoteAgentTest, tellsWhyItFellBackToAPlanThatCannotBeUsed) {
  AgentModel model(services());
  model.setProvider(static_cast<int>(AIProvider::openAI));
  plan(model, "Sort Downloads");
  EXPECT_TRUE(model.isRefused());
  EXPECT_THAT(model.fallbackReason().toStdString(), testing::HasSubstr("no route"));
  EXPECT_EQ(model.answeredBy(), textFrom(displayName(AIProvider::heuristic)));
}

TEST_F(RemoteAgentTest, carriesOutThePlanOfARemotePlannerAndSaysWhoAnswered) {
  tree.file("Downloads/setup.dmg", "installer");
  AgentModel model(services());
  std::vector<std::string> sent;
  QObject::connect(&model, &AgentModel::requestSent, [&](const QString& text) { sent.push_back(text.toStdString()); });
  model.setProvider(static_cast<int>(AIProvider::anthropic));
  model.reloadProviders();
  ASSERT_TRUE(becomesTrue([&] { return !model.isOffline(); }));

  server.plan = R"({"id":"7E2B1C90-3A44-4D5B-9C1E-0A2B3C4D5E6F","userGoal":"clear out installers","steps":[)"
                R"({"id":"1E2B1C90-3A44-4D5B-9C1E-0A2B3C4D5E6F","targetFolder":"~/Downloads",)"
                R"("filter":{"extensions":["dmg"]},"action":"trash","explanation":"Old."}],)"
                R"("summary":"Installers.","isDryRun":true,"createdAt":700000000})";
  plan(model, "clear out installers");
  EXPECT_EQ(model.answeredBy(), textFrom(displayName(AIProvider::anthropic)));
  EXPECT_TRUE(model.fallbackReason().isEmpty());
  ASSERT_EQ(sent.size(), 1U);
  EXPECT_THAT(sent.front(), testing::HasSubstr(server.body));
  EXPECT_THAT(sent.front(), testing::Not(testing::HasSubstr("sk-secret-key")));
  ASSERT_EQ(model.matchCount(), 1);
  if (model.selectedCount() == 0) model.toggle(firstMatch(model));
  finish(model, &AgentModel::confirm);
  EXPECT_FALSE(exists(tree.path("Downloads/setup.dmg")));

  server.plan.clear();
  plan(model, "clear out installers");
  EXPECT_EQ(model.answeredBy(), textFrom(displayName(AIProvider::heuristic)));
  EXPECT_THAT(model.fallbackReason().toStdString(), testing::HasSubstr("no route"));
  EXPECT_TRUE(model.isOffline());
}

TEST_F(AgentModelTest, explainsThePlanInTheLanguageOfTheWindow) {
  aged("Screenshot 1.png", 60);
  speak(AppLanguage::de);
  AgentModel model(services());
  plan(model, "Lösche Bildschirmfotos, die älter als zwei Wochen sind");
  EXPECT_EQ(model.planTitle(), "Alte Bildschirmfotos finden und in den Papierkorb legen.");
  const QString step = "Bildschirmfotos, die vor mehr als 14 Tagen entstanden, in den Papierkorb legen.";
  EXPECT_EQ(model.planSteps()[0].toMap()["text"].toString(), step);
  ASSERT_EQ(model.matchCount(), 1);
  EXPECT_EQ(model.data(model.index(firstMatch(model)), AgentModel::ReasonRole).toString(), step);
}

TEST_F(AgentModelTest, handsAPlanOnAsARuleOrSaysWhyItIsNone) {
  AgentModel model(services());
  std::vector<CleanupRule> made;
  QObject::connect(&model, &AgentModel::ruleMade, [&](const CleanupRule& rule) { made.push_back(rule); });
  plan(model, "sort screenshots in downloads");
  model.saveAsRule();
  EXPECT_THAT(model.ruleProblem().toStdString(), testing::HasSubstr("a folder for each kind"));
  EXPECT_THAT(made, IsEmpty());
  plan(model, "delete screenshots older than a week");
  EXPECT_EQ(model.ruleProblem(), "");
  model.saveAsRule();
  ASSERT_EQ(made.size(), 1U);
  EXPECT_EQ(made[0].name, "delete screenshots older than a week");
  EXPECT_EQ(made[0].trigger.minimumAgeDays, 7);
  EXPECT_EQ(made[0].trigger.folderPath, "~/Downloads/");
}

TEST_F(AgentModelTest, groupsMatchesByFolderAndDestination) {
  aged("report.pdf", 60);
  aged("thesis.pdf", 60);
  aged("setup.dmg", 60);
  AgentModel model(services());
  plan(model, "organize files older than 30 days in downloads");
  EXPECT_THAT(headers(model), testing::UnorderedElementsAre("Downloads → Downloads/Documents/PDFs|2|2",
                                                            "Downloads → Downloads/Installers|1|2"));
  EXPECT_EQ(model.allCheckState(), Qt::Checked);
  model.toggle(rowOf(model, "thesis.pdf"));
  EXPECT_THAT(headers(model), testing::Contains("Downloads → Downloads/Documents/PDFs|2|1"));
  EXPECT_EQ(model.allCheckState(), Qt::PartiallyChecked);
  EXPECT_EQ(model.moves().size(), 3) << "two folders, and one file stays";
  const auto pdfs = rowOf(model, "Downloads → Downloads/Documents/PDFs");
  model.toggle(pdfs);
  EXPECT_EQ(model.selectedCount(), 3) << "a part becomes all";
  model.toggle(pdfs);
  EXPECT_EQ(model.selectedCount(), 1);
  const auto rows = model.rowCount();
  model.toggleExpanded(pdfs);
  EXPECT_EQ(model.rowCount(), rows - 2);
  model.selectAll(true);
  EXPECT_EQ(model.selectedCount(), 3) << "folded matches too";
  model.selectAll(false);
  EXPECT_EQ(model.allCheckState(), Qt::Unchecked);
}

TEST_F(AgentModelTest, changesConditionsByTheSameRoad) {
  aged("old.pdf", 400);
  aged("other.pdf", 400);
  const auto month = aged("month.pdf", 40);
  AgentModel model(services());
  plan(model, "organize files older than 30 days in downloads");
  EXPECT_EQ(model.changeText(), "");
  model.toggle(rowOf(model, "other.pdf"));
  change(model, "Age", "90");
  EXPECT_EQ(rowOf(model, "month.pdf"), -1);
  EXPECT_EQ(model.selectedCount(), 1) << "a narrower plan keeps what was chosen";
  EXPECT_EQ(model.changeText(), localizedText("agent.changed"));

  change(model, "Extensions", "pdf");
  EXPECT_EQ(model.selectedCount(), 1);
  change(model, "Age", "");
  EXPECT_EQ(model.matchCount(), 3);
  EXPECT_EQ(model.selectedCount(), 0) << "a wider one starts over";
  EXPECT_THAT(model.changeText().toStdString(), testing::HasSubstr("nothing is selected"));

  change(model, "Extensions", "");
  EXPECT_TRUE(model.isRefused());
  EXPECT_EQ(model.error(), localizedText("agent.needs_condition"));
  EXPECT_EQ(model.rowCount(), 0);
  change(model, "Age", "30");
  ASSERT_EQ(model.matchCount(), 3);
  model.toggle(rowOf(model, "month.pdf"));
  finish(model, &AgentModel::confirm);
  EXPECT_FALSE(exists(month));
  EXPECT_TRUE(exists(tree.path("Downloads/old.pdf")));
  const auto origins = recordedOrigins(taskServices());
  ASSERT_EQ(origins.size(), 1U);
  EXPECT_EQ(origins.begin()->second.detail, "organize files older than 30 days in downloads (changed)");
}

TEST_F(AgentModelTest, leavesAPlanAsItIsForAValueThatCanNeverWork) {
  aged("old.pdf", 400);
  AgentModel model(services());
  plan(model, "delete files older than 30 days in downloads");
  const auto extensions = static_cast<int>(PlanCondition::extensions);
  EXPECT_EQ(model.change(extensions, "a/b"), "rules.extension_wrong");
  EXPECT_FALSE(model.isPlanning());
  EXPECT_EQ(model.change(99, "pdf"), "");
  EXPECT_EQ(model.changeText(), "");
}

TEST_F(AgentModelTest, offersTheModelOfThisMachineOnlyWhereItAnswers) {
  AgentModel model(services());
  ASSERT_TRUE(becomesTrue([&] { return model.providers().size() == 3; }));
  model.setProvider(static_cast<int>(AIProvider::localModel));
  EXPECT_EQ(model.providers().size(), 4) << "the choice stays shown";
  EXPECT_TRUE(model.isOffline()) << "it would be planned by keywords";
}

}  // namespace
}  // namespace orvane::test
