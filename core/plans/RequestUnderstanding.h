#pragma once

#include "core/plans/records/Understanding.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace orvane {

struct CleaningPlan;
struct PromptReading;

// A name by which a request can mean a program's places.
struct ProgramName {
  std::string phrase;  // words in lower case, separated by one space
  NamedProgram program;
  bool isPlace = false;  // it names the place itself, which no program is taken for
};

// The request as typed, and the English words that are read for it: the same, or a translation. The reading's spans are
// of those words.
struct RequestText {
  std::string_view typed;
  std::string_view words;
};

enum class PlanMaker : std::uint8_t { tables, model };

// Judges whether the plan is the one that was asked for. Of a plan that a model made, only words that turn a request
// around and those for other sections tell. Known programs are looked for where the tables leave words over. Spans stay
// those of the reading.
[[nodiscard]] Understanding understand(const RequestText& request, const PromptReading& reading,
                                       const CleaningPlan& plan, PlanMaker maker,
                                       std::span<const ProgramName> programs);

// The words of a text in the form of phrases: "Code - Insiders" is "code insiders".
[[nodiscard]] std::string phraseOf(std::string_view text);

}  // namespace orvane
