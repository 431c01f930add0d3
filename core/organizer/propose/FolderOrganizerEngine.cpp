#include "core/organizer/propose/FolderOrganizerEngine.h"

#include "core/base/files/CanonicalPath.h"
#include "core/base/files/DirectoryReader.h"
#include "core/base/files/FreeName.h"
#include "core/base/files/PathAccess.h"
#include "core/base/files/PathText.h"
#include "core/base/text/UnicodeText.h"
#include "core/base/values/CheckedArithmetic.h"
#include "core/organizer/categories/GeneratedFolders.h"
#include "core/organizer/propose/OrganizerRun.h"
#include "core/organizer/propose/ProposedNames.h"
#include "core/safety/records/SecurityError.h"
#include "core/safety/rules/PathValidator.h"
#include "core/scanning/walk/BundleNames.h"
#include "core/scanning/walk/FolderSize.h"

#include <fcntl.h>

#include <algorithm>
#include <functional>
#include <set>
#include <stdexcept>
#include <unordered_map>
#include <utility>

namespace orvane {
namespace {

constexpr std::string_view defaultDestinationName = "Organized";
constexpr std::string_view rejectedText = "Selected files were rejected by safety invariants.";

// Visits the components of a category path, empty ones left out.
template <typename Visit>
void forEachComponent(std::string_view category, Visit visit) {
  while (!category.empty()) {
    const auto end = std::min(category.find('/'), category.size());
    if (end > 0) visit(category.substr(0, end));
    category.remove_prefix(std::min(end + 1, category.size()));
  }
}

// Whether a folder below a destination root can have this name.
bool isCategoryName(std::string_view name) {
  bool hasComponent = false;
  bool isRefused = PathValidator::hasTraversal(name);
  forEachComponent(name, [&](auto component) {
    hasComponent = true;
    isRefused = isRefused || component == "." || component.size() > maxNameBytes;
  });
  return hasComponent && !isRefused;
}

// Collects proposals into one group for each category.
class GroupBuilder {
 public:
  GroupBuilder(const FileUrl& targetFolder, const FileUrl& destinationRoot, const OrganizerScope& scope)
      : m_targetFolder(targetFolder),
        m_destinationRoot(destinationRoot),
        m_scope(scope),
        m_names(scope.subfolders == Subfolders::include ? ProposedNames::Sources::manyFolders
                                                        : ProposedNames::Sources::oneFolder) {}

  void add(OrganizerCandidate candidate) {
    auto& known = groupOf(candidate.category);
    if (isThere(candidate, known.canonicalFolder)) {
      ++m_inPlace.count;
      m_inPlace.bytes = checkedAdd(m_inPlace.bytes, candidate.size);
      return;
    }
    const auto& group = m_groups[known.index];
    ProposedMove move;
    move.originalURL = FileUrl(joinPath(m_targetFolder.path(), candidate.relativePath));
    move.targetURL = m_names.take(group.destinationFolder, lastComponent(candidate.relativePath));
    move.categoryName = std::move(candidate.category);
    move.fileSize = candidate.size;
    move.isDirectory = candidate.kind == ItemKind::folder;
    move.identity = candidate.identity;
    move.sourceRelativePath = std::move(candidate.relativePath);
    m_groups[known.index].moves.push_back(std::move(move));
  }

  [[nodiscard]] FolderOrganizerEngine::Analysis take() {
    std::erase_if(m_groups, [](const auto& group) { return group.moves.empty(); });
    std::sort(m_groups.begin(), m_groups.end(),
              [](const auto& left, const auto& right) { return left.name < right.name; });
    return {std::move(m_groups), m_inPlace};
  }

 private:
  struct CategoryGroup {
    std::size_t index;
    std::string canonicalFolder;
  };

  CategoryGroup& groupOf(const std::string& category) {
    const auto [found, isNew] = m_known.try_emplace(category);
    if (isNew) {
      auto folder = FolderOrganizerEngine::categoryFolder(m_destinationRoot, category);
      found->second = {m_groups.size(), canonicalPath(folder.path())};
      m_groups.push_back({Uuid::random(), category, std::move(folder), {}});
    }
    return found->second;
  }

  // Whether the item is in its place already, or is what holds that place.
  [[nodiscard]] bool isThere(const OrganizerCandidate& candidate, std::string_view folder) const {
    const std::string_view relative = candidate.relativePath;
    const auto slash = relative.rfind('/');
    const auto parent = slash == std::string_view::npos ? std::string_view() : relative.substr(0, slash);
    if (folder.starts_with(m_scope.folder)) {
      const auto rest = folder.substr(m_scope.folder.size());
      if (parent.empty() ? rest.empty() : rest.starts_with('/') && rest.substr(1) == parent) return true;
    }
    return candidate.kind == ItemKind::folder && isSameOrInside(folder, joinPath(m_scope.folder, relative));
  }

  const FileUrl& m_targetFolder;
  const FileUrl& m_destinationRoot;
  const OrganizerScope& m_scope;
  FolderOrganizerEngine::Groups m_groups;
  std::unordered_map<std::string, CategoryGroup> m_known;
  ProposedNames m_names;
  FolderOrganizerEngine::Analysis::InPlace m_inPlace;
};

}  // namespace

FolderOrganizerEngine::FolderOrganizerEngine(CategoryPreferencesStore& preferences, TrashMover& mover,
                                             const PathValidator& validator, const SystemProfile& profile)
    : m_preferences(preferences), m_mover(mover), m_validator(validator), m_profile(profile) {}

FileUrl FolderOrganizerEngine::defaultDestination(const FileUrl& targetFolder) {
  return targetFolder.appendingPathComponent(defaultDestinationName);
}

FileUrl FolderOrganizerEngine::categoryFolder(const FileUrl& destinationRoot, std::string_view category) {
  FileUrl folder = destinationRoot;
  forEachComponent(category, [&](auto component) { folder = folder.appendingPathComponent(component); });
  return folder;
}

FolderOrganizerEngine::Groups FolderOrganizerEngine::analyzeFolder(
    const FileUrl& targetFolder, const std::optional<FileUrl>& baseDestination, Subfolders includeSubfolders,
    OrganizationStrategy strategy, const std::stop_token& stop, std::atomic<std::size_t>* looked) const {
  return analyze(targetFolder, baseDestination, includeSubfolders, strategy, stop, looked).groups;
}

FolderOrganizerEngine::Analysis FolderOrganizerEngine::analyze(
    const FileUrl& targetFolder, const std::optional<FileUrl>& baseDestination, Subfolders includeSubfolders,
    OrganizationStrategy strategy, const std::stop_token& stop, std::atomic<std::size_t>* looked) const {
  const auto destinationRoot = baseDestination.value_or(defaultDestination(targetFolder));
  const OrganizerScope scope{canonicalPath(targetFolder.path()), canonicalPath(destinationRoot.path()),
                             includeSubfolders, m_preferences.learnedCategoryRoots(), looked};
  const auto chooser = chooserFor(targetFolder, strategy);
  GroupBuilder groups(targetFolder, destinationRoot, scope);
  visitOrganizerCandidates(scope, chooser, stop,
                           [&](OrganizerCandidate&& candidate) { groups.add(std::move(candidate)); });
  return groups.take();
}

std::string FolderOrganizerEngine::determineCategory(const FileUrl& url, ItemKind kind, const FileUrl& targetFolder,
                                                     OrganizationStrategy strategy) const {
  CategoryChooser::Item item{.name = url.lastPathComponent(), .kind = kind, .url = url};
  if (const auto status = readPathStatus(url.path())) {
    item.modified = status->modified;
    item.created = status->created;
  }
  return chooserFor(targetFolder, strategy).categoryOf(item);
}

CategoryChooser FolderOrganizerEngine::chooserFor(const FileUrl& targetFolder, OrganizationStrategy strategy) const {
  // Names that no folder can have were remembered by earlier versions.
  auto learned = m_preferences.preferences();
  std::erase_if(learned, [](const auto& each) { return !isCategoryName(each.second); });
  return CategoryChooser(targetFolder, strategy, std::move(learned), m_profile);
}

FolderOrganizerEngine::Groups FolderOrganizerEngine::renamingGroup(std::size_t groupIndex, std::string_view newName,
                                                                   Groups groups, const FileUrl& destRoot) {
  const auto name = trimmed(newName);
  if (!isCategoryName(name) || groupIndex >= groups.size()) return groups;
  auto& group = groups[groupIndex];
  group.name = name;
  group.destinationFolder = categoryFolder(destRoot, name);

  ProposedNames names;
  for (const auto& other : groups) {
    if (&other == &group || other.destinationFolder != group.destinationFolder) continue;
    for (const auto& move : other.moves) names.note(move.targetURL);
  }
  const auto folder = canonicalPath(group.destinationFolder.path());
  for (auto& move : group.moves) {
    const bool isThere = canonicalPath(parentPath(move.originalURL.path())) == folder;
    move.categoryName = name;
    move.targetURL =
        isThere ? move.originalURL : names.take(group.destinationFolder, move.originalURL.lastPathComponent());
  }
  return groups;
}

void FolderOrganizerEngine::rememberCategory(const OrganizationCategoryGroup& group) {
  std::set<std::string> extensions;
  for (const auto& move : group.moves) extensions.insert(lowercased(move.originalURL.pathExtension()));
  for (const auto& extension : extensions) m_preferences.rememberPreference(extension, group.name);
}

FolderOrganizerEngine::Groups FolderOrganizerEngine::updateCategory(std::size_t groupIndex, std::string_view newName,
                                                                    Groups groups, const FileUrl& destRoot) {
  groups = renamingGroup(groupIndex, newName, std::move(groups), destRoot);
  if (isCategoryName(trimmed(newName)) && groupIndex < groups.size()) rememberCategory(groups[groupIndex]);
  return groups;
}

PlanExecution FolderOrganizerEngine::carryOut(std::span<const OrganizationCategoryGroup> groups, UndoJournal& journal,
                                              const Boundary& allowedRoots, const CleanupRun::Progress& progress,
                                              std::stop_token stop) {
  return carryOutOrganizing(groups, m_mover, m_validator, journal, allowedRoots, progress, std::move(stop));
}

PlanExecutionSummary FolderOrganizerEngine::applyMoves(std::span<const OrganizationCategoryGroup> groups,
                                                       UndoJournal& journal, const Boundary& allowedRoots) {
  const auto execution = carryOut(groups, journal, allowedRoots);
  if (execution.summary.itemsProcessed > 0) return execution.summary;
  const auto last = [&](MoveResult result) {
    const auto& outcomes = execution.outcomes;
    const auto found =
        std::find_if(outcomes.rbegin(), outcomes.rend(), [&](const auto& outcome) { return outcome.result == result; });
    return found == outcomes.rend() ? nullptr : &*found;
  };
  if (const auto* failed = last(MoveResult::failed)) throw std::runtime_error(failed->error);
  if (last(MoveResult::refused) != nullptr) {
    throw SecurityError(SecurityError::ProtectedPath{std::string(rejectedText)});
  }
  return execution.summary;
}

FileUrl FolderOrganizerEngine::resolveCollisionSafeTarget(std::string_view name, const FileUrl& folder) {
  return freeUrl(folder.appendingPathComponent(name), NumberingStyle::plain);
}

std::vector<FileUrl> FolderOrganizerEngine::discoverSubfolders(const FileUrl& folder, int maxDepth) const {
  struct Level {
    FileUrl folder;
    int depth;
  };
  const auto learnedRoots = m_preferences.learnedCategoryRoots();
  std::vector<FileUrl> result;
  std::vector<Level> waiting{{folder, 0}};
  while (!waiting.empty()) {
    const auto level = std::move(waiting.back());
    waiting.pop_back();
    if (level.depth >= maxDepth) continue;
    const auto links = level.depth == 0 ? DirectoryReader::Links::follow : DirectoryReader::Links::refuse;
    auto reader = DirectoryReader::open(AT_FDCWD, level.folder.path().c_str(), links);
    while (reader) {
      const auto entry = reader->next();
      if (!entry) break;
      if (entry->name.starts_with('.') || isBundleName(entry->name)) continue;
      auto type = entry->type;
      if (type == FileType::unknown) {
        const auto status = readFileStatus(reader->descriptor(), entry->nameBytes());
        type = status ? status->type : FileType::other;
      }
      if (type != FileType::directory || orvane::isGeneratedFolder(entry->name, learnedRoots)) continue;
      result.push_back(level.folder.appendingPathComponent(entry->name));
      waiting.push_back({result.back(), level.depth + 1});
    }
  }
  std::sort(result.begin(), result.end());
  return result;
}

std::int64_t FolderOrganizerEngine::fastFolderSize(const FileUrl& folder) {
  return FolderSize::of(folder.path(), FolderSize::Extent::everything);
}

bool FolderOrganizerEngine::isGeneratedFolder(std::string_view name) const {
  return orvane::isGeneratedFolder(name, m_preferences.learnedCategoryRoots());
}

}  // namespace orvane
