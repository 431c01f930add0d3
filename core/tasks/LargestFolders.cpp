#include "core/tasks/LargestFolders.h"

#include "core/base/files/DirectoryReader.h"
#include "core/base/files/FileStatus.h"
#include "core/scanning/walk/FolderSize.h"

#include <fcntl.h>

#include <algorithm>
#include <string>
#include <utility>

namespace orvane {

std::vector<FolderSum> largestFolders(const FileUrl& folder, std::size_t count, const std::stop_token& stop) {
  std::vector<FolderSum> result;
  auto reader = DirectoryReader::open(AT_FDCWD, folder.path().c_str(), DirectoryReader::Links::follow);
  while (const auto entry = reader && !stop.stop_requested() ? reader->next() : std::nullopt) {
    auto type = entry->type;
    if (type == FileType::unknown) {
      const auto status = readFileStatus(reader->descriptor(), entry->nameBytes());
      if (status) type = status->type;
    }
    if (type != FileType::directory) continue;
    auto place = folder.appendingPathComponent(std::string(entry->name));
    const auto bytes = FolderSize::of(place.path(), FolderSize::Extent::everything);
    if (bytes > 0) result.push_back({std::move(place), bytes});
  }
  std::ranges::stable_sort(result, std::ranges::greater{}, &FolderSum::bytes);
  if (result.size() > count) result.resize(count);
  return result;
}

}  // namespace orvane
