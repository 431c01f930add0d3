#pragma once

#include "core/organizer/categories/CategoryPreferencesStore.h"
#include "core/organizer/propose/FolderOrganizerEngine.h"
#include "tests/support/MemoryPreferences.h"
#include "tests/support/SafetyFixture.h"

namespace orvane::test {

// The organizer over real folders; ~/Downloads is the folder that is organised.
class OrganizerFixture : public SafetyFixture {
 public:
  using Groups = FolderOrganizerEngine::Groups;

  [[nodiscard]] Groups analyze(Subfolders subfolders = Subfolders::keepWhole, std::string_view folder = "Downloads",
                               OrganizationStrategy strategy = OrganizationStrategy::byCategory) const {
    return engine.analyzeFolder(tree.url(folder), std::nullopt, subfolders, strategy);
  }
  // Source below ~/Downloads and target below the tree's top, in order of the sources.
  [[nodiscard]] std::map<std::string, std::string> movesOf(const Groups& groups) const {
    std::map<std::string, std::string> result;
    for (const auto& group : groups) {
      for (const auto& move : group.moves) {
        result[move.sourceRelativePath] = move.targetURL.path().substr(tree.path().size() + 1);
      }
    }
    return result;
  }
  [[nodiscard]] static std::vector<std::string> namesOf(const Groups& groups) {
    std::vector<std::string> names;
    for (const auto& group : groups) names.push_back(group.name);
    return names;
  }

  MemoryPreferences preferences;
  CategoryPreferencesStore learned{preferences};
  FolderOrganizerEngine engine{learned, mover, validator};
};

}  // namespace orvane::test
