#include "platform/linux/LocalTopicModel.h"

#include "core/organizer/topics/OnDeviceTopicCategorizer.h"
#include "platform/linux/CurlTransport.h"
#include "tests/support/LocalServer.h"
#include "tests/support/MemoryPreferences.h"
#include "tests/support/Testing.h"

namespace orvane::test {
namespace {

class LocalModel : public testing::Test {
 protected:
  void configure(const std::string& endpoint) {
    preferences.values[std::string(LocalTopicModel::endpointKey)] = endpoint;
  }
  std::string reasonFor(const std::string& endpoint) {
    configure(endpoint);
    return LocalTopicModel(preferences, transport).unavailableReason();
  }
  // Topics that the categorizer gets from a server that answers like this.
  std::map<std::string, std::string> topicsFrom(const LocalServer::Handler& handler) {
    const LocalServer server(handler);
    configure(server.url());
    LocalTopicModel model(preferences, transport, std::chrono::milliseconds(200));
    return OnDeviceTopicCategorizer(model).topics(std::vector<std::string>{"a.pdf", "b \"x\".txt"}, {"Travel"});
  }

  MemoryPreferences preferences;
  CurlTransport transport;
};

TEST_F(LocalModel, isOffUnlessConfiguredAndNeverLeavesThisMachine) {
  EXPECT_EQ(LocalTopicModel(preferences, transport).unavailableReason(), "no model on this machine is set up");
  EXPECT_THAT(reasonFor("http://192.168.0.2:8080"), HasSubstr("refused: names may only be sent to this machine"));
  EXPECT_THAT(reasonFor("https://api.example.com/v1"), HasSubstr("refused"));
  EXPECT_THAT(reasonFor("127.0.0.1:8080"), HasSubstr("is not valid"));
  LocalTopicModel remote(preferences, transport);
  configure("http://example.com");
  EXPECT_THROW(static_cast<void>(remote.respond("", "", {})), std::runtime_error);
}

TEST_F(LocalModel, asksTheServerOnceWhetherItIsThere) {
  const LocalServer server([](const auto&) { return LocalServer::answer(404, "no list of models"); });
  configure(server.url());
  LocalTopicModel model(preferences, transport);
  EXPECT_TRUE(model.isAvailable());
  configure("http://127.0.0.1:1");
  EXPECT_TRUE(model.isAvailable()) << "the answer holds for the process";
  ASSERT_EQ(server.requests().size(), 1U);
  EXPECT_EQ(server.requests()[0].line, "GET /v1/models HTTP/1.1");
  EXPECT_FALSE(LocalTopicModel(preferences, transport).isAvailable());

  const LocalServer broken([](const auto&) { return LocalServer::answer(503, ""); });
  EXPECT_THAT(reasonFor(broken.url()), HasSubstr("status 503"));
  const LocalServer silent([](const auto&) { return LocalServer::Answer{"", true}; });
  EXPECT_THAT(reasonFor(silent.url()), HasSubstr("in time"));
}

TEST_F(LocalModel, takesAnAddressWithOrWithoutThePathOfTheInterface) {
  const LocalServer server([](const auto&) { return LocalServer::chat("hello"); });
  for (const auto* path : {"", "/", "/v1", "/v1/", "/v1/chat/completions", "/models/a", "/models/a/v1/"}) {
    configure(server.url(path));
    EXPECT_EQ(LocalTopicModel(preferences, transport).respond("", "", {}), "hello");
  }
  std::vector<std::string> lines;
  for (const auto& request : server.requests()) lines.push_back(request.line);
  const std::string plain = "POST /v1/chat/completions HTTP/1.1";
  const std::string nested = "POST /models/a/v1/chat/completions HTTP/1.1";
  EXPECT_THAT(lines, ElementsAre(plain, plain, plain, plain, plain, nested, nested));
}

TEST_F(LocalModel, sendsInstructionsAndNamesAndNothingElse) {
  std::vector<LocalServer::Request> requests;
  preferences.values[std::string(LocalTopicModel::nameKey)] = "small-model";
  const auto topics = topicsFrom([&](const auto& request) {
    requests.push_back(request);
    return LocalServer::chat(R"(Sure: {"a.pdf": "Taxes", "invented.pdf": "X"} - done.)");
  });
  EXPECT_THAT(topics, ElementsAre(Pair("a.pdf", "Taxes")));
  const auto body = parseJson(requests.at(0).body);
  EXPECT_EQ(body["model"], "small-model");
  EXPECT_EQ(body["messages"][0]["content"], OnDeviceTopicCategorizer::instructions);
  EXPECT_EQ(body["messages"][1]["content"], "Existing folders: Travel\n\nItems:\n- a.pdf\n- b \"x\".txt");
  EXPECT_EQ(body.size(), 3U);
}

TEST_F(LocalModel, yieldsNoTopicsWhereItsAnswerIsOfNoUse) {
  using Server = std::pair<const char*, LocalServer::Answer>;
  for (const auto& [name, answer] : {
           Server{"an error", LocalServer::answer(500, R"({"choices":[]})")},
           Server{"no JSON", LocalServer::answer(200, "<html>")},
           Server{"no choices", LocalServer::answer(200, R"({"choices":[]})")},
           Server{"another form", LocalServer::answer(200, R"({"choices":[{"text":"{}"}]})")},
           Server{"prose alone", LocalServer::chat("I would rather not.")},
           Server{"a broken object", LocalServer::chat(R"({"a.pdf": "Taxes")")},
           Server{"a list", LocalServer::chat(R"(["Taxes"])")},
           Server{"nothing at all", {"", false}},
           Server{"never", {"", true}},
           Server{"too slowly", {"HTTP/1.1 200 OK\r\nContent-Length: 99\r\n\r\n{", true}},
       }) {
    const auto& given = answer;
    EXPECT_THAT(topicsFrom([&](const auto&) { return given; }), IsEmpty()) << name;
  }
}

}  // namespace
}  // namespace orvane::test
