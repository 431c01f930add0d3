#pragma once

#include "app/common/BackgroundQueue.h"
#include "app/shell/WindowServices.h"

#include <QtQml/qqmlregistration.h>
#include <QObject>
#include <QString>
#include <QTimer>
#include <QVariant>
#include <QVariantMap>

#include <string_view>

namespace orvane {

// The look of the window when it was last used: numbers, texts and switches by name. Read once at the start,
// stored at the end, and in the background some time after the last change.
class WindowMemory : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("made by the program")

 public:
  static constexpr std::string_view preferencesKey = "window";

  explicit WindowMemory(WindowServices services, QObject* parent = nullptr);
  // Stores what has not been stored yet.
  ~WindowMemory() override;

  // The stored value, within the bounds; else the value that is given.
  Q_INVOKABLE int number(const QString& name, int min, int max, int otherwise) const;
  // 0 where there is none.
  [[nodiscard]] double figure(const QString& name) const;
  Q_INVOKABLE bool flag(const QString& name) const;
  Q_INVOKABLE QString text(const QString& name) const;
  Q_INVOKABLE void remember(const QString& name, const QVariant& value);

 private:
  void store();
  // Waits for the disk.
  void write(const QVariantMap& values) const;

  WindowServices m_services;
  QVariantMap m_values;
  QTimer m_settled;
  BackgroundQueue m_queue;
};

}  // namespace orvane
