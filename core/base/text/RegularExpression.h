#pragma once

#include "core/base/text/TextSpan.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

namespace orvane {

// A regular expression of Unicode (ICU's syntax), compiled once. Matching is safe from any number of threads.
class RegularExpression {
 public:
  using Range = TextSpan;  // of the text that was searched
  // The whole match and its groups, counted from 1; a group that took no part is absent.
  struct Match {
    Range whole;
    std::vector<std::optional<Range>> groups;
  };

  // Absent when the pattern cannot be built.
  static std::optional<RegularExpression> compile(std::string_view pattern);
  RegularExpression(RegularExpression&&) noexcept;
  RegularExpression& operator=(RegularExpression&&) noexcept;
  ~RegularExpression();

  // The first match. The text is UTF-8; bytes that are not count as U+FFFD. A search that takes far longer than any
  // sensible pattern needs (catastrophic backtracking) finds nothing.
  [[nodiscard]] std::optional<Match> firstMatch(std::string_view text) const;

 private:
  struct Pattern;
  explicit RegularExpression(std::unique_ptr<const Pattern> pattern);

  std::unique_ptr<const Pattern> m_pattern;
};

}  // namespace orvane
