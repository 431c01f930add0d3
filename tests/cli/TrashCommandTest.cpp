#include "tests/cli/OrvanectlFixture.h"

namespace orvane::test {
namespace {

class TrashCommand : public Orvanectl {
 public:
  TrashCommand() { home.folder("Downloads"); }
};

TEST_F(TrashCommand, movesFilesFoldersAndLinks) {
  home.file("Downloads/one", "12345");
  home.file("Downloads/folder/in", "123");
  home.link("Downloads/link", home.path("Downloads/one"));
  // An item inside another goes along with it.
  const Words words{"trash", "--yes", "Downloads/folder/in", "Downloads/folder", "Downloads/folder/", "Downloads/link"};
  EXPECT_EQ(json(words)["itemsProcessed"], 2);
  EXPECT_TRUE(std::filesystem::is_symlink(trashed("link")));
  EXPECT_TRUE(exists(trashed("folder/in")) && exists(home.path("Downloads/one")));
  EXPECT_EQ(json({"trash", "--yes", home.path("Downloads/one")})["bytesReclaimed"], 5);
  home.file("Downloads/\xFF 100%.txt");
  EXPECT_EQ(json({"trash", "--yes", home.url("Downloads/\xFF 100%.txt").absoluteString()})["itemsProcessed"], 1)
      << "URLs as the JSON output writes them";
}

TEST_F(TrashCommand, takesEveryNameAsItIsTyped) {
  environment["PWD"] = home.path("Downloads");
  for (const std::string name : {"[a,b]", "{}", "%%", "++", "--yes", "--", "-", "scan", "~", "*", "file:", "\xFF\n"}) {
    for (const auto& one : {std::string("a"), std::string("b"), name}) home.file("Downloads/" + one);
    auto program = setup({"trash", "--yes", "--json", "--", name});
    program.workingFolder = home.path("Downloads");
    const auto result = LiveProgram(program).finish();
    EXPECT_EQ(result.exitStatus, 0) << name << result.errors;
    EXPECT_TRUE(holds({"Downloads/a", "Downloads/b"}, {"Downloads/" + name}));
  }
}

TEST_F(TrashCommand, staysInsideTheGrantedFoldersUnlessARootIsNamed) {
  const auto outside = home.file("project/x");
  const auto refused = json({"trash", "--yes", "project/x"}, 1);
  EXPECT_EQ(refused.dump(), R"({"runId":null,"itemsProcessed":0,"bytesReclaimed":0,"failures":[{"path":")" + outside +
                                R"(","error":"Operation denied: ')" + outside +
                                R"(' is a protected system or personal identity path."}]})");
  EXPECT_TRUE(exists(outside));
  EXPECT_EQ(json({"trash", "--yes", "--root", "project", "project/x"})["itemsProcessed"], 1);
  EXPECT_FALSE(exists(outside));
}

TEST_F(TrashCommand, neverTouchesProtectedPlacesWhateverTheRoot) {
  home.files({".ssh/id_rsa", "project/.git/config"});
  const auto report =
      json({"trash", "--yes", "--root", "/", ".ssh/id_rsa", "project/.git/config", "/etc/hostname", "."}, 1);
  EXPECT_EQ(report["failures"].size(), 4);
  EXPECT_TRUE(holds({".ssh/id_rsa", "project/.git/config"}) && exists("/etc/hostname"));
}

TEST_F(TrashCommand, refusesALinkThatLeadsOutOfTheRoots) {
  home.file("project/x");
  home.link("Downloads/out", home.path("project/x"));
  const auto report = json({"trash", "--yes", "Downloads/out"}, 1);
  EXPECT_THAT(report["failures"][0]["error"].get<std::string>(), HasSubstr("outside allowed folders"));
  EXPECT_TRUE(std::filesystem::is_symlink(home.path("Downloads/out")));
}

TEST_F(TrashCommand, namesWhatFailedAndMovesTheRest) {
  home.file("Downloads/there");
  const auto result = run({"trash", "--yes", "Downloads/missing", "Downloads/there"});
  EXPECT_THAT(result, Fails(1, "orvanectl: ~/Downloads/missing: File not found at path: "));
  EXPECT_THAT(result.output, HasSubstr("Moved 1 item"));
  EXPECT_TRUE(holds({}, {"Downloads/there"}));
}

TEST_F(TrashCommand, showsNamesWithoutWhatATerminalWouldObey) {
  const std::string name = "Downloads/esc\x1b[31m\xE2\x80\xAE.txt";
  home.file(name, "123");
  const auto result = answered({"trash", name}, "[y/N]", "n\n");
  EXPECT_THAT(result.output, HasSubstr(R"(3 bytes  ~/Downloads/esc\x1b[31m\u202e.txt)"));
  EXPECT_THAT(result.output, Not(HasSubstr("\xE2\x80\xAE")));
}

}  // namespace
}  // namespace orvane::test
