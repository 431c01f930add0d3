// Benchmarks of scanning. With "--scan FOLDER" (keeping every item), "--count FOLDER" (keeping none) or "--size FOLDER"
// it does that once and says what it found, for timing beside other programs.

#include "core/base/files/FileUrl.h"
#include "core/organizer/categories/CategoryClassifier.h"
#include "core/organizer/categories/FolderClassifier.h"
#include "core/safety/rules/FolderRules.h"
#include "core/safety/rules/PathValidator.h"
#include "core/scanning/scan/StorageScanner.h"
#include "platform/linux/LinuxFileStatusReader.h"

#include <benchmark/benchmark.h>
#include <sys/resource.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace {

using namespace orvane;

constexpr const char* home = "/home/user";
constexpr const char* folder = "/home/user/Documents/Work/Client files/2024";
constexpr std::string_view names[] = {"report 1.pdf", "IMG_0042.jpg", "Screenshot 2024-03-01.png",
                                      "main.cpp",     "backup.zip",   "README",
                                      "setup.dmg",    "server.log"};

void classifyWholePaths(benchmark::State& state) {
  std::vector<FileUrl> urls;
  for (const auto name : names) urls.push_back(FileUrl(folder).appendingPathComponent(name));
  for (auto _ : state) {
    for (const auto& url : urls) benchmark::DoNotOptimize(CategoryClassifier::classify(url, 1000));
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(urls.size()));
}
BENCHMARK(classifyWholePaths);

void classifyEntriesOfFolder(benchmark::State& state) {
  const FolderClassifier classifier(std::string(folder) + "/");
  for (auto _ : state) {
    for (const auto name : names) benchmark::DoNotOptimize(classifier.classify(name, 1000));
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(std::size(names)));
}
BENCHMARK(classifyEntriesOfFolder);

void validateWholePaths(benchmark::State& state) {
  const PathValidator validator(home);
  const Boundary roots({FileUrl(std::string(home))});
  std::vector<FileUrl> urls;
  for (const auto name : names) urls.push_back(FileUrl(folder).appendingPathComponent(name));
  for (auto _ : state) {
    for (const auto& url : urls) benchmark::DoNotOptimize(validator.isPathAllowed(url, roots));
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(urls.size()));
}
BENCHMARK(validateWholePaths);

void validateEntriesOfFolder(benchmark::State& state) {
  const PathValidator validator(home);
  const Boundary roots({FileUrl(std::string(home))});
  const FolderRules rules(validator, folder, folder, roots);
  for (auto _ : state) {
    for (const auto name : names) benchmark::DoNotOptimize(rules.admits(name));
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(std::size(names)));
}
BENCHMARK(validateEntriesOfFolder);

// A tree of a hundred folders with a hundred empty files each, removed at the end.
class Tree {
 public:
  Tree() {
    std::string pattern = (std::filesystem::temp_directory_path() / "orvane-bench-XXXXXX").string();
    if (::mkdtemp(pattern.data()) == nullptr) std::abort();
    m_path = pattern;
    for (int i = 0; i < 100; ++i) {
      const auto sub = m_path / std::to_string(i);
      std::filesystem::create_directory(sub);
      for (int j = 0; j < 100; ++j) std::ofstream(sub / ("file " + std::to_string(j) + ".txt"));
    }
  }
  ~Tree() {
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
  }
  Tree(const Tree&) = delete;
  Tree& operator=(const Tree&) = delete;
  [[nodiscard]] std::string path() const { return m_path.string(); }

 private:
  std::filesystem::path m_path;
};

template <typename Visit>
void scanFolder(const std::string& path, Visit visit) {
  const PathValidator validator(home);
  const LinuxFileStatusReader reader;
  StorageScanner scanner(validator, reader);
  auto stream = scanner.scan({FileUrl(path)}, DeveloperCaches::leaveOut);
  for (auto batch = stream.nextBatch(); !batch.empty(); batch = stream.nextBatch()) {
    for (auto& event : batch) visit(event);
  }
}

std::vector<FileItem> scannedItems(const std::string& path) {
  std::vector<FileItem> items;
  scanFolder(path, [&](ScanEvent& event) {
    if (auto* item = std::get_if<FileItem>(&event)) items.push_back(std::move(*item));
  });
  return items;
}

void scanTenThousandFiles(benchmark::State& state) {
  const Tree tree;
  for (auto _ : state) benchmark::DoNotOptimize(scannedItems(tree.path()));
  state.SetItemsProcessed(state.iterations() * 10'000);
}
BENCHMARK(scanTenThousandFiles)->Unit(benchmark::kMillisecond)->UseRealTime();

void sizeTenThousandFiles(benchmark::State& state) {
  const Tree tree;
  for (auto _ : state) benchmark::DoNotOptimize(StorageScanner::fastFolderSize(tree.path()));
  state.SetItemsProcessed(state.iterations() * 10'000);
}
BENCHMARK(sizeTenThousandFiles)->Unit(benchmark::kMillisecond)->UseRealTime();

int runOnce(std::string_view mode, const std::string& path) {
  if (mode == "--size") {
    std::printf("%lld bytes\n", static_cast<long long>(StorageScanner::fastFolderSize(path)));
    return 0;
  }
  if (mode == "--count") {
    scanFolder(path, [](const ScanEvent& event) {
      if (const auto* end = std::get_if<ScanCompleted>(&event)) {
        std::printf("%lld items\n", static_cast<long long>(end->totalItems));
      }
    });
    return 0;
  }
  const auto items = scannedItems(path);
  rusage usage{};
  ::getrusage(RUSAGE_SELF, &usage);
  const double bytesPerItem = static_cast<double>(usage.ru_maxrss) * 1024 / static_cast<double>(items.size());
  std::printf("%zu items, %.0f bytes of memory an item at the most\n", items.size(), bytesPerItem);
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  const std::string_view mode = argc == 3 ? argv[1] : "";
  if (mode == "--scan" || mode == "--count" || mode == "--size") return runOnce(mode, argv[2]);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
