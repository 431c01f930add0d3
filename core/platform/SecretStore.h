#pragma once

#include "core/base/text/SecretText.h"

#include <optional>
#include <string>

namespace orvane {

// The user's key ring: a secret by service and account. Nothing throws, nothing is logged, and each call answers within
// seconds: what is locked, absent or refuses is false or absent.
class SecretStore {
 public:
  virtual ~SecretStore() = default;

  // True once it is stored.
  [[nodiscard]] virtual bool add(const std::string& service, const std::string& account, const SecretText& secret) = 0;
  // True when nothing is stored there any more, also where nothing was.
  [[nodiscard]] virtual bool remove(const std::string& service, const std::string& account) = 0;
  [[nodiscard]] virtual std::optional<SecretText> find(const std::string& service, const std::string& account) = 0;
};

}  // namespace orvane
