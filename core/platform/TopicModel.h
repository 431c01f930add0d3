#pragma once

#include <stop_token>
#include <string>

namespace orvane {

// A language model on this machine. Requests never leave the machine. Callable from any thread.
class TopicModel {
 public:
  virtual ~TopicModel() = default;

  // Why it cannot be used, in one line for people; empty when it can, which then holds for the process: one that is not
  // there may come later.
  [[nodiscard]] virtual std::string unavailableReason() = 0;
  [[nodiscard]] bool isAvailable() { return unavailableReason().empty(); }

  // The text of the answer to one prompt in a session of its own. Throws std::runtime_error.
  [[nodiscard]] virtual std::string respond(const std::string& instructions, const std::string& prompt,
                                            const std::stop_token& stop) = 0;
};

}  // namespace orvane
