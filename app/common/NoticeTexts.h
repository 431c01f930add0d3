#pragma once

#include "core/tasks/Notice.h"

#include <QString>
#include <QStringList>

namespace orvane {

class FileUrl;

// A line for each notice that a person can do something about.
[[nodiscard]] QStringList noticeTexts(const Notices& notices, const FileUrl& home);
// How much the keep list held back.
[[nodiscard]] QString keptText(const RowSum& rows);
// How much would go to the Trash and how much to folders, a line each; none of what is nothing.
[[nodiscard]] QString movingSums(const RowSum& toTrash, const RowSum& toFolders);
// Only of the folders that a task left out.
[[nodiscard]] QStringList leftOutFolders(const Notices& notices, const FileUrl& home);

}  // namespace orvane
