#include "core/base/files/FileDescriptor.h"
#include "core/base/text/ByteCount.h"
#include "core/tasks/Notice.h"
#include "tests/cli/OrvanectlFixture.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fstream>

namespace orvane::test {
namespace {

// An item that a scan makes of a home, how that is treated, and the file in it that makes it one.
struct Layout {
  std::string item;
  std::string_view category;
  std::string_view label;
  const char* why;
  const char* inside = "/a";

  [[nodiscard]] std::string file() const { return item + inside; }
  [[nodiscard]] bool goes() const { return label == "safe" && category != "trash"; }
};

const std::vector<Layout> layouts{
    {".local/share/Trash/files/old", "trash", "safe", "in the Trash"},
    {".cache/chromium", "browserCaches", "safe", "by Chromium", "/Default/Cache/a"},
    {".cache/google-chrome-beta", "browserCaches", "safe", "by Google Chrome Beta"},
    {".cache/mozilla", "browserCaches", "safe", "Firefox", "/firefox/a/cache2/x"},
    {".cache/epiphany", "browserCaches", "safe", "GNOME Web"},
    {".config/google-chrome/Default/Code Cache", "browserCaches", "safe", "by Google Chrome when", "/js/a"},
    {".config/chromium/Default/DawnGraphiteCache", "browserCaches", "safe", "chromium"},
    {".config/BraveSoftware/Brave-Browser/Default/GPUCache", "browserCaches", "safe", "by Brave when"},
    {".config/chromium/ShaderCache", "browserCaches", "safe", "Rebuilt"},
    {".config/chromium/GPUPersistentCache", "browserCaches", "safe", "Rebuilt", "/GPUCache/a"},
    {".config/chromium/Default/Service Worker/CacheStorage", "largeFiles", "review", "offline"},
    {".config/Slack/Service Worker/CacheStorage", "messagingMedia", "review", "servers of Slack"},
    {".config/discord/Cache", "messagingMedia", "review", "servers of Discord"},
    {".config/Microsoft/Microsoft Teams/logs", "messagingMedia", "review", "Microsoft Teams"},
    {".local/share/TelegramDesktop/tdata/user_data#2/media_cache", "messagingMedia", "review", "Telegram"},
    {".config/Code/CachedData", "caches", "safe", "Visual Studio Code"},
    {".config/Code - Insiders/logs", "caches", "safe", "Code Insiders", "/a.log"},
    {".config/Code/User/workspaceStorage/ab", "developerCaches", "review", "unsaved", "/state"},
    {".npm/_cacache", "caches", "safe", "npm", "/content-v2/.hidden/node_modules/a"},
    {".cargo/registry/src", "caches", "safe", "Cargo"},
    {".cargo/git", "caches", "safe", "Cargo", "/db/a"},
    {".rustup/downloads", "caches", "safe", "rustup"},
    {".cache/pip", "caches", "safe", "Downloaded again by pip when needed", "/http/a"},
    {".cache/ccache", "caches", "safe", "Rebuilt by ccache when needed", "/0/a"},
    {".local/share/NuGet/v3-cache", "caches", "safe", "NuGet"},
    {".cache/ms-playwright/chromium-1", "developerCaches", "review", "Playwright"},
    {".cache/pypoetry/virtualenvs/app-py3", "developerCaches", "review", "Poetry", "/bin/python"},
    {".cache/JetBrains/IdeaIC2024.1", "developerCaches", "review", "JetBrains", "/index/a"},
    {".gradle/wrapper/dists", "developerCaches", "review", "built here"},
    {".m2/repository", "developerCaches", "review", "Maven"},
    {"go/pkg/mod", "developerCaches", "review", "Go"},
    {".local/share/pnpm/store", "developerCaches", "review", "pnpm", "/v3/a"},
    {"miniconda3/pkgs", "developerCaches", "review", "conda"},
    {".conan2/p", "developerCaches", "review", "Conan"},
    {".cache/huggingface/hub/models--a--b", "largeFiles", "review", "Hugging Face", "/blobs/x"},
    {".ollama/models", "largeFiles", "review", "Ollama", "/blobs/x"},
    {".cache/spotify", "largeFiles", "review", "Spotify", "/Data/a"},
    {".var/app/com.spotify.Client/cache", "largeFiles", "review", "Spotify"},
    {".cache/thumbnails", "caches", "safe", "by the file manager", "/large/a.png"},
    {".cache/mesa_shader_cache_db", "caches", "safe", "by the graphics driver"},
    {".nv/GLCache", "caches", "safe", "by the graphics driver"},
    {".cache/fontconfig", "caches", "safe", "by the desktop when"},
    {".cache/tracker3", "caches", "safe", "by the desktop's search", "/files/meta.db"},
    {".cache/unheard-of", "caches", "safe", "unheard-of"},
    {".cache/single.db", "caches", "safe", "single.db", ""},
    {".var/app/org.example.App/cache", "caches", "safe", "org.example.App"},
    {"snap/firefox/common/.cache", "caches", "safe", "firefox"},
    {".local/share/Steam/steamapps/shadercache/730", "caches", "safe", "Steam"},
    {".local/share/Steam/config/htmlcache", "caches", "safe", "Steam"},
    {".local/share/Steam/steamapps/downloading/730", "largeFiles", "review", "unfinished"},
    {".xsession-errors.old", "logs", "safe", "nothing writes", ""},
    {".local/share/xorg/Xorg.0.log.old", "logs", "safe", "X.Org", ""},
    {".npm/_logs", "logs", "safe", "npm", "/a.log"},
    {".local/state/app/app.log.1", "logs", "safe", "app", ""},
    {".local/state/wireplumber/log", "logs", "safe", "wireplumber"},
};

// Beside them, and no items.
const std::vector<std::string> others =
    wordsOf(R"(.config/chromium/Default/Cookies .config/chromium/Preferences .config/Code/User/settings.json
    .local/share/TelegramDesktop/tdata/key_datas .local/share/Steam/userdata/1/save .local/state/app/app.log
    .local/state/app/app.log.lock .config/VSCodium/User/workspaceStorage/ab/state .cargo/bin/cargo
    .cargo/credentials.toml .var/app/org.example.App/config/rc .local/share/Trash/info/old.trashinfo
    .local/share/xorg/Xorg.0.log .xsession-errors go/bin/tool go/src/own.go)");

class KnownPlaces : public Orvanectl {
 public:
  KnownPlaces() {
    home.folder("Downloads");
    for (const auto& layout : layouts) home.file(layout.file(), "0123456789");
    for (const auto& other : others) home.file(other);
  }

  [[nodiscard]] std::map<std::string, Json> scan() const { return scanned({"scan", "--developer-caches", "--json"}); }
  static void expectBusy(const std::map<std::string, Json>& items, const Words& places) {
    for (const auto& place : places) EXPECT_EQ(items.at(place)["isSelected"], false) << place;
  }
};

TEST_F(KnownPlaces, areItemsWithTheirCategoryRiskSizeAndReason) {
  const auto items = scan();
  EXPECT_EQ(items.size(), layouts.size());
  for (const auto& layout : layouts) {
    const auto found = items.find(layout.item);
    ASSERT_NE(found, items.end()) << layout.item;
    EXPECT_TRUE(tells(found->second, {{"category", layout.category}, {"riskLabel", layout.label}, {"fileSize", 10}}))
        << layout.item;
    EXPECT_EQ(found->second["isSelected"], layout.goes()) << layout.item;
  }
  const auto table = run({"folders", "known"}).output;
  for (const auto& layout : layouts) {
    const auto row = table.find("~/" + layout.item + " ");
    ASSERT_NE(row, std::string::npos) << layout.item;
    EXPECT_THAT(table.substr(row, table.find('\n', row) - row), HasSubstr(layout.why));
  }
}

TEST_F(KnownPlaces, goWholeAndComeBackAndNothingElseGoes) {
  const auto report = json({"clean", "--yes"});
  std::size_t safe = 0;
  for (const auto& layout : layouts) {
    safe += layout.goes() ? 1 : 0;
    EXPECT_EQ(exists(home.path(layout.item)), !layout.goes()) << layout.item;
  }
  EXPECT_EQ(report["itemsProcessed"], safe) << report.dump(1);
  EXPECT_TRUE(holds(others));
  EXPECT_EQ(run({"restore", "--last", "--yes"}).exitStatus, 0);
  for (const auto& layout : layouts) EXPECT_TRUE(holds({layout.file()}));
}

TEST_F(KnownPlaces, ofTheFolderOfSettingsGoByNothingElse) {
  const auto cache = home.path(".config/Code/CachedData");
  const Words words{"trash", "--yes", "--root", home.path(), cache, cache + "/a", home.path(".config/Code")};
  EXPECT_EQ(json(words, 1)["itemsProcessed"], 0);
  EXPECT_TRUE(exists(cache + "/a"));
}

TEST_F(KnownPlaces, areLeftOutWhereTheUserSaysSo) {
  EXPECT_EQ(scanned({"scan", "--json", "--no-known-places"}).size(), 0);
  EXPECT_EQ(scanned({"scan", "--json", home.path("Downloads")}).size(), 0);
  EXPECT_EQ(run({"folders", "known", "off"}).exitStatus, 0);
  EXPECT_EQ(scan().size(), 0);
  EXPECT_EQ(json({"clean", "--yes"})["itemsProcessed"], 0);
  EXPECT_EQ(run({"folders", "known", "on"}).exitStatus, 0);
  EXPECT_EQ(scan().size(), layouts.size());
}

TEST_F(KnownPlaces, areShownUnselectedWhileTheirProgramRuns) {
  home.link(".config/chromium/SingletonLock", "host-" + std::to_string(::getpid()));
  home.link(".config/google-chrome/SingletonLock", "host-999999999");
  home.file(".steam/steam.pid", std::to_string(::getpid()) + "\n");
  home.link(".config/mozilla/firefox/a.default/lock", "127.0.1.1:+" + std::to_string(::getpid()));
  home.file(".config/JetBrains/IdeaIC2024.1/.lock", std::to_string(::getpid()));
  const FileDescriptor cargo(::open(home.file(".cargo/.package-cache").c_str(), O_RDONLY | O_CLOEXEC));
  ASSERT_EQ(::flock(cargo.get(), LOCK_EX), 0);
  const auto items = scan();
  expectBusy(items, {".cache/chromium", ".config/chromium/ShaderCache", ".cache/mozilla", ".cargo/git",
                     ".local/share/Steam/config/htmlcache"});
  EXPECT_EQ(items.at(".config/google-chrome/Default/Code Cache")["isSelected"], true);
  EXPECT_THAT(run({"folders", "known"}), Says("Chromium is open and uses it", "JetBrains is open and uses it"));
  EXPECT_THAT(run({"explain", home.path(".cache/chromium")}).output, HasSubstr("leaves it while its program runs"));
  static_cast<void>(run({"clean", "--yes", "--developer-caches", "--include-review", "--category", "browserCaches",
                         "--category", "caches", "--category", "largeFiles", "--category", "developerCaches"}));
  // Nor by a rule.
  home.file(".m2/repository/again");
  addRule(R"({"name":"Indexes","trigger":{"categories":["developerCaches"]},"action":{"type":"moveToTrash"}})");
  EXPECT_THAT(json({"rules", "preview", "Indexes"}).dump(), HasSubstr("/.m2/repository"));
  EXPECT_GT(json({"rules", "run", "Indexes", "--yes"})["itemsProcessed"], 0);
  EXPECT_TRUE(holds({".cache/chromium", ".cache/mozilla", ".cargo/git/db/a", ".cache/JetBrains/IdeaIC2024.1",
                     ".config/chromium/Default/Service Worker/CacheStorage"},
                    {".cache/pip", ".m2/repository"}));
}

TEST_F(KnownPlaces, areInUseWhereverTheProfileOfABrowserLies) {
  const auto text = [&] { return run({"explain", home.path(".cache/mozilla")}).output; };
  const auto isUsed = HasSubstr("leaves it while its program runs");
  const auto running = "127.0.1.1:+" + std::to_string(::getpid());
  const auto list = home.file(".mozilla/firefox/profiles.ini", "[Profile0]\nIsRelative=1\nPath=Profiles/a\n");
  EXPECT_THAT(text(), Not(isUsed));
  home.link(".mozilla/firefox/Profiles/a/lock", running);
  EXPECT_THAT(text(), isUsed);
  std::filesystem::remove_all(home.path(".mozilla/firefox/Profiles"));
  EXPECT_THAT(text(), Not(isUsed));
  home.link("elsewhere/lock", running);
  home.file(".mozilla/firefox/profiles.ini", "[Profile0]\nIsRelative=0\nPath=" + home.path("elsewhere") + "\n");
  EXPECT_THAT(text(), isUsed);
  std::filesystem::remove(list);
  environment["XDG_CONFIG_HOME"] = home.path("settings");
  EXPECT_THAT(text(), Not(isUsed));
  home.link("settings/mozilla/firefox/a.default/lock", running);
  EXPECT_THAT(text(), isUsed);
  // Nor can a sign that nobody may read say otherwise.
  environment.erase("XDG_CONFIG_HOME");
  const auto profile = home.folder(".mozilla/firefox/a.default");
  ::chmod(profile.c_str(), 0);
  EXPECT_THAT(runAsNobody({"explain", home.path(".cache/mozilla")}).output, isUsed);
  ::chmod(profile.c_str(), 0700);
}

// As Flatpak describes its sandboxes; the file beside the description is locked while one runs.
TEST_F(KnownPlaces, areShownUnselectedWhileTheirSandboxRuns) {
  environment["XDG_RUNTIME_DIR"] = home.folder("runtime");
  home.file(".var/app/org.example.Ended/cache/a");
  for (const auto* name : {"App", "Ended"}) {
    const auto instance = std::string("runtime/.flatpak/") + name;
    home.file(instance + "/info", "[Application]\nname=org.example." + std::string(name) + "\nruntime=a\n");
    home.file(instance + "/.ref", "");
  }
  const FileDescriptor sandbox(::open(home.path("runtime/.flatpak/App/.ref").c_str(), O_RDONLY | O_CLOEXEC));
  struct flock lock {};
  lock.l_type = F_RDLCK;
  lock.l_whence = SEEK_SET;
  ASSERT_EQ(::fcntl(sandbox.get(), F_SETLK, &lock), 0);
  const auto items = scan();
  EXPECT_EQ(items.at(".var/app/org.example.App/cache")["isSelected"], false);
  EXPECT_EQ(items.at(".var/app/org.example.Ended/cache")["isSelected"], true);
}

// A control group as snapd makes one, and a process in it.
class RunningSnap {
 public:
  explicit RunningSnap(const std::string& name) {
    for (const auto* hierarchy : {"/sys/fs/cgroup/systemd", "/sys/fs/cgroup/unified", "/sys/fs/cgroup"}) {
      m_group = std::string(hierarchy) + "/snap." + name + ".app.scope";
      if (::mkdir(m_group.c_str(), 0755) != 0) continue;
      std::ofstream file(m_group + "/cgroup.procs");
      if (file << m_program.id() << std::flush) return;
      ::rmdir(m_group.c_str());
    }
    m_group.clear();
  }
  ~RunningSnap() {
    m_program.finish();
    if (!m_group.empty()) ::rmdir(m_group.c_str());
  }
  [[nodiscard]] bool isRunning() const { return !m_group.empty(); }

 private:
  LiveProgram m_program{{.arguments = {"/bin/cat"}, .environment = {}}};
  std::string m_group;
};

TEST_F(KnownPlaces, areShownUnselectedWhileTheirSnapRuns) {
  const auto name = "orvane-" + std::to_string(::getpid());
  home.file("snap/" + name + "/common/.cache/a");
  const RunningSnap snap(name);
  if (!snap.isRunning()) GTEST_SKIP() << "no control group can be made here";
  const auto items = scan();
  EXPECT_EQ(items.at("snap/" + name + "/common/.cache")["isSelected"], false);
  EXPECT_EQ(items.at("snap/firefox/common/.cache")["isSelected"], true);
}

TEST_F(KnownPlaces, areShownUnselectedWhileAnyFileInThemIsOpen) {
  const std::vector<std::string> open{".cache/unheard-of/a", ".cache/single.db", ".local/state/app/app.log.1",
                                      ".local/share/TelegramDesktop/tdata/user_data#2/media_cache/a"};
  std::vector<FileDescriptor> files;
  for (const auto& path : open) files.emplace_back(::open(home.path(path).c_str(), O_RDONLY | O_CLOEXEC));
  const FileDescriptor folder(::open(home.path(".cache/pip").c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  const auto items = scan();
  expectBusy(items, {".cache/unheard-of", ".cache/single.db", ".local/state/app/app.log.1"});
  EXPECT_EQ(items.at(".cache/pip")["isSelected"], true);
  EXPECT_THAT(run({"folders", "known"}), Says("unheard-of is open and uses it"));
  static_cast<void>(run({"clean", "--yes", "--include-review", "--category", "caches", "--category", "logs",
                         "--category", "messagingMedia"}));
  EXPECT_TRUE(holds(open, {".cache/pip", ".config/discord/Cache"}));
}

// Runs in a mount namespace of its own, where the folder is another volume with something in its Trash.
TEST_F(KnownPlaces, showWhatLiesInTheTrashOfAnotherVolume) {
  const auto disk = home.folder("disk");
  environment.erase("ORVANE_MOUNTS");
  const auto* script = R"(mount -t tmpfs -o mode=755 tmpfs "$0" && umask 77 && mkdir -m 1777 "$0/.Trash" &&
      mkdir -p "$0/.Trash-$(id -u)/files/old" "$0/.Trash/$(id -u)/files" &&
      printf 1234567 | tee "$0/.Trash-$(id -u)/files/old/a" >"$0/.Trash/$(id -u)/files/b" && exec "$@")";
  const auto on = [&](const Words& words) {
    return runUnder({"/usr/bin/unshare", "--mount", "/bin/sh", "-c", script, disk}, words);
  };
  if (on({"--version"}).exitStatus != 0) GTEST_SKIP() << "no volume can be mounted here";
  const auto user = std::to_string(::geteuid());
  const std::vector<std::string> trashed{disk + "/.Trash-" + user + "/files/old",
                                         disk + "/.Trash/" + user + "/files/b"};
  const auto scanned = on({"scan", "--json"}).output;
  const auto listed = on({"folders", "known"}).output;
  for (const auto& path : trashed) {
    const auto at = scanned.find(path.substr(home.path().size() + 1));
    ASSERT_NE(at, std::string::npos) << path;
    const auto start = scanned.rfind('\n', at) + 1;
    const auto item = parseJson(scanned.substr(start, scanned.find('\n', at) - start))["item"];
    EXPECT_TRUE(tells(item, {{"category", "trash"}, {"fileSize", 7}, {"isSelected", false}}));
    EXPECT_THAT(listed, HasSubstr(path.substr(home.path().size())));
    EXPECT_THAT(on({"explain", path}).output, HasSubstr("Already in the Trash"));
    EXPECT_NE(on({"trash", "--yes", "--root", disk, path}).exitStatus, 0);
  }
  EXPECT_EQ(on({"clean", "--yes", "--include-review", "--category", "trash"}).exitStatus, 0);
}

TEST_F(KnownPlaces, comeOnceWhereAGrantedFolderHoldsThem) {
  EXPECT_EQ(run({"folders", "add", home.path("go")}).exitStatus, 0);
  const auto items = scan();
  EXPECT_TRUE(items.contains("go/pkg/mod") && !items.contains("pkg/mod/a") && items.contains("src/own.go"));
}

// Whole folders, known places that are walked again, kept items and a folder that is read in parts.
TEST_F(KnownPlaces, areInSumsThatAgreeWithTheList) {
  for (int i = 0; i < 1500; ++i) home.file("go/many/" + std::to_string(i) + (i % 3 == 0 ? ".log" : ".txt"));
  home.file("go/app/Library/Caches/a/b", "1234567");
  EXPECT_EQ(run({"folders", "add", home.path("go")}).exitStatus, 0);
  EXPECT_EQ(run({"keep", "add", "1?.log"}).exitStatus, 0);
  RowSum all;
  RowSum recommended;
  for (const auto& [path, item] : scan()) {
    all.add(item["fileSize"]);
    if (item["isSelected"].get<bool>() && item["category"] != "trash") recommended.add(item["fileSize"]);
  }
  EXPECT_GT(all.count, 1500);
  auto sums = run({"scan", "--developer-caches"});
  std::erase(sums.output, ',');  // 1,556
  EXPECT_THAT(sums.output,
              HasSubstr(fmt::format("Found {} items ({}) of which {} ({})", all.count, formatByteCount(all.bytes),
                                    recommended.count, formatByteCount(recommended.bytes))));
  EXPECT_EQ(sums.errors, run({"scan", "--developer-caches", "--json"}).errors);
}

TEST_F(KnownPlaces, areReachedThroughNoLinkAndFollowTheFoldersOfTheEnvironment) {
  std::filesystem::remove_all(home.path(".npm"));
  home.link(".npm", "Documents");
  home.file("Documents/_cacache/a");
  home.link(".cache/linked", home.path("Documents"));
  auto items = scan();
  EXPECT_FALSE(items.contains(".npm/_cacache") || items.contains("Documents/_cacache") ||
               items.contains(".cache/linked"));
  environment["XDG_CACHE_HOME"] = home.path("caches");
  home.file("caches/pip/a");
  items = scan();
  EXPECT_TRUE(items.contains("caches/pip") && !items.contains(".cache/pip"));
}

TEST_F(KnownPlaces, goBySavedProposalsButWhereAFolderIsNamedOrTheyAreOff) {
  addRule(R"({"name":"Caches","trigger":{"categories":["caches"]},"action":{"type":"moveToTrash"}})");
  const auto file = home.path("proposal.json");
  for (const auto& [words, least] : {std::pair{Words{"rules", "run", "Caches"}, 10}, std::pair{Words{"clean"}, 20},
                                     std::pair{Words{"ask", "clear pip cache"}, 0}}) {
    SCOPED_TRACE(words.front());
    EXPECT_EQ(run(joined(words, {"--save", file})).exitStatus, 0);
    // The first is all that is granted.
    for (const auto* named : {"Downloads", "Documents"}) {
      home.folder(named);
      EXPECT_EQ(json({"apply", "--yes", "--root", home.path(named), file}, 1)["itemsProcessed"], 0) << named;
    }
    EXPECT_EQ(run({"folders", "known", "off"}).exitStatus, 0);
    EXPECT_EQ(json({"apply", "--yes", file}, 1)["itemsProcessed"], 0);
    EXPECT_EQ(run({"folders", "known", "on"}).exitStatus, 0);
    std::filesystem::remove(home.path("Documents"));
    EXPECT_GT(json({"apply", "--yes", file})["itemsProcessed"], least);
    EXPECT_TRUE(holds({}, {".cache/pip"}));
    EXPECT_EQ(run({"restore", "--last", "--yes"}).exitStatus, 0);
    std::filesystem::remove(file);
  }
}

}  // namespace
}  // namespace orvane::test
