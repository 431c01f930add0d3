#pragma once

#include "core/base/files/FileUrl.h"
#include "core/base/values/Date.h"

#include <QString>
#include <QStringList>

#include <cstdint>
#include <optional>
#include <stop_token>

namespace orvane {

// The content of an item, as far as a glance needs it.
struct PreviewContent {
  enum class Kind : std::uint8_t { none, gone, picture, text, folder, archive };

  Kind kind = Kind::none;
  QString text;         // of a text file, from its beginning
  QStringList entries;  // of a folder or an archive
  bool isCut = false;   // there is more
  std::optional<std::int64_t> bytes;
  std::optional<Date> modified;
};

// Looks into a regular file, an archive or a folder, whose content may come from anywhere: bounded in bytes, entries
// and seconds. Nothing is started, no link followed, and nothing waited for that is no file. Of a picture or
// a document with pages it tells only that it is one. For worker threads.
[[nodiscard]] PreviewContent readPreview(const FileUrl& item, const std::stop_token& stop);

}  // namespace orvane
