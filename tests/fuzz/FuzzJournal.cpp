// Any text is a journal or a JsonError; a journal reads back as it was written, also merged with itself.

#include "core/base/text/Json.h"
#include "core/safety/journal/JournalModel.h"
#include "tests/fuzz/FuzzCheck.h"

#include <string>
#include <string_view>

namespace orvane::fuzz {
namespace {

std::string textOf(const JournalModel& model) {
  std::string text;
  model.encode([&](std::string_view piece) { text += piece; });
  return text;
}

}  // namespace

void run(std::string_view input) {
  JournalModel model;
  try {
    model = JournalModel::decode(input);
  } catch (const JsonError&) {
    return;
  }
  const auto text = textOf(model);
  auto again = JournalModel::decode(text);
  check(textOf(again) == text, "a journal reads back as it was written");
  again.merge(model);
  check(textOf(again) == text, "a journal holds nothing new for itself");
  for (const auto& summary : model.runs()) {
    const auto remaining = model.remainingEntries(summary.runId);
    check(remaining.size() <= model.entries(summary.runId).size(), "what is left is a part of the run");
    for (const auto& entry : model.entries(summary.runId)) again.record(entry);
  }
}

}  // namespace orvane::fuzz
