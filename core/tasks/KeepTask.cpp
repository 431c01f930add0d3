#include "core/tasks/KeepTask.h"

#include "core/safety/access/KeepList.h"
#include "core/tasks/TaskServices.h"

namespace orvane {

std::vector<std::string> keptPatterns(const TaskServices& services) {
  return services.keepList.patterns();
}

void keepPatterns(const TaskServices& services, std::span<const std::string> patterns) {
  services.keepList.add(patterns);
}

void keepPlace(const TaskServices& services, const FileUrl& place) {
  const auto pattern = keepPatternFor(services, place);
  services.keepList.add(std::span(&pattern, 1));
}

std::vector<std::string> dropPatterns(const TaskServices& services, std::span<const std::string> patterns) {
  return services.keepList.remove(patterns);
}

std::string keepPatternFor(const TaskServices& services, const FileUrl& place) {
  return services.keepList.patternFor(place);
}

}  // namespace orvane
