#pragma once

#include "core/assistant/PlannedAnswer.h"
#include "core/base/text/JsonFwd.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orvane {

// A part of a request and what it became, or what was assumed as no part said it. Of the values there is one at most.
struct ReadEntry {
  std::string text = {};  // as typed; empty of what was assumed
  WordMeaning meaning = WordMeaning::none;
  bool counts = true;  // false where the plan does not follow it
  std::optional<std::string> folder = {};
  std::optional<std::int64_t> ageDays = {};
  std::optional<std::int64_t> sizeBytes = {};
  std::optional<std::string> program = {};

  [[nodiscard]] bool isAssumed() const noexcept { return text.empty(); }
  // {"text", "meaning", "value", "counts"}; absent values are null.
  [[nodiscard]] Json toJson() const;
};

// From the request as typed, in its order; what was assumed comes last. Fillers stand only inside a part: "older than a
// month". None of a plan that a model made: how it read the request is not known.
[[nodiscard]] std::vector<ReadEntry> readEntries(std::string_view typed, const PlannedAnswer& answer);

// The words that decided the doubt: those that nobody knows, or that the plan does not follow. Empty where no word did.
[[nodiscard]] std::vector<std::string> doubtedWords(const std::vector<ReadEntry>& entries, Doubt doubt);

}  // namespace orvane
