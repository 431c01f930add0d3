#pragma once

#include "core/base/text/TextSpan.h"
#include "core/base/values/EnumTable.h"

#include <cstdint>
#include <string_view>

namespace orvane {

// The use that the parser has for a word of a request.
enum class WordMeaning : std::uint8_t {
  none,    // nobody knows it
  filler,  // it changes nothing: "the", "please"
  folder,
  age,
  size,
  screenshots,
  installers,
  caches,
  logs,
  organizing,
  removal,
  program,  // it names one, or a place of one, and no table of words knows it
};

// The case name is also the JSON form.
inline constexpr EnumTable wordMeanings({
    RawValueRow{WordMeaning::none, "none"},
    RawValueRow{WordMeaning::filler, "filler"},
    RawValueRow{WordMeaning::folder, "folder"},
    RawValueRow{WordMeaning::age, "age"},
    RawValueRow{WordMeaning::size, "size"},
    RawValueRow{WordMeaning::screenshots, "screenshots"},
    RawValueRow{WordMeaning::installers, "installers"},
    RawValueRow{WordMeaning::caches, "caches"},
    RawValueRow{WordMeaning::logs, "logs"},
    RawValueRow{WordMeaning::organizing, "organizing"},
    RawValueRow{WordMeaning::removal, "removal"},
    RawValueRow{WordMeaning::program, "program"},
});
constexpr std::string_view rawValue(WordMeaning meaning) noexcept {
  return wordMeanings[meaning].rawValue;
}

// A word of a request, or the words of one quantity.
struct ReadWord {
  TextSpan span;  // of the text that was read
  WordMeaning meaning = WordMeaning::none;
  bool counts = true;            // false where another word decided instead of it
  std::string_view folder = {};  // that a word for one names: a path below "~"

  bool operator==(const ReadWord&) const = default;
};

}  // namespace orvane
