#pragma once

#include <QtQml/qqmlregistration.h>
#include <QDBusObjectPath>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QVariantMap>
#include <QWindow>

namespace orvane {

// Asks for a folder, or a file, with the desktop's own chooser, through org.freedesktop.portal.FileChooser.
class FolderChooser : public QObject {
  Q_OBJECT
  QML_ELEMENT
  Q_PROPERTY(bool forFile MEMBER m_isForFile)
  // Whether Qt has a chooser of this desktop, for where there is no portal.
  Q_PROPERTY(bool hasNativeDialog READ hasNativeDialog CONSTANT)

 public:
  using QObject::QObject;

  [[nodiscard]] static bool hasNativeDialog();

  // Over `window`, which may be null; begins in `startFolder` where that is not empty. Does nothing while it asks.
  Q_INVOKABLE void choose(const QString& title, const QString& startFolder, QWindow* window);

 Q_SIGNALS:
  void picked(const QString& url);
  // There is no portal that can ask for a folder.
  void unavailable();

 private Q_SLOTS:
  void takeResponse(uint response, const QVariantMap& results);

 private:
  void ask(const QString& title, const QString& startFolder);
  void listenTo(const QString& request);
  void end();

  QPointer<QWindow> m_window;
  QString m_request;  // the portal's object that answers; empty while nothing is asked
  bool m_isForFile = false;
  bool m_isAsking = false;
};

}  // namespace orvane
