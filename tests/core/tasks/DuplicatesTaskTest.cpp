#include "core/base/files/FileLock.h"
#include "core/base/text/Json.h"
#include "core/duplicates/DuplicateGuard.h"
#include "core/tasks/DuplicatesTask.h"
#include "tests/support/TaskFixture.h"

#include <barrier>

namespace orvane::test {
namespace {

class DuplicatesTask : public TaskFixture {
 public:
  std::string file(std::string_view name, std::string_view content = "content") const {
    return tree.file("Downloads/" + std::string(name), content);
  }
  Proposal find(std::vector<FileUrl> searched, DuplicateKeepStrategy strategy) {
    auto proposal = proposeDuplicates(taskServices(), {std::move(searched), strategy});
    EXPECT_TRUE(proposal);
    return *std::move(proposal);
  }
  Proposal find(DuplicateKeepStrategy strategy = DuplicateKeepStrategy::keepShortestPath) {
    return find({tree.url("Downloads")}, strategy);
  }
  RunReport clean(const Proposal& proposal, const Selection& selection) {
    return carryOut(taskServices(), proposal.approve(selection));
  }
  RunReport clean(const Proposal& proposal) { return carryOut(taskServices(), proposal.approve()); }

  // The rows of these names chosen, and no others.
  static Selection choose(const Proposal& proposal, const std::set<std::string>& names) {
    auto selection = proposal.selection();
    proposal.forEach([&](std::size_t index, const ProposedRow& row) {
      const bool isWanted = names.contains(std::string(row.item.relativePath()));
      selection.set(index, isWanted ? Selection::Whether::selected : Selection::Whether::unselected);
    });
    return selection;
  }
  static Selection inverted(const Proposal& proposal) {
    auto selection = proposal.selection();
    for (std::size_t at = 0; at < selection.size(); ++at) {
      selection.set(at, selection.isSelected(at) ? Selection::Whether::unselected : Selection::Whether::selected);
    }
    return selection;
  }

  // Of the files in ~/Downloads; what is in the Trash does not count.
  std::multiset<std::string> contents() const {
    std::multiset<std::string> result;
    for (const auto& entry : fs::recursive_directory_iterator(tree.path("Downloads"))) {
      if (entry.is_regular_file() && !entry.is_symlink()) result.insert(contentOf(entry.path()));
    }
    return result;
  }
};

TEST_F(DuplicatesTask, proposesEveryCopyAndMovesThemAsOneRunThatComesBack) {
  file("a");
  const auto copy = file("copy of a");
  file("big", "larger content");
  const auto other = file("sub/big", "larger content");
  const auto proposal = find();
  ASSERT_EQ(proposal.groups().size(), 2U);
  EXPECT_THAT(firstRowsOfGroups(proposal), ElementsAre(0, 2));
  EXPECT_EQ(duplicateGroupAt(proposal, 0, proposal.selection()).fileSize, 14);
  const auto kept = [](const ProposedRow& row) { return row.choice == Choice::unselected; };
  EXPECT_EQ(rowsOf(proposal, kept), (std::set<std::string>{"Downloads/a", "Downloads/big"}));
  const auto report = clean(proposal);
  EXPECT_EQ(report.toTrash, (RowSum{2, 21}));
  EXPECT_EQ(duplicateCleanupText(report), "Cleaned 2 duplicate files, freeing 21 bytes.");
  EXPECT_EQ(duplicateCleanupTitle, "Duplicate Cleanup");
  EXPECT_FALSE(exists(copy) || exists(other));
  EXPECT_THAT(contents(), SizeIs(2));
  const auto entries = journal->getEntries(report.runId.value());
  ASSERT_THAT(entries, SizeIs(2));
  EXPECT_EQ(entries[0].action, JournalAction::trashed);
  EXPECT_EQ(entries[0].checksum, proposal.groups()[0].checksum);
  EXPECT_EQ(journal->restoreRun(*report.runId).restoredCount, 2);
  EXPECT_TRUE(exists(copy) && exists(other));
  // Nothing was asked of a folder of caches, and that is said.
  const auto caches = find({FileUrl(tree.folder("Library/Caches"))}, DuplicateKeepStrategy::keepOldest);
  ASSERT_THAT(caches.notices(), SizeIs(1));
  EXPECT_THAT(firstNotice<FolderLeftOut>(caches.notices())->detail, HasSubstr("is not searched for duplicates"));
}

TEST_F(DuplicatesTask, keepsTheNewestOrTheOneInAFolder) {
  setAge(file("Archive/old"), 30 * 86400.0);
  setAge(file("Archive/older"), 60 * 86400.0);
  setAge(file("Archiven/oldest"), 90 * 86400.0);
  file("new");
  const auto proposal = find();
  const auto kept = [&](const KeepRule& rule) {
    auto selection = proposal.selection();
    applyKeepRule(proposal, rule, selection);
    std::vector<std::string> names;
    proposal.forEach([&](std::size_t index, const ProposedRow& row) {
      if (!selection.isSelected(index))
        names.emplace_back(row.item.url().path().substr(tree.path("Downloads/").size()));
    });
    return names;
  };
  EXPECT_THAT(kept({KeepRule::By::oldest}), ElementsAre("Archiven/oldest"));
  EXPECT_THAT(kept({KeepRule::By::newest}), ElementsAre("new"));
  EXPECT_THAT(kept({KeepRule::By::folder, tree.url("Downloads/Archive")}), ElementsAre("Archive/older"));
  EXPECT_THAT(kept({KeepRule::By::folder, tree.url("Pictures")}), ElementsAre("Archiven/oldest"));
}

TEST_F(DuplicatesTask, choosesByTheRulesOfAGroup) {
  file("a");
  file("bb");
  file("ccc");
  setAge(tree.path("Downloads/bb"), 100);
  const auto proposal = find();
  auto selection = proposal.selection();
  EXPECT_EQ(selection.count(), 2);
  const auto kept = selection.isSelected(0) ? (selection.isSelected(1) ? 2U : 1U) : 0U;
  EXPECT_FALSE(setCopySelected(proposal, kept, true, selection)) << "the last copy";
  EXPECT_EQ(selection.count(), 2);
  EXPECT_TRUE(setCopySelected(proposal, (kept + 1) % 3, false, selection));
  EXPECT_TRUE(setCopySelected(proposal, kept, true, selection));
  applyKeepStrategy(proposal, DuplicateKeepStrategy::keepOldest, selection);
  EXPECT_EQ(selection.selected(), choose(proposal, {"a", "ccc"}).selected());
  // A copy that has gone is none that stays.
  const auto rowOf = [&](std::string_view name) {
    std::uint32_t at = 0;
    while (proposal.row(at).item.relativePath() != name) ++at;
    return at;
  };
  selection = choose(proposal, {"a"});
  selection.setThere(rowOf("bb"), false);
  EXPECT_FALSE(setCopySelected(proposal, rowOf("ccc"), true, selection));
  selection.selectAll();
  EXPECT_EQ(proposal.approve(selection).rows().size(), 1U);
}

TEST_F(DuplicatesTask, proposesAgainFromItsSubjectInsideTheBoundary) {
  file("a");
  file("bb");
  tree.file("Elsewhere/ccc", "content");
  const auto first = find({tree.url("Downloads"), tree.url("Elsewhere")}, DuplicateKeepStrategy::keepShortestPath);
  EXPECT_EQ(first.size(), 3U);
  const auto again = reproposeDuplicates(taskServices(), first.subject(), roots(), first.countedTo());
  ASSERT_TRUE(again);
  EXPECT_EQ(rowsOf(*again), (std::set<std::string>{"Downloads/a", "Downloads/bb"}));
  EXPECT_EQ(again->notices(), Notices{(FolderLeftOut{tree.url("Elsewhere"), FolderLeftOut::Why::notGranted})});
  for (const auto* text : {"{}", R"({"folders":["x"],"keep":"Keep Oldest File"})", R"({"folders":[],"keep":"none"})"}) {
    EXPECT_THROW(static_cast<void>(reproposeDuplicates(taskServices(), parseJson(text), roots(), first.countedTo())),
                 JsonError)
        << text;
  }
}

TEST_F(DuplicatesTask, appliesASavedProposalWhereTheCopiesStillAreSuch) {
  file("a");
  const auto copy = file("copy of a");
  file("kept", "larger content");
  const auto lonely = file("copy of kept", "larger content");
  const auto text = savedText(find().approve());
  fs::remove(tree.path("Downloads/kept"));
  const auto saved = proposeSaved(taskServices(), SavedProposal::decode(text), roots());
  ASSERT_TRUE(saved);
  const auto report = clean(*saved);
  EXPECT_EQ(report.toTrash, (RowSum{1, 7}));
  EXPECT_EQ(rowsOf(*saved, [](const auto& row) { return row.lock == Lock::refused; }),
            std::set<std::string>{"Downloads/copy of kept"});
  EXPECT_TRUE(exists(lonely));
  EXPECT_FALSE(exists(copy));
}

TEST_F(DuplicatesTask, keepsOneOfAGroupWhoseCopiesAreAllChosen) {
  file("a");
  file("bb");
  const auto proposal = find();
  EXPECT_EQ(clean(proposal, choose(proposal, {})).runId, std::nullopt);
  EXPECT_THAT(journal->getRuns(), IsEmpty());
  auto selection = proposal.selection();
  selection.selectAll();
  EXPECT_EQ(clean(proposal, selection).moved(), 1);
  EXPECT_THAT(contents(), SizeIs(1));
}

TEST_F(DuplicatesTask, keepsOneWhereTwoGroupsKeepDifferentCopies) {
  file("a");
  file("bb");
  const auto found = find();
  ProposalBuilder builder(TaskKind::duplicates, roots(), ReferenceClock::now());
  for (const std::uint32_t kept : {0U, 1U}) {
    const auto group = builder.addGroup({.keepsOne = true});
    for (std::uint32_t at = 0; at < 2; ++at) {
      builder.add(found.row(at).item, {at == kept ? Choice::unselected : Choice::selected, Lock::none, group});
    }
  }
  EXPECT_EQ(clean(builder.take()).moved(), 1);
  EXPECT_THAT(contents(), SizeIs(1));
}

TEST_F(DuplicatesTask, leavesACopyThatIsNoLongerWhatWasFound) {
  const Rows<const char*, void (*)(const std::string& kept, const std::string& copy), const char*> rows{
      {"copy was written", [](const auto&, const auto& copy) { writeAt(copy, 100'000, "y"); }, "changed since"},
      {"copy grew", [](const auto&, const auto& copy) { writeAt(copy, 200'000, "y"); }, "changed since"},
      {"copy is gone", [](const auto&, const auto& copy) { fs::remove(copy); }, "File not found"},
      {"copy became a link",
       [](const auto& kept, const auto& copy) {
         fs::remove(copy);
         fs::create_symlink(kept, copy);
       },
       "changed since"},
      // The same in everything but that it is another file.
      {"copy was replaced",
       [](const auto& kept, const auto& copy) {
         const auto time = fs::last_write_time(copy);
         fs::copy_file(kept, copy + " new");
         fs::rename(copy + " new", copy);
         fs::last_write_time(copy, time);
       },
       "changed since"},
      // Same size, same time, other content: only reading tells.
      {"copy was written unnoticed",
       [](const auto&, const auto& copy) {
         const auto time = fs::last_write_time(copy);
         writeAt(copy, 199'999, "y");
         fs::last_write_time(copy, time);
       },
       "not the same as the copy to keep"},
      {"kept was written", [](const auto& kept, const auto&) { writeAt(kept, 3, "y"); }, "not the same"},
      {"kept shrank", [](const auto& kept, const auto&) { fs::resize_file(kept, 5); }, "not the same"},
      {"kept is gone", [](const auto& kept, const auto&) { fs::remove(kept); }, "no other copy"},
      {"kept became the copy",
       [](const auto& kept, const auto& copy) {
         fs::remove(kept);
         fs::create_hard_link(copy, kept);
       },
       "the very file"},
      {"kept became a link to the copy",
       [](const auto& kept, const auto& copy) {
         fs::remove(kept);
         fs::create_symlink(copy, kept);
       },
       "no other copy"},
      {"kept became a pipe",
       [](const auto& kept, const auto&) {
         fs::remove(kept);
         ASSERT_EQ(::mkfifo(kept.c_str(), 0600), 0);
       },
       "no other copy"},
  };
  for (const auto& [name, change, reason] : rows) {
    SCOPED_TRACE(name);
    fs::remove_all(tree.path("Downloads"));
    const auto kept = file("a", std::string(200'000, 'x'));
    const auto copy = file("copy", std::string(200'000, 'x'));
    setAge(copy, 100);
    const auto proposal = find();
    ASSERT_THAT(proposal.groups(), SizeIs(1));
    change(kept, copy);
    const auto before = contents();
    const auto report = clean(proposal);
    EXPECT_EQ(report.moved(), 0);
    EXPECT_EQ(contents(), before);
    ASSERT_THAT(report.outcomes, SizeIs(1));
    EXPECT_EQ(report.outcomes[0].source.path(), copy);
    EXPECT_THAT(report.outcomes[0].error, HasSubstr(reason));
    EXPECT_THAT(journal->getRuns(), IsEmpty());
  }
}

TEST_F(DuplicatesTask, countsNoCopyInTheTrash) {
  tree.file(".local/share/Trash/files/old");
  file("a");
  file("copy");
  const auto proposal =
      find({tree.url(".local/share/Trash/files"), tree.url("Downloads")}, DuplicateKeepStrategy::keepOldest);
  ASSERT_EQ(proposal.size(), 3U);
  const auto report = clean(proposal, choose(proposal, {"a", "copy"}));
  EXPECT_EQ(report.moved(), 0);
  EXPECT_THAT(report.outcomes[0].error, HasSubstr("no other copy"));
}

TEST_F(DuplicatesTask, takesAnotherCopyThatStaysForTheOneThatIsGone) {
  const auto first = file("a");
  file("bb");
  file("ccc");
  const auto proposal = find();
  fs::remove(first);
  EXPECT_EQ(clean(proposal, choose(proposal, {"ccc"})).moved(), 1);
  EXPECT_THAT(contents(), SizeIs(1));
}

TEST_F(DuplicatesTask, movesNothingOutsideTheBoundary) {
  tree.file("Elsewhere/copy of a");
  file("a");
  const auto found = find({tree.url("Downloads"), tree.url("Elsewhere")}, DuplicateKeepStrategy::keepShortestPath);
  ProposalBuilder builder(TaskKind::duplicates, roots(), ReferenceClock::now());
  const auto group = builder.addGroup({.keepsOne = true});
  found.forEach([&](std::size_t, const ProposedRow& row) { builder.add(row.item, {row.choice, row.lock, group}); });
  const auto report = clean(builder.take());
  EXPECT_EQ(report.moved(), 0);
  EXPECT_EQ(report.outcomes[0].result, MoveResult::refused);
  EXPECT_TRUE(exists(tree.path("Elsewhere/copy of a")));
}

TEST_F(DuplicatesTask, givesUpItsTurnWhenStopped) {
  file("a");
  file("bb");
  const auto approval = find().approve();
  const auto other = FileLock::acquire(journalFolder() + "/" + std::string(DuplicateGuard::lockName));
  std::stop_source stop;
  RunReport report;
  std::jthread waiting([&] { report = carryOut(taskServices(), approval, {}, stop.get_token()); });
  stop.request_stop();
  waiting.join();
  EXPECT_EQ(report.left, 1);
  EXPECT_THAT(contents(), SizeIs(2));
}

TEST_F(DuplicatesTask, movesNothingWhereNoTurnCanBeTaken) {
  file("a");
  file("bb");
  tree.folder("State/" + std::string(DuplicateGuard::lockName));
  const auto report = clean(find());
  EXPECT_EQ(report.failed, 1);
  EXPECT_THAT(report.outcomes[0].error, HasSubstr("cannot be written"));
  EXPECT_THAT(contents(), SizeIs(2));
}

// Two cleanups that keep different copies go on at the same time: of every group one copy stays.
TEST_F(DuplicatesTask, keepsOneWhenTwoCleanAtOnce) {
  constexpr int pairs = 60;
  for (int i = 0; i < pairs; ++i) {
    file("a" + std::to_string(i), "content " + std::to_string(i));
    file("copy of a" + std::to_string(i), "content " + std::to_string(i));
  }
  const auto proposal = find();
  std::barrier start(2);
  std::vector<RunReport> reports(2);
  {
    const auto run = [&](const Selection& selection, RunReport& report) {
      LinuxTrash ownTrash(trashPath());
      LinuxFileMover ownFileMover;
      TrashMover ownMover(ownTrash, ownFileMover, validator);
      UndoJournal ownJournal(ownTrash, ownFileMover, validator, FileUrl(journalFolder()));
      const auto own = taskServices(ownMover, [&]() -> UndoJournal& { return ownJournal; });
      start.arrive_and_wait();
      report = carryOut(own, proposal.approve(selection));
    };
    std::jthread one([&] { run(proposal.selection(), reports[0]); });
    std::jthread two([&] { run(inverted(proposal), reports[1]); });
  }
  EXPECT_EQ(reports[0].moved() + reports[1].moved(), pairs);
  const auto left = contents();
  EXPECT_THAT(left, SizeIs(pairs));
  for (int i = 0; i < pairs; ++i) EXPECT_EQ(left.count("content " + std::to_string(i)), 1U) << i;
}

// No change between search and cleaning leaves a content only in the Trash.
class Race : public DuplicatesTask, public testing::WithParamInterface<unsigned> {
 public:
  std::size_t below(std::size_t end) { return std::uniform_int_distribution<std::size_t>(0, end - 1)(random); }
  std::string content() { return std::string(20'000, static_cast<char>('a' + below(3))) + std::string(below(3), 'z'); }

  void meddle(const std::vector<std::string>& paths) {
    const auto& path = paths[below(paths.size())];
    const auto& other = paths[below(paths.size())];
    if (!fs::exists(path) || path == other) return;
    switch (below(7)) {
      case 0:
        return writeAt(path, static_cast<std::int64_t>(below(20'000)), "!");
      case 1:
        fs::remove(path);
        return;
      case 2:
        return fs::resize_file(path, below(20'000));
      case 3:
        return fs::rename(path, other);
      case 4:
        fs::remove(other);
        return fs::create_hard_link(path, other);
      case 5:
        fs::remove(other);
        return fs::create_symlink(path, other);
      default: {
        // A file that keeps its time and its size.
        const auto time = fs::last_write_time(path);
        writeAt(path, static_cast<std::int64_t>(below(20'000)), "?");
        fs::last_write_time(path, time);
      }
    }
  }

  std::mt19937 random{GetParam()};
};

TEST_P(Race, losesNoContent) {
  std::vector<std::string> paths;
  for (int i = 0; i < 40; ++i) paths.push_back(file("f" + std::to_string(i), content()));
  const auto proposal = find(allDuplicateKeepStrategies.at(below(2)));
  for (int i = 0; i < 25; ++i) meddle(paths);
  const auto before = contents();
  const auto report = clean(proposal);
  const auto after = contents();
  EXPECT_EQ(std::set(before.begin(), before.end()), std::set(after.begin(), after.end()));
  EXPECT_GT(report.moved(), 0);
}

INSTANTIATE_TEST_SUITE_P(Seeds, Race, Range(1U, 21U));

}  // namespace
}  // namespace orvane::test
