#include "core/assistant/services/KeychainService.h"

#include "core/base/text/UnicodeText.h"

namespace orvane {

bool KeychainService::saveKey(const SecretText& key, std::string_view account) const {
  if (!isValidUtf8(key.view())) return false;
  static_cast<void>(deleteKey(account));
  return m_store.add(std::string(serviceName), std::string(account), key);
}

bool KeychainService::deleteKey(std::string_view account) const {
  return m_store.remove(std::string(serviceName), std::string(account));
}

std::optional<SecretText> KeychainService::getKey(std::string_view account) const {
  auto key = m_store.find(std::string(serviceName), std::string(account));
  if (key && !isValidUtf8(key->view())) return std::nullopt;
  return key;
}

bool KeychainService::hasKey(std::string_view account) const {
  const auto key = getKey(account);
  return key && !key->isEmpty();
}

}  // namespace orvane
