#pragma once

#include <cstdint>
#include <string_view>

namespace orvane::cli {

class Arguments;
class Session;

enum class Answer : std::uint8_t { yes, no, interrupted };

// Nothing that changes files runs without the user's word: --yes, or an answer at a terminal.

// Throws UsageError where neither can be had, which says what would be done. Call it before any work.
void requireConsentPossible(const Arguments& arguments, std::string_view effect = "this changes files");
// Yes at once with --yes; else asks "`question` [y/N] ". The end of the input is a no.
[[nodiscard]] Answer askConsent(Session& session, const Arguments& arguments, std::string_view question);

}  // namespace orvane::cli
