#include "tests/cli/OrvanectlFixture.h"

namespace orvane::test {
namespace {

class ExplainCommand : public Orvanectl {};

TEST_F(ExplainCommand, hasItsGivenJsonForm) {
  const auto installer = home.file("Dropbox/Setup.DMG");
  const auto key = home.file(".ssh/id_rsa");
  const auto answer = json({"explain", "Dropbox/Setup.DMG", ".ssh/id_rsa"});
  EXPECT_EQ(
      answer[0].dump(),
      R"({"path":")" + installer +
          R"(","category":"oldDownloads","riskLabel":"review","isAllowed":true,"refusal":null,)"
          R"("cloudProvider":"Dropbox","syncWarning":"Warning: 'Setup.DMG' is synced via Dropbox. Deleting it will )"
          R"(also remove it from your other connected devices.","isCloudPlaceholder":false,)"
          R"("organizerCategory":"Installers"})");
  EXPECT_EQ(answer[1].dump(),
            R"({"path":")" + key +
                R"(","category":"manualReview","riskLabel":"manual","isAllowed":false,"refusal":"Operation denied: ')" +
                key +
                R"(' is a protected system or personal identity path.","cloudProvider":null,"syncWarning":null,)"
                R"("isCloudPlaceholder":false,"organizerCategory":"Other"})");
  home.file("Downloads/\xFF");
  EXPECT_EQ(json({"explain", "Downloads/\xFF"})[0]["path"], home.url("Downloads/\xFF").absoluteString());
}

TEST_F(ExplainCommand, namesWhatIsMissingAndStillTellsWhatItsPathDecides) {
  const auto result = run({"explain", "--json", ".Notes.icloud", "/usr/missing"});
  EXPECT_THAT(result, Fails(1, "orvanectl: ~/.Notes.icloud: No such file or directory\n",
                            "orvanectl: /usr/missing: No such file or directory\n"));
  const auto answer = parseJson(result.output);
  for (const auto* key : {"category", "riskLabel", "organizerCategory"}) EXPECT_EQ(answer[0][key], nullptr) << key;
  EXPECT_EQ(answer[0]["isCloudPlaceholder"], true);
  EXPECT_EQ(answer[1]["isAllowed"], false);
}

TEST_F(ExplainCommand, namesTheCategoryThatTheOrganizerUses) {
  home.files({"Pictures/img_1.png", "Downloads/a.pdf"});
  home.file(".config/orvane/preferences.json", R"({"OrvaneLearnedCategoryPreferences":{"pdf":"Papers"}})");
  for (const auto* folder : {"Pictures", "Downloads"}) {
    const auto group = json({"organize", folder})[0];
    const auto place = group["moves"][0]["sourceRelativePath"].get<std::string>();
    EXPECT_EQ(json({"explain", std::string(folder) + "/" + place})[0]["organizerCategory"], group["name"]);
  }
}

TEST_F(ExplainCommand, namesWhatDecidesAndWhatWouldProtect) {
  home.files({".cache/pip/http/a", "Downloads/a.zip", "Library/Caches/Google/x", "Downloads/.Trash/x",
              "Downloads/letter", "Downloads/a\tb.log", "elsewhere/note.txt"});
  for (const auto& [path, reason] :
       {std::pair{"Downloads/a\tb.log", "its name ends in .log"},
        std::pair{"Downloads/a.zip", "it is an archive in a downloads folder"},
        std::pair{"Library/Caches/Google/x", "its path holds Library/Caches/Google"},
        std::pair{"Downloads/.Trash/x", "it lies in a Trash"}, std::pair{"Downloads/letter", "no rule knows it"},
        std::pair{".cache/pip", "it is a known place of pip"}}) {
    EXPECT_THAT(run({"explain", path}), Says(std::string("because    ") + reason + '\n')) << path;
  }
  const auto granted = run({"explain", "Downloads/a\tb.log"});
  EXPECT_THAT(granted,
              Says(R"(~/Downloads/a\tb.log)", "takes it without a second look", "to keep it orvanectl keep add"));
  EXPECT_THAT(granted.output, Not(HasSubstr("outside the granted folders")));
  EXPECT_THAT(run({"explain", "elsewhere/note.txt"}), Says("never takes it", "outside the granted folders"));
  EXPECT_EQ(run({"keep", "add", "*.log"}).exitStatus, 0);
  const auto kept = run({"explain", "Downloads/a\tb.log"});
  EXPECT_THAT(kept, Says("kept       never offered: '*.log' is on the keep list\n"));
  EXPECT_THAT(kept.output, Not(HasSubstr("without a second look")));
}

}  // namespace
}  // namespace orvane::test
