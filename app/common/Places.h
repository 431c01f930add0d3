#pragma once

#include "core/base/files/FileUrl.h"

#include <QVariantList>

#include <optional>
#include <vector>

namespace orvane {

// A place as QML hands it over: a path, or the URL of a file. Absent for anything else.
[[nodiscard]] std::optional<FileUrl> placeFrom(const QString& pathOrUrl);
// A place as QML keeps it: its path where that is text, else its URL.
[[nodiscard]] QString placeText(const FileUrl& place);
// {name, path} of each.
[[nodiscard]] QVariantList folderList(const std::vector<FileUrl>& folders);

}  // namespace orvane
