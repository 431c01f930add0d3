#pragma once

#include "core/base/text/TextSpan.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace orvane {

// A word of a text, without case, accents and full width.
struct FoldedWord {
  enum class Kind : std::uint8_t {
    letters,
    digits,
    ideograph,  // one character of a script that puts no spaces between words, or not between all
    questionMark,
  };
  std::string text;
  TextSpan span;  // of the text as it was typed
  Kind kind = Kind::letters;
};

// The words of a text in their order; everything else separates. Digits are words of their own before letters ("2gb").
[[nodiscard]] std::vector<FoldedWord> foldedWords(std::string_view text);

}  // namespace orvane
