#include "core/plans/QuantityPattern.h"

#include "core/base/values/CheckedArithmetic.h"

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <array>
#include <vector>

namespace orvane {
namespace {

struct NumberWord {
  std::string_view word;
  std::int64_t value;
};
constexpr std::array numberWords{
    NumberWord{"a", 1},     NumberWord{"an", 1},    NumberWord{"one", 1},  NumberWord{"two", 2},
    NumberWord{"three", 3}, NumberWord{"four", 4},  NumberWord{"five", 5}, NumberWord{"six", 6},
    NumberWord{"seven", 7}, NumberWord{"eight", 8}, NumberWord{"nine", 9}, NumberWord{"ten", 10},
};

// Longest first, so that a longer word wins over one that it begins with.
std::string alternatives(std::vector<std::string_view> words) {
  std::ranges::stable_sort(words, std::ranges::greater{}, &std::string_view::size);
  return fmt::format("{}", fmt::join(words, "|"));
}

std::string quantityExpression(std::span<const std::string_view> units) {
  std::vector<std::string_view> words;
  words.reserve(std::size(numberWords));
  for (const auto& row : numberWords) words.push_back(row.word);
  return fmt::format(R"(\b(\d+|{})\s*({})s?\b)", alternatives(std::move(words)),
                     alternatives({units.begin(), units.end()}));
}

// Decimal digits of any script.
std::int64_t decimalNumber(std::string_view digits) {
  const auto text = icu::UnicodeString::fromUTF8({digits.data(), static_cast<int32_t>(digits.size())});
  std::int64_t number = 0;
  for (int32_t i = 0; i < text.length(); i = text.moveIndex32(i, 1)) {
    const std::int64_t digit = ::u_charDigitValue(text.char32At(i));
    number = checkedAdd(checkedMultiply<std::int64_t>(number, 10), digit);
  }
  return number;
}

std::int64_t numberFrom(std::string_view text) {
  const auto* word = std::ranges::find(numberWords, text, &NumberWord::word);
  return word != numberWords.end() ? word->value : decimalNumber(text);
}

}  // namespace

QuantityPattern::QuantityPattern(std::span<const std::string_view> units)
    : m_expression(RegularExpression::compile(quantityExpression(units))) {}

std::optional<Quantity> QuantityPattern::extractQuantity(std::string_view text) const {
  if (!m_expression) return std::nullopt;
  const auto match = m_expression->firstMatch(text);
  if (!match || !match->groups[0] || !match->groups[1]) return std::nullopt;
  return Quantity{numberFrom(match->groups[0]->in(text)), std::string(match->groups[1]->in(text)), match->whole};
}

}  // namespace orvane
