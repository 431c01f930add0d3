#include "platform/linux/BusNotificationCenter.h"
#include "tests/support/LiveProgram.h"
#include "tests/support/TemporaryTree.h"

#include <future>

namespace orvane::test {
namespace {

// A session bus, a display and a notification daemon of the test's own. Lines sent to it are commands of a shell that
// knows $daemon and "wait_for FILE".
constexpr const char* session =
    "wait_for() { until [ -s \"$1\" ]; do :; done; }\n"
    "Xvfb -displayfd 3 3>display >/dev/null 2>&1 & screen=$!\n"
    "wait_for display; export DISPLAY=:$(cat display)\n"
    "dunst -config dunstrc 2>/dev/null & daemon=$!\n"
    "until gdbus call --session --dest org.freedesktop.DBus --object-path / --method "
    "org.freedesktop.DBus.GetNameOwner org.freedesktop.Notifications >/dev/null 2>&1; do :; done\n"
    "echo \"address $DBUS_SESSION_BUS_ADDRESS end\"\n"
    "while read -r line; do eval \"$line\"; echo done; done\n"
    "kill -CONT $daemon; kill $daemon $screen; wait\n";

class BusNotificationCenterTest : public testing::Test {
 public:
  BusNotificationCenterTest() {
    tree.file("dunstrc",
              "[global]\nicon_path = \"\"\n[orvane]\nappname = \"Orvane\"\nscript = " + tree.path("note") + "\n");
    tree.file("note", "#!/bin/sh\nprintf '%s\\n' \"$@\" > '" + tree.path("note.part") + "'\nmv '" +
                          tree.path("note.part") + "' '" + tree.path("noted") + "'\n");
    ::chmod(tree.path("note").c_str(), 0700);
  }
  void startSession() {
    tree.folder("runtime");
    ::chmod(tree.path("runtime").c_str(), 0700);
    program.emplace(LiveProgram::Setup{
        .arguments = {"/usr/bin/dbus-run-session", "--", "sh", "-c", session},
        .environment = {{"HOME", tree.path()}, {"PATH", "/usr/bin:/bin"}, {"XDG_RUNTIME_DIR", tree.path("runtime")}},
        .workingFolder = tree.path()});
    program->waitForOutput(" end\n");
    tell("printf '%s' \"$DBUS_SESSION_BUS_ADDRESS\" > address");
    address.emplace("DBUS_SESSION_BUS_ADDRESS", contentOf(tree.path("address")).c_str());
  }
  // Returns once the session has carried it out.
  void tell(const std::string& command) {
    const auto mark = "said " + std::to_string(++commands) + " it\n";
    program->send(command + "; echo 'said " + std::to_string(commands) + " it'\n");
    program->waitForOutput(mark);
  }

  TemporaryTree tree;
  std::optional<LiveProgram> program;
  std::optional<ScopedEnvironment> address;
  int commands = 0;
  std::promise<void> clicked;
  BusNotificationCenter center{[this] { clicked.set_value(); }, [] { return std::string("Show"); }};
};

TEST_F(BusNotificationCenterTest, showsWhatIsPostedAndAnswersAClick) {
  startSession();
  EXPECT_TRUE(center.requestAuthorization());
  center.post({.identifier = "1", .title = "Title & <more>", .body = "Reclaimed 2 KB"});
  tell("wait_for noted");
  EXPECT_EQ(contentOf(tree.path("noted")).substr(0, 37), "Orvane\nTitle & <more>\nReclaimed 2 KB\n");
  tell("dunstctl action");
  clicked.get_future().wait();
  // The posted notification is dealt with.
  center.awaitAnswers(std::chrono::hours(1));
}

TEST_F(BusNotificationCenterTest, saysThatNobodyTakesIt) {
  const ScopedEnvironment none("DBUS_SESSION_BUS_ADDRESS", ("unix:path=" + tree.path("nobody")).c_str());
  EXPECT_THROW(center.post({}), std::runtime_error);
  EXPECT_THROW(center.requestAuthorization(), std::runtime_error);
  center.awaitAnswers(std::chrono::hours(1));
}

TEST_F(BusNotificationCenterTest, givesUpOnAServiceThatIsSilentOrGone) {
  startSession();
  tell("kill -STOP $daemon");
  EXPECT_THROW(center.post({}), std::runtime_error);
  tell("kill -CONT $daemon; kill $daemon; wait $daemon");
  EXPECT_THROW(center.post({}), std::runtime_error);
}

}  // namespace
}  // namespace orvane::test
