#pragma once

#include "core/assistant/AgentCoordinator.h"
#include "core/assistant/services/KeychainService.h"
#include "core/duplicates/DuplicateFinderEngine.h"
#include "core/organizer/categories/CategoryPreferencesStore.h"
#include "core/organizer/propose/FolderOrganizerEngine.h"
#include "core/organizer/services/AutoOrganizeSettingsStore.h"
#include "core/organizer/topics/TopicCategorizerFactory.h"
#include "core/platform/FileStatusReader.h"
#include "core/rules/RuleEngine.h"
#include "core/safety/access/FileAccessService.h"
#include "core/safety/access/KeepList.h"
#include "core/scanning/scan/StorageScanner.h"
#include "core/tasks/CarryOut.h"
#include "core/tasks/SavedProposal.h"
#include "core/tasks/TaskServices.h"
#include "core/uninstaller/AppUninstallerEngine.h"
#include "platform/linux/LinuxApplications.h"
#include "platform/linux/LinuxFolderGrants.h"
#include "platform/linux/LinuxPreferences.h"
#include "tests/support/SafetyFixture.h"
#include "tests/support/ScriptedModel.h"

namespace orvane::test {

// A key ring without a key, and a network that nobody may use.
class NoSecrets : public SecretStore {
 public:
  [[nodiscard]] bool add(const std::string& /*service*/, const std::string& /*account*/,
                         const SecretText& /*secret*/) override {
    return false;
  }
  [[nodiscard]] bool remove(const std::string& /*service*/, const std::string& /*account*/) override { return true; }
  [[nodiscard]] std::optional<SecretText> find(const std::string& /*service*/,
                                               const std::string& /*account*/) override {
    return std::nullopt;
  }
};
class NoNetwork : public HttpTransport {
 public:
  [[nodiscard]] HttpResponse send(const HttpRequest& /*request*/, const std::stop_token& /*stop*/) override {
    throw HttpError(HttpError::Failed{"nothing may be sent"});
  }
};

// Creation dates cannot be set: a file counts as made when it was last changed, or when the test says.
class BackdatedStatusReader : public FileStatusReader {
 public:
  [[nodiscard]] std::optional<FileStatus> read(int folder, const char* name) const noexcept override {
    auto status = readFileStatus(folder, name);
    if (status) status->created = created.value_or(status->modified);
    return status;
  }
  std::optional<FileTime> created;
};

// The tasks over a home of their own: ~/Downloads is granted.
class TaskFixture : public SafetyFixture {
 public:
  TaskFixture() { folders.saveBookmark(tree.url("Downloads")); }

  [[nodiscard]] TaskServices taskServices() {
    return taskServices(mover, [this]() -> UndoJournal& { return *journal; });
  }
  // As another process has them, which moves and records by itself.
  [[nodiscard]] TaskServices taskServices(TrashMover& ownMover, std::function<UndoJournal&()> ownJournal) {
    return {
        .validator = validator,
        .statusReader = statusReader,
        .scanner = scanner,
        .folders = folders,
        .keepList = keepList,
        .mover = ownMover,
        .rules = rules,
        .finder = finder,
        .organizer = organizer,
        .learned = learned,
        .topics = topics,
        .tidySettings = tidySettings,
        .uninstaller = uninstaller,
        .agent = *planner,
        .home = FileUrl(tree.path()),
        .journal = std::move(ownJournal),
    };
  }

  // Paths below the home of the rows that pass.
  template <typename Passes>
  [[nodiscard]] std::set<std::string> rowsOf(const Proposal& proposal, Passes passes) const {
    std::set<std::string> result;
    proposal.forEach([&](std::size_t, const ProposedRow& row) {
      if (passes(row)) result.insert(row.item.url().path().substr(tree.path().size() + 1));
    });
    return result;
  }
  [[nodiscard]] std::set<std::string> rowsOf(const Proposal& proposal) const {
    return rowsOf(proposal, [](const ProposedRow&) { return true; });
  }

  // The rows that are proposed chosen, but for those of a name.
  [[nodiscard]] static Selection without(const Proposal& proposal, std::string_view name) {
    auto selection = proposal.selection();
    proposal.forEach([&](std::size_t index, const ProposedRow& row) {
      if (row.item.url().lastPathComponent() == name) selection.set(index, Selection::Whether::unselected);
    });
    return selection;
  }
  // As a file that was written tells it.
  [[nodiscard]] static std::string savedText(const Approval& approval) {
    std::string text;
    writeProposal(approval, [&](std::string_view piece) { text += piece; });
    return text;
  }

  LinuxPreferences preferences{tree.path(".config/orvane/preferences.json")};
  LinuxFolderGrants grants;
  BackdatedStatusReader statusReader;
  FileAccessService folders{preferences, grants, tree.path()};
  KeepList keepList{preferences, tree.path()};
  StorageScanner scanner{validator, statusReader};
  RuleEngine rules{preferences, mover, *journal, validator};
  DuplicateFinderEngine finder{validator, statusReader};
  CategoryPreferencesStore learned{preferences};
  ScriptedModel topicModel;
  TopicCategorizerFactory topics{topicModel};
  FolderOrganizerEngine organizer{learned, mover, validator};
  AutoOrganizeSettingsStore tidySettings{preferences};
  LinuxApplications applications{{XdgFolders::below(tree.path()), tree.path("Downloads"), tree.path("system")}};
  AppUninstallerEngine uninstaller{validator, FileUrl(tree.path()), applications};
  NoSecrets secrets;
  KeychainService keychain{secrets};
  NoNetwork network;
  AgentCoordinator agent{keychain, network, ProviderAddresses()};
  AgentCoordinator* planner = &agent;  // a test may put its own there
};

}  // namespace orvane::test
