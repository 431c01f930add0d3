#include "core/organizer/topics/TopicGrouping.h"

#include "core/base/files/CanonicalPath.h"
#include "core/base/files/PathText.h"
#include "core/organizer/categories/CategoryChooser.h"
#include "core/organizer/categories/GeneratedFolders.h"
#include "core/organizer/categories/OrganizerCategories.h"
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

// Where documents are sorted by kind: below a category of their own, unless the folder holds documents anyway.
class DocumentKinds {
 public:
  explicit DocumentKinds(const FileUrl& folder)
      : m_prefix(CategoryChooser::isDocumentsFolder(folder) ? std::string() : std::string(documents) + "/") {}

  [[nodiscard]] bool hold(const OrganizationCategoryGroup& group) const {
    return m_prefix.empty() ? isDocumentKind(group.name) : group.name == documents || group.name.starts_with(m_prefix);
  }
  [[nodiscard]] std::string categoryOf(const std::string& topicFolder) const { return m_prefix + topicFolder; }
  // Of the kinds.
  [[nodiscard]] FileUrl folderBelow(const FileUrl& destinationRoot) const {
    return FolderOrganizerEngine::categoryFolder(destinationRoot, m_prefix);
  }

 private:
  std::string m_prefix;
};

std::vector<std::string> documentNames(const Groups& groups, const DocumentKinds& kinds) {
  std::set<std::string> names;
  for (const auto& group : groups) {
    if (!kinds.hold(group)) continue;
    for (const auto& move : group.moves) {
      if (!move.isDirectory) names.emplace(move.originalURL.lastPathComponent());
    }
  }
  return {names.begin(), names.end()};
}

// Takes the moves with a topic out of the groups; by the category that they get. `folders` holds the topics' folders by
// the names of items.
std::map<std::string, std::vector<ProposedMove>> takeMoves(Groups& groups, const DocumentKinds& kinds,
                                                           const std::map<std::string, std::string>& folders) {
  std::map<std::string, std::vector<ProposedMove>> taken;
  for (auto& group : groups) {
    if (!kinds.hold(group)) continue;
    std::vector<ProposedMove> left;
    for (auto& move : group.moves) {
      const auto topic = folders.find(std::string(move.originalURL.lastPathComponent()));
      const bool hasTopic = !move.isDirectory && topic != folders.end();
      const auto category = hasTopic ? kinds.categoryOf(topic->second) : group.name;
      (category == group.name ? left : taken[category]).push_back(std::move(move));
    }
    group.moves = std::move(left);
  }
  return taken;
}

// Whether a folder beside the kinds of documents can be one of a topic.
bool mayBeTopic(const std::string& name) {
  return !isGeneratedFolder(name, {}) && !isReservedTopLevelCategory(name);
}

}  // namespace

Groups groupedByTopic(Groups groups, const FileUrl& folder, const FileUrl& destinationRoot,
                      TopicCategorizing& categorizer, const std::stop_token& stop) {
  const DocumentKinds kinds(folder);
  const auto names = documentNames(groups, kinds);
  if (names.empty()) return groups;
  const auto existing = TopicNames::foldersBelow(kinds.folderBelow(destinationRoot), mayBeTopic);
  auto taken = takeMoves(groups, kinds, TopicNames::foldersOf(categorizer.topics(names, existing, stop), existing));

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

TopicFolders::TopicFolders(const FileUrl& folder, const FileUrl& destinationRoot) {
  if (destinationRoot == folder || !isSameOrInside(destinationRoot.path(), folder.path())) return;
  m_parent = DocumentKinds(folder).folderBelow(destinationRoot).path();
}

bool TopicFolders::hold(const FileUrl& item) const {
  if (m_parent.empty() || !isSameOrInside(item.path(), m_parent)) return false;
  const auto rest = std::string_view(item.path()).substr(std::min(m_parent.size() + 1, item.path().size()));
  const auto slash = rest.find('/');
  return slash != std::string_view::npos && mayBeTopic(std::string(rest.substr(0, slash)));
}

}  // namespace orvane
