#pragma once

#include "core/base/text/TextSpan.h"

#include <cstdint>

namespace orvane {

// The use that the parser has for a word of a request.
enum class WordMeaning : std::uint8_t {
  none,  // no table knows it
  folder,
  age,
  size,
  screenshots,
  installers,
  caches,
  logs,
  organizing,
  removal,
  program,  // names one, or a place of one, and no table of words knows it
};

// A word of a request, or the words of one quantity.
struct ReadWord {
  TextSpan span;  // of the text that was read
  WordMeaning meaning = WordMeaning::none;
  bool counts = true;  // false where another word decided instead of it

  bool operator==(const ReadWord&) const = default;
};

}  // namespace orvane
