// Any text is a saved proposal or a JsonError that fits on a line.

#include "core/base/text/Json.h"
#include "core/tasks/SavedProposal.h"
#include "tests/fuzz/FuzzCheck.h"

#include <algorithm>
#include <string_view>

namespace orvane::fuzz {

void run(std::string_view input) {
  try {
    const auto saved = SavedProposal::decode(input);
    check(std::ranges::all_of(saved.rows, [](const auto& row) { return row.item.path().starts_with('/'); }),
          "items are absolute");
    check(saved.kind != TaskKind::restore, "a restore is never saved");
  } catch (const JsonError& error) {
    check(std::string_view(error.what()).size() < 1000, "an error is short");
  }
}

}  // namespace orvane::fuzz
