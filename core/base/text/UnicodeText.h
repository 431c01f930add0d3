#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace orvane {

// Unicode rules over UTF-8 text. Bytes that are not UTF-8, as file names may hold, count as U+FFFD each.

[[nodiscard]] bool isValidUtf8(std::string_view text) noexcept;

// Full lower-casing, independent of the user's locale.
[[nodiscard]] std::string lowercased(std::string_view text);
[[nodiscard]] std::string uppercased(std::string_view text);

// Order of two texts as the user's language sorts them, ignoring case. Less than zero when `left` comes first.
[[nodiscard]] int compareForDisplay(std::string_view left, std::string_view right);

// Characters as a reader perceives them (extended grapheme clusters, Unicode Standard Annex 29).
[[nodiscard]] std::int64_t perceivedCharacterCount(std::string_view text);

// Without white space and line breaks at both ends.
[[nodiscard]] std::string trimmed(std::string_view text);

// The runs of letters and digits of a text, in order; everything else separates.
[[nodiscard]] std::vector<std::string> letterDigitRuns(std::string_view text);

// Puts a space wherever an upper-case letter directly follows a lower-case one: "MyPhotos" becomes "My Photos".
[[nodiscard]] std::string spacedCamelCase(std::string_view text);

// A name as a terminal may show it: control and formatting characters, line and direction marks and bytes that are not
// UTF-8 are escaped as in C ("\n", "\x1b", "\u202e").
[[nodiscard]] std::string escapedForDisplay(std::string_view text);
// Columns that a text takes on a terminal.
[[nodiscard]] int displayWidth(std::string_view text);

}  // namespace orvane
