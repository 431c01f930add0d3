#include "core/assistant/AgentCoordinator.h"

#include "core/assistant/AnthropicClient.h"
#include "core/assistant/LocalModelClient.h"
#include "core/assistant/OpenAIClient.h"
#include "core/assistant/records/MetadataOnlyRequest.h"
#include "core/base/text/Json.h"
#include "core/plans/CleaningPlanSchema.h"
#include "platform/linux/CurlTransport.h"
#include "platform/linux/LocalTopicModel.h"
#include "tests/support/LocalServer.h"
#include "tests/support/MemoryPreferences.h"
#include "tests/support/TaskFixture.h"

#include <regex>

namespace orvane::test {
namespace {

constexpr const char* prompt = "clean screenshots";

class MemorySecrets : public SecretStore {
 public:
  [[nodiscard]] bool add(const std::string& service, const std::string& account, const SecretText& secret) override {
    secrets[{service, account}] = secret.view();
    return true;
  }
  [[nodiscard]] bool remove(const std::string& service, const std::string& account) override {
    secrets.erase({service, account});
    return true;
  }
  [[nodiscard]] std::optional<SecretText> find(const std::string& service, const std::string& account) override {
    const auto found = secrets.find({service, account});
    return found != secrets.end() ? std::optional(SecretText(found->second)) : std::nullopt;
  }

  std::map<std::pair<std::string, std::string>, std::string> secrets;
};

// A plan document as a model would write it, with the keys that the schema block does not name.
Json planDocument(const std::string& goal = "from the model") {
  return parseJson(R"({"id":"7E2B1C90-3A44-4D5B-9C1E-0A2B3C4D5E6F","userGoal":")" + goal +
                   R"(","steps":[{"id":"1E2B1C90-3A44-4D5B-9C1E-0A2B3C4D5E6F","targetFolder":"~/Downloads",)"
                   R"("filter":{"extensions":["dmg"]},"action":"trash","explanation":"Old."}],)"
                   R"("summary":"Installers.","isDryRun":true,"createdAt":700000000})");
}

LocalServer::Answer replyWith(AIProvider provider, const std::string& text) {
  if (provider == AIProvider::openAI) return LocalServer::chat(text);
  Json reply;
  reply["content"] = Json::array({Json{{"type", "text"}, {"text", text}}});
  return LocalServer::answer(200, jsonText(reply));
}

class Coordinator : public testing::TestWithParam<AIProvider> {
 protected:
  Coordinator() {
    for (const auto provider : {AIProvider::anthropic, AIProvider::openAI}) {
      EXPECT_TRUE(keychain.saveKey(SecretText("sk-secret-key"), keyAccount(provider)));
    }
  }
  PlannedAnswer answerFrom(const LocalServer::Handler& handler, const std::vector<FileMetadataEntry>& files = {}) {
    const LocalServer server(handler);
    AgentCoordinator coordinator(keychain, transport, {.anthropic = server.url("/"), .openAI = server.url()});
    auto answer = coordinator.requestAnswer(prompt, GetParam(), files);
    requests = server.requests();
    return answer;
  }

  MemorySecrets secrets;
  KeychainService keychain{secrets};
  CurlTransport transport;
  std::vector<LocalServer::Request> requests;
};

std::string headersOf(const HttpRequest& request) {
  std::string text;
  for (const auto& header : request.headers) text += header.name + ": " + header.value + "\n";
  return text;
}

// An offline plan has the goal of the prompt.
void expectOffline(const PlannedAnswer& answer, const std::string& reason) {
  EXPECT_EQ(answer.provider, AIProvider::heuristic);
  EXPECT_EQ(answer.plan.userGoal, prompt);
  EXPECT_FALSE(CleaningPlanSchema::firstFault(answer.plan));
  ASSERT_TRUE(answer.fallbackReason);
  EXPECT_THAT(*answer.fallbackReason, AllOf(HasSubstr(reason), Not(HasSubstr("\n")), Not(HasSubstr("sk-secret"))));
}

INSTANTIATE_TEST_SUITE_P(Providers, Coordinator, Values(AIProvider::anthropic, AIProvider::openAI),
                         [](const auto& parameter) { return std::string(rawValue(parameter.param)); });

TEST_P(Coordinator, takesAPlanWithEveryKey) {
  const auto answer = answerFrom([](const auto&) { return replyWith(GetParam(), jsonText(planDocument())); });
  EXPECT_EQ(answer.provider, GetParam());
  EXPECT_FALSE(answer.fallbackReason);
  EXPECT_EQ(answer.asked, GetParam());
  EXPECT_EQ(jsonText(answer.plan.toJson()), jsonText(planDocument()));
}

TEST_P(Coordinator, plansOfflineWhateverElseIsAnswered) {
  const auto provider = GetParam();
  const auto changedPlan = [&](const std::function<void(Json&)>& change) {
    auto plan = planDocument();
    change(plan);
    return replyWith(provider, jsonText(plan));
  };
  const Rows<const char*, LocalServer::Answer> replies{
      {"HTTP status 401", LocalServer::answer(401, "{}")},
      {"HTTP status 307", LocalServer::answer(307, "", "Location: http://127.0.0.2:1/\r\n")},
      {"has not the form", LocalServer::answer(200, "\x01\xff{")},
      {"has not the form", LocalServer::answer(200, R"({"content":[],"choices":[{"message":7}]})")},
      {"has not the form", LocalServer::answer(200, R"({"content":[1],"choices":[1]})")},
      {"too large", LocalServer::answer(200, std::string(HttpTransport::maxReplyBytes + 1, ' '))},
      {"could not be asked", {"HTTP/1.1 200 OK\r\nContent-Length: 99\r\n\r\n{", false}},
      {"could not be asked", {"", false}},
      // To the letter of the schema, which names no such key.
      {"not a plan", changedPlan([](Json& plan) { plan.erase("id"); })},
      {"not a plan", replyWith(provider, "```json\n" + jsonText(planDocument()) + "\n```")},
      {"cannot be used: The cleaning plan must contain",
       changedPlan([](Json& plan) { plan["steps"] = Json::array(); })},
      {"cannot be used: Target folder is protected",
       changedPlan([](Json& plan) { plan["steps"][0]["targetFolder"] = "/usr"; })},
  };
  for (const auto& row : replies) {
    const auto& [reason, reply] = row;
    SCOPED_TRACE(reply.bytes.substr(0, 200));
    const auto answer = answerFrom([&](const auto&) { return std::get<1>(row); });
    expectOffline(answer, reason);
    EXPECT_EQ(answer.asked, GetParam());
    // The request as sent is reported, whatever came of it.
    ASSERT_TRUE(answer.sent);
    EXPECT_EQ(answer.sent->body, requests.at(0).body);
    EXPECT_THAT(headersOf(*answer.sent), Not(HasSubstr("sk-secret")));
  }
}

TEST_P(Coordinator, asksNobodyWithoutAKey) {
  for (const char* key : {"", "\xff\xfe"}) {
    secrets.secrets[{"com.orvane.app.keys", std::string(keyAccount(GetParam()))}] = key;
    const auto answer = answerFrom([](const auto&) { return LocalServer::answer(200, ""); });
    expectOffline(answer, "No key");
    EXPECT_FALSE(answer.sent);
    EXPECT_TRUE(requests.empty());
    EXPECT_FALSE(keychain.hasKey(keyAccount(GetParam())));
  }
  EXPECT_TRUE(keychain.deleteKey(keyAccount(GetParam())));
  expectOffline(answerFrom([](const auto&) { return LocalServer::answer(200, ""); }), "No key");
  EXPECT_TRUE(requests.empty());
}

TEST_P(Coordinator, endsAtOnceWhenStoppedAlsoWhileItWaitsForAnother) {
  const LocalServer silent([](const auto&) { return LocalServer::Answer{"", true}; });
  AgentCoordinator coordinator(keychain, transport, {.anthropic = silent.url(), .openAI = silent.url()});
  std::stop_source first;
  std::stop_source second;
  std::thread asking(
      [&] { expectOffline(coordinator.requestAnswer(prompt, GetParam(), {}, first.get_token()), "cancelled"); });
  silent.waitForRequests(1);
  std::thread waiting([&] {
    const auto answer = coordinator.requestAnswer(prompt, GetParam(), {}, second.get_token());
    expectOffline(answer, "cancelled");
    EXPECT_FALSE(answer.sent);
  });
  second.request_stop();
  waiting.join();
  first.request_stop();
  asking.join();
  EXPECT_EQ(silent.requests().size(), 1U) << "one at a time";
}

TEST_P(Coordinator, refusesAnAddressThatWouldShowTheKeyToOthers) {
  AgentCoordinator coordinator(keychain, transport, {.anthropic = "http://example.com", .openAI = "http://user:pw@x"});
  const auto answer = coordinator.requestAnswer(prompt, GetParam(), {});
  expectOffline(answer, "no https address");
  EXPECT_THAT(*answer.fallbackReason, Not(HasSubstr("pw")));
  EXPECT_FALSE(answer.sent);
}

TEST_P(Coordinator, sendsNamesSizesAndRelativeFoldersAndNothingElse) {
  std::vector<FileMetadataEntry> files;
  for (int i = 0; i < 10; ++i) {
    FileMetadataEntry entry;
    entry.filename = "report " + std::to_string(i) + ".pdf";
    entry.fileExtension = "pdf";
    entry.sizeBytes = 5'000'000'000 + i;
    entry.createdDate = entry.modifiedDate = entry.lastAccessDate = dateFromReferenceSeconds(694'224'001.5);
    entry.relativeFolderPath = "Documents/taxes";
    files.push_back(entry);
  }
  static_cast<void>(answerFrom([](const auto&) { return LocalServer::answer(500, ""); }, files));
  ASSERT_EQ(requests.size(), 1U);
  const auto body = parseJson(requests[0].body);
  const auto message = body["messages"].back()["content"].get<std::string>();
  std::string expected = "User goal: clean screenshots\nCandidate sample files:";
  for (int i = 0; i < 10; ++i) {
    expected += "\nreport " + std::to_string(i) + ".pdf (ext: pdf, size: 500000000" + std::to_string(i) +
                ", folder: Documents/taxes)";
  }
  EXPECT_EQ(message, expected);

  const auto everything = requests[0].line + requests[0].headers + requests[0].body;
  for (const auto& file : files) EXPECT_THAT(everything, Not(HasSubstr(file.id.toString())));
  EXPECT_THAT(everything, Not(HasSubstr("694224001")));
  // No date other than the interface's version, no identifier, no absolute or home path.
  EXPECT_FALSE(std::regex_search(requests[0].body + message, std::regex(R"(\d{4}-\d\d-\d\d[T ])")));
  EXPECT_FALSE(std::regex_search(everything, std::regex("[0-9A-Fa-f]{8}-[0-9A-Fa-f]{4}-[0-9A-Fa-f]{4}")));
  EXPECT_FALSE(std::regex_search(requests[0].body, std::regex(R"((^|[\s":(])(/|~/)\w)")));
  EXPECT_THAT(requests[0].body, Not(HasSubstr("sk-secret")));
}

TEST_P(Coordinator, sendsExactlyThisForm) {
  static_cast<void>(answerFrom([](const auto&) { return LocalServer::answer(500, ""); }));
  ASSERT_EQ(requests.size(), 1U);
  const auto& request = requests[0];
  const auto quoted = jsonText(Json(CleaningPlanSchema::promptBlock()));
  const auto schema = quoted.substr(1, quoted.size() - 2);
  const std::string user = R"({"role":"user","content":"User goal: clean screenshots\nCandidate sample files:\n"})";
  EXPECT_THAT(request.headers, HasSubstr("\r\nContent-Type: application/json"));
  if (GetParam() == AIProvider::anthropic) {
    EXPECT_EQ(request.line, "POST /v1/messages HTTP/1.1");
    EXPECT_THAT(request.headers,
                AllOf(HasSubstr("\r\nx-api-key: sk-secret-key"), HasSubstr("\r\nanthropic-version: 2023-06-01")));
    EXPECT_EQ(request.body,
              R"({"model":"claude-3-5-sonnet-20241022","max_tokens":1024,"system":"You are Orvane's cleanup planner. )"
              R"(Analyze the metadata and produce a JSON response adhering to this schema:\n)" +
                  schema + R"(\nReturn ONLY valid JSON.","messages":[)" + user + "]}");
  } else {
    EXPECT_EQ(request.line, "POST /v1/chat/completions HTTP/1.1");
    EXPECT_THAT(request.headers, HasSubstr("\r\nAuthorization: Bearer sk-secret-key"));
    EXPECT_EQ(request.body,
              R"({"model":"gpt-4o","messages":[{"role":"system","content":"You are Orvane's cleanup planner. )"
              R"(Analyze metadata and output valid JSON conforming to the CleaningPlan schema:\n)" +
                  schema + R"("},)" + user + R"(],"response_format":{"type":"json_object"}})");
  }
  AgentCoordinator shown(keychain, transport, {});
  const auto keyless = shown.keylessRequest(prompt, GetParam(), {});
  ASSERT_TRUE(keyless);
  EXPECT_EQ(keyless->body, request.body);
  EXPECT_EQ(keyless->timeout, std::chrono::seconds(60));
  EXPECT_THAT(headersOf(*keyless), Not(HasSubstr("sk-secret")));
}

TEST(OfflineCoordinator, returnsAPlanEvenOneThatValidationRejects) {
  MemorySecrets secrets;
  const KeychainService keychain(secrets);
  CurlTransport transport;
  AgentCoordinator coordinator(keychain, transport, {});
  const auto answer = coordinator.requestAnswer("sort my downloads", AIProvider::heuristic, {});
  EXPECT_EQ(answer.plan.userGoal, "sort my downloads");
  EXPECT_EQ(CleaningPlanSchema::firstFault(answer.plan),
            PlanValidationError(PlanValidationError::InvalidFilterCriteria{}));
  EXPECT_FALSE(answer.fallbackReason);
  EXPECT_FALSE(coordinator.keylessRequest(prompt, AIProvider::heuristic, {}));
}

FileMetadataEntry entry(std::string name) {
  FileMetadataEntry entry;
  entry.filename = std::move(name);
  entry.relativeFolderPath = "Documents";
  return entry;
}

TEST(MetadataOnlyRequest, keepsItsFormInJson) {
  auto dated = entry("a.txt");
  dated.fileExtension = "txt";
  dated.sizeBytes = 7;
  dated.createdDate = dateFromReferenceSeconds(1.25);
  dated.modifiedDate = dateFromReferenceSeconds(2);
  dated.lastAccessDate = dateFromReferenceSeconds(3);
  const MetadataOnlyRequest request{.userPrompt = "p", .files = {dated, entry("b")}, .targetFolders = {"Downloads"}};
  const auto json = request.toJson();
  EXPECT_EQ(jsonText(json),
            R"({"userPrompt":"p","files":[{"id":")" + dated.id.toString() +
                R"(","filename":"a.txt","fileExtension":"txt","sizeBytes":7,"createdDate":1.25,"modifiedDate":2,)"
                R"("lastAccessDate":3,"relativeFolderPath":"Documents"},{"id":")" +
                request.files[1].id.toString() +
                R"(","filename":"b","fileExtension":"","sizeBytes":0,"relativeFolderPath":"Documents"}],)"
                R"("targetFolders":["Downloads"]})");
  EXPECT_EQ(MetadataOnlyRequest::fromJson(json), request);

  auto withNull = json;
  withNull["files"][0]["createdDate"] = nullptr;
  EXPECT_FALSE(MetadataOnlyRequest::fromJson(withNull).files[0].createdDate);
  for (const auto& key :
       words("userPrompt files targetFolders id filename fileExtension sizeBytes relativeFolderPath")) {
    auto broken = json;
    if (broken.erase(key) == 0) broken["files"][1].erase(key);
    EXPECT_THROW(static_cast<void>(MetadataOnlyRequest::fromJson(broken)), JsonError) << key;
  }
}

constexpr const char* localPrompt = " clean installers ";

Json localPlan() {
  return parseJson(R"({"id":"00000000-0000-4000-8000-000000000001","userGoal":"from the model","steps":[)"
                   R"({"id":"00000000-0000-4000-8000-000000000002","targetFolder":"~/Downloads","filter":)"
                   R"({"categories":null,"extensions":["dmg"]},"action":"trash","explanation":"Old."}],)"
                   R"("summary":"Installers.","isDryRun":false,"createdAt":0})");
}

class LocalPlanner : public testing::Test {
 protected:
  PlannedAnswer answerFrom(const std::string& address, const std::stop_token& stop = {}) {
    preferences.values[std::string(LocalTopicModel::endpointKey)] = address;
    LocalTopicModel model(preferences, transport, patience);
    return AgentCoordinator(keychain, transport, {}, &model)
        .requestAnswer(localPrompt, AIProvider::localModel, {}, stop);
  }
  PlannedAnswer answerFrom(const LocalServer::Handler& handler) {
    const LocalServer server([&](const LocalServer::Request& request) {
      return request.line.starts_with("GET") ? LocalServer::answer(200, "{}") : handler(request);
    });
    auto answer = answerFrom(server.url());
    requests = server.requests();
    return answer;
  }

  NoSecrets secrets;
  KeychainService keychain{secrets};
  MemoryPreferences preferences;
  CurlTransport transport;
  std::vector<LocalServer::Request> requests;
  std::chrono::milliseconds patience = std::chrono::seconds(30);
};

TEST_F(LocalPlanner, takesThePlanWhateverStandsAroundIt) {
  for (const char* frame : {"{}", "Sure, here is the plan:\n```json\n{}\n```\nAnything else?"}) {
    std::string reply = frame;
    reply.replace(reply.find("{}"), 2, jsonText(localPlan()));
    const auto answer = answerFrom([&](const auto&) { return LocalServer::chat(reply); });
    EXPECT_EQ(answer.provider, AIProvider::localModel);
    EXPECT_FALSE(answer.fallbackReason);
    EXPECT_FALSE(answer.sent) << "nothing left this machine";
    EXPECT_EQ(answer.plan.steps.front().explanation, "Old.");
    // The model has no say in what the plan is for and when it was made.
    EXPECT_EQ(answer.plan.userGoal, "clean installers");
    EXPECT_TRUE(answer.plan.isDryRun);
    EXPECT_NE(answer.plan.id.toString(), localPlan()["id"].get<std::string>());
    EXPECT_GT(answer.plan.createdAt, ReferenceClock::now() - std::chrono::hours(1));
  }
}

TEST_F(LocalPlanner, isToldTheGoalAndEveryKeyOfAPlanAndNothingElse) {
  static_cast<void>(answerFrom([](const auto&) { return LocalServer::chat(jsonText(localPlan())); }));
  ASSERT_EQ(requests.size(), 2U);
  EXPECT_EQ(requests[1].line, "POST /v1/chat/completions HTTP/1.1");
  const auto messages = parseJson(requests[1].body)["messages"];
  EXPECT_EQ(messages[1]["content"], "User goal:  clean installers \nCandidate sample files:\n");
  const auto instructions = messages[0]["content"].get<std::string>();
  const auto plan = localPlan();
  for (const auto& [key, value] : plan.items()) EXPECT_THAT(instructions, HasSubstr("\"" + key + "\": "));
  EXPECT_THAT(instructions, AllOf(HasSubstr("\n      \"id\": \""), HasSubstr("\n  ],\n  \"isDryRun\": true,\n")));
}

LocalServer::Answer changedPlan(const std::function<void(Json&)>& change) {
  auto plan = localPlan();
  change(plan);
  return LocalServer::chat(jsonText(plan));
}

TEST_F(LocalPlanner, plansByKeywordsWhateverElseIsAnswered) {
  const Rows<const char*, LocalServer::Answer> replies{
      {"status 500", LocalServer::answer(500, "{}")},
      {"not a plan", LocalServer::chat("I would rather not.")},
      {"not a plan", LocalServer::chat(R"(Here: {"id": "1", "steps": [{}])")},
      {"not a plan", LocalServer::chat(jsonText(localPlan()) + " or " + jsonText(localPlan()))},
      {"cannot be used", changedPlan([](Json& plan) { plan["steps"][0]["targetFolder"] = "/usr"; })},
      {"more than 20 steps", changedPlan([](Json& plan) {
         const auto step = plan["steps"][0];
         for (int i = 0; i < 5000; ++i) plan["steps"].push_back(step);
       })},
      {"too large", LocalServer::answer(200, std::string(HttpTransport::maxReplyBytes + 1, ' '))},
      {"in time", {"HTTP/1.1 200 OK\r\nContent-Length: 99\r\n\r\n{", true}},
  };
  for (const auto& row : replies) {
    const auto& [reason, reply] = row;
    SCOPED_TRACE(reply.bytes.substr(0, 200));
    patience = reply.keepsOpen ? std::chrono::milliseconds(200) : std::chrono::seconds(30);
    const auto answer = answerFrom([&](const auto&) { return std::get<1>(row); });
    EXPECT_EQ(answer.asked, AIProvider::localModel);
    EXPECT_EQ(answer.provider, AIProvider::heuristic);
    EXPECT_EQ(answer.plan.summary, "Clean leftover disk images and installer packages.");
    ASSERT_TRUE(answer.fallbackReason);
    EXPECT_THAT(*answer.fallbackReason, AllOf(HasSubstr(reason), Not(HasSubstr("\n"))));
  }
}

TEST_F(LocalPlanner, isOffUnlessConfiguredAndAsksThisMachineOnly) {
  for (const auto& [address, reason] :
       {std::pair("", "no model on this machine is set up"), std::pair("http://192.168.0.2:8080", "refused"),
        std::pair("http://127.0.0.1:1", "could not be asked")}) {
    const auto answer = answerFrom(std::string(address));
    EXPECT_EQ(answer.provider, AIProvider::heuristic);
    EXPECT_THAT(answer.fallbackReason.value_or(""), HasSubstr(reason)) << address;
  }
  EXPECT_THAT(AgentCoordinator(keychain, transport, {}).localModelProblem(), HasSubstr("no model"));
}

TEST_F(LocalPlanner, endsAtOnceWhenStopped) {
  const LocalServer silent([](const LocalServer::Request& request) {
    return request.line.starts_with("GET") ? LocalServer::answer(200, "{}") : LocalServer::Answer{"", true};
  });
  std::stop_source stop;
  std::thread asking([&] {
    EXPECT_THAT(answerFrom(silent.url(), stop.get_token()).fallbackReason.value_or(""), HasSubstr("cancelled"));
  });
  silent.waitForRequests(2);
  stop.request_stop();
  asking.join();
}

}  // namespace
}  // namespace orvane::test
