#include "core/assistant/AIProvider.h"

namespace orvane {
namespace {

struct ProviderRow {
  AIProvider provider;
  std::string_view rawValue;
  std::string_view displayName;
  std::string_view keyAccount;
};

constexpr std::array rows{
    ProviderRow{AIProvider::heuristic, "offline_heuristic", "Offline Heuristic (Local)", ""},
    ProviderRow{AIProvider::anthropic, "anthropic", "Anthropic (Claude)", "anthropic_api_key"},
    ProviderRow{AIProvider::openAI, "openai", "OpenAI (GPT-4o)", "openai_api_key"},
};

constexpr bool rowsFollowDeclaration() {
  for (std::size_t i = 0; i < rows.size(); ++i) {
    if (rows[i].provider != allAIProviders[i] || static_cast<std::size_t>(rows[i].provider) != i) return false;
  }
  return rows.size() == allAIProviders.size();
}
static_assert(rowsFollowDeclaration());

constexpr const ProviderRow& rowOf(AIProvider provider) {
  return rows[static_cast<std::size_t>(provider)];
}

}  // namespace

std::string_view rawValue(AIProvider provider) noexcept {
  return rowOf(provider).rawValue;
}

std::optional<AIProvider> aiProviderFromRawValue(std::string_view text) noexcept {
  for (const auto& row : rows) {
    if (row.rawValue == text) return row.provider;
  }
  return std::nullopt;
}

std::string_view displayName(AIProvider provider) noexcept {
  return rowOf(provider).displayName;
}

std::string_view keyAccount(AIProvider provider) noexcept {
  return rowOf(provider).keyAccount;
}

}  // namespace orvane
