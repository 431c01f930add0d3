#include "app/HeadlessStart.h"

#include "core/organizer/AutoOrganizeSettingsStore.h"
#include "core/organizer/AutoOrganizer.h"

#include <algorithm>
#include <cstdio>
#include <exception>
#include <semaphore>
#include <thread>

namespace orvane {
namespace {

template <typename Step>
void attempt(Step step) {
  try {
    step();
  } catch (const std::exception& error) {
    std::fprintf(stderr, "orvane: %s\n", error.what());
  }
}

void tidyWhereEnabled() {
  const auto settings = AutoOrganizeSettingsStore::shared().get();
  if (!settings.isEnabled) return;
  AutoOrganizeRequest request;
  request.folders = settings.folderURLs();
  request.recentsDays = settings.recentsDays;
  request.topics = settings.useAITopics ? TopicUse::whenAvailable : TopicUse::never;
  AutoOrganizer::shared().run(request);
}

}  // namespace

bool asksForScheduledRun(std::span<const char* const> arguments) {
  return std::any_of(arguments.begin(), arguments.end(),
                     [](std::string_view argument) { return argument == scheduledRunArgument; });
}

void runScheduledWork() {
  std::counting_semaphore<1> finished(0);
  std::thread([&finished] {
    attempt(tidyWhereEnabled);
    finished.release();
  }).detach();
  finished.acquire();
}

}  // namespace orvane
