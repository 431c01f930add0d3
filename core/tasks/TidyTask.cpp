#include "core/tasks/TidyTask.h"

#include "core/base/files/PathText.h"
#include "core/base/text/Json.h"
#include "core/organizer/propose/FolderOrganizerEngine.h"
#include "core/organizer/propose/ProposedNames.h"
#include "core/organizer/propose/TidyFolder.h"
#include "core/organizer/records/AutoOrganizeSettings.h"
#include "core/organizer/topics/TopicCategorizerFactory.h"
#include "core/organizer/topics/TopicNames.h"
#include "core/safety/journal/UndoJournal.h"
#include "core/tasks/CarryOut.h"
#include "core/tasks/Folders.h"
#include "core/tasks/KeptRows.h"
#include "core/tasks/MovableItems.h"
#include "core/tasks/NamedTopics.h"
#include "core/tasks/TaskServices.h"

#include <fcntl.h>

#include <algorithm>
#include <chrono>
#include <map>
#include <set>
#include <span>
#include <string>
#include <utility>

namespace orvane {
namespace {

constexpr double secondsPerDay = 86400;
constexpr std::string_view returnedKey = "takesReturned";
constexpr std::string_view foldersCategory = "Folders";
constexpr std::string_view lockName = "auto_organize.lock";

// Collects the moves of one folder into a group for each destination.
class GroupBuilder {
 public:
  explicit GroupBuilder(const FileUrl& folder) : m_folder(folder) {}

  void add(const TidyItem& item, const FileUrl& root, const std::string& category, const std::string& name) {
    auto& group = groupFor(FolderOrganizerEngine::categoryFolder(root, category), name);
    ProposedMove move;
    move.originalURL = item.url;
    move.targetURL = m_names.take(group.destinationFolder, item.url.lastPathComponent());
    move.categoryName = name;
    move.isDirectory = item.kind == ItemKind::folder;
    move.fileSize = move.isDirectory ? FolderOrganizerEngine::fastFolderSize(item.url) : item.identity.size;
    move.sourceRelativePath = item.url.path().substr(m_folder.path().size() + 1);
    move.identity = item.identity;
    group.moves.push_back(std::move(move));
  }

  // In order of their names.
  [[nodiscard]] std::vector<OrganizationCategoryGroup> take() {
    std::vector<OrganizationCategoryGroup> groups;
    for (auto& [destination, group] : m_groups) groups.push_back(std::move(group));
    std::ranges::stable_sort(groups, {}, &OrganizationCategoryGroup::name);
    return groups;
  }

 private:
  OrganizationCategoryGroup& groupFor(FileUrl destination, const std::string& name) {
    const auto [found, isNew] = m_groups.try_emplace(destination);
    if (isNew) found->second = {Uuid::random(), name, std::move(destination), {}};
    return found->second;
  }

  const FileUrl& m_folder;
  std::map<FileUrl, OrganizationCategoryGroup> m_groups;
  ProposedNames m_names;
};

// The folders below "Sorted" of the topics that the names of the items have. Topics share it with the categories.
std::map<std::string, std::string> topicsOf(const TaskServices& services, const std::vector<TidyItem>& items,
                                            const FileUrl& sorted, NamedTopics& topics, const std::stop_token& stop) {
  std::set<std::string> names;
  for (const auto& item : items) {
    if (item.kind == ItemKind::file) names.emplace(item.url.lastPathComponent());
  }
  const std::vector<std::string> asked(names.begin(), names.end());
  // The folders below "Sorted" that no category made.
  const auto existing = TopicNames::foldersBelow(sorted, [&](const std::string& name) {
    return TopicNames::folderName(name) == name && !services.organizer.isGeneratedFolder(name);
  });
  return TopicNames::foldersOf(topics.topics(asked, existing, stop), existing);
}

// How watched folders are looked at.
struct Watch {
  std::int64_t recentsDays = 3;
  const Boundary& boundary;
  Date now;
  ReturnedUse returned = ReturnedUse::leave;
};

struct WatchedFolder {
  FileUrl folder;
  std::optional<NamedTopics> topics;
};

Json subjectOf(const std::vector<WatchedFolder>& watched, const Watch& watch) {
  Json json = Json::object();
  json["recentsDays"] = watch.recentsDays;
  json[returnedKey] = watch.returned == ReturnedUse::take;
  auto& folders = json["folders"] = Json::array();
  for (const auto& [folder, topics] : watched) {
    Json entry = Json::object();
    entry["folder"] = jsonFromUrl(folder);
    if (topics) entry["topics"] = topics->toJson();
    folders.push_back(std::move(entry));
  }
  return json;
}

// The items of a watched folder but for what no run would move and what a restore brought back, which is noted.
TidyFolder itemsIn(const TaskServices& services, const FileUrl& folder, const Watch& watch, ProposalBuilder& builder) {
  const std::chrono::duration<double> recentAge(static_cast<double>(watch.recentsDays) * secondsPerDay);
  auto items = TidyFolder::read(folder, recentAge, watch.now, services.statusReader);
  if (items.recent.empty() && items.older.empty()) return items;
  KeptRows kept(services);
  MovableItems movable(services.validator, watch.boundary, kept);
  RowsReturned left;
  const ReturnedItems here(services.journal(), folder);
  const ReturnedItems inRecents(services.journal(), folder.appendingPathComponent(recentsFolderName));
  const auto stays = [&](const TidyItem& item) {
    if (!movable.admits(item.url, item.identity.size)) return true;
    const auto& returned = item.url.deletingLastPathComponent() == folder ? here : inRecents;
    if (watch.returned == ReturnedUse::take || !returned.holds(item.url, item.identity)) return false;
    left.rows.add(item.kind == ItemKind::folder ? 0 : item.identity.size);
    return true;
  };
  std::erase_if(items.recent, stays);
  std::erase_if(items.older, stays);
  for (auto& notice : movable.notices()) builder.note(std::move(notice));
  kept.noteIn(builder);
  if (left.rows.count > 0) builder.note(left);
  return items;
}

// False when it was stopped.
bool addFolder(ProposalBuilder& builder, const TaskServices& services, WatchedFolder& watched, const Watch& watch,
               const TaskMonitor& monitor) {
  const auto& folder = watched.folder;
  if (auto problem = problemWith(services, folder, watch.boundary)) {
    builder.note(*std::move(problem));
    return true;
  }
  const auto items = itemsIn(services, folder, watch, builder);
  GroupBuilder groups(folder);
  const std::string recents(recentsFolderName);
  for (const auto& item : items.recent) groups.add(item, folder, recents, recents);
  const auto sorted = folder.appendingPathComponent(topicsFolderName);
  std::map<std::string, std::string> topicByName;
  if (watched.topics && !items.older.empty() && !monitor.stop.stop_requested()) {
    if (monitor.namingTopics) monitor.namingTopics();
    topicByName = topicsOf(services, items.older, sorted, *watched.topics, monitor.stop);
  }
  if (monitor.stop.stop_requested()) return false;
  const auto chooser = services.organizer.chooserFor(folder, OrganizationStrategy::byCategory);
  for (const auto& item : items.older) {
    const auto name = item.url.lastPathComponent();
    if (item.kind == ItemKind::folder) {
      groups.add(item, sorted, std::string(foldersCategory), std::string(foldersCategory));
      continue;
    }
    const auto topic = topicByName.find(std::string(name));
    const auto category = topic != topicByName.end() ? topic->second : chooser.categoryOf({.name = name});
    groups.add(item, sorted, category, category);
  }
  for (const auto& group : groups.take()) addCategoryGroup(builder, group, services.validator, watch.boundary);
  return true;
}

std::optional<Proposal> propose(const TaskServices& services, std::vector<WatchedFolder> folders, const Watch& watch,
                                const TaskMonitor& monitor) {
  ProposalBuilder builder(TaskKind::tidy, watch.boundary, watch.now);
  for (auto& watched : folders) {
    if (!addFolder(builder, services, watched, watch, monitor)) return std::nullopt;
  }
  builder.setSubject(subjectOf(folders, watch));
  return builder.take();
}

std::vector<WatchedFolder> watchedFolders(const TaskServices& services, std::span<const FileUrl> folders,
                                          TopicUse topics) {
  auto* model = topics == TopicUse::whenAvailable ? services.topics.categorizer() : nullptr;
  std::vector<WatchedFolder> result;
  for (const auto& folder : folders) {
    result.push_back({folder, model != nullptr ? std::optional<NamedTopics>(*model) : std::nullopt});
  }
  return result;
}

}  // namespace

TidyOptions TidyOptions::of(const AutoOrganizeSettings& settings) {
  return {settings.folderURLs(), settings.recentsDays, settings.useAITopics ? TopicUse::whenAvailable : TopicUse::never,
          ReturnedUse::leave};
}

TidyLook lookForTidying(const TaskServices& services, const TidyOptions& options, Date now,
                        const TaskMonitor& monitor) {
  TidyLook look;
  for (const auto& folder : options.folders) {
    const Boundary boundary({folder});
    auto proposal = propose(services, watchedFolders(services, std::span(&folder, 1), options.topics),
                            {options.recentsDays, boundary, now, options.returned}, monitor);
    if (!proposal) return {};
    const auto& notices = proposal->notices();
    look.notices.insert(look.notices.end(), notices.begin(), notices.end());
    if (!proposal->empty()) look.proposals.push_back({folder, *std::move(proposal)});
  }
  return look;
}

std::optional<TidyPass> TidyPass::begin(const TaskServices& services) {
  FileDescriptor lockFile(
      ::open(joinPath(services.journal().storageFolder(), lockName).c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
  if (!lockFile) throwErrno();
  auto lock = FileLock::tryAcquire(lockFile);
  if (!lock) return std::nullopt;
  return TidyPass(services, *std::move(lock));
}

RunReport TidyPass::carryOut(const Approval& approval, const RunProgress& progress, const std::stop_token& stop) const {
  return orvane::carryOut(m_services, approval, progress, stop);
}

std::optional<Proposal> proposeTidy(const TaskServices& services, const TidyOptions& options, Date now,
                                    const TaskMonitor& monitor) {
  const Boundary boundary(options.folders);
  return propose(services, watchedFolders(services, options.folders, options.topics),
                 {options.recentsDays, boundary, now, options.returned}, monitor);
}

std::optional<Proposal> reproposeTidy(const TaskServices& services, const Json& subject, const Boundary& boundary,
                                      Date countedTo, const TaskMonitor& monitor) {
  const auto& folders = requiredKey(subject, "folders");
  if (!folders.is_array()) throw JsonError("\"folders\" must be an array");
  std::vector<WatchedFolder> watched;
  for (const auto& entry : folders) {
    auto& folder = watched.emplace_back(WatchedFolder{urlAt(entry, "folder"), std::nullopt});
    if (const auto* known = optionalKey(entry, "topics")) folder.topics.emplace(*known);
  }
  const bool takesReturned = optionalKey(subject, returnedKey) != nullptr && booleanAt(subject, returnedKey);
  const auto returned = takesReturned ? ReturnedUse::take : ReturnedUse::leave;
  return propose(services, std::move(watched), {integerAt(subject, "recentsDays"), boundary, countedTo, returned},
                 monitor);
}

}  // namespace orvane
