#include "core/plans/glossary/HanNumber.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace orvane {
namespace {

struct Numeral {
  std::string_view text;
  std::int64_t value;
};
constexpr std::array numerals{
    Numeral{"〇", 0}, Numeral{"零", 0}, Numeral{"一", 1}, Numeral{"二", 2},  Numeral{"两", 2},   Numeral{"兩", 2},
    Numeral{"俩", 2}, Numeral{"倆", 2}, Numeral{"三", 3}, Numeral{"四", 4},  Numeral{"五", 5},   Numeral{"六", 6},
    Numeral{"七", 7}, Numeral{"八", 8}, Numeral{"九", 9}, Numeral{"十", 10}, Numeral{"百", 100}, Numeral{"千", 1000},
};

std::optional<std::int64_t> numeralOf(const FoldedWord& word) {
  const auto* const found = std::ranges::find(numerals, word.text, &Numeral::text);
  return found == numerals.end() ? std::nullopt : std::optional(found->value);
}

// Digits and powers of ten in their order.
class HanReading {
 public:
  void add(std::int64_t numeral) {
    if (numeral == 0) {
      m_isValid = m_isValid && m_digit == none;
      m_isAfterZero = true;
    } else if (numeral < 10) {
      m_isValid = m_isValid && m_digit == none;
      m_digit = numeral;
    } else {
      m_isValid = m_isValid && numeral < m_power;
      m_total += (m_digit == none ? 1 : m_digit) * numeral;
      m_power = numeral;
      m_digit = none;
      m_isAfterZero = false;
    }
  }
  [[nodiscard]] std::optional<std::int64_t> value() const {
    // A digit right after a hundred may be a count of tens: "一百五".
    const bool isCertain = m_digit == none || m_power == highest || m_power == 10 || m_isAfterZero;
    const auto result = m_total + m_digit;
    return m_isValid && isCertain && result > 0 ? std::optional(result) : std::nullopt;
  }

 private:
  static constexpr std::int64_t highest = 10'000;
  static constexpr std::int64_t none = 0;
  std::int64_t m_total = 0;
  std::int64_t m_power = highest;  // the last one
  std::int64_t m_digit = none;     // not yet counted
  bool m_isAfterZero = false;
  bool m_isValid = true;
};

}  // namespace

HanNumber HanNumber::at(std::span<const FoldedWord> words) {
  HanNumber result;
  HanReading reading;
  for (const auto& word : words) {
    const auto numeral = numeralOf(word);
    if (!numeral) break;
    reading.add(*numeral);
    ++result.length;
  }
  if (result.length > 0) result.value = reading.value();
  return result;
}

}  // namespace orvane
