#include "platform/linux/ConfigurationFolder.h"

#include "platform/linux/XdgFolders.h"

namespace orvane {

std::string configurationFolder() {
  return XdgFolders::fromEnvironment().config;
}

}  // namespace orvane
