#include "app/agent/AgentModel.h"
#include "app/apps/AppsModel.h"
#include "app/duplicates/DuplicatesModel.h"
#include "app/history/HistoryModel.h"
#include "app/organize/OrganizeModel.h"
#include "app/rules/RulesModel.h"
#include "app/settings/TidyModel.h"
#include "core/organizer/services/AutoOrganizeSettingsStore.h"
#include "core/platform/LoginItems.h"
#include "core/rules/records/CleanupRule.h"
#include "tests/app/WindowFixture.h"
#include "tests/support/LiveProgram.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace orvane::test {
namespace {

// The moves that a front end announced.
struct Shown {
  double count = 0;
  double bytes = 0;
  std::multiset<std::string> names = {};
  std::size_t notices = 0;  // lines beside the rows
};

class FrontEnds : public WindowFixture {
 public:
  using Words = std::vector<std::string>;

  FrontEnds() { terminalHome.folder("Downloads"); }

  ChildResult terminal(Words words) const {
    LiveProgram::Setup setup{.arguments = {ORVANECTL},
                             .environment = {{"HOME", terminalHome.path()},
                                             {"PATH", "/usr/bin:/bin"},
                                             {"LANG", "en_US.UTF-8"},
                                             {"TZ", "UTC"}},
                             .workingFolder = terminalHome.path()};
    for (auto& word : words) setup.arguments.push_back(std::move(word));
    auto result = LiveProgram(setup).finish();
    EXPECT_NE(result.exitStatus, 2) << result.errors;
    return result;
  }
  // The terminal's way.
  [[nodiscard]] Shown inTerminal(Words words, const std::function<void(const TemporaryTree&)>& meanwhile) const {
    words.insert(words.end(), {"--save", "../" + saved()});
    const auto said = terminal(std::move(words)).errors;
    const auto document = parseJson(contentOf(savedPath()));
    Shown shown;
    // The last line tells where it was saved.
    shown.notices = static_cast<std::size_t>(std::ranges::count(said, '\n')) - 1;
    for (const auto& row : document["rows"]) {
      shown.count += 1;
      shown.bytes += row["fileSize"].get<double>();
      shown.names.emplace(urlAt(row, "url").lastPathComponent());
    }
    meanwhile(terminalHome);
    terminal({"apply", "--yes", "--json", savedPath()});
    std::filesystem::remove(savedPath());
    return shown;
  }

  // The files left where the user keeps them.
  [[nodiscard]] static std::vector<std::string> left(const TemporaryTree& home) {
    auto files = filesBelow(home.path());
    std::erase_if(files, [](const std::string& path) {
      return path.starts_with(".") || path.starts_with("State/") ||
             path.starts_with("Library/Application Support/Orvane");
    });
    return files;
  }

  TemporaryTree terminalHome;
  ScopedEnvironment home{"HOME", tree.path().c_str()};

 private:
  [[nodiscard]] std::string saved() const {
    return std::string(FileUrl(terminalHome.path()).lastPathComponent()) + ".json";
  }
  [[nodiscard]] std::string savedPath() const { return terminalHome.path() + ".json"; }
};

// The same home twice, the same things happening in it between showing and moving, and the same left in the end.
struct Case {
  std::string name;
  std::function<void(const TemporaryTree&)> arrange;
  FrontEnds::Words words;
  std::function<Shown(FrontEnds&, const std::function<void()>& meanwhile)> window;
  std::function<void(const TemporaryTree&)> meanwhile;
  double count;
  std::set<std::string> moved;  // of what was arranged
  std::size_t notices = 0;
};

void replaced(const TemporaryTree& home, const std::string& path, std::string_view content) {
  std::filesystem::rename(home.path(path), home.path(path + ".before"));
  home.file(path, content);
}

template <typename Model>
Shown shownBy(const Model& model) {
  Shown shown{model.selectedCount(), model.selectedBytes()};
  for (int row = 0; row < model.rowCount(); ++row) {
    const auto value = [&](int role) { return model.data(model.index(row), role); };
    if constexpr (requires { Model::Header; }) {
      if (value(Model::KindRole).toInt() == Model::Header) continue;
    }
    if (value(Model::CheckStateRole).toInt() == Qt::Checked) {
      shown.names.insert(value(Model::NameRole).toString().toStdString());
    }
  }
  if constexpr (requires { model.notices(); }) shown.notices = static_cast<std::size_t>(model.notices().size());
  return shown;
}

void addNames(Shown& shown, const QVariantList& rows, const char* key) {
  for (const auto& row : rows) {
    const auto path = row.toMap()[key].toString().toStdString();
    shown.names.emplace(FileUrl(path).lastPathComponent());
  }
}

template <typename Model>
void settle(Model& model) {
  ASSERT_TRUE(becomesTrue([&] { return !model.isWorking(); }));
}

Shown cleansInWindow(FrontEnds& test, const std::function<void()>& meanwhile) {
  AppState state(test.services());
  CleanupModel model(test.services(), state);
  bool isFinished = false;
  QObject::connect(&state, &AppState::scanFinished, [&] { isFinished = true; });
  state.startScan();
  EXPECT_TRUE(becomesTrue([&] { return isFinished && model.rowCount() > 0; }));
  const auto shown = shownBy(model);
  meanwhile();
  model.cleanSelected();
  settle(model);
  return shown;
}

Shown findsDuplicatesInWindow(FrontEnds& test, const std::function<void()>& meanwhile) {
  DuplicatesModel model(test.services());
  EXPECT_TRUE(becomesTrue([&] { return !model.roots().isEmpty(); }));
  model.setKeepStrategy(static_cast<int>(DuplicateKeepStrategy::keepShortestPath));
  model.search();
  EXPECT_TRUE(becomesTrue([&] { return model.hasSearched(); }));
  const auto shown = shownBy(model);
  meanwhile();
  model.cleanSelected();
  settle(model);
  return shown;
}

Shown organizesInWindow(FrontEnds& test, const std::function<void()>& meanwhile) {
  OrganizeModel model(test.services());
  model.chooseFolder(QString::fromStdString(test.tree.path("Downloads")));
  model.analyze();
  EXPECT_TRUE(becomesTrue([&] { return model.hasAnalyzed(); }));
  const auto shown = shownBy(model);
  meanwhile();
  model.apply();
  settle(model);
  return shown;
}

const Json ruleJson = parseJson(R"({"name":"Drafts","trigger":{"fileExtensions":["dmg"],"minimumAgeDays":3},
                                    "action":{"type":"moveToTrash"}})");

Shown runsRulesInWindow(FrontEnds& test, const std::function<void()>& meanwhile) {
  CleanupRule rule;
  rule.name = "Drafts";
  rule.trigger = RuleTrigger::fromJson(ruleJson["trigger"]);
  rule.action = RuleAction::moveToTrash();
  test.rules.addOrUpdateRule(rule);
  RulesModel model(test.services());
  EXPECT_TRUE(becomesTrue([&] { return model.ruleCount() == 13; }));
  model.previewRule(12);
  EXPECT_TRUE(becomesTrue([&] { return !model.isPreviewing(); }));
  Shown shown{model.movableCount(), model.movableBytes()};
  shown.notices = static_cast<std::size_t>(model.previewRemarks().size());
  addNames(shown, model.preview(), "name");
  meanwhile();
  model.runPreviewed();
  settle(model);
  return shown;
}

const char* const request = "organize files older than 30 days in downloads";

Shown asksInWindow(FrontEnds& test, const std::function<void()>& meanwhile) {
  AgentModel model(test.services());
  model.setPrompt(request);
  model.dryRun();
  EXPECT_TRUE(becomesTrue([&] { return !model.isPlanning(); }));
  const auto shown = shownBy(model);
  meanwhile();
  model.confirm();
  settle(model);
  return shown;
}

Shown uninstallsInWindow(FrontEnds& test, const std::function<void()>& meanwhile) {
  AppsModel model(test.services());
  model.list();
  EXPECT_TRUE(becomesTrue([&] { return model.hasListed(); }));
  model.setSearchText("Subject");
  model.review(0);
  EXPECT_TRUE(becomesTrue([&] { return !model.isFindingLeftovers(); }));
  model.selectAllLeftovers(true);
  Shown shown{model.reviewCount(), model.reviewBytes()};
  addNames(shown, model.leftovers(), "path");
  shown.names.insert("Subject.app");
  meanwhile();
  model.uninstall();
  settle(model);
  return shown;
}

class NoLoginItems : public LoginItems {
 public:
  [[nodiscard]] bool isEnabled() const override { return false; }
  void setEnabled(bool /*isEnabled*/) override {}
};

Shown tidiesInWindow(FrontEnds& test, const std::function<void()>& meanwhile) {
  const auto services = test.services();
  AutoOrganizer organizer(services.tasks);
  AutoOrganizeSettingsStore store(services.preferences);
  NoLoginItems loginItems;
  TidyModel model([&](RepeatingTimer& timer) {
    return AutoOrganizeController::Collaborators{.organizer = organizer,
                                                 .store = store,
                                                 .factory = services.tasks.topics,
                                                 .timer = timer,
                                                 .loginItems = loginItems};
  });
  EXPECT_TRUE(becomesTrue([&] { return model.isReady(); }));
  model.look();
  EXPECT_TRUE(becomesTrue([&] { return !model.isLooking(); }));
  Shown shown{model.selectedCount(), model.selectedBytes()};
  shown.notices = static_cast<std::size_t>(model.remarks().size());
  for (const auto& group : model.proposed()) {
    for (const auto& name : group.toMap()["names"].toStringList()) shown.names.insert(name.toStdString());
  }
  meanwhile();
  model.confirm();
  EXPECT_TRUE(becomesTrue([&] { return !model.isRunning(); }));
  return shown;
}

void arrangeDownloads(const TemporaryTree& home, const std::vector<std::string>& names, double days) {
  for (const auto& name : names) setAge(home.file("Downloads/" + name, "before " + name), days * 86400);
}

const std::vector<Case>& cases() {
  static const std::vector<Case> all{
      {"clean",
       [](const TemporaryTree& home) {
         arrangeDownloads(home, {"a.log", "b.log", "c.log", "photo.jpg"}, 1);
       },
       {"clean"},
       cleansInWindow,
       [](const TemporaryTree& home) {
         replaced(home, "Downloads/b.log", "before b.log");
         home.file("Downloads/new.log", "late");
       },
       3,
       {"Downloads/a.log", "Downloads/c.log"}},
      {"duplicates",
       [](const TemporaryTree& home) {
         for (const char* name : {"a", "bb", "ccc"}) setAge(home.file("Downloads/" + std::string(name), "same"), 86400);
       },
       {"duplicates", "--keep", "shortest-path"},
       findsDuplicatesInWindow,
       [](const TemporaryTree& home) { home.file("Downloads/dddd", "same"); },
       2,
       {}},
      {"organize",
       [](const TemporaryTree& home) {
         arrangeDownloads(home, {"song.mp3", "report.pdf", "photo.jpg", "film.mkv.part"}, 1);
       },
       {"organize", "Downloads"},
       organizesInWindow,
       [](const TemporaryTree& home) {
         replaced(home, "Downloads/report.pdf", "before report.pdf");
         home.file("Downloads/late.pdf", "late");
       },
       3,
       {"Downloads/song.mp3", "Downloads/photo.jpg"},
       1},
      {"tidy",
       [](const TemporaryTree& home) {
         arrangeDownloads(home, {"song.mp3", "report.pdf", "photo.jpg"}, 1);
       },
       {"tidy", "run"},
       tidiesInWindow,
       [](const TemporaryTree& home) {
         replaced(home, "Downloads/report.pdf", "before report.pdf");
         setAge(home.file("Downloads/late.pdf", "late"), 86400);
       },
       3,
       {"Downloads/song.mp3", "Downloads/photo.jpg"},
       1},
      {"rules",
       [](const TemporaryTree& home) {
         arrangeDownloads(home, {"a.dmg", "b.dmg"}, 10);
         arrangeDownloads(home, {"young.dmg"}, 2.99);
       },
       {"rules", "run", "Drafts"},
       runsRulesInWindow,
       [](const TemporaryTree& home) {
         replaced(home, "Downloads/a.dmg", "before a.dmg");
         setAge(home.file("Downloads/new.dmg", "late"), 10 * 86400);
       },
       2,
       {"Downloads/b.dmg"}},
      {"ask",
       [](const TemporaryTree& home) {
         arrangeDownloads(home, {"report.pdf", "thesis.docx", "setup.dmg"}, 60);
         arrangeDownloads(home, {"new.pdf"}, 2);
       },
       {"ask", request},
       asksInWindow,
       [](const TemporaryTree& home) { replaced(home, "Downloads/report.pdf", "before report.pdf"); },
       3,
       {"Downloads/thesis.docx", "Downloads/setup.dmg"}},
      {"uninstall",
       [](const TemporaryTree& home) {
         home.file("Applications/Subject.app/Contents/Info.plist",
                   "<plist version=\"1.0\"><dict><key>CFBundleName</key><string>Subject</string>"
                   "<key>CFBundleIdentifier</key><string>org.example.subject</string></dict></plist>");
         home.file("Library/Preferences/org.example.subject.plist", "set");
         home.file("Library/Caches/org.example.subject/cache", "cached");
       },
       {"apps", "uninstall", "Subject", "--all-leftovers"},
       uninstallsInWindow,
       [](const TemporaryTree& home) { replaced(home, "Library/Preferences/org.example.subject.plist", "another"); },
       3,
       {"Applications/Subject.app/Contents/Info.plist", "Library/Caches/org.example.subject/cache"}},
  };
  return all;
}

class FrontEndsAgree : public FrontEnds, public testing::WithParamInterface<std::size_t> {};

TEST_P(FrontEndsAgree, onWhatIsShownAndWhatMoves) {
  const auto& given = cases()[GetParam()];
  given.arrange(tree);
  given.arrange(terminalHome);
  terminalHome.file("rule.json", jsonText(ruleJson));
  terminal({"folders", "add", "Downloads"});
  terminal({"rules", "add", "rule.json"});
  std::filesystem::remove(terminalHome.path("rule.json"));

  const auto terminalShown = inTerminal(given.words, given.meanwhile);
  const auto windowShown = given.window(*this, [&] { given.meanwhile(tree); });
  EXPECT_EQ(terminalShown.count, given.count);
  EXPECT_EQ(windowShown.count, given.count);
  EXPECT_EQ(windowShown.bytes, terminalShown.bytes);
  EXPECT_EQ(windowShown.names, terminalShown.names);
  EXPECT_EQ(terminalShown.notices, given.notices);
  EXPECT_EQ(windowShown.notices, given.notices);
  EXPECT_EQ(left(tree), left(terminalHome));
  for (const auto& path : given.moved) EXPECT_FALSE(exists(tree.path(path))) << path;
}

INSTANTIATE_TEST_SUITE_P(Tasks, FrontEndsAgree, testing::Range(std::size_t{0}, cases().size()),
                         [](const auto& given) { return cases()[given.param].name; });

// Restoring has no rows to choose from: both bring back the same of what both moved.
TEST_F(FrontEnds, bringBackTheSame) {
  const auto arrange = [](const TemporaryTree& at) { arrangeDownloads(at, {"a.log", "b.log", "c.log"}, 1); };
  const auto meanwhile = [](const TemporaryTree& at) {
    at.file("Downloads/b.log", "in the way");
    std::filesystem::remove(at.path(".local/share/Trash/files/c.log"));
  };
  arrange(tree);
  arrange(terminalHome);
  terminal({"folders", "add", "Downloads"});
  terminal({"clean", "--yes"});
  cleansInWindow(*this, [] {});
  meanwhile(tree);
  meanwhile(terminalHome);
  terminal({"restore", "--last", "--yes"});
  JournalFeed feed(services());
  HistoryModel model(services(), feed);
  model.reload();
  EXPECT_TRUE(becomesTrue([&] { return model.isLoaded() && model.runCount() == 1; }));
  model.restoreRun(0);
  EXPECT_TRUE(becomesTrue([&] { return !model.isRestoring() && !model.takenPlaces().isEmpty(); }));
  model.restoreBeside();
  EXPECT_TRUE(becomesTrue([&] { return !model.isRestoring() && !model.messages().empty(); }));
  EXPECT_EQ(model.messages().size(), 1);
  EXPECT_EQ(left(tree), left(terminalHome));
  EXPECT_EQ(left(tree),
            (std::vector<std::string>{"Downloads/a.log", "Downloads/b (restored 1).log", "Downloads/b.log"}));
}

}  // namespace
}  // namespace orvane::test
