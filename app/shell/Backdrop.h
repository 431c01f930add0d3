#pragma once

#include <QtQml/qqmlregistration.h>
#include <QQuickItem>

namespace orvane {

// The part of the window that sheets cover. Assistive technology finds nothing in it while a sheet is open: a reader
// could walk there, and the keyboard could not. To be given a role by `Accessible`.
class Backdrop : public QQuickItem {
  Q_OBJECT
  QML_ELEMENT

 public:
  explicit Backdrop(QQuickItem* parent = nullptr);

  [[nodiscard]] bool isCovered() const;
};

}  // namespace orvane
