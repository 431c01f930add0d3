#pragma once

#include "core/tasks/Notice.h"

#include <QStringList>

namespace orvane {

class FileUrl;

// A line for each folder that a task left out, with the reason.
[[nodiscard]] QStringList leftOutFolders(const Notices& notices, const FileUrl& home);

}  // namespace orvane
