#pragma once

#include "core/base/files/FileUrl.h"

#include <QByteArray>
#include <QImage>
#include <QSize>

namespace orvane {

// Pictures may come from anywhere: a file that is no picture, is damaged, or is out of all proportion comes back
// as a null image. Nothing but a regular file is waited for. From any thread.

// Whether the name is one of a picture that can be shown.
[[nodiscard]] bool isPictureName(const FileUrl& file);
// A picture file as a small image that covers `size`, upright.
[[nodiscard]] QImage readThumbnail(const FileUrl& file, QSize size);
// A picture file whole, upright, at most `size`.
[[nodiscard]] QImage readWholePicture(const FileUrl& file, QSize size);
// The icon that an application's bundle names, at most `size`.
[[nodiscard]] QImage readApplicationIcon(const FileUrl& bundle, QSize size);
// The content of a picture file whole, upright, at most `size`.
[[nodiscard]] QImage decodedPicture(QByteArray bytes, QSize size);

}  // namespace orvane
