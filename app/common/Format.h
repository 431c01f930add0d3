#pragma once

#include <QtQml/qqmlregistration.h>
#include <QObject>

namespace orvane {

// Figures and dates as the current language writes them. The numbers of the whole program follow the language too.
class Format : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_SINGLETON
  // Goes up with each change of the language: a binding that reads it is evaluated again.
  Q_PROPERTY(int revision READ revision NOTIFY revisionChanged)

 public:
  explicit Format(QObject* parent = nullptr);

  [[nodiscard]] int revision() const noexcept { return m_revision; }

  // "1.25 GB"; decimal units.
  Q_INVOKABLE static QString bytes(double value);
  Q_INVOKABLE static QString count(double value);
  // countedText() for QML.
  Q_INVOKABLE static QString counted(const QString& key, double value);
  // Dates are milliseconds since 1970; 0 gives an empty text.
  Q_INVOKABLE static QString dateTime(double milliseconds);
  // Days near today by their names, with the time of day: "today at 15:30". Capitalized where it stands alone.
  Q_INVOKABLE static QString moment(double milliseconds, bool standsAlone);
  Q_INVOKABLE static QString day(double milliseconds);
  // The time of day.
  Q_INVOKABLE static QString time(double milliseconds);
  // A day of the calendar as the head of what happened then: "Today", "Yesterday", else with the day of the week. Both
  // days as YYYY-MM-DD.
  Q_INVOKABLE static QString dayHead(const QString& day, const QString& today);
  // Of the user's time zone, as YYYY-MM-DD.
  Q_INVOKABLE static QString today();
  // "2 days ago", "today".
  Q_INVOKABLE static QString age(double milliseconds);
  // Of a fraction: 0.25 is 25 %.
  Q_INVOKABLE static QString percent(double fraction);

  // Has the numbers and dates of the whole program follow the current language. To be called at the start and, before
  // languageChanged(), after each change; on the main thread.
  static void followLanguage();
  void languageChanged();

 Q_SIGNALS:
  void revisionChanged();

 private:
  int m_revision = 0;
};

}  // namespace orvane
