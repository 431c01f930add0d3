#pragma once

#include <string>

namespace orvane {

// Where the remote planners are reached, without the paths of their interfaces.
struct ProviderAddresses {
  std::string anthropic = "https://api.anthropic.com";
  std::string openAI = "https://api.openai.com";

  // The public addresses, or what ORVANE_ANTHROPIC_BASE_URL and ORVANE_OPENAI_BASE_URL say. An address that is not
  // allowed there is refused by the transport.
  [[nodiscard]] static ProviderAddresses fromEnvironment();
};

}  // namespace orvane
