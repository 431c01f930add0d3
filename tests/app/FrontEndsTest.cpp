#include "app/agent/AgentModel.h"
#include "app/apps/AppsModel.h"
#include "app/duplicates/DuplicatesModel.h"
#include "app/history/HistoryModel.h"
#include "app/organize/OrganizeModel.h"
#include "app/rules/RulesModel.h"
#include "app/settings/TidyModel.h"
#include "core/organizer/services/AutoOrganizeSettingsStore.h"
#include "tests/app/WindowFixture.h"
#include "tests/support/CleanupRules.h"
#include "tests/support/LiveProgram.h"

#include <algorithm>
#include <filesystem>
#include <functional>
#include <iterator>
#include <set>
#include <sstream>
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

std::vector<std::string> split(const std::string& text) {
  std::istringstream words(text);
  return {std::istream_iterator<std::string>(words), {}};
}

// The same home twice, the same things happening in it between showing and moving, and the same left in the end. Files
// are named from ~/Downloads on.
struct Case {
  std::string name;
  std::string words;
  Shown (*window)(FrontEnds&, const std::function<void()>& meanwhile);
  std::string files;
  double days;           // their age
  std::string young;     // is nearly three days old; empty where nothing is
  std::string replaced;  // by another of the same content
  std::string late;      // arrives as old as the files
  double count;
  std::string moved;  // of the files
  std::size_t notices = 0;

  // All copies of one where duplicates are looked for.
  [[nodiscard]] std::string contentOf(const std::string& path) const {
    if (path.ends_with("Info.plist")) {
      return "<plist version=\"1.0\"><dict><key>CFBundleName</key><string>Subject</string>"
             "<key>CFBundleIdentifier</key><string>org.example.subject</string></dict></plist>";
    }
    return name == "duplicates" ? "same" : "content of " + path;
  }
  void arrive(const TemporaryTree& home, const std::string& file, double age) const {
    if (!file.empty()) setAge(home.file("Downloads/" + file, contentOf(file)), age * 86400);
  }
  void arrange(const TemporaryTree& home) const {
    for (const auto& file : split(files)) arrive(home, file, days);
    arrive(home, young, 2.99);
  }
  void meanwhile(const TemporaryTree& home) const {
    if (!replaced.empty()) {
      const auto path = home.path("Downloads/" + replaced);
      std::filesystem::rename(path, path + ".before");
      home.file("Downloads/" + replaced, contentOf(replaced));
    }
    arrive(home, late, days);
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
  model.chooseFolder(test.place("Downloads"));
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
  test.rules.addOrUpdateRule(ruleFor("Drafts", RuleTrigger::fromJson(ruleJson["trigger"])));
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

const char* const typed = "organize files older than 30 days in downloads";

Shown asksInWindow(FrontEnds& test, const std::function<void()>& meanwhile) {
  AgentModel model(test.services());
  model.setPrompt(typed);
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
    {"clean", "clean", cleansInWindow, "a.log b.log c.log photo.jpg", 1, "", "b.log", "new.log", 3, "a.log c.log"},
    {"duplicates", "duplicates --keep shortest-path", findsDuplicatesInWindow, "a bb ccc", 1, "", "", "dddd", 2,
     "bb ccc"},
    {"organize", "organize Downloads", organizesInWindow, "film.mkv.part photo.jpg song.mp3 x.pdf", 1, "", "x.pdf",
     "late.pdf", 3, "photo.jpg song.mp3", 1},
    {"tidy", "tidy run", tidiesInWindow, "photo.jpg report.pdf song.mp3", 1, "", "report.pdf", "late.pdf", 3,
     "photo.jpg song.mp3", 1},
    {"rules", "rules run Drafts", runsRulesInWindow, "a.dmg b.dmg", 10, "young.dmg", "a.dmg", "new.dmg", 2, "b.dmg"},
    {"ask", "ask", asksInWindow, "a.dmg report.pdf thesis.docx", 60, "new.pdf", "report.pdf", "late.pdf", 3,
     "a.dmg thesis.docx"},
    {"uninstall", "apps uninstall Subject --all-leftovers", uninstallsInWindow,
     "../Applications/Subject.app/Contents/Info.plist ../Library/Caches/org.example.subject/cache "
     "../Library/Preferences/org.example.subject.plist",
     1, "", "../Library/Preferences/org.example.subject.plist", "", 3,
     "../Applications/Subject.app/Contents/Info.plist ../Library/Caches/org.example.subject/cache"},
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

  auto words = split(given.words);
  if (given.name == "ask") words.emplace_back(typed);
  const auto terminalShown = inTerminal(words, [&](const TemporaryTree& at) { given.meanwhile(at); });
  const auto windowShown = given.window(*this, [&] { given.meanwhile(tree); });
  EXPECT_EQ(terminalShown.count, given.count);
  EXPECT_EQ(windowShown.count, given.count);
  EXPECT_EQ(windowShown.bytes, terminalShown.bytes);
  EXPECT_EQ(windowShown.names, terminalShown.names);
  EXPECT_EQ(terminalShown.notices, given.notices);
  EXPECT_EQ(windowShown.notices, given.notices);
  EXPECT_EQ(left(tree), left(terminalHome));
  for (const auto& file : split(given.moved)) EXPECT_TRUE(holds({}, {"Downloads/" + file}));
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
