#pragma once

#include "core/base/Date.h"
#include "core/base/FileUrl.h"
#include "core/organizer/AutoOrganizeResult.h"
#include "core/organizer/OrganizationCategoryGroup.h"
#include "core/organizer/TidyFolder.h"
#include "core/organizer/TopicUse.h"
#include "core/safety/CleanupRun.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <stop_token>
#include <string>
#include <unordered_map>
#include <vector>

namespace orvane {

class FileStatusReader;
class FolderOrganizerEngine;
class PathValidator;
class TopicCategorizerFactory;
class TopicCategorizing;
class UndoJournal;

// What would be moved in one watched folder.
struct TidyProposal {
  FileUrl folder;
  std::vector<OrganizationCategoryGroup> groups;  // in order of their names
  std::unordered_map<FileUrl, ItemIdentity> identities;

  [[nodiscard]] bool empty() const noexcept { return groups.empty(); }
};

struct AutoOrganizeRequest {
  std::vector<FileUrl> folders;
  std::int64_t recentsDays = 3;  // of 86,400 seconds each
  TopicUse topics = TopicUse::never;
  Date now = ReferenceClock::now();
  // Asked once with what would be done, when there is anything; a no changes nothing. Without it nobody is asked.
  std::function<bool(std::span<const TidyProposal>)> approve = {};
  CleanupRun::Progress progress = {};  // of the folder that is worked on
};

struct AutoOrganizeReport {
  enum class End : std::uint8_t {
    completed,
    declined,  // by whoever was asked
    busy,      // another run is under way, in this process or in another
  };
  AutoOrganizeResult result;
  End end = End::completed;
  std::vector<MoveOutcome> notMoved;  // what was to move and did not, with the reasons
};

// Keeps watched folders tidy: what arrived lately goes to "Recents", older files to categories or topics below
// "Sorted". Everything is journalled, one run for each folder.
class AutoOrganizer {
 public:
  // The collaborators must outlive this object. `factory` hands out the categorizer for topics.
  AutoOrganizer(FolderOrganizerEngine& engine, TopicCategorizerFactory& factory, UndoJournal& journal,
                const FileStatusReader& statusReader, const PathValidator& validator);
  static AutoOrganizer& shared();

  // Two runs never overlap, also not of two processes: the later one does nothing. A folder that is missing, refused or
  // fails does not stop the next. Throws std::system_error when the lock between processes cannot be made.
  AutoOrganizeReport run(const AutoOrganizeRequest& request, const std::stop_token& stop = {});

  // Seconds since the later of creation and modification; zero where neither can be read.
  [[nodiscard]] double age(const FileUrl& item, Date now) const;

 private:
  [[nodiscard]] TidyProposal propose(const FileUrl& folder, const AutoOrganizeRequest& request,
                                     const std::stop_token& stop) const;
  [[nodiscard]] std::vector<std::string> categoriesOf(const std::vector<TidyItem>& items, const FileUrl& folder,
                                                      TopicUse topics, const std::stop_token& stop) const;
  void apply(TidyProposal proposal, const CleanupRun::Progress& progress, AutoOrganizeReport& report,
             const std::stop_token& stop);

  FolderOrganizerEngine& m_engine;
  TopicCategorizerFactory& m_factory;
  UndoJournal& m_journal;
  const FileStatusReader& m_statusReader;
  const PathValidator& m_validator;
};

}  // namespace orvane
