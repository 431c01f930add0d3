#include "core/assistant/AgentCoordinator.h"

#include "core/assistant/AnthropicClient.h"
#include "core/assistant/LocalModelClient.h"
#include "core/assistant/OpenAIClient.h"
#include "core/assistant/records/PlannerError.h"
#include "core/base/text/Json.h"
#include "core/plans/records/PlanValidationError.h"
#include "core/platform/TopicModel.h"

#include <fmt/format.h>

#include <utility>

namespace orvane {
namespace {

MetadataOnlyRequest requestFor(const std::string& prompt, const std::vector<FileMetadataEntry>& sampleFiles) {
  return {.userPrompt = prompt, .files = sampleFiles, .targetFolders = {}};
}

// Nothing leaves the machine then.
bool isAddressRefused(const std::exception& error) {
  const auto* http = dynamic_cast<const HttpError*>(&error);
  return http != nullptr && std::holds_alternative<HttpError::UrlRefused>(http->which());
}

std::string reasonOf(const std::exception& error) {
  if (dynamic_cast<const JsonError*>(&error) != nullptr) {
    return fmt::format("The reply is not a plan: {}", error.what());
  }
  if (dynamic_cast<const PlanValidationError*>(&error) != nullptr) {
    return fmt::format("The reply's plan cannot be used: {}", error.what());
  }
  // An address may hold what the user would not want to see printed.
  if (isAddressRefused(error)) return "The provider's address is no https address, nor http to this machine.";
  return error.what();
}

}  // namespace

AgentCoordinator::AgentCoordinator(const KeychainService& keychain, HttpTransport& session, ProviderAddresses addresses,
                                   TopicModel* localModel)
    : m_keychain(keychain), m_session(session), m_addresses(std::move(addresses)), m_localModel(localModel) {}

std::string AgentCoordinator::localModelProblem() const {
  return m_localModel == nullptr ? "there is no model on this machine" : m_localModel->unavailableReason();
}

bool AgentCoordinator::hasKey(AIProvider provider) const {
  const auto account = keyAccount(provider);
  return !account.empty() && m_keychain.hasKey(account);
}

std::unique_ptr<LLMClient> AgentCoordinator::resolveClient(AIProvider provider) const {
  if (provider == AIProvider::localModel) {
    if (localModelProblem().empty()) return std::make_unique<LocalModelClient>(*m_localModel);
  } else if (provider != AIProvider::heuristic) {
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
  if (!waitForTurn(stop)) {
    auto answer = plannedOffline(prompt, provider);
    answer.fallbackReason = HttpError(HttpError::Cancelled{}).what();
    return answer;
  }
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

std::string AgentCoordinator::whyNotAsked(AIProvider provider) const {
  if (provider != AIProvider::localModel) return "No key is stored for it, or the key ring cannot be read.";
  return fmt::format("It cannot be asked: {}.", localModelProblem());
}

PlannedAnswer AgentCoordinator::plannedOffline(const std::string& prompt, AIProvider asked) const {
  PlannedAnswer answer;
  answer.words = HeuristicFallbackClient::wordsOf(prompt);
  answer.reading = PromptReading::of(answer.words.text());
  answer.plan = m_fallback.parser().parse(prompt, answer.reading);
  answer.asked = asked;
  answer.provider = AIProvider::heuristic;
  return answer;
}

PlannedAnswer AgentCoordinator::answer(const MetadataOnlyRequest& request, AIProvider provider,
                                       const std::stop_token& stop) const {
  const auto client = resolveClient(provider);
  auto answer = plannedOffline(request.userPrompt, provider);
  const auto able = client->provider();
  if (able != provider) answer.fallbackReason = whyNotAsked(provider);
  if (able == AIProvider::heuristic) return answer;
  answer.sent = keylessRequest(request, able);
  try {
    answer.plan = client->generatePlan(request, stop);
    answer.provider = able;
  } catch (const std::exception& error) {
    answer.fallbackReason = reasonOf(error);
    if (isAddressRefused(error)) answer.sent.reset();
  }
  return answer;
}

std::optional<HttpRequest> AgentCoordinator::keylessRequest(const std::string& prompt, AIProvider provider,
                                                            const std::vector<FileMetadataEntry>& sampleFiles) const {
  return keylessRequest(requestFor(prompt, sampleFiles), provider);
}

std::optional<HttpRequest> AgentCoordinator::keylessRequest(const MetadataOnlyRequest& request,
                                                            AIProvider provider) const {
  switch (provider) {
    case AIProvider::anthropic:
      return AnthropicClient::keylessRequest(request, m_addresses.anthropic);
    case AIProvider::openAI:
      return OpenAIClient::keylessRequest(request, m_addresses.openAI);
    case AIProvider::heuristic:
    case AIProvider::localModel:
      break;
  }
  return std::nullopt;
}

}  // namespace orvane
