#include "core/assistant/LocalModelClient.h"

#include "core/assistant/AgentCoordinator.h"
#include "core/base/text/Json.h"
#include "core/plans/CleaningPlanSchema.h"
#include "platform/linux/CurlTransport.h"
#include "platform/linux/LocalTopicModel.h"
#include "tests/support/LocalServer.h"
#include "tests/support/MemoryPreferences.h"
#include "tests/support/TaskFixture.h"

#include <array>
#include <stop_token>
#include <thread>

namespace orvane::test {
namespace {

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
      {"too large", LocalServer::answer(200, std::string(HttpTransport::longestReply + 1, ' '))},
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
