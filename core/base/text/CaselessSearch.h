#pragma once

#include <string>
#include <string_view>

namespace orvane {

// Looks for one text in many, ignoring case by the user's locale and composition of characters. Bytes that are not
// UTF-8 count as U+FFFD each. An empty text is contained in every text.
class CaselessSearch {
 public:
  explicit CaselessSearch(std::string_view needle);

  [[nodiscard]] bool isIn(std::string_view text) const;

 private:
  std::u16string m_folded;
  std::string m_asciiFolded;    // the same, where it is plain ASCII
  bool m_foldsAsAscii = false;  // whether plain ASCII text folds to its lower case in this locale
};

}  // namespace orvane
