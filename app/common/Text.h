#pragma once

#include "core/base/files/FileUrl.h"
#include "core/base/values/Date.h"

#include <QString>

#include <optional>
#include <string_view>

namespace orvane {

// UTF-8 as Qt keeps text.
[[nodiscard]] QString textFrom(std::string_view utf8);
// The text for a key in the current language.
[[nodiscard]] QString localizedText(std::string_view key);
// The text for a count of things, with the grouped number in the place of %1.
[[nodiscard]] QString countedText(std::string_view key, std::int64_t count);

// A name as a label may show it: what would garble the line around it, or is no text at all, is escaped.
[[nodiscard]] QString shownName(std::string_view name);
// The folder that holds a place, from the home folder where it lies in there ("Library/Caches"), else absolute.
[[nodiscard]] QString shownPlace(const FileUrl& place, const FileUrl& home);
// A path with the home folder as "~".
[[nodiscard]] QString shownPath(std::string_view path, const FileUrl& home);

// Milliseconds since 1970, as QML keeps dates; 0 where there is none.
[[nodiscard]] double milliseconds(Date date);
[[nodiscard]] double milliseconds(const std::optional<Date>& date);

}  // namespace orvane
