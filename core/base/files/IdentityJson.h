#pragma once

#include "core/base/files/FileStatus.h"
#include "core/base/text/JsonFwd.h"

namespace orvane {

// {"device", "inode", "size", "modified": [seconds, nanoseconds], "type"}
[[nodiscard]] Json jsonFromIdentity(const ItemIdentity& identity);
// "type" may be missing. Throws JsonError.
[[nodiscard]] ItemIdentity identityFromJson(const Json& json);

}  // namespace orvane
