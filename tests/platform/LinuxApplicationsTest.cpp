#include "platform/linux/LinuxApplications.h"
#include "tests/support/TemporaryTree.h"

namespace orvane::test {
namespace {

using Kind = SystemApplication::Kind;

const std::string appImage("\177ELF\2\1\1\0AI\2 and the rest", 24);

std::string entryText(const std::string& name, const std::string& command, const std::string& more = {}) {
  return "[Desktop Entry]\nType=Application\nName=" + name + "\nExec=" + command + "\n" + more;
}

class LinuxApplicationsTest : public testing::Test {
 public:
  // A home and a system of their own.
  [[nodiscard]] std::vector<SystemApplication> list() const {
    LinuxApplications::Folders places{.user = XdgFolders::below(tree.path("home")),
                                      .downloads = tree.path("home/Téléchargements"),
                                      .root = tree.path("system")};
    auto found = LinuxApplications(places).list({});
    std::ranges::sort(found, {}, &SystemApplication::place);
    return found;
  }
  std::string userEntry(const std::string& identifier, const std::string& text) const {
    return tree.file("home/.local/share/applications/" + identifier + ".desktop", text);
  }

  TemporaryTree tree;
};

TEST_F(LinuxApplicationsTest, knowsAppImagesByTheirBytesWithTheEntriesThatStartThem) {
  tree.file("home/Applications/Krita-5.2.2-x86_64.appimage", appImage);
  tree.file("home/Applications/Not.AppImage", "only by its name");
  tree.file("home/Téléchargements/tool", appImage);
  const auto elsewhere = tree.file("home/opt/Draw.AppImage", appImage);
  const auto entry =
      userEntry("org.example.Draw", entryText("Draw", "\"" + elsewhere + "\" %U", "X-AppImage-Version=7\n"));
  const auto found = list();
  ASSERT_EQ(found.size(), 3U);
  EXPECT_EQ(found[0].name, "Krita-5.2.2-x86_64");
  EXPECT_EQ(found[0].version, "5.2.2");
  EXPECT_THAT(found[0].leftovers, IsEmpty()) << "nothing is guessed from a file's name";
  EXPECT_EQ(found[1].place, tree.path("home/Téléchargements/tool"));
  EXPECT_EQ(found[2].name, "Draw");
  EXPECT_EQ(found[2].version, "7");
  EXPECT_EQ(found[2].place, elsewhere);
  EXPECT_THAT(found[2].parts, ElementsAre(entry));
  EXPECT_THAT(
      found[2].leftovers,
      ElementsAre(tree.path("home/.config/org.example.Draw"), tree.path("home/.cache/org.example.Draw"),
                  tree.path("home/.local/share/org.example.Draw"), tree.path("home/.local/state/org.example.Draw")));
}

TEST_F(LinuxApplicationsTest, tellsEntriesWhoseProgramIsGone) {
  tree.file("home/bin/there", "");
  userEntry("a", entryText("There", tree.path("home/bin/there")));
  userEntry("b", entryText("Gone", tree.path("home/gone/program") + " --now"));
  userEntry("c", entryText("On another disk", tree.path("disk/that/is/away")));
  userEntry("d", entryText("In the path", "sh -c true"));
  userEntry("e", entryText("Not in the path", "no-such-program-anywhere"));
  userEntry("f", entryText("With variables", "env A=b /no/such/program"));
  userEntry("g", entryText("Hidden", "/gone", "NoDisplay=true\n"));
  userEntry("h", "[Desktop Entry]\nType=Link\nName=Link\n");
  const auto found = list();
  using Orphan = std::pair<std::string, bool>;
  std::vector<Orphan> orphans;
  for (const auto& app : found) {
    EXPECT_EQ(app.kind, Kind::desktopEntry);
    orphans.emplace_back(app.name, app.isOrphan);
  }
  EXPECT_THAT(orphans, ElementsAre(Orphan("There", false), Orphan("Gone", true), Orphan("On another disk", false),
                                   Orphan("In the path", false), Orphan("Not in the path", true),
                                   Orphan("With variables", false)));
}

TEST_F(LinuxApplicationsTest, leavesWhatAnotherProgramGoesBy) {
  tree.file("system/usr/share/applications/editor.desktop", entryText("Editor", "editor", "StartupWMClass=Editor\n"));
  userEntry("mine", entryText("Editor with options", "sh", "StartupWMClass=Editor\n"));
  const auto found = list();
  ASSERT_EQ(found.size(), 2U);
  EXPECT_THAT(found[0].leftovers, IsEmpty());
}

TEST_F(LinuxApplicationsTest, showsFlatpaksWithTheCommandThatRemovesThem) {
  tree.file("home/.local/share/flatpak/app/org.mine.App/current/active/metadata", "[Application]\n");
  tree.file("home/.local/share/flatpak/app/org.mine.App/current/active/export/share/applications/org.mine.App.desktop",
            entryText("Mine", "flatpak run org.mine.App"));
  tree.file("home/.local/share/flatpak/app/org.mine.App/current/active/files/share/metainfo/org.mine.App.metainfo.xml",
            "<component><releases><release date=\"2024-01-01\" version=\"2.1\"/><release version=\"2.0\"/></releases>");
  tree.file("system/var/lib/flatpak/app/org.all.App/current/active/metadata", "[Application]\n");
  for (const auto* name : {"org.mine.App", "org.all.App", "org.gone.App", ".hidden"}) {
    tree.file(std::string("home/.var/app/") + name + "/config/settings", "1");
  }
  const auto found = list();
  ASSERT_EQ(found.size(), 3U);
  EXPECT_EQ(found[0].name, "Mine");
  EXPECT_EQ(found[0].version, "2.1");
  EXPECT_TRUE(found[0].isProtected);
  EXPECT_EQ(found[0].removalCommand, "flatpak uninstall --user org.mine.App");
  EXPECT_THAT(found[0].leftovers, ElementsAre(tree.path("home/.var/app/org.mine.App")));
  EXPECT_EQ(found[1].kind, Kind::flatpakData);
  EXPECT_EQ(found[1].identifier, "org.gone.App");
  EXPECT_TRUE(found[1].isOrphan && !found[1].isProtected);
  EXPECT_EQ(found[2].removalCommand, "flatpak uninstall --system org.all.App");

  // An installation on another disk may have it.
  tree.file("system/etc/flatpak/installations.d/disk.conf", "[Installation \"disk\"]\nPath=/media/disk/flatpak\n");
  EXPECT_EQ(list().size(), 2U);
}

TEST_F(LinuxApplicationsTest, findsAFolderForEachVersionOfATool) {
  for (const auto* name : {"IntelliJIdea2023.1", "IntelliJIdea2024.3", "Toolbox", "consentOptions"}) {
    tree.folder(std::string("home/.local/share/JetBrains/") + name);
  }
  const auto found = list();
  ASSERT_EQ(found.size(), 2U);
  EXPECT_EQ(found[0].name + " " + found[0].version, "IntelliJIdea 2023.1");
  EXPECT_THAT(found[0].leftovers, Contains(tree.path("home/.cache/JetBrains/IntelliJIdea2023.1")));
}

TEST_F(LinuxApplicationsTest, namesThePackageThatOwnsAnEntry) {
  const auto entry = [&](const std::string& name) {
    tree.file("system/usr/share/applications/" + name + ".desktop", entryText(name, name));
  };
  entry("gimp");
  entry("made-by-hand");
  tree.file("system/var/lib/dpkg/status",
            "Package: gimp\nStatus: install ok installed\nInstalled-Size: 20\nArchitecture: amd64\n"
            "Version: 2.10.34-1\n\nPackage: libgimp\nArchitecture: amd64\nInstalled-Size: 7\nVersion: 1\n");
  tree.file("system/var/lib/dpkg/info/gimp.list", "/.\n/usr/bin/gimp\n/usr/share/applications/gimp.desktop\n");
  tree.file("system/var/lib/dpkg/info/libgimp:amd64.list", "/usr/share/applications-not/x.desktop\n");
  const auto found = list();
  ASSERT_EQ(found.size(), 2U);
  EXPECT_EQ(found[0].removalCommand, "sudo apt remove gimp");
  EXPECT_EQ(found[0].version, "2.10.34-1");
  EXPECT_EQ(found[0].bytes, 20 * 1024);
  EXPECT_TRUE(found[1].isProtected);
  EXPECT_EQ(found[1].removalCommand, "") << "no package manager knows it";
}

}  // namespace
}  // namespace orvane::test
