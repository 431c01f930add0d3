#include "core/tasks/OrganizeTask.h"

#include "core/base/text/Json.h"
#include "core/base/text/UnicodeText.h"
#include "core/base/values/CheckedArithmetic.h"
#include "core/organizer/categories/CategoryPreferencesStore.h"
#include "core/organizer/categories/OrganizerCategories.h"
#include "core/organizer/propose/FolderOrganizerEngine.h"
#include "core/organizer/topics/TopicCategorizerFactory.h"
#include "core/organizer/topics/TopicGrouping.h"
#include "core/safety/rules/PathValidator.h"
#include "core/tasks/Folders.h"
#include "core/tasks/KeptRows.h"
#include "core/tasks/LinksToRows.h"
#include "core/tasks/MovableItems.h"
#include "core/tasks/NamedTopics.h"
#include "core/tasks/TaskServices.h"

#include <algorithm>
#include <iterator>
#include <set>
#include <utility>

namespace orvane {
namespace {

using Groups = FolderOrganizerEngine::Groups;

// One group's new name. Groups may share a name once they are renamed: then the place among those of the name counts.
struct Renaming {
  std::string from;
  std::size_t place = 0;
  std::string to;
};

Json toJson(const Renaming& renaming) {
  Json json = Json::object();
  json["from"] = renaming.from;
  json["place"] = renaming.place;
  json["to"] = renaming.to;
  return json;
}

FileUrl destinationOf(const OrganizeOptions& options) {
  return options.destination.value_or(defaultDestination(options.folder));
}

Json subjectOf(const OrganizeOptions& options) {
  Json json = Json::object();
  json["folder"] = jsonFromUrl(options.folder);
  if (options.destination) json["destination"] = jsonFromUrl(*options.destination);
  json["includeSubfolders"] = options.subfolders == Subfolders::include;
  json["strategy"] = rawValue(options.strategy);
  return json;
}

OrganizeOptions organizeOptionsFrom(const Json& subject) {
  OrganizeOptions options;
  options.folder = urlAt(subject, "folder");
  if (optionalKey(subject, "destination") != nullptr) options.destination = urlAt(subject, "destination");
  if (booleanAt(subject, "includeSubfolders")) options.subfolders = Subfolders::include;
  const auto strategy = organizationStrategyFromRawValue(stringAt(subject, "strategy"));
  if (!strategy) throw JsonError("strategy: not one of the ways to organize a folder");
  options.strategy = *strategy;
  return options;
}

std::vector<Renaming> renamingsFrom(const Json& subject) {
  std::vector<Renaming> result;
  const auto* list = optionalKey(subject, "renamed");
  if (list == nullptr) return result;
  if (!list->is_array()) throw JsonError("renamed: expected an array");
  for (const auto& entry : *list) {
    const auto place = integerAt(entry, "place");
    if (place < 0) throw JsonError("place: expected a number from 0");
    result.push_back({stringAt(entry, "from"), static_cast<std::size_t>(place), stringAt(entry, "to")});
  }
  return result;
}

RowSum sumOf(const Groups& groups) {
  RowSum sum;
  for (const auto& group : groups) {
    for (const auto& move : group.moves) sum.add(move.fileSize);
  }
  return sum;
}

// Puts documents into folders of their topics, and counts what lies in such a folder already.
void groupByTopic(Groups& groups, RowSum& inPlace, const FileUrl& folder, const FileUrl& destination,
                  NamedTopics& topics, const std::stop_token& stop) {
  const auto before = sumOf(groups);
  groups = groupedByTopic(std::move(groups), folder, destination, topics, stop);
  const auto after = sumOf(groups);
  inPlace.count += before.count - after.count;
  inPlace.bytes = checkedAdd(inPlace.bytes, before.bytes - after.bytes);
}

// Takes out what no run would move, and counts what lies in a folder of a topic already.
void sift(Groups& groups, RowSum& inPlace, const OrganizeOptions& options, MovableItems& movable) {
  const TopicFolders topicFolders(options.folder, destinationOf(options));
  for (auto& group : groups) {
    std::erase_if(group.moves, [&](const ProposedMove& move) {
      if (topicFolders.hold(move.originalURL)) {
        inPlace.add(move.fileSize);
        return true;
      }
      return !movable.admits(move.originalURL, move.fileSize);
    });
  }
  std::erase_if(groups, [](const OrganizationCategoryGroup& group) { return group.moves.empty(); });
}

// `topics` is null where none are wanted.
std::optional<Proposal> propose(const TaskServices& services, const OrganizeOptions& options, const Boundary& boundary,
                                Date now, NamedTopics* topics, const TaskMonitor& monitor) {
  ProposalBuilder builder(TaskKind::organize, boundary, now);
  auto subject = subjectOf(options);
  if (auto problem = problemWith(services, options.folder, boundary)) {
    builder.note(*std::move(problem));
    builder.setSubject(std::move(subject));
    return builder.take();
  }
  const auto destination = destinationOf(options);
  auto found = services.organizer.analyze(options.folder, destination, options.subfolders, options.strategy,
                                          monitor.stop, monitor.looked);
  RowSum inPlace{found.inPlace.count, found.inPlace.bytes};
  KeptRows kept(services);
  MovableItems movable(services.validator, boundary, kept);
  sift(found.groups, inPlace, options, movable);
  if (topics != nullptr && !monitor.stop.stop_requested()) {
    if (monitor.namingTopics) monitor.namingTopics();
    groupByTopic(found.groups, inPlace, options.folder, destination, *topics, monitor.stop);
    subject["topics"] = topics->toJson();
  }
  if (monitor.stop.stop_requested()) return std::nullopt;
  for (const auto& group : found.groups) addCategoryGroup(builder, group, services.validator, boundary);
  if (inPlace.count > 0) builder.note(RowsInPlace{inPlace});
  for (auto& notice : movable.notices()) builder.note(std::move(notice));
  kept.noteIn(builder);
  builder.setSubject(std::move(subject));
  auto proposal = builder.take();
  if (proposal.empty()) return proposal;
  ProposalBuilder told(proposal);
  if (isProjectOrBundleDirectory(options.folder)) told.note(ProjectTakenApart{options.folder});
  auto others = grantedFolders(services);
  others.push_back(services.home);
  others.push_back(services.home.appendingPathComponent("Desktop"));
  if (const auto links = linksToRows(proposal, options.folder, options.subfolders, others))
    told.note(LinksToRows{links});
  return told.take();
}

// The group that has the name, counted among those that have it.
std::optional<std::size_t> groupNamed(const Proposal& proposal, const std::string& name, std::size_t place) {
  const auto& groups = proposal.groups();
  for (std::size_t at = 0; at < groups.size(); ++at) {
    if (groups[at].name == name && place-- == 0) return at;
  }
  return std::nullopt;
}

}  // namespace

bool canHaveTopics(const FileUrl& folder, OrganizationStrategy strategy) {
  return strategy == OrganizationStrategy::byCategory && CategoryChooser::sortsDocuments(folder);
}

FileUrl defaultDestination(const FileUrl& folder) {
  return FolderOrganizerEngine::defaultDestination(folder);
}

std::vector<FileUrl> subfoldersOf(const TaskServices& services, const FileUrl& folder, int maxDepth) {
  return services.organizer.discoverSubfolders(folder, maxDepth);
}

std::optional<Proposal> proposeOrganize(const TaskServices& services, const OrganizeOptions& options, Date now,
                                        const TaskMonitor& monitor) {
  std::vector<FileUrl> folders{options.folder};
  if (options.destination) folders.push_back(*options.destination);
  const bool areWanted = options.topics == TopicUse::whenAvailable && canHaveTopics(options.folder, options.strategy);
  std::optional<NamedTopics> topics;
  if (auto* model = areWanted ? services.topics.categorizer() : nullptr) topics.emplace(*model);
  return propose(services, options, Boundary(std::move(folders)), now, topics ? &*topics : nullptr, monitor);
}

std::optional<Proposal> reproposeOrganize(const TaskServices& services, const Json& subject, const Boundary& boundary,
                                          Date countedTo, const TaskMonitor& monitor) {
  const auto options = organizeOptionsFrom(subject);
  const auto renamings = renamingsFrom(subject);
  std::optional<NamedTopics> topics;
  if (const auto* known = optionalKey(subject, "topics")) topics.emplace(*known);
  auto proposal = propose(services, options, boundary, countedTo, topics ? &*topics : nullptr, monitor);
  for (const auto& renaming : renamings) {
    if (!proposal) break;
    const auto group = groupNamed(*proposal, renaming.from, renaming.place);
    auto renamed = group ? renameGroup(services, *proposal, proposal->selection(), *group, renaming.to) : std::nullopt;
    if (renamed) proposal = std::move(renamed);
  }
  return proposal;
}

std::optional<Proposal> renameGroup(const TaskServices& services, const Proposal& proposal, const Selection& selection,
                                    std::size_t group, std::string_view name) {
  if (group >= proposal.groups().size()) return std::nullopt;
  const auto options = organizeOptionsFrom(proposal.subject());
  const auto groups = FolderOrganizerEngine::renamingGroup(group, name, groupsOf(proposal), destinationOf(options));
  const auto& renamed = groups[group];
  if (renamed.name != trimmed(name)) return std::nullopt;

  ProposalBuilder builder(proposal);
  auto& record = builder.group(static_cast<std::uint32_t>(group));
  const std::string before = std::exchange(record.name, renamed.name);
  record.destinationFolder = renamed.destinationFolder;
  record.refusal = services.validator.refusalText(renamed.destinationFolder, proposal.boundary());
  const auto rows = rowsByGroup(proposal);
  for (std::size_t at = 0; at < groups.size(); ++at) {
    const bool isRefused = !builder.group(static_cast<std::uint32_t>(at)).refusal.empty();
    for (std::size_t i = 0; i < rows[at].count; ++i) {
      const auto row = rows[at].first + i;
      auto move = groups[at].moves[i];
      move.isSelected = row < selection.size() && selection.isSelected(row);
      builder.change(static_cast<std::uint32_t>(row), markOf(move, static_cast<std::uint32_t>(at), isRefused),
                     newNameOf(move));
    }
  }
  const auto* const first = proposal.groups().data();
  const auto place = std::count_if(first, first + group, [&](const auto& each) { return each.name == before; });
  auto subject = proposal.subject();
  subject["renamed"].push_back(toJson({before, static_cast<std::size_t>(place), renamed.name}));
  builder.setSubject(std::move(subject));
  return builder.take();
}

std::vector<std::size_t> filledGroups(const Proposal& proposal, const std::vector<std::size_t>& groups,
                                      const RunReport& report) {
  std::set<const RowGroup*> filled;
  for (const auto row : movedRows(report)) filled.insert(proposal.row(row).group);
  std::vector<std::size_t> kept;
  std::ranges::copy_if(groups, std::back_inserter(kept),
                       [&](auto group) { return filled.contains(&proposal.groups()[group]); });
  return kept;
}

void rememberNames(const TaskServices& services, const Proposal& proposal, const std::vector<std::size_t>& groups) {
  if (groups.empty()) return;
  const auto all = groupsOf(proposal);
  for (const auto group : groups) services.organizer.rememberCategory(all.at(group));
}

std::vector<std::string> kindsIn(const Proposal& proposal, std::size_t group) {
  std::set<std::string> kinds;
  const auto rows = rowsByGroup(proposal).at(group);
  for (std::size_t at = rows.first; at < rows.first + rows.count; ++at) {
    const auto row = proposal.row(at);
    if (!row.item.isFolder()) kinds.insert(lowercased(row.item.url().pathExtension()));
  }
  kinds.erase("");
  return {kinds.begin(), kinds.end()};
}

std::map<std::string, std::string> rememberedNames(const TaskServices& services) {
  const auto names = services.learned.preferences();
  return {names.begin(), names.end()};
}

void forgetNames(const TaskServices& services) {
  services.learned.reset();
}

}  // namespace orvane
