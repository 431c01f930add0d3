#include "core/assistant/OpenAIClient.h"

#include "core/assistant/RemoteExchange.h"
#include "core/assistant/records/PlannerError.h"
#include "core/base/text/Json.h"
#include "core/plans/CleaningPlanSchema.h"

#include <fmt/format.h>

#include <utility>

namespace orvane {
namespace {

constexpr std::string_view completionsPath = "/v1/chat/completions";
constexpr std::string_view completionsModel = "gpt-4o";
constexpr std::string_view completionsLeadIn =
    "You are Orvane's cleanup planner. Analyze metadata and output valid JSON conforming to the CleaningPlan schema:";

Json message(std::string_view role, std::string content) {
  Json json = Json::object();
  json["role"] = role;
  json["content"] = std::move(content);
  return json;
}

}  // namespace

OpenAIClient::OpenAIClient(SecretText apiKey, HttpTransport& session, std::string baseAddress)
    : m_apiKey(std::move(apiKey)), m_session(session), m_baseAddress(std::move(baseAddress)) {}

HttpRequest OpenAIClient::keylessRequest(const MetadataOnlyRequest& request, std::string_view baseAddress) {
  Json body = Json::object();
  body["model"] = completionsModel;
  body["messages"] =
      Json::array({message("system", fmt::format("{}\n{}", completionsLeadIn, CleaningPlanSchema::promptBlock())),
                   message("user", request.userMessage())});
  body["response_format"] = Json::object();
  body["response_format"]["type"] = "json_object";
  return postTo(baseAddress, completionsPath, body);
}

CleaningPlan OpenAIClient::planFromReply(std::string_view body) {
  const auto reply = replyJson(body);
  std::string text;
  try {
    const auto& choices = requiredKey(reply, "choices");
    if (!choices.is_array() || choices.empty()) throw JsonError("\"choices\" is empty");
    text = stringAt(requiredKey(choices.front(), "message"), "content");
  } catch (const JsonError&) {
    throw PlannerError(PlannerError::CannotParseResponse{});
  }
  return validPlanFrom(text);
}

CleaningPlan OpenAIClient::generatePlan(const MetadataOnlyRequest& request, const std::stop_token& stop) const {
  auto bearer = std::string("Bearer ").append(m_apiKey.view());
  return planFromReply(
      replyTo(keylessRequest(request, m_baseAddress), {"Authorization", std::move(bearer)}, m_session, stop));
}

}  // namespace orvane
