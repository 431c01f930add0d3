#pragma once

#include "app/common/BackgroundQueue.h"
#include "app/common/PreviewContent.h"

#include <QtQml/qqmlregistration.h>
#include <QObject>
#include <QString>
#include <QStringList>

#include <optional>
#include <stop_token>
#include <utility>

namespace orvane {

// A glance at one item: its picture or first page, the beginning of its text, or what a folder or an archive holds.
// Read in the background.
class ItemPreview : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("made by the program")
  Q_PROPERTY(bool isOpen READ isOpen NOTIFY changed)
  Q_PROPERTY(bool isReading READ isReading NOTIFY changed)
  Q_PROPERTY(QString place READ place NOTIFY changed)
  // The same as the rest of the window shows places.
  Q_PROPERTY(QString shownPlace READ shownPlace NOTIFY changed)
  Q_PROPERTY(QString name READ name NOTIFY changed)
  Q_PROPERTY(QString text READ text NOTIFY changed)
  Q_PROPERTY(QString picture READ picture NOTIFY changed)
  Q_PROPERTY(QStringList entries READ entries NOTIFY changed)
  Q_PROPERTY(QString remark READ remark NOTIFY changed)
  // Bytes, below 0 where they are not known, and milliseconds since 1970.
  Q_PROPERTY(double bytes READ bytes NOTIFY changed)
  Q_PROPERTY(double modified READ modified NOTIFY changed)

 public:
  // `home` shows as "~".
  explicit ItemPreview(FileUrl home) : m_home(std::move(home)) {}
  ~ItemPreview() override;

  [[nodiscard]] bool isOpen() const noexcept { return m_item.has_value(); }
  [[nodiscard]] bool isReading() const noexcept { return m_isReading; }
  [[nodiscard]] QString place() const;
  [[nodiscard]] QString shownPlace() const;
  [[nodiscard]] QString name() const;
  [[nodiscard]] const QString& text() const noexcept { return m_content.text; }
  // The source of a picture or a first page; empty for anything else.
  [[nodiscard]] QString picture() const;
  [[nodiscard]] const QStringList& entries() const noexcept { return m_content.entries; }
  // Why there is nothing to see, or that there is more.
  [[nodiscard]] QString remark() const;
  [[nodiscard]] double bytes() const noexcept { return static_cast<double>(m_content.bytes.value_or(-1)); }
  [[nodiscard]] double modified() const;

  // By path or URL; false where it names no place.
  Q_INVOKABLE bool look(const QString& place);
  Q_INVOKABLE void close();

 Q_SIGNALS:
  void changed();

 private:
  FileUrl m_home;
  std::optional<FileUrl> m_item;
  bool m_isReading = false;
  PreviewContent m_content;
  std::stop_source m_stop;
  BackgroundQueue m_queue;
};

}  // namespace orvane
