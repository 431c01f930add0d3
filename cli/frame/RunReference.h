#pragma once

#include "core/safety/records/JournalEntry.h"

#include <span>
#include <string_view>

namespace orvane::cli {

// The run that a text means: its identifier or the beginning of it, in either case. Throws UsageError for a text that
// no identifier begins with and where several runs begin with it, UndoError when there is no such run for a whole
// identifier, and std::runtime_error when none begins with it.
[[nodiscard]] const CleanupRunSummary& runMeantBy(std::string_view text, std::span<const CleanupRunSummary> runs);

// How many characters of their identifiers tell these runs apart, at least eight.
[[nodiscard]] std::size_t distinctPrefixLength(std::span<const CleanupRunSummary> runs);

}  // namespace orvane::cli
