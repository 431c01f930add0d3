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

FileType typeOf(const DirectoryReader& reader, const DirectoryReader::Entry& entry) {
  if (entry.type != FileType::unknown) return entry.type;
  const auto status = readFileStatus(reader.descriptor(), entry.nameBytes());
  return status ? status->type : FileType::unknown;
}

std::vector<FileUrl> entriesOf(FileType type, const FileUrl& folder) {
  std::vector<FileUrl> result;
  auto reader = DirectoryReader::open(AT_FDCWD, folder.path().c_str(), DirectoryReader::Links::follow);
  if (!reader) return result;
  while (const auto entry = reader->next()) {
    if (!entry->name.starts_with('.') && typeOf(*reader, *entry) == type) {
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

QVariantList rowsOf(const FileUrl& folder, bool showsFiles) {
  auto rows = folderList(entriesOf(FileType::directory, folder));
  if (!showsFiles) return rows;
  for (const auto& file : folderList(entriesOf(FileType::regular, folder))) {
    auto row = file.toMap();
    row.insert(QStringLiteral("isFile"), true);
    rows.append(row);
  }
  return rows;
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
  m_queue.post([this, folder, showsFiles = m_showsFiles](const std::stop_token&) {
    callOn(this, [this, folder, rows = rowsOf(folder, showsFiles)] {
      if (folder != m_folder) return;
      m_rows = rows;
      Q_EMIT changed();
    });
  });
}

}  // namespace orvane
