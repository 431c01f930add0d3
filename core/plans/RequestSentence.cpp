#include "core/plans/RequestSentence.h"

#include "core/base/text/UnicodeText.h"

#include <algorithm>

namespace orvane {
namespace {

std::size_t wordCount(std::string_view phrase) noexcept {
  return static_cast<std::size_t>(std::ranges::count(phrase, ' ')) + 1;
}

}  // namespace

RequestSentence::RequestSentence(std::string_view text, std::span<const ReadWord> words) {
  for (std::size_t i = 0; i < words.size(); ++i) {
    for (auto& token : letterDigitRuns(lowercased(words[i].span.in(text)))) {
      m_tokens.push_back({std::move(token), i, words[i].meaning != WordMeaning::none && words[i].counts});
    }
  }
}

std::optional<std::size_t> RequestSentence::find(std::string_view phrase, std::size_t from) const {
  const auto count = wordCount(phrase);
  for (auto start = from; start + count <= m_tokens.size(); ++start) {
    auto rest = phrase;
    bool fits = true;
    for (auto i = start; fits && i < start + count; ++i) {
      const auto end = std::min(rest.find(' '), rest.size());
      fits = m_tokens[i].text == rest.substr(0, end);
      rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    if (fits) return start;
  }
  return std::nullopt;
}

bool RequestSentence::hasAny(std::span<const std::string_view> phrases) const {
  return std::ranges::any_of(phrases, [&](std::string_view phrase) { return has(phrase); });
}

bool RequestSentence::beginsWithAny(std::span<const std::string_view> phrases) const {
  return std::ranges::any_of(phrases, [&](std::string_view phrase) { return find(phrase) == std::size_t{0}; });
}

void RequestSentence::explain(std::string_view phrase) {
  const auto count = wordCount(phrase);
  for (auto start = find(phrase); start; start = find(phrase, *start + 1)) {
    for (auto i = *start; i < *start + count; ++i) m_tokens[i].isKnown = true;
  }
}

void RequestSentence::explainAll(std::span<const std::string_view> phrases) {
  for (const auto phrase : phrases) explain(phrase);
}

bool RequestSentence::isAllKnown() const noexcept {
  return std::ranges::all_of(m_tokens, &Token::isKnown);
}

}  // namespace orvane
