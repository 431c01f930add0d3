#include "app/common/Pictures.h"

#include "core/base/files/FileDescriptor.h"
#include "core/base/text/UnicodeText.h"
#include "core/uninstaller/services/BundleInformation.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <QBuffer>
#include <QFile>
#include <QImageReader>
#include <QtEndian>

#include <algorithm>
#include <array>
#include <cstdint>
#include <string_view>
#include <system_error>

namespace orvane {
namespace {

constexpr qint64 maxPictureBytes = 512LL * 1024 * 1024;   // bytes
constexpr std::size_t maxIconBytes = 32UL * 1024 * 1024;  // bytes
constexpr qint64 maxPixels = 400'000'000;

struct FormatRow {
  qsizetype at;  // where the bytes stand that tell it
  std::string_view bytes;
  const char* format;  // as the library names it
};

// Drawings and documents are none: they are programs of a kind, a few lines of one can ask for hours.
constexpr std::array pictureFormats{
    FormatRow{0, "\x89PNG\r\n\x1a\n", "png"},
    FormatRow{0, "\xff\xd8\xff", "jpeg"},
    FormatRow{0, "GIF8", "gif"},
    FormatRow{0, "BM", "bmp"},
    FormatRow{0, std::string_view("\0\0\1\0", 4), "ico"},
    FormatRow{0, std::string_view("II*\0", 4), "tiff"},
    FormatRow{0, std::string_view("MM\0*", 4), "tiff"},
    FormatRow{8, "WEBP", "webp"},
    FormatRow{4, "ftyphei", "heic"},
    FormatRow{4, "ftypmif1", "heic"},
    FormatRow{0, "icns", "icns"},
};

// Empty for whatever is no picture. The library would load every module that it has to find out, for documents too.
QByteArray formatOf(QIODevice& device) {
  const auto head = device.peek(16);
  for (const auto& row : pictureFormats) {
    const QByteArrayView bytes(row.bytes.data(), static_cast<qsizetype>(row.bytes.size()));
    if (head.size() >= row.at + bytes.size() && head.sliced(row.at).startsWith(bytes)) return row.format;
  }
  return {};
}

// At the size that is wanted, which some formats are decoded at and others scaled to.
QImage decoded(QIODevice& device, QSize size, Qt::AspectRatioMode mode) {
  const auto format = formatOf(device);
  if (format.isEmpty() || !size.isValid()) return {};
  QImageReader reader(&device, format);
  reader.setAutoDetectImageFormat(false);
  reader.setAutoTransform(true);
  const auto natural = reader.size();
  if (natural.isValid()) {
    if (static_cast<qint64>(natural.width()) * natural.height() > maxPixels) return {};
    const auto scaled = natural.scaled(size, mode);
    if (scaled.width() < natural.width()) reader.setScaledSize(scaled.expandedTo(QSize(1, 1)));
  }
  auto image = reader.read();
  if (image.isNull()) return {};
  // A format that does not tell its size is known only now.
  const auto scaled = image.size().scaled(size, mode).expandedTo(QSize(1, 1));
  return scaled.width() < image.width() ? image.scaled(scaled, Qt::IgnoreAspectRatio, Qt::SmoothTransformation) : image;
}

// An icon family (.icns) is a list of pictures, each behind four letters and its length. Those of the last fifteen
// years are PNG files. The smallest that fills `size`, else the largest; empty when there is none.
QByteArray pngOfFamily(const QByteArray& family, QSize size) {
  constexpr qsizetype headLength = 8;
  constexpr qsizetype pngHeadLength = 24;
  const auto number = [&family](qsizetype at) {
    return static_cast<qint64>(qFromBigEndian<quint32>(family.constData() + at));
  };
  QByteArray best;
  qint64 bestWidth = 0;
  for (qsizetype at = headLength; at + headLength <= family.size();) {
    const auto length = number(at + 4);
    if (length < headLength || length > family.size() - at) break;
    const auto content = at + headLength;
    if (length >= headLength + pngHeadLength && family.mid(content, 8) == "\x89PNG\r\n\x1a\n") {
      const auto width = number(content + 16);
      const bool isBetter = bestWidth < size.width() ? width > bestWidth : width >= size.width() && width < bestWidth;
      if (isBetter) {
        bestWidth = width;
        best = family.mid(content, length - headLength);
      }
    }
    at += length;
  }
  return best;
}

QImage readPicture(const FileUrl& file, QSize size, Qt::AspectRatioMode mode) {
  FileDescriptor descriptor(open(file.path().c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
  struct stat status {};
  if (!descriptor || fstat(descriptor.get(), &status) != 0 || !S_ISREG(status.st_mode)) return {};
  if (status.st_size > maxPictureBytes) return {};
  QFile device;
  return device.open(descriptor.get(), QIODevice::ReadOnly) ? decoded(device, size, mode) : QImage();
}

}  // namespace

bool isPictureName(const FileUrl& file) {
  constexpr std::array<std::string_view, 10> extensions{"bmp", "gif", "heic", "ico",  "jpeg",
                                                        "jpg", "png", "tif",  "tiff", "webp"};
  return std::ranges::find(extensions, lowercased(file.pathExtension())) != extensions.end();
}

QImage readThumbnail(const FileUrl& file, QSize size) {
  return readPicture(file, size, Qt::KeepAspectRatioByExpanding);
}

QImage readWholePicture(const FileUrl& file, QSize size) {
  return readPicture(file, size, Qt::KeepAspectRatio);
}

QImage readApplicationIcon(const FileUrl& bundle, QSize size) {
  const auto file = bundleIconFile(bundle);
  if (!file) return {};
  QByteArray bytes;
  try {
    bytes = QByteArray::fromStdString(readFile(file->path(), maxIconBytes));
  } catch (const std::system_error&) {
    return {};
  }
  if (bytes.startsWith("icns")) {
    if (auto png = pngOfFamily(bytes, size); !png.isEmpty()) bytes = std::move(png);
  }
  return decodedPicture(std::move(bytes), size);
}

QImage decodedPicture(QByteArray bytes, QSize size) {
  QBuffer buffer(&bytes);
  return buffer.open(QIODevice::ReadOnly) ? decoded(buffer, size, Qt::KeepAspectRatio) : QImage();
}

}  // namespace orvane
