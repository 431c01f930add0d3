#include "tests/cli/OrvanectlFixture.h"
#include "tests/support/KeptPlaces.h"

namespace orvane::test {
namespace {

class ProtectedPlaces : public Orvanectl {
 public:
  ProtectedPlaces() {
    environment["FLATPAK_SYSTEM_DIR"] = home.path("flatpak-system");
    home.folder("flatpak-system/app/org.mozilla.firefox");
    home.folder(".local/share/flatpak/app/org.example.App");
    // Two of each content, so that a search for copies finds them where it may look.
    for (const auto& place : keptPlaces) {
      home.file(place.path, std::string("0123456789") + place.path);
      home.file("copies/" + std::to_string(m_count++), std::string("0123456789") + place.path);
    }
  }

  void expectAllThere() const {
    for (const auto& place : keptPlaces) EXPECT_TRUE(holds({place.path}));
  }
  // Of the paths, whatever the root.
  [[nodiscard]] Json trashedOf(const Words& paths, int exitStatus) const {
    return json(joined({"trash", "--yes", "--root", home.path(), "--root", "/"}, paths), exitStatus)["itemsProcessed"];
  }

 private:
  int m_count = 0;
};

TEST_F(ProtectedPlaces, moveNeitherThemselvesNorAsPartOfAFolderThatHoldsThem) {
  Words words;
  for (const auto& place : keptPlaces) {
    for (auto path = std::string(place.path); !path.empty(); path = std::filesystem::path(path).parent_path()) {
      // The games folder of nobody's prefix may go.
      if (path != "Games") words.push_back(home.path(path));
    }
  }
  EXPECT_EQ(trashedOf(words, 1), 0);
  expectAllThere();
  // By what they are, whether they are there or not.
  for (const auto* place : {"/boot", "/proc/version", "/sys/kernel", "/run/x", "/srv/x", "/lib/x", "/snap/x", "/"}) {
    EXPECT_EQ(parseJson(run({"explain", "--json", place}).output)[0]["isAllowed"], false) << place;
  }
}

TEST_F(ProtectedPlaces, areNeitherScannedNorCleanedNorSearchedForCopiesNorOrganized) {
  for (const auto* folder : {"", ".local", ".local/share", ".local/share/Steam", "snap", ".cargo", "Games/old"}) {
    const auto found = run({"scan", "--developer-caches", "--json", home.path(folder)}).output +
                       run({"duplicates", "--json", home.path(folder)}).output;
    for (const auto& place : keptPlaces) EXPECT_THAT(found, Not(HasSubstr(home.url(place.path).absoluteString())));
    static_cast<void>(run({"clean", "--yes", home.path(folder)}));
    static_cast<void>(run({"organize", "--subfolders", "--apply", "--yes", home.path(folder)}));
  }
  expectAllThere();
}

TEST_F(ProtectedPlaces, areTakenByNoRule) {
  home.file("Games/free.log");
  for (const auto* folder : {"Games", "Games/old", "snap", "VirtualBox VMs", ".cargo", ".docker"}) {
    static_cast<void>(run({"folders", "add", home.path(folder)}));
  }
  addRule(R"({"name":"All","trigger":{"minimumSizeBytes":1},"action":{"type":"moveToTrash"}})");
  static_cast<void>(run({"rules", "run", "All", "--yes"}));
  EXPECT_FALSE(exists(home.path("Games/free.log"))) << "the rule takes what is beside them";
  expectAllThere();
}

TEST_F(ProtectedPlaces, areTakenByNoPlan) {
  home.file("Games/free.log");
  EXPECT_EQ(run({"folders", "add", home.path("Games")}).exitStatus, 0);
  auto folders = Words{home.path(), home.path("Games")};
  for (const auto& place : keptPlaces) folders.push_back(std::filesystem::path(home.path(place.path)).parent_path());
  for (const auto& folder : folders) {
    static_cast<void>(run({"plan", "run", plan({stepOf(folder, "trash")}), "--yes"}));
  }
  EXPECT_FALSE(exists(home.path("Games/free.log"))) << "the plan takes what is beside them";
  expectAllThere();
}

TEST_F(ProtectedPlaces, areNoFoldersToGrant) {
  for (const auto* folder : {".password-store", ".var/app/org.example.App/config", ".local/share/keyrings"}) {
    EXPECT_EQ(run({"folders", "add", home.path(folder)}).exitStatus, 1) << folder;
  }
}

TEST_F(ProtectedPlaces, areNamedByExplain) {
  for (const auto& place : keptPlaces) {
    EXPECT_THAT(run({"explain", home.path(place.path)}), Says("allowed    no. ", place.content)) << place.path;
  }
}

TEST_F(ProtectedPlaces, stayWhereALinkLeads) {
  const auto tokens = home.file("dotfiles/tokens");
  const auto other = home.file("dotfiles/other");
  std::filesystem::remove(home.path(".npmrc"));
  home.link(".npmrc", tokens);
  EXPECT_EQ(trashedOf({tokens, home.path(".npmrc"), home.path("dotfiles"), other}, 1), 1);
  EXPECT_FALSE(exists(other));
}

TEST_F(ProtectedPlaces, followTheFoldersOfTheEnvironment) {
  environment["XDG_DATA_HOME"] = home.path("data");
  environment["XDG_CONFIG_HOME"] = home.path("settings");
  const auto ring = home.file("data/keyrings/login.keyring");
  const auto setting = home.file("settings/app/rc");
  EXPECT_EQ(trashedOf({ring, setting, home.path("data")}, 1), 0);
}

TEST_F(ProtectedPlaces, leaveTheFolderOfAFlatpakProgramThatIsGone) {
  home.file(".var/app/org.example.Gone/config/settings.ini");
  const auto gone = home.path(".var/app/org.example.Gone");
  EXPECT_EQ(trashedOf({gone + "/config"}, 1), 0);
  EXPECT_EQ(trashedOf({gone}, 0), 1);
}

TEST_F(ProtectedPlaces, holdTheDiskOfAVirtualMachineThatRuns) {
  const auto disk = home.file("machines/work.QCOW2");
  {
    LiveProgram machine({.arguments = {"/bin/sh", "-c", "exec 3<\"$0\"; echo ready; exec sleep 1000", disk},
                         .environment = environment});
    machine.waitForOutput("ready");
    EXPECT_EQ(trashedOf({disk}, 1), 0);
  }
  EXPECT_EQ(trashedOf({disk}, 0), 1);
}

}  // namespace
}  // namespace orvane::test
