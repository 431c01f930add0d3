#include "app/common/FolderChooser.h"

#include "app/common/Places.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QFile>
#include <QGuiApplication>
#include <QLibraryInfo>
#include <QStringList>
#include <QUuid>

#include <algorithm>
#include <limits>
#include <utility>

namespace orvane {
namespace {

const QString service = QStringLiteral("org.freedesktop.portal.Desktop");
const QString path = QStringLiteral("/org/freedesktop/portal/desktop");
const QString chooserInterface = QStringLiteral("org.freedesktop.portal.FileChooser");
const QString requestInterface = QStringLiteral("org.freedesktop.portal.Request");

// The first that knows of folders.
constexpr uint firstVersion = 3;
constexpr uint accepted = 0;
// Nobody is hurried who looks for a folder; the portal answers by a signal anyway.
constexpr int callMilliseconds = std::numeric_limits<int>::max();

bool hasPlugin(const char* name) {
  const auto folder = QLibraryInfo::path(QLibraryInfo::PluginsPath) + QStringLiteral("/platformthemes/");
  return QFile::exists(folder + QLatin1String(name));
}

// As the portal names windows of X; on Wayland the window would have to be exported first.
QString parentHandle(const QWindow* window) {
  if (window == nullptr || QGuiApplication::platformName() != QLatin1String("xcb")) return {};
  return QStringLiteral("x11:") + QString::number(window->winId(), 16);
}

}  // namespace

bool FolderChooser::hasNativeDialog() {
  const auto wanted = QString::fromLocal8Bit(qgetenv("QT_QPA_PLATFORMTHEME"));
  const auto desktops = QString::fromLocal8Bit(qgetenv("XDG_CURRENT_DESKTOP")).toUpper().split(u':');
  const auto isOn = [&](const QStringList& names) {
    return std::any_of(names.begin(), names.end(), [&](const QString& name) { return desktops.contains(name); });
  };
  const bool wantsGtk =
      wanted == QLatin1String("gtk3") || isOn({"GNOME", "XFCE", "MATE", "UNITY", "X-CINNAMON", "LXDE"});
  const bool wantsKde = wanted == QLatin1String("kde") || isOn({"KDE"});
  return (wantsGtk && hasPlugin("libqgtk3.so")) || (wantsKde && hasPlugin("KDEPlasmaPlatformTheme6.so"));
}

void FolderChooser::choose(const QString& title, const QString& startFolder, QWindow* window) {
  if (m_isAsking) return;
  auto bus = QDBusConnection::sessionBus();
  if (!bus.isConnected()) {
    Q_EMIT unavailable();
    return;
  }
  m_isAsking = true;
  m_window = window;
  auto call = QDBusMessage::createMethodCall(service, path, QStringLiteral("org.freedesktop.DBus.Properties"),
                                             QStringLiteral("Get"));
  call << chooserInterface << QStringLiteral("version");
  auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(call), this);
  connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, title, startFolder] {
    watcher->deleteLater();
    const QDBusPendingReply<QDBusVariant> reply = *watcher;
    if (reply.isError() || reply.value().variant().toUInt() < firstVersion) {
      end();
      Q_EMIT unavailable();
    } else {
      ask(title, startFolder);
    }
  });
}

void FolderChooser::ask(const QString& title, const QString& startFolder) {
  auto bus = QDBusConnection::sessionBus();
  const auto token = QStringLiteral("orvane_") + QUuid::createUuid().toString(QUuid::Id128);
  // Where the answer will come from is known beforehand, so none is missed.
  auto sender = bus.baseService().mid(1);
  listenTo(path + QStringLiteral("/request/") + sender.replace(u'.', u'_') + u'/' + token);

  QVariantMap options{{QStringLiteral("handle_token"), token},
                      {QStringLiteral("directory"), !m_isForFile},
                      {QStringLiteral("modal"), true}};
  if (const auto place = placeFrom(startFolder)) {
    // A path as the portal takes it: bytes that end with NUL.
    options.insert(QStringLiteral("current_folder"), QByteArray::fromStdString(place->path()).append('\0'));
  }
  auto call = QDBusMessage::createMethodCall(service, path, chooserInterface, QStringLiteral("OpenFile"));
  call << parentHandle(m_window) << title << options;
  auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(call, callMilliseconds), this);
  connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
    watcher->deleteLater();
    const QDBusPendingReply<QDBusObjectPath> reply = *watcher;
    if (reply.isError()) {
      end();
      Q_EMIT unavailable();
    } else if (m_isAsking && reply.value().path() != m_request) {
      // Portals before version 0.9 name their requests themselves.
      listenTo(reply.value().path());
    }
  });
}

void FolderChooser::listenTo(const QString& request) {
  auto bus = QDBusConnection::sessionBus();
  if (!m_request.isEmpty()) {
    bus.disconnect(service, m_request, requestInterface, QStringLiteral("Response"), this,
                   SLOT(takeResponse(uint, QVariantMap)));
  }
  m_request = request;
  if (m_request.isEmpty()) return;
  bus.connect(service, m_request, requestInterface, QStringLiteral("Response"), this,
              SLOT(takeResponse(uint, QVariantMap)));
}

void FolderChooser::end() {
  listenTo({});
  m_isAsking = false;
}

void FolderChooser::takeResponse(uint response, const QVariantMap& results) {
  end();
  const auto urls = results.value(QStringLiteral("uris")).toStringList();
  if (response == accepted && !urls.isEmpty()) Q_EMIT picked(urls.first());
}

}  // namespace orvane
