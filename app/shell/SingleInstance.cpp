#include "app/shell/SingleInstance.h"

#include "core/base/files/AtomicFile.h"
#include "core/base/files/FileDescriptor.h"

#include <fcntl.h>

#include <QFile>
#include <QLocalSocket>
#include <QStandardPaths>
#include <QThread>

#include <system_error>

namespace orvane {
namespace {

constexpr int answerMilliseconds = 3000;
constexpr qint64 maxRequestBytes = 16 * 1024;  // the URL of a long path

QString socketPath(const std::string& folder) {
  return QFile::decodeName(QByteArray::fromStdString(folder + "/orvane.socket"));
}

}  // namespace

SingleInstance::SingleInstance(const std::string& folder, QObject* parent) : QObject(parent), m_folder(folder) {
  m_server.setSocketOptions(QLocalServer::UserAccessOption);
  connect(&m_server, &QLocalServer::newConnection, this, [this] {
    while (auto* connection = m_server.nextPendingConnection()) {
      connect(connection, &QLocalSocket::readyRead, this, [this, connection] {
        if (!connection->canReadLine()) return;
        Q_EMIT asked(connection->readLine(maxRequestBytes).trimmed());
        connection->write("ok\n");
        connection->disconnectFromServer();
      });
      connect(connection, &QLocalSocket::disconnected, connection, &QObject::deleteLater);
    }
  });
}

std::string SingleInstance::defaultFolder() {
  const auto folder = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
  return QFile::encodeName(folder).toStdString();
}

SingleInstance::Role SingleInstance::claim(const QByteArray& request) {
  try {
    createFolders(m_folder);
  } catch (const std::system_error&) {
    return Role::first;
  }
  const auto lockPath = m_folder + "/orvane.lock";
  // The lock goes with its process, however that ends; a socket stays.
  FileDescriptor file(::open(lockPath.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600));
  if (!file) return Role::first;
  m_lock = FileLock::tryAcquire(file);
  if (m_lock) {
    listen();
    return Role::first;
  }
  QLocalSocket first;
  // One that is just starting may not listen yet.
  for (int attempt = 0; attempt < 10 && first.state() != QLocalSocket::ConnectedState; ++attempt) {
    first.connectToServer(socketPath(m_folder));
    if (first.waitForConnected(answerMilliseconds / 10)) break;
    QThread::msleep(answerMilliseconds / 10);
  }
  first.write(request + '\n');
  if (first.waitForBytesWritten(answerMilliseconds)) first.waitForReadyRead(answerMilliseconds);
  return Role::second;
}

void SingleInstance::listen() {
  // The socket of a process that died: the lock says that it is gone.
  QLocalServer::removeServer(socketPath(m_folder));
  if (!m_server.listen(socketPath(m_folder))) qWarning("A second start will not find this one.");
}

}  // namespace orvane
