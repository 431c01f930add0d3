#pragma once

#include "core/base/text/SecretText.h"
#include "core/platform/SecretStore.h"

#include <optional>
#include <string>
#include <string_view>

namespace orvane {

// The user's keys for language models, in the key ring and nowhere else. Nothing throws or logs.
class KeychainService {
 public:
  static constexpr std::string_view serviceName = "com.orvane.app.keys";

  // `store` must outlive this object.
  explicit KeychainService(SecretStore& store) : m_store(store) {}
  static KeychainService& shared();

  // Replaces what was stored. False, with nothing changed, for a key that is not UTF-8; false when it is not stored.
  [[nodiscard]] bool saveKey(const SecretText& key, std::string_view account) const;
  // True when nothing is stored any more.
  [[nodiscard]] bool deleteKey(std::string_view account) const;
  // An empty key is returned as an empty text; one that is not UTF-8 is absent.
  [[nodiscard]] std::optional<SecretText> getKey(std::string_view account) const;
  // Whether a key is stored that may be used: an empty one may not.
  [[nodiscard]] bool hasKey(std::string_view account) const;

 private:
  SecretStore& m_store;
};

}  // namespace orvane
