#pragma once

#include "core/assistant/LLMClient.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace orvane {

class TopicModel;

// Plans with the language model on this machine. Nothing leaves it.
class LocalModelClient : public LLMClient {
 public:
  // More steps are no plan that anybody can look through.
  static constexpr std::size_t maxSteps = 20;

  // `model` must outlive this object.
  explicit LocalModelClient(TopicModel& model) : m_model(model) {}

  [[nodiscard]] AIProvider provider() const noexcept override { return AIProvider::localModel; }
  // Also throws std::runtime_error where the model cannot be asked.
  [[nodiscard]] CleaningPlan generatePlan(const MetadataOnlyRequest& request,
                                          const std::stop_token& stop = {}) const override;

  // The prompt names the form with every key that a plan must have.
  [[nodiscard]] static std::string instructions();
  // Exactly what the model receives.
  struct Prompt {
    std::string instructions;
    std::string message;
  };
  [[nodiscard]] static Prompt promptFor(const MetadataOnlyRequest& request);
  // Prose around the plan is passed over. Goal, identities and date are those of the request, not the model's.
  [[nodiscard]] static CleaningPlan planFromReply(std::string_view text, std::string_view prompt);

 private:
  TopicModel& m_model;
};

}  // namespace orvane
