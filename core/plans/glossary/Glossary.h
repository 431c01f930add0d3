#pragma once

#include <span>
#include <string_view>

namespace orvane {

// Words of one language, and the English words of requests that they stand for.
struct GlossaryRow {
  // Alternatives between bars, each of one word or several, spelled as people do; case and accents make no difference.
  // A star at the end of a word stands for any ending.
  std::string_view typed;
  // Empty for a word that carries nothing, such as an article. Digits are a number, which counts only before a unit.
  std::string_view english;
};
using GlossaryRows = std::span<const GlossaryRow>;

// English words whose meaning hangs on the rest of the request.
constexpr std::string_view tidyOrClean = "tidy-or-clean";    // clean, where something that can go is named
constexpr std::string_view emptyOrClear = "empty-or-clear";  // empty the Trash, clear anything else

// Each language of the interface but English, whose words are only known, not translated.
extern const GlossaryRows frenchGlossary;
extern const GlossaryRows germanGlossary;
extern const GlossaryRows japaneseGlossary;
extern const GlossaryRows koreanGlossary;
extern const GlossaryRows simplifiedChineseGlossary;
extern const GlossaryRows traditionalChineseGlossary;
extern const GlossaryRows spanishGlossary;
// Words by which a request is known to be English, separated by spaces.
extern const std::string_view englishWords;

}  // namespace orvane
