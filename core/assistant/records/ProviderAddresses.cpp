#include "core/assistant/records/ProviderAddresses.h"

#include <cstdlib>

namespace orvane {
namespace {

void replaceFromEnvironment(std::string& address, const char* name) {
  const char* value = std::getenv(name);
  if (value != nullptr && *value != '\0') address = value;
}

}  // namespace

ProviderAddresses ProviderAddresses::fromEnvironment() {
  ProviderAddresses addresses;
  replaceFromEnvironment(addresses.anthropic, "ORVANE_ANTHROPIC_BASE_URL");
  replaceFromEnvironment(addresses.openAI, "ORVANE_OPENAI_BASE_URL");
  return addresses;
}

}  // namespace orvane
