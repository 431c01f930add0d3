#pragma once

#include "core/assistant/LLMClient.h"
#include "core/base/text/SecretText.h"
#include "core/platform/HttpTransport.h"

#include <string>
#include <string_view>

namespace orvane {

// Anthropic's Messages interface.
class AnthropicClient : public LLMClient {
 public:
  // `session` must outlive this object. `baseAddress` is the server without the interface's path.
  AnthropicClient(SecretText apiKey, HttpTransport& session, std::string baseAddress);

  [[nodiscard]] AIProvider provider() const noexcept override { return AIProvider::anthropic; }
  [[nodiscard]] CleaningPlan generatePlan(const MetadataOnlyRequest& request,
                                          const std::stop_token& stop = {}) const override;

  // The request as sent, but for the key.
  [[nodiscard]] static HttpRequest keylessRequest(const MetadataOnlyRequest& request, std::string_view baseAddress);
  // The plan in a reply's body. Throws PlannerError, JsonError or PlanValidationError.
  [[nodiscard]] static CleaningPlan planFromReply(std::string_view body);

 private:
  SecretText m_apiKey;
  HttpTransport& m_session;
  std::string m_baseAddress;
};

}  // namespace orvane
