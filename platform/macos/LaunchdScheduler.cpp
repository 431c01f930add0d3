#include "platform/macos/LaunchdScheduler.h"

#include "core/base/files/AtomicFile.h"
#include "core/base/files/PathText.h"
#include "core/rules/services/LaunchAgentManager.h"
#include "platform/posix/RunTool.h"

#include <unistd.h>

#include <utility>

namespace orvane {
namespace {

bool isThere(const std::string& path) {
  return ::access(path.c_str(), F_OK) == 0;
}

}  // namespace

LaunchdScheduler::LaunchdScheduler(std::string agentsFolder, std::string launchctl)
    : m_agentsFolder(std::move(agentsFolder)), m_launchctl(std::move(launchctl)) {}

std::string LaunchdScheduler::pathFor(const std::string& label) const {
  return joinPath(m_agentsFolder, label + ".plist");
}

void LaunchdScheduler::tell(const std::string& subcommand, const std::string& path) const {
  if (isThere(path)) runTool({m_launchctl, subcommand, path});
}

void LaunchdScheduler::install(const BackgroundJob& job) {
  createFolders(m_agentsFolder);
  createFolders(std::string(parentPath(job.outputPath)));
  const auto path = pathFor(job.label);
  AtomicFile::replace(path, propertyList(job), 0644);
  tell("unload", path);
  tell("load", path);
}

void LaunchdScheduler::uninstall(const std::string& label) {
  const auto path = pathFor(label);
  tell("unload", path);
  ::unlink(path.c_str());
}

bool LaunchdScheduler::isInstalled(const std::string& label) const {
  return isThere(pathFor(label));
}

std::vector<BackgroundScheduler::Definition> LaunchdScheduler::definitions(const BackgroundJob& job) const {
  return {{job.label + ".plist", propertyList(job)}};
}

}  // namespace orvane
