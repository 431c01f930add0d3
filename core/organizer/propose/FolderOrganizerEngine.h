#pragma once

#include "core/base/files/FileUrl.h"
#include "core/organizer/categories/CategoryChooser.h"
#include "core/organizer/propose/OrganizerWalk.h"
#include "core/organizer/records/OrganizationCategoryGroup.h"
#include "core/organizer/records/OrganizationStrategy.h"
#include "core/plans/PlanExecution.h"
#include "core/platform/SystemProfile.h"
#include "core/safety/records/Boundary.h"
#include "core/safety/run/CleanupRun.h"

#include <atomic>
#include <cstdint>
#include <optional>
#include <span>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

namespace orvane {

class CategoryPreferencesStore;
class PathValidator;
class TrashMover;
class UndoJournal;

// Turns a folder into a proposal, which the user edits, and carries it out as one run that can be undone. Keeps nothing
// between calls but the categories that it is taught.
class FolderOrganizerEngine {
 public:
  using Groups = std::vector<OrganizationCategoryGroup>;

  // The collaborators must outlive this object.
  FolderOrganizerEngine(CategoryPreferencesStore& preferences, TrashMover& mover, const PathValidator& validator,
                        const SystemProfile& profile = SystemProfile::none());
  static FolderOrganizerEngine& shared();

  // The folder that moves go into when no other is named: "Organized" inside the target folder.
  [[nodiscard]] static FileUrl defaultDestination(const FileUrl& targetFolder);

  // Proposes where the items of a folder would go, everything selected, groups in order of their names (by code point).
  // Leaves out items that lie in their place already, hidden items, links and the organizer's own folders. No two
  // proposals share a target. Changes nothing. A stop yields a part. `looked` counts the files that are looked at.
  [[nodiscard]] Groups analyzeFolder(const FileUrl& targetFolder, const std::optional<FileUrl>& baseDestination,
                                     Subfolders includeSubfolders, OrganizationStrategy strategy,
                                     const std::stop_token& stop = {},
                                     std::atomic<std::size_t>* looked = nullptr) const;
  // The same, and what was left out as it lies in its place, or holds that place.
  struct Analysis {
    struct InPlace {
      std::int64_t count = 0;
      std::int64_t bytes = 0;
    };
    Groups groups;
    InPlace inPlace = {};
  };
  [[nodiscard]] Analysis analyze(const FileUrl& targetFolder, const std::optional<FileUrl>& baseDestination,
                                 Subfolders includeSubfolders, OrganizationStrategy strategy,
                                 const std::stop_token& stop = {}, std::atomic<std::size_t>* looked = nullptr) const;
  // The category path of one item.
  [[nodiscard]] std::string determineCategory(const FileUrl& url, ItemKind kind, const FileUrl& targetFolder,
                                              OrganizationStrategy strategy) const;

  // Names the categories of many items of one folder.
  [[nodiscard]] CategoryChooser chooserFor(const FileUrl& targetFolder, OrganizationStrategy strategy) const;

  // Renames one group and remembers the name for the extensions in it. A name of nothing but white space, one that is
  // too long for a folder, and one that the path rules refuse, such as one that climbs, changes nothing; nor does an
  // index out of range. Throws std::system_error when the name cannot be remembered.
  [[nodiscard]] Groups updateCategory(std::size_t groupIndex, std::string_view newName, Groups groups,
                                      const FileUrl& destRoot);
  // The two halves of it, for whoever only previews a name first.
  [[nodiscard]] static Groups renamingGroup(std::size_t groupIndex, std::string_view newName, Groups groups,
                                            const FileUrl& destRoot);
  void rememberCategory(const OrganizationCategoryGroup& group);

  // Moves what is selected, in order, as one run. Nothing outside the allowed roots is touched, the destination folders
  // included. An item that fails stays where it is and the others go on; one that is gone, or in its place already, is
  // passed over. Reports progress with no lock held: the mover and the journal keep runs apart that overlap.
  // `bytesReclaimed` is 0: moves free no space.
  PlanExecution carryOut(std::span<const OrganizationCategoryGroup> groups, UndoJournal& journal,
                         const Boundary& allowedRoots, const CleanupRun::Progress& progress = {},
                         std::stop_token stop = {});
  // The same for callers that only want the sum. Where nothing moved although something should have, throws
  // std::runtime_error with the last move's error, or SecurityError when safety rules alone stood against it.
  PlanExecutionSummary applyMoves(std::span<const OrganizationCategoryGroup> groups, UndoJournal& journal,
                                  const Boundary& allowedRoots);

  // A free place for `name` in `folder`: the name itself, else "name (1).ext" and so on.
  [[nodiscard]] static FileUrl resolveCollisionSafeTarget(std::string_view name, const FileUrl& folder);
  // The visible folders below a folder, `maxDepth` levels deep, sorted by path. Links, bundles and the organizer's own
  // folders are left out, and what lies inside them.
  [[nodiscard]] std::vector<FileUrl> discoverSubfolders(const FileUrl& folder, int maxDepth) const;
  // Logical bytes of every file in a folder tree, hidden ones included, each once; what cannot be read adds nothing.
  [[nodiscard]] static std::int64_t fastFolderSize(const FileUrl& folder);
  // Whether the organizer itself makes folders of this name.
  [[nodiscard]] bool isGeneratedFolder(std::string_view name) const;

  // The folder of a category below a destination root.
  [[nodiscard]] static FileUrl categoryFolder(const FileUrl& destinationRoot, std::string_view category);

 private:
  CategoryPreferencesStore& m_preferences;
  TrashMover& m_mover;
  const PathValidator& m_validator;
  const SystemProfile& m_profile;
};

}  // namespace orvane
