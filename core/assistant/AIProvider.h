#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

namespace orvane {

// Who makes a plan.
enum class AIProvider : std::uint8_t { heuristic, anthropic, openAI };

inline constexpr std::array allAIProviders{AIProvider::heuristic, AIProvider::anthropic, AIProvider::openAI};

// The form in settings and in the terminal.
[[nodiscard]] std::string_view rawValue(AIProvider provider) noexcept;
[[nodiscard]] std::optional<AIProvider> aiProviderFromRawValue(std::string_view text) noexcept;
[[nodiscard]] std::string_view displayName(AIProvider provider) noexcept;
// The key store's account of the provider's key; empty for one that needs none.
[[nodiscard]] std::string_view keyAccount(AIProvider provider) noexcept;

}  // namespace orvane
