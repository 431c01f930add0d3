#pragma once

#include "core/base/FileUrl.h"

#include <QString>
#include <QVariantList>

namespace orvane {

class FileAccessService;
class PathValidator;

// The granted folders as the screens show and change them. Waits for the disk: for background threads only.
class GrantedFolders {
 public:
  GrantedFolders(FileAccessService& service, const PathValidator& validator, FileUrl home)
      : m_service(service), m_validator(validator), m_home(std::move(home)) {}

  // {name, path (for people), url, exists, canRemove} each, by name.
  [[nodiscard]] QVariantList rows() const;
  // Links are resolved. Returns why it was refused, in the language of the errors; empty where it was not. The folders
  // that count by default until the first grant are kept.
  [[nodiscard]] QString add(const QString& url) const;
  // The last one stays.
  [[nodiscard]] QString remove(const QString& url) const;

  // A file URL as text, or an absolute path; empty for anything else.
  [[nodiscard]] static FileUrl placeFrom(const QString& text);
  // {name, path, url} of any folder, without a look at the disk.
  [[nodiscard]] static QVariantMap row(const FileUrl& folder, const FileUrl& home);

 private:
  void keepDefaults() const;

  FileAccessService& m_service;
  const PathValidator& m_validator;
  FileUrl m_home;
};

}  // namespace orvane
