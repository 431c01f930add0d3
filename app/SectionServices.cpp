#include "app/SectionServices.h"

#include "core/assistant/KeychainService.h"
#include "core/duplicates/DuplicateCleaner.h"
#include "core/duplicates/DuplicateFinderEngine.h"
#include "core/safety/PathValidator.h"
#include "core/uninstaller/AppUninstallerEngine.h"

namespace orvane {

SectionServices systemSectionServices() {
  return {
      .finder = DuplicateFinderEngine::shared(),
      .uninstaller = AppUninstallerEngine::shared(),
      .keychain = KeychainService::shared(),
      .validator = PathValidator::shared(),
      .duplicateCleaner = []() -> DuplicateCleaner& { return DuplicateCleaner::shared(); },
  };
}

}  // namespace orvane
