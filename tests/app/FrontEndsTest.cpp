#include "app/agent/AgentModel.h"
#include "app/apps/AppsModel.h"
#include "app/duplicates/DuplicatesModel.h"
#include "app/history/HistoryModel.h"
#include "app/organize/OrganizeModel.h"
#include "app/rules/RulesModel.h"
#include "app/settings/TidyModel.h"
#include "core/organizer/services/AutoOrganizeSettingsStore.h"
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
    words.insert(words.begin(), ORVANECTL);
    const std::map<std::string, std::string> environment{
        {"HOME", terminalHome.path()}, {"PATH", "/usr/bin:/bin"}, {"LANG", "en_US.UTF-8"}, {"TZ", "UTC"}};
    auto result =
        LiveProgram({.arguments = words, .environment = environment, .workingFolder = terminalHome.path()}).finish();
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
  FrontEnds::Words words;
  Shown (*window)(FrontEnds&, const std::function<void()>& meanwhile);
  std::map<std::string, double> files;  // with their ages, in days
  const char* replaced;                 // by another of the same content; null where nothing is
  const char* late;                     // arrives as old as the first file; null where nothing does
  double count;
  std::set<std::string> moved;  // of the files
  std::size_t notices = 0;

  // All copies of one where duplicates are looked for.
  [[nodiscard]] std::string contentOf(const std::string& path) const {
    if (path.ends_with("Info.plist")) {
      return "<plist version=\"1.0\"><dict><key>CFBundleName</key><string>Subject</string>"
             "<key>CFBundleIdentifier</key><string>org.example.subject</string></dict></plist>";
    }
    return name == "duplicates" ? "same" : "content of " + path;
  }
  void arrive(const TemporaryTree& home, const std::string& path, double days) const {
    setAge(home.file(path, contentOf(path)), days * 86400);
  }
  void arrange(const TemporaryTree& home) const {
    for (const auto& [path, days] : files) arrive(home, path, days);
  }
  void meanwhile(const TemporaryTree& home) const {
    if (replaced != nullptr) {
      std::filesystem::rename(home.path(replaced), home.path(std::string(replaced) + ".before"));
      home.file(replaced, contentOf(replaced));
    }
    if (late != nullptr) arrive(home, late, files.begin()->second);
  }
};

void PrintTo(const Case& given, std::ostream* out) {
  *out << given.name;
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

Shown cleansInWindow(FrontEnds& test, const std::function<void()>& meanwhile) {
  AppState state(test.services());
  CleanupModel model(test.services(), state);
  bool isFinished = false;
  QObject::connect(&state, &AppState::scanFinished, [&] { isFinished = true; });
  state.startScan();
  EXPECT_TRUE(becomesTrue([&] { return isFinished && model.rowCount() > 0; }));
  const auto shown = shownBy(model);
  meanwhile();
  finish(model, &CleanupModel::cleanSelected);
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
  finish(model, &DuplicatesModel::cleanSelected);
  return shown;
}

Shown organizesInWindow(FrontEnds& test, const std::function<void()>& meanwhile) {
  OrganizeModel model(test.services());
  model.chooseFolder(QString::fromStdString(test.tree.path("Downloads")));
  model.analyze();
  EXPECT_TRUE(becomesTrue([&] { return model.hasAnalyzed(); }));
  const auto shown = shownBy(model);
  meanwhile();
  finish(model, &OrganizeModel::apply);
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
  finish(model, &RulesModel::runPreviewed);
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
  finish(model, &AgentModel::confirm);
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
  finish(model, &AppsModel::uninstall);
  return shown;
}

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

const std::vector<Case> cases{
    {"clean",
     {"clean"},
     cleansInWindow,
     {{"Downloads/a.log", 1}, {"Downloads/b.log", 1}, {"Downloads/c.log", 1}, {"Downloads/photo.jpg", 1}},
     "Downloads/b.log",
     "Downloads/new.log",
     3,
     {"Downloads/a.log", "Downloads/c.log"}},
    {"duplicates",
     {"duplicates", "--keep", "shortest-path"},
     findsDuplicatesInWindow,
     {{"Downloads/a", 1}, {"Downloads/bb", 1}, {"Downloads/ccc", 1}},
     nullptr,
     "Downloads/dddd",
     2,
     {"Downloads/bb", "Downloads/ccc"}},
    {"organize",
     {"organize", "Downloads"},
     organizesInWindow,
     {{"Downloads/a song.mp3", 1}, {"Downloads/film.mkv.part", 1}, {"Downloads/photo.jpg", 1}, {"Downloads/x.pdf", 1}},
     "Downloads/x.pdf",
     "Downloads/late.pdf",
     3,
     {"Downloads/a song.mp3", "Downloads/photo.jpg"},
     1},
    {"tidy",
     {"tidy", "run"},
     tidiesInWindow,
     {{"Downloads/photo.jpg", 1}, {"Downloads/report.pdf", 1}, {"Downloads/song.mp3", 1}},
     "Downloads/report.pdf",
     "Downloads/late.pdf",
     3,
     {"Downloads/song.mp3", "Downloads/photo.jpg"},
     1},
    {"rules",
     {"rules", "run", "Drafts"},
     runsRulesInWindow,
     {{"Downloads/a.dmg", 10}, {"Downloads/b.dmg", 10}, {"Downloads/young.dmg", 2.99}},
     "Downloads/a.dmg",
     "Downloads/new.dmg",
     2,
     {"Downloads/b.dmg"}},
    {"ask",
     {"ask", request},
     asksInWindow,
     {{"Downloads/a.dmg", 60}, {"Downloads/new.pdf", 2}, {"Downloads/report.pdf", 60}, {"Downloads/thesis.docx", 60}},
     "Downloads/report.pdf",
     "Downloads/late.pdf",
     3,
     {"Downloads/thesis.docx", "Downloads/a.dmg"}},
    {"uninstall",
     {"apps", "uninstall", "Subject", "--all-leftovers"},
     uninstallsInWindow,
     {{"Applications/Subject.app/Contents/Info.plist", 1},
      {"Library/Caches/org.example.subject/cache", 1},
      {"Library/Preferences/org.example.subject.plist", 1}},
     "Library/Preferences/org.example.subject.plist",
     nullptr,
     3,
     {"Applications/Subject.app/Contents/Info.plist", "Library/Caches/org.example.subject/cache"}},
};

class FrontEndsAgree : public FrontEnds, public testing::WithParamInterface<Case> {};

TEST_P(FrontEndsAgree, onWhatIsShownAndWhatMoves) {
  const auto& given = GetParam();
  given.arrange(tree);
  given.arrange(terminalHome);
  terminalHome.file("rule.json", jsonText(ruleJson));
  terminal({"folders", "add", "Downloads"});
  terminal({"rules", "add", "rule.json"});
  std::filesystem::remove(terminalHome.path("rule.json"));

  const auto terminalShown = inTerminal(given.words, [&](const TemporaryTree& at) { given.meanwhile(at); });
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

INSTANTIATE_TEST_SUITE_P(Tasks, FrontEndsAgree, testing::ValuesIn(cases),
                         [](const auto& given) { return given.param.name; });

// Restoring has no rows to choose from: both bring back the same of what both moved.
TEST_F(FrontEnds, bringBackTheSame) {
  const auto arrange = [](const TemporaryTree& at) {
    for (const auto* name : {"a", "b", "c"}) setAge(at.file(std::string("Downloads/") + name + ".log"), 86400);
  };
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
