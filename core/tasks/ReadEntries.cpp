#include "core/tasks/ReadEntries.h"

#include "core/base/files/HomeFolder.h"
#include "core/base/text/Json.h"

#include <utility>

namespace orvane {
namespace {

// Parts that say one thing together, with at most fillers between them.
struct Part {
  TextSpan span;
  WordMeaning meaning;
  bool counts;
  std::string_view folder;
};

std::vector<Part> partsOf(const std::vector<ReadWord>& words) {
  std::vector<Part> parts;
  bool isNext = false;  // to the part before, but for fillers
  for (const auto& word : words) {
    if (word.meaning == WordMeaning::filler) continue;
    const bool mayJoin =
        word.meaning == WordMeaning::age || word.meaning == WordMeaning::size || word.meaning == WordMeaning::program;
    if (isNext && mayJoin && parts.back().meaning == word.meaning && parts.back().counts == word.counts &&
        word.span.start >= parts.back().span.end()) {
      parts.back().span.length = word.span.end() - parts.back().span.start;
      continue;
    }
    parts.push_back({word.span, word.meaning, word.counts, word.folder});
    isNext = true;
  }
  return parts;
}

void giveValue(ReadEntry& entry, std::string_view folder, const PlannedAnswer& answer) {
  const auto& understanding = answer.understanding;
  if (!entry.counts) return;
  switch (entry.meaning) {
    case WordMeaning::age:
      entry.ageDays = understanding.ageDays;
      break;
    case WordMeaning::size:
      entry.sizeBytes = understanding.sizeBytes;
      break;
    case WordMeaning::folder:
      entry.folder = expandedHome(folder);
      break;
    case WordMeaning::caches:
      if (understanding.folder == "~/Library/Caches" && understanding.programs.empty()) {
        entry.folder = expandedHome(*understanding.folder);
      }
      break;
    case WordMeaning::logs:
      if (understanding.folder == "~/Library/Logs" && understanding.programs.empty()) {
        entry.folder = expandedHome(*understanding.folder);
      }
      break;
    case WordMeaning::program:
      if (understanding.programs.size() == 1 && answer.plan.steps.size() == 1) {
        entry.folder = answer.plan.steps.front().targetFolder;
      } else if (understanding.programs.size() == 1) {
        entry.program = understanding.programs.front().name;
      }
      break;
    default:
      break;
  }
}

// Adds the values of the step that no word of the request gave.
void addAssumed(std::vector<ReadEntry>& entries, const PlannedAnswer& answer) {
  const bool isOfTables = answer.provider == AIProvider::heuristic && answer.understanding.programs.empty();
  if (!isOfTables || answer.plan.steps.empty() || answer.understanding.doubt == Doubt::otherRoom) return;
  const auto& step = answer.plan.steps.front();
  const auto& understanding = answer.understanding;
  if (!understanding.folder) entries.push_back({.meaning = WordMeaning::folder, .folder = step.targetFolder});
  if (!understanding.ageDays && step.filter.minimumAgeDays) {
    entries.push_back({.meaning = WordMeaning::age, .ageDays = step.filter.minimumAgeDays});
  }
  if (!understanding.sizeBytes && step.filter.minimumSizeBytes) {
    entries.push_back({.meaning = WordMeaning::size, .sizeBytes = step.filter.minimumSizeBytes});
  }
}

}  // namespace

Json ReadEntry::toJson() const {
  Json json = Json::object();
  json["text"] = isAssumed() ? Json() : Json(text);
  json["meaning"] = rawValue(meaning);
  auto& value = json["value"] = Json();
  if (folder) value = *folder;
  if (ageDays) value = *ageDays;
  if (sizeBytes) value = *sizeBytes;
  if (program) value = *program;
  json["counts"] = counts;
  return json;
}

std::vector<ReadEntry> readEntries(std::string_view typed, const PlannedAnswer& answer) {
  std::vector<ReadEntry> entries;
  if (answer.provider != AIProvider::heuristic) return entries;
  for (const auto& part : partsOf(answer.understanding.words)) {
    ReadEntry entry{.text = std::string(part.span.in(typed)), .meaning = part.meaning, .counts = part.counts};
    giveValue(entry, part.folder, answer);
    entries.push_back(std::move(entry));
  }
  addAssumed(entries, answer);
  return entries;
}

std::vector<std::string> doubtedWords(const std::vector<ReadEntry>& entries, Doubt doubt) {
  std::vector<std::string> words;
  for (const auto& entry : entries) {
    const bool decided = (doubt == Doubt::unknownWord && entry.meaning == WordMeaning::none) ||
                         (doubt == Doubt::leftAside && !entry.counts);
    if (decided) words.push_back(entry.text);
  }
  return words;
}

}  // namespace orvane
