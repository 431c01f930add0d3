#pragma once

#include "core/platform/TopicModel.h"

#include <chrono>
#include <mutex>
#include <string>
#include <string_view>

namespace orvane {

class HttpTransport;
class Preferences;

// A model server on this machine that speaks the common chat-completions form (llama.cpp, Ollama and others). Its
// address is the preference "OrvaneLocalModelEndpoint" ("http://127.0.0.1:8080", or with the path of the interface),
// the model's name "OrvaneLocalModelName", which a server of one model does not need. Only loopback addresses are
// asked.
class LocalTopicModel : public TopicModel {
 public:
  static constexpr std::string_view endpointKey = "OrvaneLocalModelEndpoint";
  static constexpr std::string_view nameKey = "OrvaneLocalModelName";
  static constexpr std::chrono::milliseconds availabilityTimeout{500};
  static constexpr std::chrono::milliseconds answerTimeout{120'000};

  // Both must outlive this object.
  LocalTopicModel(const Preferences& preferences, HttpTransport& transport,
                  std::chrono::milliseconds timeout = answerTimeout);

  [[nodiscard]] std::string unavailableReason() override;
  [[nodiscard]] std::string respond(const std::string& instructions, const std::string& prompt,
                                    const std::stop_token& stop) override;

 private:
  // The address of the interface. Throws std::runtime_error saying what is wrong with the setting.
  [[nodiscard]] std::string endpoint() const;
  [[nodiscard]] std::string askWhetherAvailable();

  const Preferences& m_preferences;
  HttpTransport& m_transport;
  std::chrono::milliseconds m_timeout;
  std::mutex m_mutex;
  bool m_isAvailable = false;
};

}  // namespace orvane
