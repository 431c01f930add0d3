#include "tests/cli/OrvanectlFixture.h"
#include "tests/support/LocalServer.h"

namespace orvane::test {
namespace {

using testing::HasSubstr;

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
    Json plan{{"id", "00000000-0000-4000-8000-000000000001"},
              {"userGoal", "x"},
              {"steps", Json::array({step})},
              {"summary", "Mine."},
              {"isDryRun", true},
              {"createdAt", 0}};
    const LocalServer server([&](const LocalServer::Request& request) {
      return request.line.starts_with("GET") ? LocalServer::answer(200, "{}") : LocalServer::chat(jsonText(plan));
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
  static Json stepIn(const std::string& folder, const Json& filter) {
    return Json{{"id", "00000000-0000-4000-8000-000000000002"},
                {"targetFolder", folder},
                {"filter", filter},
                {"action", "trash"},
                {"explanation", "Because."}};
  }
  static constexpr double day = 86400;
};

TEST_F(LocalModelPlans, areShownAndCarriedOutLikeAnyOther) {
  const auto applied = this->applied(stepIn("~/Library/Logs", Json{{"categories", Json::array({"logs"})}}));
  EXPECT_EQ(applied.exitStatus, 0) << applied.errors;
  const auto answer = parseJson(applied.output);
  EXPECT_EQ(answer["provider"], "local_model");
  EXPECT_EQ(answer["plan"]["userGoal"], "delete old logs");
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
  auto show = ask;
  show.emplace_back("--show-request");
  const auto shown = json(show);
  EXPECT_EQ(askedBody(server), "") << "showing asked the model";
  EXPECT_EQ(run(ask).exitStatus, 0);
  const auto asked = parseJson(askedBody(server));
  const auto& messages = asked["messages"];
  EXPECT_EQ(shown["instructions"], messages[0]["content"]);
  EXPECT_EQ(shown["prompt"], messages[1]["content"]);
  EXPECT_THAT(run(show).output, testing::AllOf(HasSubstr("cleanup planner"), HasSubstr("delete old logs")));
}

TEST_F(LocalModelPlans, reachNothingThatIsNotGranted) {
  const Json everything{{"minimumAgeDays", 0}};
  for (const auto* folder : {"~/Documents", "~/.ssh", "~", "~/Downloads/../Elsewhere", "~/Downloads/../..", "/etc",
                             "/home", "Elsewhere", "~root", "/proc/self/cwd"}) {
    SCOPED_TRACE(folder);
    EXPECT_THAT(applied(stepIn(folder, everything)).output, HasSubstr("\"provider\":"));
    for (const auto* name : {"Documents/setup.dmg", ".ssh/id_rsa", "Elsewhere/setup.dmg", ".bashrc"}) {
      EXPECT_TRUE(exists(home.path(name))) << name;
    }
  }
}

TEST_F(LocalModelPlans, moveNothingToAFolderThatIsNotGranted) {
  auto step = stepIn("~/Downloads", Json{{"extensions", Json::array({"dmg", "txt"})}});
  step["action"] = "move";
  for (const auto& destination : {home.path("Elsewhere"), std::string("/tmp"), home.path("Downloads/../Elsewhere")}) {
    step["destinationFolder"] = destination;
    EXPECT_THAT(applied(step).output, HasSubstr("\"provider\":\"local_model\""));
    EXPECT_TRUE(exists(home.path("Downloads/setup.dmg")));
    EXPECT_TRUE(exists(home.path("Downloads/notes.txt")));
  }
}

}  // namespace
}  // namespace orvane::test
