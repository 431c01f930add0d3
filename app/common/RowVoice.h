#pragma once

#include <QtQml/qqmlregistration.h>
#include <QObject>
#include <QQuickItem>

namespace orvane {

// Tells assistive technology which row of a list has the keyboard. The list itself keeps the focus while the keyboard
// walks, so that nothing else would be heard.
class RowVoice : public QObject {
  Q_OBJECT
  QML_ELEMENT

 public:
  using QObject::QObject;

  // The row itself or, where that is no control, the first one in it.
  Q_INVOKABLE static void tell(QQuickItem* row);
};

}  // namespace orvane
