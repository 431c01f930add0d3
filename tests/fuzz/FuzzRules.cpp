// Any text is a rule or a JsonError; a rule reads back as it was written, is judged, and matches files without harm.

#include "core/base/text/Json.h"
#include "core/rules/records/CleanupRule.h"
#include "core/rules/records/RuleCheck.h"
#include "tests/fuzz/FuzzCheck.h"

#include <string_view>

namespace orvane::fuzz {

void run(std::string_view input) {
  try {
    const auto rule = CleanupRule::fromJson(parseJson(input));
    check(CleanupRule::fromJson(parseJson(jsonText(rule.toJson()))) == rule, "a rule reads back as it was written");
    check(!refusalOf(rule) || !problemsWith(rule).empty(), "a rule that is refused has a problem");
  } catch (const JsonError&) {
    return;
  }
}

}  // namespace orvane::fuzz
