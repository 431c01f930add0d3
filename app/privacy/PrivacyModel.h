#pragma once

#include "app/common/BackgroundQueue.h"
#include "app/common/GrantedFolders.h"
#include "app/shell/WindowServices.h"

#include <QtQml/qqmlregistration.h>
#include <QObject>
#include <QString>
#include <QVariantList>

namespace orvane {

// The folders that Orvane may look at, and the last request that it sent.
class PrivacyModel : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("made by the program")
  Q_PROPERTY(bool hasFullDiskAccess READ hasFullDiskAccess NOTIFY changed)
  // Whether the system has one permission for everything; without it, each folder tells whether it can be read.
  Q_PROPERTY(bool hasFullDiskPermission READ hasFullDiskPermission CONSTANT)
  // How many of the folders are there and cannot be read.
  Q_PROPERTY(int unreadableCount READ unreadableCount NOTIFY changed)
  // Names the sandbox that the program runs in; empty where it runs in none.
  Q_PROPERTY(QString sandbox READ sandbox CONSTANT)
  // As GrantedFolders::rows().
  Q_PROPERTY(QVariantList folders READ folders NOTIFY changed)
  // Word for word, without the key; empty as long as the window never sent anything. Remembered between starts.
  Q_PROPERTY(QString lastRequest READ lastRequest NOTIFY requestChanged)
  Q_PROPERTY(double lastRequestDate READ lastRequestDate NOTIFY requestChanged)
  Q_PROPERTY(QString lastRequestProvider READ lastRequestProvider NOTIFY requestChanged)

 public:
  explicit PrivacyModel(WindowServices services, QObject* parent = nullptr);

  [[nodiscard]] bool hasFullDiskAccess() const noexcept { return m_hasFullDiskAccess; }
  [[nodiscard]] bool hasFullDiskPermission() const noexcept;
  [[nodiscard]] int unreadableCount() const;
  [[nodiscard]] QString sandbox() const;
  [[nodiscard]] const QVariantList& folders() const noexcept { return m_folders; }
  [[nodiscard]] const QString& lastRequest() const noexcept { return m_lastRequest; }
  [[nodiscard]] double lastRequestDate() const noexcept { return m_lastRequestDate; }
  [[nodiscard]] const QString& lastRequestProvider() const noexcept { return m_lastRequestProvider; }

  // Something was sent just now, at `date` (milliseconds since 1970).
  void setLastRequest(const QString& text, double date, const QString& provider);

  Q_INVOKABLE void openSystemSettings();
  // Looks anew.
  Q_INVOKABLE void refresh();

 Q_SIGNALS:
  void changed();
  void requestChanged();

 private:
  void showRequest(const QString& text, double date, const QString& provider);

  WindowServices m_services;
  GrantedFolders m_granted;
  bool m_hasFullDiskAccess = false;
  QVariantList m_folders;
  QString m_lastRequest;
  double m_lastRequestDate = 0;
  QString m_lastRequestProvider;
  BackgroundQueue m_queue;  // last: its tasks use everything above
};

}  // namespace orvane
