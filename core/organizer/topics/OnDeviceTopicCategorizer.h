#pragma once

#include "core/organizer/topics/TopicCategorizing.h"

#include <string>
#include <string_view>

namespace orvane {

class TopicModel;

// Asks the language model of this machine, batch by batch. A batch whose answer is of no use stays without topics.
class OnDeviceTopicCategorizer : public TopicCategorizing {
 public:
  static constexpr std::size_t batchSize = 25;
  static constexpr std::size_t maxExistingTopics = 25;  // named in one prompt
  static const std::string_view instructions;

  // `model` must outlive this object.
  explicit OnDeviceTopicCategorizer(TopicModel& model) : m_model(model) {}

  // Topics of earlier batches count as existing ones of later batches, which keeps the number of folders small. Names
  // that are not UTF-8 are not asked about.
  [[nodiscard]] std::map<std::string, std::string> topics(std::span<const std::string> itemNames,
                                                          const std::set<std::string>& existingTopics,
                                                          const std::stop_token& stop = {}) override;

  [[nodiscard]] static std::string prompt(std::span<const std::string> itemNames,
                                          const std::set<std::string>& existingTopics);

 private:
  TopicModel& m_model;
};

}  // namespace orvane
