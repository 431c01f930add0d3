#pragma once

#include "core/plans/glossary/FoldedWords.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace orvane {

// A number in Chinese characters at the beginning of some words, as in "四十五".
struct HanNumber {
  std::size_t length = 0;             // all numerals that stand there
  std::optional<std::int64_t> value;  // absent where they make no certain number below 10,000, as in "二三"

  static HanNumber at(std::span<const FoldedWord> words);
};

}  // namespace orvane
