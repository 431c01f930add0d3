#include "core/tasks/WholeAge.h"

#include "core/base/files/DirectoryReader.h"
#include "core/base/files/FileStatus.h"
#include "core/base/files/PathText.h"
#include "core/scanning/records/FileItem.h"

#include <fcntl.h>

#include <utility>
#include <vector>

namespace orvane {

WholeAge::WholeAge(std::optional<std::int64_t> days, Date now) {
  if (days) m_age.emplace(*days, now);
}

bool WholeAge::admits(const FileItem& item) {
  if (!m_age) return true;
  if (!m_age->isReachedBy(item.lastModifiedDate())) return false;
  return !item.isFolder() || admitsAllIn(item.url().path());
}

bool WholeAge::admitsAllIn(const std::string& folder) {
  std::vector<std::string> folders{folder};
  while (!folders.empty()) {
    const auto place = std::move(folders.back());
    folders.pop_back();
    auto reader = DirectoryReader::open(AT_FDCWD, place.c_str(), DirectoryReader::Links::refuse);
    if (!reader) return false;
    while (const auto entry = reader->next()) {
      const auto status = readFileStatus(reader->descriptor(), entry->nameBytes());
      if (!status || !m_age->isReachedBy(status->modified.date())) return false;
      if (status->type == FileType::directory) folders.push_back(joinPath(place, entry->name));
    }
  }
  return true;
}

}  // namespace orvane
