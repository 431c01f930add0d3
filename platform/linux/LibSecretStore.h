#pragma once

#include "core/platform/SecretStore.h"

#include <chrono>

namespace orvane {

// SecretStore over the Secret Service (freedesktop.org), through libsecret: the default collection, items with the
// attributes "service" and "account". Nobody is asked to unlock a locked collection: the answer is needed now, and a
// question that goes away after seconds helps nobody.
class LibSecretStore : public SecretStore {
 public:
  // Two calls, which replacing a secret takes, stay within five seconds.
  static constexpr std::chrono::milliseconds maxCallTime{2'400};

  explicit LibSecretStore(std::chrono::milliseconds timeout = maxCallTime) : m_timeout(timeout) {}

  [[nodiscard]] bool add(const std::string& service, const std::string& account, const SecretText& secret) override;
  [[nodiscard]] bool remove(const std::string& service, const std::string& account) override;
  [[nodiscard]] std::optional<SecretText> find(const std::string& service, const std::string& account) override;

 private:
  std::chrono::milliseconds m_timeout;
};

}  // namespace orvane
