#pragma once

#include <QQuickImageProvider>

namespace orvane {

// Draws the line icons below :/qt/qml/Orvane/icons in the colour and at the size that are asked for:
// "image://icon/<name>/<rrggbb>". An unknown name gives an empty picture.
class IconProvider : public QQuickImageProvider {
 public:
  IconProvider();

  QImage requestImage(const QString& id, QSize* size, const QSize& requestedSize) override;
};

}  // namespace orvane
