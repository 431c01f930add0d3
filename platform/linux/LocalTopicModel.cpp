#include "platform/linux/LocalTopicModel.h"

#include "core/base/text/Json.h"
#include "core/platform/HttpTransport.h"
#include "core/platform/Preferences.h"
#include "platform/linux/CurlUrlReader.h"

#include <fmt/format.h>

#include <stdexcept>

namespace orvane {
namespace {

constexpr std::string_view interfacePath = "/v1";
constexpr std::string_view chatPath = "/chat/completions";
constexpr std::string_view modelsPath = "/models";

std::string textPreference(const Preferences& preferences, std::string_view key) {
  const auto value = preferences.value(key);
  return value && value->is_string() ? value->get<std::string>() : std::string();
}

std::string answerFrom(const std::string& body) {
  const auto reply = parseJson(body, {.duplicateKeys = DuplicateKeys::takeFirst});
  const auto& choices = requiredKey(reply, "choices");
  if (!choices.is_array() || choices.empty()) throw JsonError("\"choices\" is empty");
  return stringAt(requiredKey(choices[0], "message"), "content");
}

}  // namespace

LocalTopicModel::LocalTopicModel(const Preferences& preferences, HttpTransport& transport,
                                 std::chrono::milliseconds timeout)
    : m_preferences(preferences), m_transport(transport), m_timeout(timeout) {}

std::string LocalTopicModel::endpoint() const {
  const auto setting = textPreference(m_preferences, endpointKey);
  if (setting.empty()) throw std::runtime_error("no model on this machine is set up");
  const auto url = CurlUrlReader().read(setting);
  if (!url) throw std::runtime_error(fmt::format("the local model's address '{}' is not valid", setting));
  if (!url->isLoopback) {
    throw std::runtime_error(
        fmt::format("the local model's address '{}' is refused: names may only be sent to this machine", setting));
  }
  auto text = url->text;
  while (text.ends_with('/')) text.pop_back();
  if (text.ends_with(chatPath)) {
    text.resize(text.size() - chatPath.size());
  } else if (!text.ends_with(interfacePath)) {
    text += interfacePath;
  }
  return text;
}

std::string LocalTopicModel::unavailableReason() {
  const std::lock_guard lock(m_mutex);
  if (m_isAvailable) return {};
  auto reason = askWhetherAvailable();
  m_isAvailable = reason.empty();
  return reason;
}

std::string LocalTopicModel::askWhetherAvailable() {
  constexpr int firstServerError = 500;
  try {
    // Any answer shows that a server is there, even a refusal.
    const auto response = m_transport.send({.method = HttpMethod::get,
                                            .url = endpoint().append(modelsPath),
                                            .headers = {},
                                            .body = {},
                                            .timeout = availabilityTimeout,
                                            .route = HttpRoute::direct});
    if (response.status < firstServerError) return {};
    return fmt::format("the local model's server answers with status {}", response.status);
  } catch (const std::runtime_error& error) {
    return error.what();
  }
}

std::string LocalTopicModel::respond(const std::string& instructions, const std::string& prompt,
                                     const std::stop_token& stop) {
  constexpr int firstSuccess = 200;
  constexpr int lastSuccess = 299;
  const auto url = endpoint().append(chatPath);
  Json body = Json::object();
  if (const auto name = textPreference(m_preferences, nameKey); !name.empty()) body["model"] = name;
  body["messages"] =
      Json::array({Json{{"role", "system"}, {"content", instructions}}, Json{{"role", "user"}, {"content", prompt}}});
  body["stream"] = false;
  const auto response = m_transport.send(
      {.url = url, .headers = {}, .body = jsonText(body), .timeout = m_timeout, .route = HttpRoute::direct}, stop);
  if (response.status < firstSuccess || response.status > lastSuccess) {
    throw std::runtime_error(fmt::format("the local model's server answers with status {}", response.status));
  }
  return answerFrom(response.body);
}

}  // namespace orvane
