#include "tests/cli/OrvanectlFixture.h"

namespace orvane::test {
namespace {

using testing::HasSubstr;
using testing::Not;

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
  EXPECT_EQ(result.exitStatus, 1);
  EXPECT_EQ(result.errors,
            "orvanectl: ~/.Notes.icloud: No such file or directory\n"
            "orvanectl: /usr/missing: No such file or directory\n");
  const auto answer = parseJson(result.output);
  EXPECT_EQ(answer[0]["category"], nullptr);
  EXPECT_EQ(answer[0]["riskLabel"], nullptr);
  EXPECT_EQ(answer[0]["organizerCategory"], nullptr);
  EXPECT_EQ(answer[0]["isCloudPlaceholder"], true);
  EXPECT_EQ(answer[1]["isAllowed"], false);
}

TEST_F(ExplainCommand, namesTheCategoryThatTheOrganizerUses) {
  home.file("Pictures/img_1.png");
  home.file("Downloads/a.pdf");
  home.file(".config/orvane/preferences.json", R"({"OrvaneLearnedCategoryPreferences":{"pdf":"Papers"}})");
  for (const auto* folder : {"Pictures", "Downloads"}) {
    const auto group = json({"organize", folder})[0];
    const auto place = group["moves"][0]["sourceRelativePath"].get<std::string>();
    EXPECT_EQ(json({"explain", std::string(folder) + "/" + place})[0]["organizerCategory"], group["name"]);
  }
}

TEST_F(ExplainCommand, namesWhatDecidesAndWhatWouldProtect) {
  for (const auto& [path, reason] :
       {std::pair{"Downloads/a.log", "its name ends in .log"},
        std::pair{"Downloads/a.zip", "it is an archive in a downloads folder"},
        std::pair{"Library/Caches/Google/x", "its path holds Library/Caches/Google"},
        std::pair{"Downloads/.Trash/x", "it lies in a Trash"}, std::pair{"Downloads/letter", "no rule knows it"}}) {
    home.file(path);
    EXPECT_THAT(run({"explain", path}).output, HasSubstr(std::string("because    ") + reason + '\n')) << path;
  }
  home.file(".cache/pip/http/a");
  EXPECT_THAT(run({"explain", ".cache/pip"}).output, HasSubstr("because    it is a known place of pip\n"));
  EXPECT_THAT(run({"explain", "Downloads/a.log"}).output,
              HasSubstr("to keep it orvanectl keep add '~/Downloads/a.log'\n"));
  EXPECT_EQ(run({"keep", "add", "*.log"}).exitStatus, 0);
  const auto kept = run({"explain", "Downloads/a.log"}).output;
  EXPECT_THAT(kept, HasSubstr("kept       never offered: '*.log' is on the keep list\n"));
  EXPECT_THAT(kept, Not(HasSubstr("without a second look")));
}

TEST_F(ExplainCommand, tellsPeopleWhatFollows) {
  recommended("a\tb.log");
  home.file("elsewhere/note.txt");
  const auto granted = run({"explain", "Downloads/a\tb.log"}).output;
  EXPECT_THAT(granted, HasSubstr(R"(~/Downloads/a\tb.log)"));
  EXPECT_THAT(granted, HasSubstr("takes it without a second look"));
  EXPECT_THAT(granted, Not(HasSubstr("outside the granted folders")));
  const auto outside = run({"explain", "elsewhere/note.txt"}).output;
  EXPECT_THAT(outside, HasSubstr("never takes it"));
  EXPECT_THAT(outside, HasSubstr("outside the granted folders"));
}

}  // namespace
}  // namespace orvane::test
