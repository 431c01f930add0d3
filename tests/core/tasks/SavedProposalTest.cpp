#include "core/base/text/Json.h"
#include "core/tasks/CleanTask.h"
#include "core/tasks/SavedProposal.h"
#include "core/tasks/TrashTask.h"
#include "tests/support/TaskFixture.h"

#include <sys/stat.h>

namespace orvane::test {
namespace {

std::string textOf(const Approval& approval) {
  std::string text;
  writeProposal(approval, [&](std::string_view piece) { text += piece; });
  return text;
}

class SavedProposalTest : public TaskFixture {
 public:
  [[nodiscard]] std::string savedClean() {
    return textOf(proposeClean(taskServices(), {.folders = {tree.url("Downloads")}})->approve());
  }
  [[nodiscard]] Proposal again(const std::string& text) {
    return proposeSaved(taskServices(), SavedProposal::decode(text), roots()).value();
  }
  // Why each row of the file that may not move is left, by its name.
  [[nodiscard]] static std::map<std::string, std::string> refusals(const Proposal& proposal) {
    std::map<std::string, std::string> result;
    proposal.forEach([&](std::size_t, const ProposedRow& row) {
      if (row.lock == Lock::refused) result.emplace(row.item.url().lastPathComponent(), row.group->refusal);
    });
    return result;
  }
};

TEST_F(SavedProposalTest, movesWhatWasSavedAndNothingElse) {
  tree.file("Downloads/a.log", "a");
  tree.file("Downloads/b\xFF.log", "bb");
  tree.file("Downloads/taken out.log", "c");
  auto document = parseJson(savedClean());
  ASSERT_EQ(document["rows"].size(), 3U);
  document["rows"].erase(std::find_if(document["rows"].begin(), document["rows"].end(), [](const Json& row) {
    return row["url"].get<std::string>().find("taken") != std::string::npos;
  }));
  tree.file("Downloads/new.log", "d");
  const auto proposal = again(jsonText(document));
  EXPECT_EQ(carryOut(taskServices(), proposal.approve()).toTrash, (RowSum{2, 3}));
  EXPECT_TRUE(exists(tree.path("Downloads/new.log")));
  EXPECT_TRUE(exists(tree.path("Downloads/taken out.log")));
}

TEST_F(SavedProposalTest, leavesWhatIsNotWhatWasSaved) {
  for (const char* name : {"same.log", "gone.log", "written.log", "replaced.log", "twice.log", "photo.jpg"}) {
    tree.file("Downloads/" + std::string(name), "before");
  }
  tree.file("Documents/outside.log", "x");
  auto document = parseJson(savedClean());
  const auto rowOf = [&](const std::string& name) {
    return *std::find_if(document["rows"].begin(), document["rows"].end(),
                         [&](const Json& row) { return row["url"].get<std::string>().ends_with("/" + name); });
  };
  document["rows"].push_back(rowOf("twice.log"));
  // Rows that the proposal never held, with true identities.
  for (const char* place : {"Downloads/photo.jpg", "Documents/outside.log"}) {
    auto row = rowOf("same.log");
    struct stat status {};
    ASSERT_EQ(::stat(tree.path(place).c_str(), &status), 0);
    row["url"] = tree.url(place).absoluteString();
    row["identity"]["inode"] = status.st_ino;
    row["identity"]["size"] = status.st_size;
    row["identity"]["modified"] = {status.st_mtim.tv_sec, status.st_mtim.tv_nsec};
    document["rows"].push_back(row);
  }
  auto climbing = rowOf("same.log");
  climbing["url"] = tree.url("Downloads").absoluteString() + "/../Downloads/same.log";
  document["rows"].push_back(climbing);
  fs::remove(tree.path("Downloads/gone.log"));
  tree.file("Downloads/written.log", "after!");
  fs::rename(tree.path("Downloads/replaced.log"), tree.path("Downloads/other"));
  fs::create_symlink(tree.path("Downloads/same.log"), tree.path("Downloads/replaced.log"));

  const auto proposal = again(jsonText(document));
  const auto why = refusals(proposal);
  EXPECT_THAT(why.at("gone.log"), HasSubstr("Nothing is there"));
  EXPECT_THAT(why.at("written.log"), HasSubstr("changed"));
  EXPECT_THAT(why.at("replaced.log"), HasSubstr("changed"));
  EXPECT_THAT(why.at("twice.log"), HasSubstr("twice"));
  EXPECT_THAT(why.at("photo.jpg"), HasSubstr("would not be proposed"));
  EXPECT_THAT(why.at("outside.log"), HasSubstr("Operation denied"));
  EXPECT_THAT(why.at("same.log"), HasSubstr("traversal"));
  const auto report = carryOut(taskServices(), proposal.approve());
  EXPECT_EQ(report.toTrash.count, 2);
  EXPECT_FALSE(exists(tree.path("Downloads/twice.log")));
  EXPECT_TRUE(exists(tree.path("Downloads/photo.jpg")));
  EXPECT_TRUE(exists(tree.path("Documents/outside.log")));
}

TEST_F(SavedProposalTest, aFolderOutsideTheBoundaryIsLeftOutWhateverTheFileSays) {
  tree.file("Other/a.log", "a");
  const auto text = textOf(proposeClean(taskServices(), {.folders = {tree.url("Other")}})->approve());
  const auto proposal = again(text);
  EXPECT_TRUE(proposal.approve().empty());
  const auto* leftOut = firstNotice<FolderLeftOut>(proposal.notices());
  ASSERT_NE(leftOut, nullptr);
  EXPECT_EQ(leftOut->why, FolderLeftOut::Why::notGranted);
}

TEST_F(SavedProposalTest, refusesWhatIsNoSavedProposal) {
  tree.file("Downloads/a.log", "a");
  const auto text = savedClean();
  const auto with = [&](std::string_view from, std::string_view to) {
    auto changed = text;
    changed.replace(changed.find(from), from.size(), to);
    return changed;
  };
  const std::vector<std::pair<std::string, std::string>> cases{
      {"", "not valid JSON"},
      {"{}", "no saved proposal"},
      {"[]", "expected an object"},
      {with(R"("version":1)", R"("version":2)"), "version 2"},
      {with(R"("task":"clean")", R"("task":"restore")"), "\"task\" cannot be"},
      {with(R"("task":"clean")", R"("task":"x")"), "\"task\" cannot be"},
      {with("\"rows\":[", "\"rows\":[1,"), "array of objects"},
      {with(R"({"url":"file:///)", R"({"url":"relative/)"), "\"url\""},
      {with("a.log", "a%00.log"), "\"url\""},
      {with(R"("inode":)", R"("inode":-)"), "\"inode\""},
      {with(R"("format")", R"("format":"orvane.proposal","format")"), "stands twice"},
      {std::string(100'000, '[') + std::string(100'000, ']'), "nested deeper"},
  };
  for (const auto& [document, reason] : cases) {
    try {
      (void)SavedProposal::decode(document);
      ADD_FAILURE() << document.substr(0, 200);
    } catch (const JsonError& error) {
      EXPECT_THAT(error.what(), HasSubstr(reason)) << document.substr(0, 200);
    }
  }
  // Cut off anywhere, it is refused.
  for (std::size_t length = 0; length + 3 < text.size(); ++length) {
    EXPECT_THROW((void)SavedProposal::decode(text.substr(0, length)), JsonError) << length;
  }
}

TEST_F(SavedProposalTest, subjectsAreCheckedLikeAnythingElse) {
  tree.file("Downloads/a.log", "a");
  for (const char* subject :
       {"{}", "[]", R"({"folders":["x"],"categories":[],"includesReview":false,"includesDeveloperCaches":false})",
        R"({"folders":[],"categories":["x"],"includesReview":false,"includesDeveloperCaches":false})"}) {
    auto saved = SavedProposal::decode(savedClean());
    saved.subject = parseJson(subject);
    EXPECT_THROW((void)proposeSaved(taskServices(), saved, roots()), JsonError) << subject;
  }
}

}  // namespace
}  // namespace orvane::test
