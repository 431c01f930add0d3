#include "app/common/PictureProvider.h"

#include <QQuickTextureFactory>

#include <atomic>
#include <memory>
#include <mutex>
#include <utility>

namespace orvane {
namespace {

constexpr QSize usualSize(128, 128);
constexpr QByteArray::Base64Options encoding = QByteArray::Base64UrlEncoding | QByteArray::OmitTrailingEquals;

QImage noPicture() {
  QImage image(1, 1, QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::transparent);
  return image;
}

class Response : public QQuickImageResponse {
 public:
  // The reading thread's view of the response, which may be gone before it.
  struct Link {
    std::mutex mutex;
    Response* response = nullptr;
    std::atomic<bool> isCancelled = false;

    void hand(const QImage& image) {
      const std::lock_guard lock(mutex);
      if (response == nullptr) return;
      callOn(response, [response = response, image] {
        if (!image.isNull()) response->m_image = image;
        Q_EMIT response->finished();
      });
    }
  };

  Response() { m_link->response = this; }
  ~Response() override {
    const std::lock_guard lock(m_link->mutex);
    m_link->response = nullptr;
  }

  [[nodiscard]] const std::shared_ptr<Link>& link() const { return m_link; }
  [[nodiscard]] QQuickTextureFactory* textureFactory() const override {
    return QQuickTextureFactory::textureFactoryForImage(m_image);
  }
  void cancel() override { m_link->isCancelled = true; }

 private:
  std::shared_ptr<Link> m_link = std::make_shared<Link>();
  QImage m_image = noPicture();
};

}  // namespace

PictureProvider::PictureProvider(Read read) : m_read(std::move(read)) {}

QQuickImageResponse* PictureProvider::requestImageResponse(const QString& id, const QSize& requestedSize) {
  auto response = std::make_unique<Response>();
  const auto path = QByteArray::fromBase64(id.toLatin1(), encoding).toStdString();
  const auto size = requestedSize.isValid() && !requestedSize.isEmpty() ? requestedSize : usualSize;
  m_queue.post([read = m_read, link = response->link(), path, size](const std::stop_token&) {
    const bool isWanted = !link->isCancelled && path.starts_with('/');
    link->hand(isWanted ? read(FileUrl(path), size) : QImage());
  });
  // The engine owns what it is given.
  return response.release();
}

QString pictureSource(const char* provider, const FileUrl& item) {
  const auto path = QByteArray::fromStdString(item.path()).toBase64(encoding);
  return QStringLiteral("image://%1/%2").arg(QLatin1String(provider), QString::fromLatin1(path));
}

}  // namespace orvane
