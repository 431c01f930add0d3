#pragma once

#include <functional>

namespace orvane {

class AppUninstallerEngine;
class DuplicateCleaner;
class DuplicateFinderEngine;
class KeychainService;
class PathValidator;

// What the sections beyond the cleanup work with, besides the WindowServices. The same holds for them.
struct SectionServices {
  DuplicateFinderEngine& finder;
  AppUninstallerEngine& uninstaller;
  const KeychainService& keychain;
  const PathValidator& validator;
  // Made with the journal.
  std::function<DuplicateCleaner&()> duplicateCleaner;
};

// The program's own.
[[nodiscard]] SectionServices systemSectionServices();

}  // namespace orvane
