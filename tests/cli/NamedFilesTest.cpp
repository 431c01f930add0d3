#include <elf.h>
#include "tests/cli/OrvanectlFixture.h"

namespace orvane::test {
namespace {

// The beginning of an ELF file of 64 bits.
std::string elf(unsigned char type, unsigned char encoding = ELFDATA2LSB) {
  std::string head(64, '\0');
  head.replace(0, SELFMAG, ELFMAG);
  head[EI_CLASS] = ELFCLASS64;
  head[EI_DATA] = static_cast<char>(encoding);
  head[encoding == ELFDATA2MSB ? EI_NIDENT + 1 : EI_NIDENT] = static_cast<char>(type);
  return head;
}

struct NamedFile {
  std::string path;
  const char* category;
  std::string content = "x";
};

const std::vector<NamedFile> namedFiles{
    {"Downloads/tool_1.2_amd64.deb", "oldDownloads"},
    {"Downloads/deep/tool.RPM", "oldDownloads"},
    {"Downloads/driver.run", "oldDownloads"},
    {"Downloads/app.flatpak", "oldDownloads"},
    {"Downloads/app.flatpakref", "oldDownloads"},
    {"Downloads/app.snap", "oldDownloads"},
    {"Downloads/app.bundle", "oldDownloads"},
    {"Documents/tool.deb", "manualReview"},
    {"Downloads/Editor-x86_64.AppImage", "manualReview"},
    {"Downloads/film.mkv.part", "manualReview"},
    {"Downloads/film.mkv.crdownload", "manualReview"},
    {"Downloads/photos.tar.zst", "manualReview"},
    {"Downloads/notes.txt", "manualReview"},
    // The given rows decide first.
    {"Downloads/Screenshot of tool.deb", "screenshots"},
    {"Downloads/disk.iso", "oldDownloads"},
    {"Downloads/20240531_12h30m00s_grim.log", "logs"},

    {"Pictures/Screenshot from 2024-05-31 12-30-00.png", "screenshots"},
    {"Pictures/Screenshot_20240531_123000.png", "screenshots"},
    {"Pictures/Capture d'écran du 2024-05-31 12-30-00.png", "screenshots"},
    {"Pictures/Captura desde 2024-05-31 12-30-00.png", "screenshots"},
    {"Pictures/Schermata da 2024-05-31 12-30-00.png", "screenshots"},
    {"Pictures/Снимок экрана от 2024-05-31 12-30-00.png", "screenshots"},
    {"Pictures/flameshot_2024-05-31_12-30.png", "screenshots"},
    {"Pictures/ksnip_20240531-123000.png", "screenshots"},
    {"Pictures/2024-05-31-123000_1920x1080_scrot.png", "screenshots"},
    {"Pictures/20240531_12h30m00s_grim.png", "screenshots"},
    {"Pictures/swappy-20240531-123000.png", "screenshots"},
    {"Pictures/Screenshots/2024-05-31_12-30.png", "screenshots"},
    {"Pictures/Bildschirmfotos/20240531T123000.png", "screenshots"},
    {"Videos/Screencasts/demo.webm", "screenshots"},
    // No screenshots.
    {"Pictures/2024-05-31_12-30.png", "manualReview"},
    {"Pictures/Screenshots/2024-05-31.png", "manualReview"},
    {"Pictures/Screenshots/old/2024-05-31_12-30.png", "manualReview"},
    {"Pictures/Schermata.png", "manualReview"},
    {"Pictures/Schermata 120240531.png", "manualReview"},
    {"Videos/holiday.webm", "manualReview"},

    {"Documents/core.4711", "largeFiles", elf(ET_CORE)},
    {"Documents/big/core.4711", "largeFiles", elf(ET_CORE, ELFDATA2MSB)},
    {"Documents/core.4712", "manualReview", elf(ET_EXEC)},
    {"Documents/core.4713", "manualReview", "an apple's"},
    {"Documents/core.4713.txt", "manualReview", elf(ET_CORE)},
    {"Documents/core.", "manualReview", elf(ET_CORE)},
};

class NamedFiles : public Orvanectl {
 public:
  NamedFiles() {
    for (const auto& [path, category, content] : namedFiles) home.file(path, content);
  }
};

TEST_F(NamedFiles, haveTheCategoryThatNameAndPlaceTell) {
  const auto items = scanned({"scan", "--json", home.path()});
  for (const auto& [path, category, content] : namedFiles) {
    ASSERT_TRUE(items.contains(path)) << path;
    EXPECT_EQ(items.at(path)["category"], category) << path;
    // A single item is judged as a scan does it.
    EXPECT_THAT(run({"explain", "--json", home.path(path)}).output, HasSubstr('"' + std::string(category) + '"'))
        << path;
  }
  EXPECT_EQ(items.at("Documents/core.4711")["riskLabel"], "review");
  EXPECT_THAT(run({"explain", home.path("Downloads/app.snap")}).output, HasSubstr("it is a package in a downloads"));
}

TEST_F(NamedFiles, meanTheFoldersOfTheUserByAnyName) {
  home.file(".config/user-dirs.dirs", "XDG_DOWNLOAD_DIR=\"$HOME/Téléchargements\"\nXDG_VIDEOS_DIR=\"$HOME/Vidéos\"\n");
  home.file("Téléchargements/outil.deb");
  home.file("Vidéos/Screencasts/demo.webm");
  const auto items = scanned({"scan", "--json", home.path()});
  EXPECT_EQ(items.at("Téléchargements/outil.deb")["category"], "oldDownloads");
  EXPECT_EQ(items.at("Vidéos/Screencasts/demo.webm")["category"], "screenshots");
}

TEST_F(NamedFiles, goByRulesThatNameTheirCategory) {
  addRule(R"({"name":"Packages","trigger":{"categories":["oldDownloads"]},"action":{"type":"moveToTrash"}})");
  EXPECT_EQ(run({"rules", "run", "Packages", "--yes"}).exitStatus, 0);
  EXPECT_TRUE(holds({"Documents/tool.deb", "Downloads/Editor-x86_64.AppImage"}, {"Downloads/tool_1.2_amd64.deb"}));
}

}  // namespace
}  // namespace orvane::test
