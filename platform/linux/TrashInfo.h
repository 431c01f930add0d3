#pragma once

#include "core/base/values/Date.h"

#include <optional>
#include <string>
#include <string_view>

namespace orvane {

// The record that the Trash keeps of one item (freedesktop.org, The Trash, 1.0, "Contents of a trash
// directory"). `path` is absolute in the home Trash and relative to the volume's top folder elsewhere.
[[nodiscard]] std::string trashInfoText(std::string_view path, Date deleted);

// The path of a record; absent where the text is no such record. Anybody may have written it.
[[nodiscard]] std::optional<std::string> trashInfoPath(std::string_view text);

// The moment of deletion of a record, in local time there; absent where the text tells none.
[[nodiscard]] std::optional<Date> trashInfoDate(std::string_view text);

}  // namespace orvane
