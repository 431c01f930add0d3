#pragma once

#include <QColor>
#include <QDBusVariant>
#include <QObject>

#include <optional>

namespace orvane {

// Whether the user's desktop asks for dark colours and for less motion, and its accent colour: as the settings portal
// says (org.freedesktop.portal.Settings), else by the palette that Qt was given.
class DesktopAppearance : public QObject {
  Q_OBJECT

 public:
  // Asks at once and is told of changes; the answer comes later. ORVANE_COLOR_SCHEME=light or dark overrules it.
  explicit DesktopAppearance(QObject* parent = nullptr);

  [[nodiscard]] bool isDark() const noexcept { return m_isDark; }
  [[nodiscard]] bool isMotionReduced() const noexcept { return m_isMotionReduced; }

  // Clear where the desktop has none.
  [[nodiscard]] const QColor& accent() const noexcept { return m_accent; }

  // Absent where the desktop's own choice holds.
  void setScheme(std::optional<bool> isDark);

 Q_SIGNALS:
  void changed();

 private:
  Q_SLOT void takeSetting(const QString& group, const QString& key, const QDBusVariant& value);

  void ask(const QString& group, const QString& key);
  void take(const QString& group, const QString& key, const QVariant& value);

  bool m_isForced = false;
  bool m_isDark = false;
  bool m_isDesktopDark = false;
  std::optional<bool> m_chosen;
  bool m_isMotionReduced = false;
  QColor m_accent = Qt::transparent;
};

}  // namespace orvane
