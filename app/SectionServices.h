#pragma once

#include <functional>

namespace orvane {

class AppUninstallerEngine;
class CategoryPreferencesStore;
class DuplicateCleaner;
class DuplicateFinderEngine;
class FolderOrganizerEngine;
class KeychainService;
class PathValidator;
class TopicCategorizerFactory;

// What the sections beyond the cleanup work with, besides the WindowServices. The same holds for them.
struct SectionServices {
  DuplicateFinderEngine& finder;
  FolderOrganizerEngine& organizer;
  CategoryPreferencesStore& learned;
  TopicCategorizerFactory& topics;
  AppUninstallerEngine& uninstaller;
  const KeychainService& keychain;
  const PathValidator& validator;
  // Made with the journal.
  std::function<DuplicateCleaner&()> duplicateCleaner;
};

// The program's own.
[[nodiscard]] SectionServices systemSectionServices();

}  // namespace orvane
