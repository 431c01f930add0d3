#include "core/tasks/NamedTopics.h"

#include "core/base/text/Json.h"
#include "core/organizer/topics/TopicCategorizerFactory.h"
#include "core/organizer/topics/TopicNames.h"
#include "core/tasks/TaskServices.h"

namespace orvane {
namespace {
constexpr std::string_view what = "topics";
}

std::string topicsUnavailableReason(const TaskServices& services) {
  return services.topics.unavailableReason();
}

NamedTopics::NamedTopics(const Json& json) {
  if (!json.is_array()) throw JsonError("topics: expected an array");
  for (const auto& entry : json) {
    const auto pair = stringsFrom(entry, what);
    if (pair.size() != 2) throw JsonError("topics: expected pairs of name and topic");
    if (auto topic = TopicNames::sanitize(pair[1])) m_known.insert_or_assign(pair[0], *std::move(topic));
  }
}

Json NamedTopics::toJson() const {
  Json json = Json::array();
  for (const auto& [name, topic] : m_known) json.push_back(Json::array({name, topic}));
  return json;
}

std::map<std::string, std::string> NamedTopics::topics(std::span<const std::string> itemNames,
                                                       const std::set<std::string>& existingTopics,
                                                       const std::stop_token& stop) {
  if (m_model != nullptr) m_known = m_model->topics(itemNames, existingTopics, stop);
  return m_known;
}

}  // namespace orvane
