#include "tests/cli/OrvanectlFixture.h"
#include "tests/support/LocalServer.h"

namespace orvane::test {
namespace {

// A model server of this machine, whose plans nobody should trust.
class LocalModelPlans : public Orvanectl {
 public:
  LocalModelPlans() {
    for (const auto* name : {"Downloads/setup.dmg", "Documents/setup.dmg", "Downloads/notes.txt",
                             "Library/Logs/old.log", ".ssh/id_rsa", "Elsewhere/setup.dmg", ".bashrc"}) {
      setAge(home.file(name, "content"), 400 * day);
    }
    EXPECT_EQ(run({"folders", "add", home.path("Downloads"), home.path("Library/Logs")}).exitStatus, 0);
  }

  // The answer of `ask --apply` to a plan of this step.
  ChildResult applied(const Json& step) {
    const LocalServer server([&](const LocalServer::Request& request) {
      return request.line.starts_with("GET") ? LocalServer::answer(200, "{}")
                                             : LocalServer::chat(jsonText(planOf({step})));
    });
    setEndpoint(server.url());
    return run({"ask", "delete old logs", "--provider", "local_model", "--apply", "--yes", "--json"});
  }
  void setEndpoint(const std::string& url) const {
    const auto path = home.path(".config/orvane/preferences.json");
    auto preferences = parseJson(contentOf(path));
    preferences["OrvaneLocalModelEndpoint"] = url;
    home.file(".config/orvane/preferences.json", jsonText(preferences));
  }
  static constexpr double day = 86400;
};

TEST_F(LocalModelPlans, areShownAndCarriedOutLikeAnyOther) {
  const auto applied = this->applied(stepOf("~/Library/Logs", "trash", {{"categories", {"logs"}}}));
  EXPECT_EQ(applied.exitStatus, 0) << applied.errors;
  const auto answer = parseJson(applied.output);
  EXPECT_TRUE(tells(answer, {{"provider", "local_model"}, {"plan", {{"userGoal", "delete old logs"}}}}));
  EXPECT_EQ(answer["matches"].size(), 1U);
  EXPECT_FALSE(exists(home.path("Library/Logs/old.log")));
  EXPECT_EQ(json({"restore", answer["summary"]["batchId"], "--yes"})["restoredCount"], 1);
}

// Of the last request that has one.
std::string askedBody(const LocalServer& server) {
  std::string body;
  for (const auto& request : server.requests()) {
    if (!request.body.empty()) body = request.body;
  }
  return body;
}

TEST_F(LocalModelPlans, areAskedForInTheWordsThatAreShownBefore) {
  const LocalServer server([](const LocalServer::Request& request) {
    return request.line.starts_with("GET") ? LocalServer::answer(200, "{}") : LocalServer::chat("none");
  });
  setEndpoint(server.url());
  const Words ask{"ask", "delete old logs", "--provider", "local_model"};
  const auto show = joined(ask, {"--show-request"});
  const auto shown = json(show);
  EXPECT_EQ(askedBody(server), "") << "showing asked the model";
  EXPECT_EQ(run(ask).exitStatus, 0);
  const auto asked = parseJson(askedBody(server));
  EXPECT_EQ(shown["instructions"], asked["messages"][0]["content"]);
  EXPECT_EQ(shown["prompt"], asked["messages"][1]["content"]);
  EXPECT_THAT(run(show), Says("cleanup planner", "delete old logs"));
}

TEST_F(LocalModelPlans, reachNothingThatIsNotGranted) {
  for (const auto* folder : {"~/Documents", "~/.ssh", "~", "~/Downloads/../Elsewhere", "~/Downloads/../..", "/etc",
                             "/home", "Elsewhere", "~root", "/proc/self/cwd"}) {
    SCOPED_TRACE(folder);
    EXPECT_THAT(applied(stepOf(folder, "trash")).output, HasSubstr("\"provider\":"));
    EXPECT_TRUE(holds({"Documents/setup.dmg", ".ssh/id_rsa", "Elsewhere/setup.dmg", ".bashrc"}));
  }
}

TEST_F(LocalModelPlans, moveNothingToAFolderThatIsNotGranted) {
  auto step = stepOf("~/Downloads", "move");
  for (const auto& destination : {home.path("Elsewhere"), std::string("/tmp"), home.path("Downloads/../Elsewhere")}) {
    step["destinationFolder"] = destination;
    EXPECT_THAT(applied(step).output, HasSubstr("\"provider\":\"local_model\""));
    EXPECT_TRUE(holds({"Downloads/setup.dmg", "Downloads/notes.txt"}));
  }
}

}  // namespace
}  // namespace orvane::test
