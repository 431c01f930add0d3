#pragma once

#include "core/plans/records/ReadWord.h"

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace orvane {

// The words of a request in a row, in lower case, to be compared with phrases; a word that a phrase explains is known
// from then on.
class RequestSentence {
 public:
  struct Token {
    std::string text;
    std::size_t word;      // index of the word that was read, or of the quantity that holds it
    bool isKnown = false;  // by a table or by a phrase
  };

  RequestSentence(std::string_view text, std::span<const ReadWord> words);

  [[nodiscard]] const std::vector<Token>& tokens() const noexcept { return m_tokens; }
  // Where a phrase of whole words begins, from a token on. Words of a phrase are separated by one space.
  [[nodiscard]] std::optional<std::size_t> find(std::string_view phrase, std::size_t from = 0) const;
  [[nodiscard]] bool has(std::string_view phrase) const { return find(phrase).has_value(); }
  [[nodiscard]] bool hasAny(std::span<const std::string_view> phrases) const;
  [[nodiscard]] bool beginsWithAny(std::span<const std::string_view> phrases) const;
  // Has its words known, wherever it stands.
  void explain(std::string_view phrase);
  void explainAll(std::span<const std::string_view> phrases);
  void explain(std::size_t token) { m_tokens[token].isKnown = true; }
  [[nodiscard]] bool isAllKnown() const noexcept;

 private:
  std::vector<Token> m_tokens;
};

}  // namespace orvane
