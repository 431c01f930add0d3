#pragma once

#include "core/tasks/TaskServices.h"

#include <QString>
#include <QVariantList>

namespace orvane {

// The granted folders as the screens show and change them. Waits for the disk: for background threads only.
class GrantedFolders {
 public:
  explicit GrantedFolders(TaskServices services) : m_services(std::move(services)) {}

  // {name, path (for people), url, symbol, exists, canRemove} each, by name.
  [[nodiscard]] QVariantList rows() const;
  // Folders that could be granted where none of the usual ones exists: {name, path, url}.
  [[nodiscard]] QVariantList suggestions() const;
  // Links are resolved. Returns why it was refused, in the language of the errors; empty where it was not. The folders
  // that count by default until the first grant are kept.
  [[nodiscard]] QString add(const QString& url) const;
  // The last one stays.
  [[nodiscard]] QString remove(const QString& url) const;

  // {name, path, url} of any folder, without a look at the disk.
  [[nodiscard]] static QVariantMap row(const FileUrl& folder, const FileUrl& home);

 private:
  TaskServices m_services;
};

}  // namespace orvane
