#pragma once

#include "core/base/text/RegularExpression.h"
#include "core/base/text/TextSpan.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace orvane {

// A number and the unit word that followed it, without a plural "s".
struct Quantity {
  std::int64_t number = 0;
  std::string unit;
  TextSpan span = {};  // of the text that was searched
};

// Finds quantities such as "3 days", "two weeks" or "2gb" in a lower-case text.
class QuantityPattern {
 public:
  explicit QuantityPattern(std::span<const std::string_view> units);

  // The first quantity; absent when there is none. A number beyond 64 bits ends the process: it must never wrap.
  [[nodiscard]] std::optional<Quantity> extractQuantity(std::string_view text) const;

 private:
  std::optional<RegularExpression> m_expression;
};

}  // namespace orvane
