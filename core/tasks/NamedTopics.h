#pragma once

#include "core/base/text/JsonFwd.h"
#include "core/organizer/topics/TopicCategorizing.h"

#include <map>
#include <string>

namespace orvane {

struct TaskServices;

// Why no language model on this machine can name topics, in one line for people; empty where one can. Asks once.
[[nodiscard]] std::string topicsUnavailableReason(const TaskServices& services);

// Topics by the names of items. A model is asked once and its answer kept with the proposal, so that the same can be
// proposed again without asking.
class NamedTopics : public TopicCategorizing {
 public:
  // `model` must outlive this object.
  explicit NamedTopics(TopicCategorizing& model) : m_model(&model) {}
  // Reads the form below; what may not name a folder is left out. Throws JsonError.
  explicit NamedTopics(const Json& json);
  // Pairs of name and topic.
  [[nodiscard]] Json toJson() const;

  [[nodiscard]] std::map<std::string, std::string> topics(std::span<const std::string> itemNames,
                                                          const std::set<std::string>& existingTopics,
                                                          const std::stop_token& stop = {}) override;

 private:
  TopicCategorizing* m_model = nullptr;
  std::map<std::string, std::string> m_known;
};

}  // namespace orvane
