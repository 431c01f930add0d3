#pragma once

#include "core/platform/TopicModel.h"

#include <functional>
#include <stop_token>
#include <string>
#include <vector>

namespace orvane::test {

// A model that answers as the test says; without an answer there is none.
class ScriptedModel : public TopicModel {
 public:
  [[nodiscard]] std::string unavailableReason() override { return reply ? "" : "no model"; }
  [[nodiscard]] std::string respond(const std::string& /*instructions*/, const std::string& prompt,
                                    const std::stop_token& /*stop*/) override {
    prompts.push_back(prompt);
    return reply(prompt);
  }
  std::function<std::string(const std::string& prompt)> reply;
  std::vector<std::string> prompts;
};

}  // namespace orvane::test
