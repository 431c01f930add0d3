#pragma once

#include <QString>

namespace orvane {

class FileItem;
class FileUrl;

// Why a scanned item is where it is in the list: in a few words, without a full stop.
[[nodiscard]] QString reasonText(const FileItem& item);
// What moving the item means for the cloud service that keeps its folder; empty where there is none.
[[nodiscard]] QString cloudText(const FileItem& item, const FileUrl& home);

}  // namespace orvane
