#pragma once

#include "core/base/files/FileUrl.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace orvane {

// How the next name differs from a taken one: "report (1).pdf" or "report (restored 1).pdf".
enum class NumberingStyle : std::uint8_t { plain, restored };

// `name` with its number before the extension, shortened at a character so that it stays within 255 bytes. An extension
// that leaves no room counts as part of the stem.
[[nodiscard]] std::string numberedName(std::string_view name, std::int64_t number, NumberingStyle style);

// The name that numberedName() was given, as far as it was not shortened; absent for a name without such a number.
[[nodiscard]] std::optional<std::string> unnumberedName(std::string_view name, NumberingStyle style);

// `wanted`, or the first numbered name in the same folder, counted from 1, that is not taken. A dangling link takes its
// name too; one that cannot be looked at is not taken: the move itself never replaces and says why it fails.
// `alsoTaken` tells of places that are promised but not on the disk yet. Throws std::system_error when no name is
// found.
[[nodiscard]] FileUrl freeUrl(const FileUrl& wanted, NumberingStyle style,
                              const std::function<bool(const FileUrl&)>& alsoTaken = {});

}  // namespace orvane
