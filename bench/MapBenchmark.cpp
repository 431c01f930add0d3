// A map of a folder, remembered in a database of its own and compared with itself, with the time that each part takes.
//
//     map_benchmark FOLDER

#include "core/map/MapGrowth.h"
#include "core/map/MapWalk.h"
#include "core/map/SnapshotForm.h"
#include "core/map/services/SnapshotStore.h"
#include "core/safety/rules/PathValidator.h"
#include "core/tasks/MapTask.h"
#include "core/tasks/TaskServices.h"
#include "platform/linux/LinuxPreferences.h"

#include <sys/resource.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

namespace {

using namespace orvane;

constexpr int rounds = 5;

template <typename Work>
double medianMilliseconds(Work work) {
  std::vector<double> times;
  for (int round = 0; round < rounds; ++round) {
    const auto start = std::chrono::steady_clock::now();
    work();
    times.push_back(std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count());
  }
  std::sort(times.begin(), times.end());
  return times[rounds / 2];
}

double peakBytes() {
  rusage usage{};
  ::getrusage(RUSAGE_SELF, &usage);
  return static_cast<double>(usage.ru_maxrss) * 1024;
}

int run(const std::string& folder, const std::string& home) {
  const auto& services = MapServices::shared();
  const auto before = peakBytes();
  const auto now = ReferenceClock::now();
  const auto map = MapWalk(services.tasks.validator, services.tasks.profile, now).map(folder, {});
  if (!map) return 1;
  const auto files = static_cast<double>(map->folder(StorageMap::top).total.files);
  const auto folders = static_cast<double>(map->folderCount());
  std::printf("%.0f files in %.0f folders\n", files, folders);
  std::printf("memory of the map          %8.2f of 60 bytes a file and 200 a folder\n",
              (peakBytes() - before) / (60 * files + 200 * folders));

  LinuxPreferences preferences(home + "/preferences.json");
  SnapshotStore store(home + "/map.db", preferences);
  store.setOn(true);
  const auto remember = [&, day = 0]() mutable { store.add(snapshotOf(*map, now - std::chrono::days(++day))); };
  std::printf("a snapshot, made and stored %7.1f ms\n", medianMilliseconds(remember));
  std::printf("its size in the database   %8.0f bytes, of %d\n",
              static_cast<double>(std::filesystem::file_size(home + "/map.db")) / rounds, rounds);
  const auto compare = [&] {
    const auto moments = store.moments(now);
    const auto* moment = momentBefore(moments, map->rootPath(), now);
    const auto snapshot = moment == nullptr ? std::nullopt : store.read(moment->id);
    if (!snapshot || !growthSince(*map, *snapshot)) std::abort();
  };
  std::printf("comparing with one         %8.1f ms\n", medianMilliseconds(compare));
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fputs("Usage: map_benchmark FOLDER\n", stderr);
    return 2;
  }
  std::string home = (std::filesystem::temp_directory_path() / "orvane-map-XXXXXX").string();
  if (::mkdtemp(home.data()) == nullptr) return 1;
  const int status = run(argv[1], home);
  std::filesystem::remove_all(home);
  return status;
}
