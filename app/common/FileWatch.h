#pragma once

#include <QFileSystemWatcher>
#include <QObject>
#include <QTimer>

#include <string>

namespace orvane {

// Tells when a file that is replaced rather than written to has changed, is made or goes; several changes at once are
// told once. The folder may come later than the watch.
class FileWatch : public QObject {
  Q_OBJECT

 public:
  explicit FileWatch(QObject* parent = nullptr);

  void watch(const std::string& path);

 Q_SIGNALS:
  void changed();

 private:
  void watchFolder();

  QString m_folder;
  QFileSystemWatcher m_watcher;
  QTimer m_settled;
};

}  // namespace orvane
