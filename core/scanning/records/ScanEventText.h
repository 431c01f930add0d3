#pragma once

#include "core/scanning/records/ScanEvent.h"

#include <string>

namespace orvane {

// Appends one event as one JSON object and a line's end. An item has the same form as FileItem::toJson(); it is written
// without building a JSON value, since a scan writes hundreds of thousands of them.
void appendScanEvent(std::string& text, const ScanEvent& event);

}  // namespace orvane
