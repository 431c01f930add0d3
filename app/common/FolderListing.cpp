#include "app/common/FolderListing.h"

#include "app/common/Places.h"
#include "app/common/Text.h"
#include "core/base/files/DirectoryReader.h"
#include "core/base/files/HomeFolder.h"

#include <fcntl.h>

#include <QCollator>

#include <algorithm>
#include <string>
#include <vector>

namespace orvane {
namespace {

bool isFolder(const DirectoryReader& reader, const DirectoryReader::Entry& entry) {
  if (entry.type != FileType::unknown) return entry.type == FileType::directory;
  const auto status = readFileStatus(reader.descriptor(), entry.nameBytes());
  return status && status->type == FileType::directory;
}

std::vector<FileUrl> foldersIn(const FileUrl& folder) {
  std::vector<FileUrl> result;
  auto reader = DirectoryReader::open(AT_FDCWD, folder.path().c_str(), DirectoryReader::Links::follow);
  if (!reader) return result;
  while (const auto entry = reader->next()) {
    if (!entry->name.starts_with('.') && isFolder(*reader, *entry)) {
      result.push_back(folder.appendingPathComponent(std::string(entry->name)));
    }
  }
  QCollator collator;
  collator.setCaseSensitivity(Qt::CaseInsensitive);
  collator.setNumericMode(true);
  std::sort(result.begin(), result.end(), [&](const FileUrl& left, const FileUrl& right) {
    return collator.compare(textFrom(left.lastPathComponent()), textFrom(right.lastPathComponent())) < 0;
  });
  return result;
}

}  // namespace

QString FolderListing::folder() const {
  return placeText(m_folder);
}

QString FolderListing::shownFolder() const {
  return orvane::shownPath(m_folder.path(), FileUrl(homeFolder()));
}

bool FolderListing::hasParent() const {
  return m_folder.path().size() > 1;
}

void FolderListing::enter(const QString& pathOrUrl) {
  show(placeFrom(pathOrUrl).value_or(FileUrl(homeFolder())));
}

void FolderListing::leave() {
  if (hasParent()) show(m_folder.deletingLastPathComponent());
}

void FolderListing::show(const FileUrl& folder) {
  m_folder = folder;
  m_rows.clear();
  Q_EMIT changed();
  m_queue.post([this, folder](const std::stop_token&) {
    callOn(this, [this, folder, rows = folderList(foldersIn(folder))] {
      if (folder != m_folder) return;
      m_rows = rows;
      Q_EMIT changed();
    });
  });
}

}  // namespace orvane
