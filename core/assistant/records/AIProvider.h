#pragma once

#include "core/base/values/EnumTable.h"

#include <cstdint>
#include <optional>
#include <string_view>

namespace orvane {

// Who makes a plan.
enum class AIProvider : std::uint8_t { heuristic, anthropic, openAI, localModel };

struct AIProviderRow {
  AIProvider value;
  std::string_view rawValue;  // the form in settings and in the terminal
  std::string_view displayName;
  std::string_view keyAccount;  // the key store's account of the provider's key; empty for one that needs none
};

inline constexpr EnumTable aiProviders({
    AIProviderRow{AIProvider::heuristic, "offline_heuristic", "Offline Heuristic (Local)", ""},
    AIProviderRow{AIProvider::anthropic, "anthropic", "Anthropic (Claude)", "anthropic_api_key"},
    AIProviderRow{AIProvider::openAI, "openai", "OpenAI (GPT-4o)", "openai_api_key"},
    AIProviderRow{AIProvider::localModel, "local_model", "Local Model (This Machine)", ""},
});
inline constexpr auto allAIProviders = aiProviders.values();

constexpr std::string_view rawValue(AIProvider provider) noexcept {
  return aiProviders[provider].rawValue;
}
constexpr std::optional<AIProvider> aiProviderFromRawValue(std::string_view text) noexcept {
  return aiProviders.find(text);
}
constexpr std::string_view displayName(AIProvider provider) noexcept {
  return aiProviders[provider].displayName;
}
constexpr std::string_view keyAccount(AIProvider provider) noexcept {
  return aiProviders[provider].keyAccount;
}

}  // namespace orvane
