#include "app/common/FileWatch.h"

#include "core/base/files/FileUrl.h"

#include <QFile>
#include <QFileInfo>

#include <chrono>

namespace orvane {
namespace {

constexpr std::chrono::milliseconds settleTime{150};

}  // namespace

FileWatch::FileWatch(QObject* parent) : QObject(parent) {
  m_settled.setSingleShot(true);
  m_settled.setInterval(settleTime);
  connect(&m_settled, &QTimer::timeout, this, &FileWatch::changed);
  connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this, [this] {
    watchFolder();
    // Not started anew: a run that writes all the time would never be told of.
    if (!m_settled.isActive()) m_settled.start();
  });
}

void FileWatch::watch(const std::string& path) {
  const auto folder = FileUrl(path).deletingLastPathComponent();
  m_folder = QFile::decodeName(QByteArray::fromStdString(folder.path()));
  watchFolder();
}

void FileWatch::watchFolder() {
  // A missing file shows first in the nearest folder above it.
  QString existing = m_folder;
  while (!existing.isEmpty() && !QFileInfo(existing).isDir()) existing = QFileInfo(existing).path();
  if (existing.isEmpty() || m_watcher.directories() == QStringList{existing}) return;
  if (const auto old = m_watcher.directories(); !old.isEmpty()) m_watcher.removePaths(old);
  m_watcher.addPath(existing);
}

}  // namespace orvane
