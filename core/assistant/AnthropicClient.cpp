#include "core/assistant/AnthropicClient.h"

#include "core/assistant/RemoteExchange.h"
#include "core/assistant/records/PlannerError.h"
#include "core/base/text/Json.h"
#include "core/plans/CleaningPlanSchema.h"

#include <fmt/format.h>

#include <utility>

namespace orvane {
namespace {

constexpr std::string_view messagesPath = "/v1/messages";
constexpr std::string_view interfaceVersion = "2023-06-01";
constexpr std::string_view messagesModel = "claude-3-5-sonnet-20241022";
constexpr int maxTokens = 1024;
constexpr std::string_view messagesLeadIn =
    "You are Orvane's cleanup planner. Analyze the metadata and produce a JSON response adhering to this schema:";
constexpr std::string_view closing = "Return ONLY valid JSON.";

}  // namespace

AnthropicClient::AnthropicClient(SecretText apiKey, HttpTransport& session, std::string baseAddress)
    : m_apiKey(std::move(apiKey)), m_session(session), m_baseAddress(std::move(baseAddress)) {}

HttpRequest AnthropicClient::keylessRequest(const MetadataOnlyRequest& request, std::string_view baseAddress) {
  Json body = Json::object();
  body["model"] = messagesModel;
  body["max_tokens"] = maxTokens;
  body["system"] = fmt::format("{}\n{}\n{}", messagesLeadIn, CleaningPlanSchema::promptBlock(), closing);
  Json message = Json::object();
  message["role"] = "user";
  message["content"] = request.userMessage();
  body["messages"] = Json::array({std::move(message)});
  auto post = postTo(baseAddress, messagesPath, body);
  post.headers.push_back({"anthropic-version", std::string(interfaceVersion)});
  return post;
}

CleaningPlan AnthropicClient::planFromReply(std::string_view body) {
  const auto reply = replyJson(body);
  std::string text;
  try {
    const auto& content = requiredKey(reply, "content");
    if (!content.is_array() || content.empty()) throw JsonError("\"content\" is empty");
    text = stringAt(content.front(), "text");
  } catch (const JsonError&) {
    throw PlannerError(PlannerError::CannotParseResponse{});
  }
  return validPlanFrom(text);
}

CleaningPlan AnthropicClient::generatePlan(const MetadataOnlyRequest& request, const std::stop_token& stop) const {
  return planFromReply(
      replyTo(keylessRequest(request, m_baseAddress), {"x-api-key", std::string(m_apiKey.view())}, m_session, stop));
}

}  // namespace orvane
