#pragma once

#include "app/common/BackgroundQueue.h"
#include "core/base/files/FileUrl.h"

#include <QtQml/qqmlregistration.h>
#include <QObject>
#include <QString>
#include <QVariantList>

namespace orvane {

// The folders inside one folder, and files on demand, for choosing one where the desktop has no chooser. Read in the
// background.
class FolderListing : public QObject {
  Q_OBJECT
  QML_ELEMENT
  Q_PROPERTY(QString folder READ folder NOTIFY changed)
  Q_PROPERTY(QString shownPath READ shownFolder NOTIFY changed)
  Q_PROPERTY(bool hasParent READ hasParent NOTIFY changed)
  Q_PROPERTY(QVariantList rows READ rows NOTIFY changed)
  Q_PROPERTY(bool showsFiles MEMBER m_showsFiles)

 public:
  using QObject::QObject;

  [[nodiscard]] QString folder() const;
  [[nodiscard]] QString shownFolder() const;
  [[nodiscard]] bool hasParent() const;
  // {name, path} each, files with {isFile} and last, by name; hidden ones are left out.
  [[nodiscard]] const QVariantList& rows() const noexcept { return m_rows; }

  // The home folder where the text names no place.
  Q_INVOKABLE void enter(const QString& pathOrUrl);
  Q_INVOKABLE void leave();

 Q_SIGNALS:
  void changed();

 private:
  void show(const FileUrl& folder);

  FileUrl m_folder;
  bool m_showsFiles = false;
  QVariantList m_rows;
  BackgroundQueue m_queue;
};

}  // namespace orvane
