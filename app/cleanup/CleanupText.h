#pragma once

#include <QString>

namespace orvane {

class FileItem;
class FileUrl;
struct TaskServices;

// Why a scanned item is where it is in the list: in a few words, without a full stop.
[[nodiscard]] QString reasonText(const TaskServices& services, const FileItem& item);
// Why an item has its label, in a sentence: of a manual one, whether it is a key, a setting, or just somebody's file.
[[nodiscard]] QString labelText(const FileItem& item);
// Why an item cannot be chosen; empty where it can.
[[nodiscard]] QString lockText(const FileItem& item);
// The effect of moving the item on the cloud service that keeps its folder; empty where there is none.
[[nodiscard]] QString cloudText(const FileItem& item, const FileUrl& home);

}  // namespace orvane
