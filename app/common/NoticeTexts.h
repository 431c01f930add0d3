#pragma once

#include "core/tasks/Notice.h"

#include <QStringList>

namespace orvane {

class FileUrl;

// A line for each notice on where items go that a person can do something about.
[[nodiscard]] QStringList noticeTexts(const Notices& notices, const FileUrl& home);
// Only of the folders that a task left out.
[[nodiscard]] QStringList leftOutFolders(const Notices& notices, const FileUrl& home);

}  // namespace orvane
