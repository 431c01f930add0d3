#include "core/assistant/AgentCoordinator.h"

#include "core/assistant/AnthropicClient.h"
#include "core/assistant/OpenAIClient.h"
#include "core/assistant/PlannerError.h"
#include "core/base/Json.h"
#include "core/plans/PlanValidationError.h"

#include <fmt/format.h>

#include <utility>

namespace orvane {
namespace {

MetadataOnlyRequest requestFor(const std::string& prompt, const std::vector<FileMetadataEntry>& sampleFiles) {
  return {.userPrompt = prompt, .files = sampleFiles, .targetFolders = {}};
}

std::string reasonOf(const std::exception& error) {
  if (dynamic_cast<const JsonError*>(&error) != nullptr) {
    return fmt::format("The reply is not a plan: {}", error.what());
  }
  if (dynamic_cast<const PlanValidationError*>(&error) != nullptr) {
    return fmt::format("The reply's plan cannot be used: {}", error.what());
  }
  // An address may hold what the user would not want to see printed.
  if (const auto* http = dynamic_cast<const HttpError*>(&error);
      http != nullptr && std::holds_alternative<HttpError::UrlRefused>(http->which())) {
    return "The provider's address is no https address, nor http to this machine.";
  }
  return error.what();
}

}  // namespace

AgentCoordinator::AgentCoordinator(const KeychainService& keychain, HttpTransport& session, ProviderAddresses addresses)
    : m_keychain(keychain), m_session(session), m_addresses(std::move(addresses)) {}

std::unique_ptr<LLMClient> AgentCoordinator::resolveClient(AIProvider provider) const {
  if (provider != AIProvider::heuristic) {
    auto key = m_keychain.getKey(keyAccount(provider));
    if (key && !key->isEmpty()) {
      if (provider == AIProvider::anthropic) {
        return std::make_unique<AnthropicClient>(std::move(*key), m_session, m_addresses.anthropic);
      }
      return std::make_unique<OpenAIClient>(std::move(*key), m_session, m_addresses.openAI);
    }
  }
  return std::make_unique<HeuristicFallbackClient>(m_fallback);
}

CleaningPlan AgentCoordinator::requestPlan(const std::string& prompt, AIProvider provider,
                                           const std::vector<FileMetadataEntry>& sampleFiles,
                                           const std::stop_token& stop) {
  return requestAnswer(prompt, provider, sampleFiles, stop).plan;
}

PlannedAnswer AgentCoordinator::requestAnswer(const std::string& prompt, AIProvider provider,
                                              const std::vector<FileMetadataEntry>& sampleFiles,
                                              const std::stop_token& stop) {
  const auto request = requestFor(prompt, sampleFiles);
  if (!waitForTurn(stop)) return offlineAnswer(request, HttpError(HttpError::Cancelled{}).what());
  struct Turn {
    AgentCoordinator& coordinator;
    ~Turn() {
      {
        const std::lock_guard lock(coordinator.m_mutex);
        coordinator.m_isBusy = false;
      }
      coordinator.m_idle.notify_one();
    }
  };
  const Turn turn{*this};
  return answer(request, provider, stop);
}

bool AgentCoordinator::waitForTurn(const std::stop_token& stop) {
  std::unique_lock lock(m_mutex);
  if (!m_idle.wait(lock, stop, [this] { return !m_isBusy; })) return false;
  m_isBusy = true;
  return true;
}

PlannedAnswer AgentCoordinator::answer(const MetadataOnlyRequest& request, AIProvider provider,
                                       const std::stop_token& stop) const {
  const auto client = resolveClient(provider);
  std::optional<std::string> reason;
  if (client->provider() != provider) reason = "No key is stored for it, or the key ring cannot be read.";
  try {
    return {client->generatePlan(request, stop), client->provider(), std::move(reason)};
  } catch (const std::exception& error) {
    if (client->provider() != AIProvider::heuristic) reason = reasonOf(error);
    return offlineAnswer(request, std::move(reason));
  }
}

PlannedAnswer AgentCoordinator::offlineAnswer(const MetadataOnlyRequest& request,
                                              std::optional<std::string> reason) const {
  return {m_fallback.parser().parse(request.userPrompt), AIProvider::heuristic, std::move(reason)};
}

std::optional<HttpRequest> AgentCoordinator::keylessRequest(const std::string& prompt, AIProvider provider,
                                                            const std::vector<FileMetadataEntry>& sampleFiles) const {
  const auto request = requestFor(prompt, sampleFiles);
  switch (provider) {
    case AIProvider::anthropic:
      return AnthropicClient::keylessRequest(request, m_addresses.anthropic);
    case AIProvider::openAI:
      return OpenAIClient::keylessRequest(request, m_addresses.openAI);
    case AIProvider::heuristic:
      break;
  }
  return std::nullopt;
}

}  // namespace orvane
