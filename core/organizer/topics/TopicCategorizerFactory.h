#pragma once

#include "core/organizer/topics/OnDeviceTopicCategorizer.h"

#include <string>

namespace orvane {

class TopicModel;

// Hands out a categorizer where this machine has a language model.
class TopicCategorizerFactory {
 public:
  // `model` must outlive this object.
  explicit TopicCategorizerFactory(TopicModel& model) : m_model(model), m_categorizer(model) {}
  static TopicCategorizerFactory& shared();

  // Why there is none, in one line for people; empty where there is one. The model is asked once.
  [[nodiscard]] std::string unavailableReason() const;
  [[nodiscard]] bool isOnDeviceModelAvailable() const;
  // Null where there is no model.
  [[nodiscard]] TopicCategorizing* categorizer();

 private:
  TopicModel& m_model;
  OnDeviceTopicCategorizer m_categorizer;
};

}  // namespace orvane
