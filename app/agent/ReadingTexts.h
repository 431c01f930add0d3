#pragma once

#include "app/shell/AppNavigationItem.h"
#include "core/plans/records/Understanding.h"
#include "core/tasks/ReadEntries.h"

#include <QString>

#include <string_view>

namespace orvane {

class FileUrl;

// A value that a part of a request became, in the language of the window; empty where there is none to tell.
[[nodiscard]] QString becameText(const ReadEntry& entry, const FileUrl& home);
// The same of a value that no part said.
[[nodiscard]] QString assumedText(const ReadEntry& entry, const FileUrl& home);
// Key of the text; empty where there is nothing to say.
[[nodiscard]] std::string_view doubtKey(Doubt doubt) noexcept;
[[nodiscard]] AppNavigationItem sectionOf(Room room) noexcept;
// Key of the section's title.
[[nodiscard]] std::string_view titleOf(Room room) noexcept;

}  // namespace orvane
