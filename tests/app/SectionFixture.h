#pragma once

#include "app/SectionServices.h"
#include "core/duplicates/DuplicateCleaner.h"
#include "tests/app/WindowFixture.h"

namespace orvane::test {

// The engines of the further sections, over the same home.
class SectionFixture : public WindowFixture {
 public:
  [[nodiscard]] SectionServices sections() {
    return {
        .finder = finder,
        .uninstaller = uninstaller,
        .keychain = keychain,
        .validator = validator,
        .duplicateCleaner = [this]() -> DuplicateCleaner& { return cleaner; },
    };
  }

  DuplicateCleaner cleaner{mover, *journal};
};

}  // namespace orvane::test
