#pragma once

#include "app/common/BackgroundQueue.h"
#include "core/base/files/FileUrl.h"

#include <QImage>
#include <QQuickAsyncImageProvider>
#include <QSize>

#include <functional>

namespace orvane {

// Hands pictures of items to the screens, read in the background: neither the window nor its icons ever wait for one. A
// file that is no picture comes as a single clear pixel, since an error would be written to the log each time, and the
// screen shows what it shows without.
class PictureProvider : public QQuickAsyncImageProvider {
 public:
  using Read = std::function<QImage(const FileUrl& item, QSize size)>;

  explicit PictureProvider(Read read);

  QQuickImageResponse* requestImageResponse(const QString& id, const QSize& requestedSize) override;

 private:
  Read m_read;
  BackgroundQueue m_queue;  // one large picture at a time is enough memory
};

// The source under which a provider has the picture of an item, whatever bytes its path is made of.
[[nodiscard]] QString pictureSource(const char* provider, const FileUrl& item);

// The providers that the engine is given.
inline constexpr auto thumbnailProvider = "thumbnail";
inline constexpr auto previewProvider = "preview";
inline constexpr auto applicationIconProvider = "application";

}  // namespace orvane
