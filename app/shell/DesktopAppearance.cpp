#include "app/shell/DesktopAppearance.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QGuiApplication>
#include <QPalette>

namespace orvane {
namespace {

const QString portalService = QStringLiteral("org.freedesktop.portal.Desktop");
const QString portalPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString settingsInterface = QStringLiteral("org.freedesktop.portal.Settings");
const QString appearanceGroup = QStringLiteral("org.freedesktop.appearance");
const QString colorSchemeKey = QStringLiteral("color-scheme");
const QString accentKey = QStringLiteral("accent-color");
const QString interfaceGroup = QStringLiteral("org.gnome.desktop.interface");
const QString animationsKey = QStringLiteral("enable-animations");

// The portal's numbers: 0 is no preference.
constexpr uint preferDark = 1;
constexpr uint preferLight = 2;

bool isPaletteDark() {
  const auto palette = QGuiApplication::palette();
  return palette.color(QPalette::Window).lightness() < palette.color(QPalette::WindowText).lightness();
}

// Three parts of one; outside these bounds they stand for no colour.
QColor colorFrom(const QVariant& value) {
  if (value.userType() != qMetaTypeId<QDBusArgument>()) return Qt::transparent;
  const auto argument = value.value<QDBusArgument>();
  if (argument.currentSignature() != QStringLiteral("(ddd)")) return Qt::transparent;
  double red = -1;
  double green = -1;
  double blue = -1;
  argument.beginStructure();
  argument >> red >> green >> blue;
  argument.endStructure();
  const auto isPart = [](double part) { return part >= 0 && part <= 1; };
  return isPart(red) && isPart(green) && isPart(blue)
             ? QColor::fromRgbF(static_cast<float>(red), static_cast<float>(green), static_cast<float>(blue))
             : QColor(Qt::transparent);
}

}  // namespace

DesktopAppearance::DesktopAppearance(QObject* parent)
    : QObject(parent), m_isDark(isPaletteDark()), m_isDesktopDark(m_isDark) {
  const auto forced = qgetenv("ORVANE_COLOR_SCHEME");
  m_isForced = forced == "dark" || forced == "light";
  if (m_isForced) m_isDark = forced == "dark";
  auto bus = QDBusConnection::sessionBus();
  if (!bus.isConnected()) return;
  bus.connect(portalService, portalPath, settingsInterface, QStringLiteral("SettingChanged"), this,
              SLOT(takeSetting(QString, QString, QDBusVariant)));
  ask(appearanceGroup, colorSchemeKey);
  ask(appearanceGroup, accentKey);
  ask(interfaceGroup, animationsKey);
}

void DesktopAppearance::setScheme(std::optional<bool> isDark) {
  m_chosen = isDark;
  if (m_isForced) return;
  m_isDark = m_chosen.value_or(m_isDesktopDark);
  Q_EMIT changed();
}

void DesktopAppearance::ask(const QString& group, const QString& key) {
  auto call = QDBusMessage::createMethodCall(portalService, portalPath, settingsInterface, QStringLiteral("Read"));
  call << group << key;
  auto* watcher = new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(call), this);
  connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, group, key] {
    watcher->deleteLater();
    const QDBusPendingReply<QDBusVariant> reply = *watcher;
    if (!reply.isError()) take(group, key, reply.value().variant());
  });
}

void DesktopAppearance::takeSetting(const QString& group, const QString& key, const QDBusVariant& value) {
  take(group, key, value.variant());
}

void DesktopAppearance::take(const QString& group, const QString& key, const QVariant& given) {
  // Read wraps its value once more than the signal does.
  const auto value = given.userType() == qMetaTypeId<QDBusVariant>() ? given.value<QDBusVariant>().variant() : given;
  if (group == appearanceGroup && key == colorSchemeKey && !m_isForced) {
    const auto scheme = value.toUInt();
    m_isDesktopDark = scheme == preferDark || (scheme != preferLight && isPaletteDark());
    setScheme(m_chosen);
  }
  if (group == appearanceGroup && key == accentKey) {
    m_accent = colorFrom(value);
    Q_EMIT changed();
  }
  if (group == interfaceGroup && key == animationsKey) {
    m_isMotionReduced = !value.toBool();
    Q_EMIT changed();
  }
}

}  // namespace orvane
