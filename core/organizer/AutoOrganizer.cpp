#include "core/organizer/AutoOrganizer.h"

#include "core/base/CanonicalPath.h"
#include "core/base/CheckedArithmetic.h"
#include "core/base/FileLock.h"
#include "core/base/PathAccess.h"
#include "core/base/PathText.h"
#include "core/base/UnicodeText.h"
#include "core/organizer/FolderOrganizerEngine.h"
#include "core/organizer/GeneratedFolders.h"
#include "core/organizer/ProposedNames.h"
#include "core/organizer/TopicCategorizerFactory.h"
#include "core/organizer/TopicNames.h"
#include "core/platform/FileStatusReader.h"
#include "core/safety/PathValidator.h"
#include "core/safety/UndoJournal.h"

#include <fcntl.h>

#include <algorithm>
#include <array>
#include <map>
#include <set>
#include <utility>

namespace orvane {
namespace {

constexpr double secondsPerDay = 86400;
constexpr std::string_view lockName = "auto_organize.lock";
constexpr std::array<std::string_view, 3> ownFolders{recentsFolderName, keepAsIsFolderName, topicsFolderName};

// Whether a folder below "Sorted" may have the name of this topic: topics share that folder with the categories.
bool isUsableTopic(const std::string& topic) {
  const auto isSame = [&](std::string_view name) { return lowercased(name) == lowercased(topic); };
  return TopicNames::canNameFolder(topic) &&
         std::none_of(reservedTopLevelCategories.begin(), reservedTopLevelCategories.end(), isSame) &&
         std::none_of(ownFolders.begin(), ownFolders.end(), isSame);
}

// Collects the moves of one folder into a group for each destination.
class ProposalBuilder {
 public:
  explicit ProposalBuilder(const FileUrl& folder) : m_folder(folder) {}

  void add(const TidyItem& item, const FileUrl& root, const std::string& category, const std::string& name) {
    auto& group = groupFor(FolderOrganizerEngine::categoryFolder(root, category), name);
    ProposedMove move;
    move.originalURL = item.url;
    move.targetURL = m_names.take(group.destinationFolder, item.url.lastPathComponent());
    move.categoryName = name;
    move.isDirectory = item.kind == ItemKind::folder;
    move.fileSize = move.isDirectory ? FolderOrganizerEngine::fastFolderSize(item.url) : item.identity.size;
    move.sourceRelativePath = item.url.path().substr(m_folder.path().size() + 1);
    m_proposal.identities.emplace(item.url, item.identity);
    group.moves.push_back(std::move(move));
  }

  [[nodiscard]] TidyProposal take() {
    m_proposal.folder = m_folder;
    for (auto& [destination, group] : m_groups) m_proposal.groups.push_back(std::move(group));
    std::stable_sort(m_proposal.groups.begin(), m_proposal.groups.end(),
                     [](const auto& left, const auto& right) { return left.name < right.name; });
    return std::move(m_proposal);
  }

 private:
  OrganizationCategoryGroup& groupFor(FileUrl destination, const std::string& name) {
    const auto [found, isNew] = m_groups.try_emplace(destination);
    if (isNew) found->second = {Uuid::random(), name, std::move(destination), {}};
    return found->second;
  }

  const FileUrl& m_folder;
  TidyProposal m_proposal;
  std::map<FileUrl, OrganizationCategoryGroup> m_groups;
  ProposedNames m_names;
};

// Drops what has changed since it was looked at: somebody is working with it.
void dropChanged(TidyProposal& proposal) {
  const auto hasChanged = [&](const ProposedMove& move) {
    const auto status = readPathStatus(move.originalURL.path());
    return !status || ItemIdentity::of(*status) != proposal.identities.at(move.originalURL);
  };
  for (auto& group : proposal.groups) std::erase_if(group.moves, hasChanged);
  std::erase_if(proposal.groups, [](const auto& group) { return group.moves.empty(); });
}

}  // namespace

AutoOrganizer::AutoOrganizer(FolderOrganizerEngine& engine, TopicCategorizerFactory& factory, UndoJournal& journal,
                             const FileStatusReader& statusReader, const PathValidator& validator)
    : m_engine(engine), m_factory(factory), m_journal(journal), m_statusReader(statusReader), m_validator(validator) {}

AutoOrganizeReport AutoOrganizer::run(const AutoOrganizeRequest& request, const std::stop_token& stop) {
  AutoOrganizeReport report;
  FileDescriptor lockFile(
      ::open(joinPath(m_journal.storageFolder(), lockName).c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
  if (!lockFile) throwErrno();
  const auto lock = FileLock::tryAcquire(lockFile);
  if (!lock) {
    report.end = AutoOrganizeReport::End::busy;
    return report;
  }
  std::vector<TidyProposal> proposals;
  for (const auto& folder : request.folders) {
    auto proposal = propose(folder, request, stop);
    if (!proposal.empty()) proposals.push_back(std::move(proposal));
  }
  if (!proposals.empty() && request.approve && !request.approve(proposals)) {
    report.end = AutoOrganizeReport::End::declined;
    return report;
  }
  for (auto& proposal : proposals) {
    if (!stop.stop_requested()) apply(std::move(proposal), request.progress, report, stop);
  }
  return report;
}

double AutoOrganizer::age(const FileUrl& item, Date now) const {
  const auto status = m_statusReader.read(AT_FDCWD, item.path().c_str());
  return status ? itemAge(*status, now) : 0;
}

TidyProposal AutoOrganizer::propose(const FileUrl& folder, const AutoOrganizeRequest& request,
                                    const std::stop_token& stop) const {
  ProposalBuilder builder(folder);
  if (stop.stop_requested() || !m_validator.isPathAllowed(folder, fixedRulesOnly)) return builder.take();
  const std::chrono::duration<double> recentAge(static_cast<double>(request.recentsDays) * secondsPerDay);
  const auto items = TidyFolder::read(folder, recentAge, request.now, m_statusReader);
  const std::string recents(recentsFolderName);
  for (const auto& item : items.recent) builder.add(item, folder, recents, recents);
  if (items.older.empty()) return builder.take();
  const auto sorted = folder.appendingPathComponent(topicsFolderName);
  const auto categories = categoriesOf(items.older, folder, request.topics, stop);
  for (std::size_t i = 0; i < items.older.size(); ++i)
    builder.add(items.older[i], sorted, categories[i], categories[i]);
  return builder.take();
}

std::vector<std::string> AutoOrganizer::categoriesOf(const std::vector<TidyItem>& items, const FileUrl& folder,
                                                     TopicUse topicUse, const std::stop_token& stop) const {
  std::map<std::string, std::string> topics;
  if (auto* categorizer = topicUse == TopicUse::whenAvailable ? m_factory.categorizer() : nullptr) {
    std::set<std::string> names;
    for (const auto& item : items) names.emplace(item.url.lastPathComponent());
    const std::vector<std::string> asked(names.begin(), names.end());
    // The folders below "Sorted" that no category made.
    const auto existing = TopicNames::foldersBelow(
        folder.appendingPathComponent(topicsFolderName),
        [this](const std::string& name) { return isUsableTopic(name) && !m_engine.isGeneratedFolder(name); });
    topics = categorizer->topics(asked, existing, stop);
  }
  const auto chooser = m_engine.chooserFor(folder, OrganizationStrategy::byCategory);
  std::vector<std::string> categories;
  categories.reserve(items.size());
  for (const auto& item : items) {
    const auto name = item.url.lastPathComponent();
    const auto topic = topics.find(std::string(name));
    const bool hasTopic = topic != topics.end() && isUsableTopic(topic->second);
    categories.push_back(hasTopic ? topic->second : chooser.categoryOf({.name = name}));
  }
  return categories;
}

void AutoOrganizer::apply(TidyProposal proposal, const CleanupRun::Progress& progress, AutoOrganizeReport& report,
                          const std::stop_token& stop) {
  dropChanged(proposal);
  if (proposal.empty()) return;
  auto execution = m_engine.carryOut(proposal.groups, m_journal, Boundary({proposal.folder}), progress, stop);
  const auto recents = canonicalPath(proposal.folder.appendingPathComponent(recentsFolderName).path());
  for (auto& outcome : execution.outcomes) {
    if (outcome.result != MoveResult::moved) {
      report.notMoved.push_back(std::move(outcome));
      continue;
    }
    auto& count =
        isSameOrInside(outcome.destination.path(), recents) ? report.result.movedToRecents : report.result.sorted;
    count = checkedAdd<std::int64_t>(count, 1);
  }
  if (execution.summary.itemsProcessed > 0) report.result.batchIDs.push_back(execution.summary.batchId);
}

}  // namespace orvane
