#include "core/uninstaller/ContentSizes.h"

#include "core/base/files/CanonicalPath.h"
#include "core/base/files/FileStatus.h"
#include "core/scanning/walk/FolderSize.h"

#include <fcntl.h>

#include <memory>
#include <utility>

namespace orvane {
namespace {

// Further threads cost more than they save on a few folders.
constexpr std::size_t foldersReadAlone = 32;

}  // namespace

std::vector<std::int64_t> contentSizes(std::span<const FileUrl> places, const std::stop_token& stop) {
  std::vector<std::int64_t> bytes(places.size(), 0);
  std::vector<std::shared_ptr<FolderSize>> folders(places.size());
  TreeWalk walk;
  WorkStack::Tasks tasks;
  for (std::size_t i = 0; i < places.size(); ++i) {
    const auto place = canonicalPlace(places[i].path());
    const auto status = readFileStatus(AT_FDCWD, place.c_str());
    if (status && status->type == FileType::regular) bytes[i] = status->size;
    if (!status || status->type != FileType::directory) continue;
    folders[i] = std::make_shared<FolderSize>(FolderSize::Extent::everything);
    tasks.push_back(FolderSize::task(folders[i], UnreadFolder{nullptr, place}, walk));
  }
  walk.run(std::move(tasks), foldersReadAlone, stop);
  for (std::size_t i = 0; i < places.size(); ++i) {
    if (folders[i]) bytes[i] = folders[i]->bytes();
  }
  return bytes;
}

}  // namespace orvane
