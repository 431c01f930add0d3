#pragma once

#include "core/base/files/FileLock.h"

#include <QByteArray>
#include <QLocalServer>
#include <QObject>

#include <optional>
#include <string>

namespace orvane {

// Sees to it that a user has one window open: a second start hands its request to the first one and ends.
class SingleInstance : public QObject {
  Q_OBJECT

 public:
  enum class Role : std::uint8_t { first, second };

  // `folder` is one that only this user can write to.
  explicit SingleInstance(const std::string& folder, QObject* parent = nullptr);

  // $XDG_RUNTIME_DIR where it is set, else a folder of the user's configuration.
  static std::string defaultFolder();

  // Where this is the second start, the request is with the first one when this returns, or nobody answered in time. A
  // first one that cannot be told of (a full disk) counts as none.
  [[nodiscard]] Role claim(const QByteArray& request);

 Q_SIGNALS:
  // Another start wants the window: the request is its own.
  void asked(const QByteArray& request);

 private:
  void listen();

  std::string m_folder;
  std::optional<FileLock> m_lock;
  QLocalServer m_server;
};

}  // namespace orvane
