#include "platform/linux/ConfigurationFolder.h"

#include "core/base/files/HomeFolder.h"
#include "core/base/files/PathText.h"

#include <cstdlib>

namespace orvane {

std::string configurationFolder() {
  const char* configured = std::getenv("XDG_CONFIG_HOME");
  return configured != nullptr && configured[0] == '/' ? configured : joinPath(homeFolder(), ".config");
}

}  // namespace orvane
