// The promise of every command that moves something: it asks, and what it showed is what goes.

#include "tests/cli/OrvanectlFixture.h"

namespace orvane::test {
namespace {

using Words = Orvanectl::Words;

constexpr const char* toTrash = "Move 3 items (21 bytes) to the Trash? [y/N] ";
constexpr const char* toFolders = "Move 3 items into other folders? [y/N] ";

// Of four files, A to D, the first stays as it is shown, the second is replaced, the third written to, and the fourth
// arrives late.
struct Mover {
  const char* name;
  Words words;
  const char* question;
  const char* before;  // and after: what stands around the letter in their paths
  const char* after;
  const char* folder = nullptr;  // of the second, where that goes as a whole
  double days = 0.01;            // their age
};

void PrintTo(const Mover& mover, std::ostream* out) {
  *out << mover.name;
}

const std::vector<Mover> movers{
    {"clean", {"clean", "Dropbox"}, toTrash, "Dropbox/", ".log"},
    {"trash", {"trash", "Downloads/A", "Downloads/B", "Downloads/C"}, toTrash, "Downloads/", ""},
    {"duplicates", {"duplicates", "Documents", "--clean", "--keep", "shortest-path"}, toTrash, "Documents/copy ", ""},
    {"organize", {"organize", "Dropbox", "--apply"}, toFolders, "Dropbox/", ".pdf", "Dropbox/Folder"},
    {"tidy", {"tidy", "run"}, "Move 3 items? [y/N] ", "Dropbox/", ".pdf", "Dropbox/Folder"},
    {"plan", {"plan", "run", "plan.json"}, toFolders, "Downloads/", ".pdf"},
    {"rules", {"rules", "run", "Mine"}, toTrash, "Dropbox/", ".log"},
    {"schedule", {"schedule", "run"}, toTrash, "Dropbox/", ".log"},
    {"askToSort", {"ask", "sort screenshots", "--apply"}, toFolders, "Downloads/Screenshot ", ".png", nullptr, 40},
    // Logs may go where the caches beside them are granted.
    {"askToDelete", {"ask", "delete old logs", "--apply"}, toTrash, "Library/Logs/", ".log", nullptr, 40},
};

class Consent : public Orvanectl, public testing::WithParamInterface<Mover> {
 public:
  Consent() {
    for (const auto* folder : {"Downloads", "Dropbox", "Library/Caches"}) home.folder(folder);
    home.file("Documents/o", content);  // which the duplicates are copies of
    for (const char letter : {'A', 'B', 'C'}) arrive(letter);
    auto sort = stepOf("~/Downloads", "move");
    sort["destinationFolder"] = "~/Downloads";
    plan({sort});
    addRule(R"({"name":"Mine","trigger":{"fileExtensions":["log"]},"action":{"type":"moveToTrash"}})");
    EXPECT_EQ(run({"folders", "add", "Dropbox"}).exitStatus, 0);
    EXPECT_EQ(run({"tidy", "set", "--folder", "Dropbox"}).exitStatus, 0);
  }
  [[nodiscard]] std::string path(char letter) const {
    const bool isInside = letter == 'B' && mover.folder != nullptr;
    return isInside ? std::string(mover.folder) + "/in.txt" : mover.before + std::string(1, letter) + mover.after;
  }
  [[nodiscard]] std::string place(char letter) const { return home.path(path(letter)); }
  void arrive(char letter) const {
    setAge(home.file(path(letter), content), mover.days * 86400);
    if (mover.folder != nullptr) setAge(home.folder(mover.folder), mover.days * 86400);
  }
  void change() const {
    std::filesystem::rename(mover.folder != nullptr ? home.path(mover.folder) : place('B'), home.path("before"));
    arrive('B');
    home.file(path('C'), "another");
    arrive('D');
  }
  void expectThatOnlyTheFirstWentAndComesBack() const {
    EXPECT_FALSE(exists(place('A')));
    EXPECT_EQ(contentOf(place('B')), content);
    EXPECT_EQ(contentOf(place('C')), "another");
    EXPECT_TRUE(exists(place('D')));
    EXPECT_EQ(json({"restore", "--last", "--yes"})["restoredCount"], 1);
    EXPECT_EQ(contentOf(place('A')), content);
  }

  const Mover& mover = GetParam();
  static constexpr const char* content = "1234567";
};

TEST_P(Consent, isAskedForAndCanBeRefused) {
  EXPECT_THAT(run(mover.words), Fails(2, "--yes"));
  for (const auto& [answer, status] : {std::pair{"n\n", 0}, std::pair{"\n", 0}, std::pair{"\x03", 130}}) {
    const auto refused = answered(mover.words, mover.question, answer);
    EXPECT_EQ(refused.exitStatus, status);
    EXPECT_THAT(refused.output, HasSubstr(status == 0 ? "Nothing was moved." : "[y/N]"));
    for (const char letter : {'A', 'B', 'C'}) EXPECT_TRUE(exists(place(letter))) << letter;
  }
  EXPECT_EQ(json({"history"}), Json::array());
  EXPECT_TRUE(holds({}, {".local"}));
}

TEST_P(Consent, isToWhatWasShownAndNothingElse) {
  const auto result = answered(mover.words, mover.question, "y\n", [this] { change(); });
  EXPECT_EQ(result.exitStatus, 1) << result.output;
  EXPECT_THAT(result.output, HasSubstr("changed"));
  const bool isSynced = path('A').starts_with("Dropbox");
  const auto warns =
      HasSubstr("Warning: 3 items are synced via Dropbox. Deleting them will also remove them from your ");
  EXPECT_THAT(result.output, testing::Conditional(isSynced, warns, Not(HasSubstr("synced via"))));
  expectThatOnlyTheFirstWentAndComesBack();
}

TEST_P(Consent, isKeptWithASavedProposal) {
  EXPECT_EQ(run(joined(mover.words, {"--save", "saved.json"})).exitStatus, 0);
  EXPECT_EQ(json({"history"}), Json::array());
  change();
  const auto report = json({"apply", "saved.json", "--yes"}, 1);
  EXPECT_EQ(report["itemsProcessed"], 1);
  EXPECT_EQ(report["failures"].size(), 2U);
  expectThatOnlyTheFirstWentAndComesBack();
}

INSTANTIATE_TEST_SUITE_P(Movers, Consent, testing::ValuesIn(movers),
                         [](const auto& row) { return std::string(row.param.name); });

}  // namespace
}  // namespace orvane::test
