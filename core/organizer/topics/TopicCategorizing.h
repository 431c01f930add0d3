#pragma once

#include <map>
#include <set>
#include <span>
#include <stop_token>
#include <string>

namespace orvane {

// Proposes a topic folder for each of a list of item names. Only the names are looked at.
class TopicCategorizing {
 public:
  virtual ~TopicCategorizing() = default;

  // Topic by item name; items that were not placed are absent. `existingTopics` are names in use already. Never throws
  // for what the model does.
  [[nodiscard]] virtual std::map<std::string, std::string> topics(std::span<const std::string> itemNames,
                                                                  const std::set<std::string>& existingTopics,
                                                                  const std::stop_token& stop = {}) = 0;
};

}  // namespace orvane
