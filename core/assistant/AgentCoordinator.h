#pragma once

#include "core/assistant/HeuristicFallbackClient.h"
#include "core/assistant/PlannedAnswer.h"
#include "core/assistant/records/AIProvider.h"
#include "core/assistant/records/MetadataOnlyRequest.h"
#include "core/assistant/records/ProviderAddresses.h"
#include "core/assistant/services/KeychainService.h"
#include "core/platform/HttpTransport.h"

#include <condition_variable>
#include <memory>
#include <mutex>
#include <optional>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

namespace orvane {

class TopicModel;

// Chooses the planner, gives it its key, and plans offline where it fails: a request always yields a plan. One request
// at a time; others wait, and end at once when they are stopped.
class AgentCoordinator {
 public:
  // `keychain`, `session` and `localModel`, which may be null, must outlive this object.
  AgentCoordinator(const KeychainService& keychain, HttpTransport& session, ProviderAddresses addresses,
                   TopicModel* localModel = nullptr);
  static AgentCoordinator& shared();

  // Never fails. The plan may be one that validation rejects, where the offline planner understood nothing.
  [[nodiscard]] CleaningPlan requestPlan(const std::string& prompt, AIProvider provider,
                                         const std::vector<FileMetadataEntry>& sampleFiles,
                                         const std::stop_token& stop = {});
  [[nodiscard]] PlannedAnswer requestAnswer(const std::string& prompt, AIProvider provider,
                                            const std::vector<FileMetadataEntry>& sampleFiles,
                                            const std::stop_token& stop = {});
  // The provider's client, or the offline one where there is no key or no model.
  [[nodiscard]] std::unique_ptr<LLMClient> resolveClient(AIProvider provider) const;

  // Whether a key is stored for it; never for one that needs none.
  [[nodiscard]] bool hasKey(AIProvider provider) const;
  // Why the model on this machine cannot be asked, in one line for people; empty where it can. May wait for its server.
  [[nodiscard]] std::string localModelProblem() const;
  // Exactly what requestPlan() would send, but for the key; absent for a provider that sends nothing.
  [[nodiscard]] std::optional<HttpRequest> keylessRequest(const std::string& prompt, AIProvider provider,
                                                          const std::vector<FileMetadataEntry>& sampleFiles) const;

 private:
  [[nodiscard]] bool waitForTurn(const std::stop_token& stop);
  [[nodiscard]] std::string whyNotAsked(AIProvider provider) const;
  // By the tables, whoever was asked.
  [[nodiscard]] PlannedAnswer plannedOffline(const std::string& prompt, AIProvider asked) const;
  [[nodiscard]] PlannedAnswer answer(const MetadataOnlyRequest& request, AIProvider provider,
                                     const std::stop_token& stop) const;
  [[nodiscard]] std::optional<HttpRequest> keylessRequest(const MetadataOnlyRequest& request,
                                                          AIProvider provider) const;

  const KeychainService& m_keychain;
  HttpTransport& m_session;
  const ProviderAddresses m_addresses;
  TopicModel* const m_localModel;
  const HeuristicFallbackClient m_fallback;
  std::mutex m_mutex;
  std::condition_variable_any m_idle;
  bool m_isBusy = false;
};

}  // namespace orvane
