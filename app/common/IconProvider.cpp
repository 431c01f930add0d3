#include "app/common/IconProvider.h"

#include <QColor>
#include <QFile>
#include <QPainter>
#include <QSvgRenderer>

namespace orvane {
namespace {

// The drawing with its ink in one colour. The drawings say "currentColor", which the renderer knows nothing of.
QByteArray tinted(const QString& name, const QString& colour) {
  QFile file(QStringLiteral(":/qt/qml/Orvane/icons/%1.svg").arg(name));
  if (!file.open(QIODevice::ReadOnly)) return {};
  return file.readAll().replace("currentColor", "#" + colour.toLatin1());
}

}  // namespace

IconProvider::IconProvider() : QQuickImageProvider(QQuickImageProvider::Image) {}

QImage IconProvider::requestImage(const QString& id, QSize* size, const QSize& requestedSize) {
  const auto name = id.section(u'/', 0, 0);
  const auto colour = id.section(u'/', 1, 1);
  QSvgRenderer renderer;
  const auto drawing = tinted(name, colour);
  if (!drawing.isEmpty()) renderer.load(drawing);
  const auto natural = renderer.isValid() ? renderer.defaultSize() : QSize(1, 1);
  if (size != nullptr) *size = natural;
  const auto target = requestedSize.width() > 0 && requestedSize.height() > 0 ? requestedSize : natural;
  QImage image(target, QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::transparent);
  if (!renderer.isValid()) return image;
  QPainter painter(&image);
  renderer.setAspectRatioMode(Qt::KeepAspectRatio);
  renderer.render(&painter, QRectF(QPointF(0, 0), QSizeF(target)));
  return image;
}

}  // namespace orvane
