#pragma once

#include "app/SectionServices.h"
#include "core/assistant/AgentCoordinator.h"
#include "core/assistant/KeychainService.h"
#include "core/duplicates/DuplicateCleaner.h"
#include "core/duplicates/DuplicateFinderEngine.h"
#include "core/organizer/CategoryPreferencesStore.h"
#include "core/organizer/FolderOrganizerEngine.h"
#include "core/plans/PlanExecutor.h"
#include "core/uninstaller/AppUninstallerEngine.h"
#include "tests/app/WindowFixture.h"
#include "tests/support/AutoOrganizerFixture.h"

namespace orvane::test {

// A key ring without a key, and a network that nobody may use.
class NoSecrets : public SecretStore {
 public:
  [[nodiscard]] bool add(const std::string& /*service*/, const std::string& /*account*/,
                         const SecretText& /*secret*/) override {
    return false;
  }
  [[nodiscard]] bool remove(const std::string& /*service*/, const std::string& /*account*/) override { return true; }
  [[nodiscard]] std::optional<SecretText> find(const std::string& /*service*/,
                                               const std::string& /*account*/) override {
    return std::nullopt;
  }
};
class NoNetwork : public HttpTransport {
 public:
  [[nodiscard]] HttpResponse send(const HttpRequest& /*request*/, const std::stop_token& /*stop*/) override {
    throw HttpError(HttpError::Failed{"nothing may be sent"});
  }
};

// The engines of the further sections, over the same home.
class SectionFixture : public WindowFixture {
 public:
  [[nodiscard]] SectionServices sections() {
    return {
        .finder = finder,
        .organizer = organizer,
        .learned = learned,
        .topics = topics,
        .uninstaller = uninstaller,
        .agent = agent,
        .keychain = keychain,
        .planExecutor = planExecutor,
        .validator = validator,
        .duplicateCleaner = [this]() -> DuplicateCleaner& { return cleaner; },
    };
  }

  DuplicateFinderEngine finder{validator, statusReader};
  DuplicateCleaner cleaner{mover, *journal};
  CategoryPreferencesStore learned{preferences};
  ScriptedModel topicModel;
  TopicCategorizerFactory topics{topicModel};
  FolderOrganizerEngine organizer{learned, mover, validator};
  AppUninstallerEngine uninstaller{validator, FileUrl(tree.path())};
  NoSecrets secrets;
  KeychainService keychain{secrets};
  NoNetwork network;
  AgentCoordinator agent{keychain, network, ProviderAddresses()};
  PlanExecutor planExecutor{mover, validator};
};

}  // namespace orvane::test
