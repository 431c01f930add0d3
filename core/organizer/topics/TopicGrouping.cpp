#include "core/organizer/topics/TopicGrouping.h"

#include "core/base/files/CanonicalPath.h"
#include "core/base/files/PathText.h"
#include "core/organizer/categories/GeneratedFolders.h"
#include "core/organizer/propose/FolderOrganizerEngine.h"
#include "core/organizer/propose/ProposedNames.h"
#include "core/organizer/topics/TopicCategorizing.h"
#include "core/organizer/topics/TopicNames.h"

#include <algorithm>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <utility>

namespace orvane {
namespace {

using Groups = std::vector<OrganizationCategoryGroup>;

constexpr std::string_view documents = "Documents";

bool holdsDocuments(const OrganizationCategoryGroup& group) {
  return group.name == documents || group.name.starts_with(std::string(documents) + "/");
}

std::vector<std::string> documentNames(const Groups& groups) {
  std::set<std::string> names;
  for (const auto& group : groups) {
    if (!holdsDocuments(group)) continue;
    for (const auto& move : group.moves) {
      if (!move.isDirectory) names.emplace(move.originalURL.lastPathComponent());
    }
  }
  return {names.begin(), names.end()};
}

// Takes the moves with a topic out of the groups; by the category that they get.
std::map<std::string, std::vector<ProposedMove>> takeMoves(Groups& groups,
                                                           const std::map<std::string, std::string>& topics) {
  std::map<std::string, std::vector<ProposedMove>> taken;
  for (auto& group : groups) {
    if (!holdsDocuments(group)) continue;
    std::vector<ProposedMove> left;
    for (auto& move : group.moves) {
      const auto topic = topics.find(std::string(move.originalURL.lastPathComponent()));
      const bool hasTopic = !move.isDirectory && topic != topics.end() && TopicNames::canNameFolder(topic->second);
      const auto category = hasTopic ? joinPath(documents, topic->second) : group.name;
      (category == group.name ? left : taken[category]).push_back(std::move(move));
    }
    group.moves = std::move(left);
  }
  return taken;
}

}  // namespace

Groups groupedByTopic(Groups groups, const FileUrl& destinationRoot, TopicCategorizing& categorizer,
                      const std::stop_token& stop) {
  const auto names = documentNames(groups);
  if (names.empty()) return groups;
  const auto folder = FolderOrganizerEngine::categoryFolder(destinationRoot, documents);
  // The folders beside the kinds of documents that no kind made.
  const auto existing =
      TopicNames::foldersBelow(folder, [](const std::string& name) { return !isGeneratedFolder(name, {}); });
  auto taken = takeMoves(groups, categorizer.topics(names, existing, stop));

  ProposedNames given;
  for (const auto& group : groups) {
    for (const auto& move : group.moves) given.note(move.targetURL);
  }
  for (auto& [category, moves] : taken) {
    auto place = std::ranges::find(groups, category, &OrganizationCategoryGroup::name);
    if (place == groups.end()) {
      groups.push_back(
          {Uuid::random(), category, FolderOrganizerEngine::categoryFolder(destinationRoot, category), {}});
      place = std::prev(groups.end());
    }
    const auto destination = canonicalPath(place->destinationFolder.path());
    for (auto& move : moves) {
      // In its place already.
      if (canonicalPath(parentPath(move.originalURL.path())) == destination) continue;
      move.categoryName = category;
      move.targetURL = given.take(place->destinationFolder, move.originalURL.lastPathComponent());
      place->moves.push_back(std::move(move));
    }
  }
  std::erase_if(groups, [](const auto& group) { return group.moves.empty(); });
  std::ranges::stable_sort(groups, {}, &OrganizationCategoryGroup::name);
  return groups;
}

}  // namespace orvane
