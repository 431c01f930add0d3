#include "core/base/values/Date.h"
#include "tests/cli/OrvanectlFixture.h"

#include <chrono>

namespace orvane::test {
namespace {

// A project's files, and the folders in it that a tool made from it.
struct Project {
  std::vector<std::pair<const char*, const char*>> files;
  std::vector<const char*> builds;
};

constexpr const char* signature = "Signature: 8a477f597d28d172789f06886806bc55\n# made by a tool";

const std::vector<Project> projects{
    {{{"package.json", "{}"}, {"node_modules/a/.bin/b", "1"}, {"dist/site.js", "1"}, {".next/x", "1"}},
     {"node_modules"}},
    {{{"package.json", R"({"devDependencies":{"vite":"1","next":"1"}})"}, {"dist/a", "1"}, {".next/x", "1"}},
     {"dist", ".next"}},
    {{{"node_modules/a", "1"}, {"target/a", "1"}, {"build/a", "1"}, {"dist/a", "1"}}, {}},
    {{{"Cargo.toml", ""}, {"target/debug/a", "1"}}, {"target"}},
    {{{"build.gradle.kts", ""}, {"build/a", "1"}, {".gradle/a", "1"}}, {"build", ".gradle"}},
    {{{".venv/pyvenv.cfg", ""}, {".venv/lib/.git/a", "1"}, {"venv/lib/a", "1"}, {"env/pyvenv.cfg", ""}}, {".venv"}},
    {{{"__pycache__/a.pyc", "1"}, {".tox/a", "1"}, {".mypy_cache/a", "1"}, {".pytest_cache/a", "1"}, {".idea/a", "1"}},
     {"__pycache__", ".tox", ".mypy_cache", ".pytest_cache"}},
    {{{"out/CACHEDIR.TAG", signature}, {"out/deep/a", "1"}, {"fake/CACHEDIR.TAG", "no signature"}}, {"out"}},
};

class BuildFolders : public Orvanectl {
 public:
  [[nodiscard]] std::map<std::string, Json> scan(const Words& words) const {
    auto items = scanned(joined(words, {"--json"}));
    std::erase_if(items, [](const auto& row) { return row.second["category"] != "developerCaches"; });
    return items;
  }
  static constexpr double day = 86400;
};

TEST_F(BuildFolders, areToldByWhatStandsBesideOrInThem) {
  for (std::size_t i = 0; i < projects.size(); ++i) {
    const auto folder = "Documents/" + std::to_string(i);
    for (const auto& [path, content] : projects[i].files) home.file(folder + "/" + path, content);
    std::vector<std::string> found;
    for (const auto& [path, item] : scan({"scan", "--developer-caches", home.path(folder)})) {
      EXPECT_EQ(item["riskLabel"], "review") << path;
      EXPECT_GT(item["fileSize"], 0) << path;
      found.push_back(path);
    }
    EXPECT_THAT(found, testing::UnorderedElementsAreArray(projects[i].builds)) << folder;
    EXPECT_TRUE(scan({"scan", home.path(folder)}).empty()) << folder;
  }
}

TEST_F(BuildFolders, tellWhenTheirProjectWasLastWorkedOn) {
  setAge(home.file("Documents/app/package.json", "{}"), 400 * day);
  setAge(home.file("Documents/app/src/deep/main.js"), 100.5 * day);
  home.file("Documents/app/node_modules/new/a");
  home.file("Documents/app/.git/index");
  const auto items = scan({"scan", "--developer-caches", home.path("Documents")});
  const auto now = std::chrono::duration<double>(ReferenceClock::now().time_since_epoch()).count();
  EXPECT_NEAR(items.at("app/node_modules")["lastOpenedDate"].get<double>(), now - 100.5 * day, day / 4);
}

TEST_F(BuildFolders, areExplainedByTheirProjectAndItsTool) {
  setAge(home.file("Documents/app/package.json", "{}"), 12.5 * day);
  home.file("Documents/app/node_modules/a");
  home.folder("Documents/app/__pycache__");
  home.folder("Documents/node_modules");
  EXPECT_THAT(run({"explain", home.path("Documents/app/node_modules")}),
              Says("because    package.json tells that a tool made it from ~/Documents/app\n",
                   "makes it again; the project changed 12 days ago\n", "only with --developer-caches"));
  EXPECT_THAT(run({"explain", home.path("Documents/app/__pycache__")}), Says("Python makes it"));
  EXPECT_EQ(json({"explain", home.path("Documents/app/node_modules")})[0]["category"], "developerCaches");
  EXPECT_EQ(json({"explain", home.path("Documents/node_modules")})[0]["category"], "manualReview");
}

TEST_F(BuildFolders, areAsOldAsTheWorkOnTheirProject) {
  for (const auto* project : {"active", "idle"}) {
    const auto folder = std::string("Documents/") + project;
    home.file(folder + "/package.json", "{}");
    for (const auto& part : {"/node_modules/a", "/node_modules"}) {
      if (!exists(home.path(folder + part))) home.file(folder + part);
      setAge(home.path(folder + part), 400 * day);
    }
  }
  setAge(home.path("Documents/idle/package.json"), 100 * day);
  EXPECT_EQ(run({"rules", "add", "--suggested", "idle-builds"}).exitStatus, 0);
  EXPECT_THAT(json({"rules", "preview", "Idle Build Folders"}).dump(),
              AllOf(HasSubstr("Documents/idle/node_modules"), Not(HasSubstr("Documents/active"))));
  // They go whole, and come back.
  const auto report = json({"clean", "--yes", "--developer-caches", "--category", "developerCaches", "--include-review",
                            "--older-than", "60", home.path("Documents")});
  EXPECT_EQ(report["itemsProcessed"], 1);
  EXPECT_TRUE(holds({"Documents/active/node_modules/a"}, {"Documents/idle/node_modules"}));
  EXPECT_EQ(run({"restore", "--last", "--yes"}).exitStatus, 0);
  EXPECT_TRUE(holds({"Documents/idle/node_modules/a"}));
}

}  // namespace
}  // namespace orvane::test
