#include "tests/cli/OrvanectlFixture.h"
#include "tests/support/LocalServer.h"

#include <sys/stat.h>

namespace orvane::test {
namespace {

// A key ring of the test's own: a private session bus, home and runtime folder.
class KeysCommand : public Orvanectl {
 public:
  KeysCommand() {
    environment["XDG_RUNTIME_DIR"] = home.folder("runtime");
    ::chmod(home.path("runtime").c_str(), 0700);
    environment["ORVANECTL"] = ORVANECTL;
    environment["LANG"] = "C.UTF-8";
  }

  // `script` in a session; "unlock" and "stop" are commands for its key ring, and its process is "$ring".
  [[nodiscard]] ChildResult inSession(const std::string& script) const {
    const std::string beginning =
        "ctl() { \"$ORVANECTL\" \"$@\"; }\n"
        "start() { printf password | gnome-keyring-daemon --foreground --unlock --components=secrets >/dev/null 2>&1 "
        "&\n"
        "  ring=$!; until gdbus call --session --dest org.freedesktop.DBus --object-path / --method "
        "org.freedesktop.DBus.GetNameOwner org.freedesktop.secrets >/dev/null 2>&1; do :; done\n"
        "  until gdbus call --session --dest org.freedesktop.secrets --object-path /org/freedesktop/secrets --method "
        "org.freedesktop.Secret.Service.ReadAlias default 2>/dev/null | grep -q collection; do :; done; }\n"
        "call() { gdbus call --session --dest org.freedesktop.secrets --object-path /org/freedesktop/secrets "
        "--method \"$@\" >/dev/null; }\n"
        "finish() { kill -CONT $ring; kill $ring; wait $ring; }\n";
    auto session = setup({});
    session.arguments = {"/usr/bin/dbus-run-session", "--", "sh", "-c", beginning + script};
    return LiveProgram(session).finish();
  }
};

TEST_F(KeysCommand, storesReplacesAndDeletesAKey) {
  const auto result = inSession(
      "start\n"
      "ctl keys status anthropic\n"
      "ctl keys delete anthropic --json\n"
      "echo first | ctl keys set anthropic\n"
      "echo other | ctl keys set openai --json\n"
      "echo '  second  ' | ctl keys set anthropic\n"
      "ctl keys status anthropic --json\n"
      "secret-tool search --all service com.orvane.app.keys account anthropic_api_key 2>&1 | grep '^secret'\n"
      "secret-tool lookup service com.orvane.app.keys account openai_api_key; echo\n"
      "ctl keys delete anthropic && ctl keys delete anthropic\n"
      "ctl keys status openai\n"
      "finish\n");
  EXPECT_THAT(result.errors, Not(HasSubstr("orvanectl")));
  EXPECT_EQ(result.output,
            "Anthropic (Claude): no key is stored\n"
            "{\"provider\":\"anthropic\",\"stored\":false}\n"
            "Anthropic (Claude): a key is stored\n"
            "{\"provider\":\"openai\",\"stored\":true}\n"
            "Anthropic (Claude): a key is stored\n"
            "{\"provider\":\"anthropic\",\"stored\":true}\n"
            "secret = second\n"
            "other\n"
            "Anthropic (Claude): no key is stored\n"
            "Anthropic (Claude): no key is stored\n"
            "OpenAI (GPT-4o): a key is stored\n");
}

// The program waits for seconds there: tests of their own, which wait beside each other.
class UnansweredKeys : public KeysCommand {
 public:
  // All at once, as each waits for its own time.
  const std::string attempts =
      "for c in set delete status; do\n"
      "  (echo k2 | timeout 30 \"$ORVANECTL\" keys $c openai --json 2>/dev/null; echo $?) >\"$HOME/$c\" & "
      "waits=\"$waits $!\"\n"
      "done\n"
      "wait $waits; (cd \"$HOME\" && cat set delete status)\n";
  const std::string nothing =
      "{\"provider\":\"openai\",\"stored\":false}\n1\n{\"provider\":\"openai\",\"stored\":false}\n1\n"
      "{\"provider\":\"openai\",\"stored\":false}\n0\n";
};

TEST_F(UnansweredKeys, areNoneWhileTheKeyRingIsLocked) {
  const auto result = inSession(
      "start\necho key | ctl keys set openai >/dev/null\n"
      "call org.freedesktop.Secret.Service.Lock \"['/org/freedesktop/secrets/collection/login']\"\n" +
      attempts + "finish\n");
  EXPECT_EQ(result.output, nothing) << result.errors;
}

TEST_F(UnansweredKeys, areNoneWhileTheKeyRingIsSilent) {
  const auto result =
      inSession("start\necho key | ctl keys set openai >/dev/null\nkill -STOP $ring\n" + attempts + "finish\n");
  EXPECT_EQ(result.output, nothing) << result.errors;
}

TEST_F(KeysCommand, takesAKeyAtATerminalWithoutShowingItAndHasNoneWithoutAKeyRing) {
  environment["DBUS_SESSION_BUS_ADDRESS"] = "unix:path=" + home.path("nobody");
  EXPECT_EQ(json({"keys", "status", "openai"})["stored"], false);
  EXPECT_EQ(json({"keys", "delete", "openai"}, 1)["stored"], false);
  LiveProgram program(terminalSetup({"keys", "set", "anthropic"}));
  program.waitForOutput("Key for Anthropic (Claude): ");
  program.send("sk-visible\n");
  const auto result = program.finish();
  EXPECT_EQ(result.exitStatus, 1);
  EXPECT_THAT(result.output, AllOf(HasSubstr("did not take the key"), Not(HasSubstr("visible"))));
}

TEST_F(KeysCommand, refusesWhatIsNoKey) {
  EXPECT_EQ(run({"keys", "set", "anthropic"}).exitStatus, 2) << "nothing at standard input";
  EXPECT_EQ(run({"keys", "set", "offline_heuristic"}).exitStatus, 2);
  EXPECT_EQ(run({"keys", "status"}).exitStatus, 2);
}

TEST_F(KeysCommand, letsAProviderPlanAndSaysWhoDid) {
  home.folder("Downloads");
  const LocalServer server([](const auto& request) {
    return request.headers.find("Bearer sk-key") != std::string::npos
               ? LocalServer::chat(
                     R"({"id":"7E2B1C90-3A44-4D5B-9C1E-0A2B3C4D5E6F","userGoal":"g","steps":[{"id":"1E2B1C90-3A44-4D5B-9C1E-0A2B3C4D5E6F","targetFolder":"~/Downloads","filter":{"extensions":["dmg"]},"action":"trash","explanation":"Old."}],"summary":"s","isDryRun":true,"createdAt":7})")
               : LocalServer::answer(401, "");
  });
  environment["ORVANE_OPENAI_BASE_URL"] = environment["ORVANE_ANTHROPIC_BASE_URL"] = server.url();
  const auto result = inSession(
      "start\necho sk-key | ctl keys set openai >/dev/null\necho sk-key | ctl keys set anthropic >/dev/null\n"
      "ctl ask 'clean screenshots' --provider openai --json | grep -o '\"validationError.*usedFallback\":[a-z]*'\n"
      "ctl ask 'clean screenshots' --provider anthropic --json | grep -o '\"validationError.*usedFallback\":[a-z]*'\n"
      "ctl ask 'clean screenshots' --provider openai | head -1\n"
      "finish\n");
  EXPECT_EQ(result.output,
            "\"validationError\":null,\"provider\":\"openai\",\"usedFallback\":false\n"
            "\"validationError\":null,\"provider\":\"offline_heuristic\",\"usedFallback\":true\n"
            "Planner:  OpenAI (GPT-4o)\n");
  EXPECT_THAT(result.errors,
              HasSubstr("orvanectl: planned offline, not by Anthropic (Claude): The server answered with "
                        "HTTP status 401.\n"));
}

TEST_F(KeysCommand, showsARequestAndSendsNothing) {
  const LocalServer server([](const auto&) { return LocalServer::answer(500, ""); });
  environment["ORVANE_ANTHROPIC_BASE_URL"] = server.url();
  const auto shown = run({"ask", "clean screenshots", "--provider", "anthropic", "--show-request"});
  EXPECT_THAT(shown.output,
              AllOf(HasSubstr("POST " + server.url("/v1/messages") + "\nContent-Type: application/json\n"),
                    HasSubstr("anthropic-version: 2023-06-01\n\n{\"model\":"), Not(HasSubstr("api-key")),
                    Not(HasSubstr(home.path()))));
  const auto request = json({"ask", "clean", "--provider", "openai", "--show-request"});
  EXPECT_EQ(request["url"], "https://api.openai.com/v1/chat/completions");
  EXPECT_EQ(request["body"]["model"], "gpt-4o");
  EXPECT_EQ(run({"ask", "clean", "--show-request"}).exitStatus, 2);
  EXPECT_TRUE(server.requests().empty());
}

}  // namespace
}  // namespace orvane::test
